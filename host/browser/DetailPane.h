#pragma once

#include "host/browser/tree/LibraryTreeModel.h"
#include "host/browser/tree/ThumbnailCache.h"

#include <QWidget>

#include <optional>

class QLabel;
class QPushButton;
class QVBoxLayout;

namespace VelkHost {

/// The details of the selected item: its picture, its name, where it stands, its keywords; and the button
/// that chooses it.
class DetailPane : public QWidget
{
    Q_OBJECT

public:
    DetailPane(ThumbnailCache& thumbnails, QWidget* parent = nullptr);

    /// Shows a place of a library; nothing when `library` is null.
    void show(const BrowsedLibrary* library, const LibraryPlace& place);

    /// Sets how many of the screen's pixels the picture gets for one of the pane's.
    void setPixelRatio(qreal ratio);

    /// Where a card about the library's manufacturer goes.
    QVBoxLayout* extras() const { return extras_; }

Q_SIGNALS:
    /// The user chooses the shown item.
    void chosen();

protected:
    void changeEvent(QEvent* event) override;

private:
    int pictureSide() const;
    void showPicture();
    void retranslate();

    ThumbnailCache& thumbnails_;
    std::optional<ThumbnailKey> picture_;
    qreal pixelRatio_ = 1;
    QLabel* const pictureLabel_;
    QLabel* const name_;
    QLabel* const where_;
    QLabel* const size_;
    QLabel* const keywords_;
    QPushButton* const choose_;
    QVBoxLayout* const extras_;
};

}  // namespace VelkHost
