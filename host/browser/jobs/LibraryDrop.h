#pragma once

#include <QObject>
#include <QStringList>

class QDropEvent;
class QWidget;

namespace VelkHost {

class DropHighlight;

/// Takes library files that are dropped anywhere on a window.
class LibraryDrop : public QObject
{
    Q_OBJECT

public:
    explicit LibraryDrop(QWidget& window);

    /// Covers a widget in the window that takes drops itself, so that library files still go to the window.
    void coverWidget(QWidget* widget);

    /// Whether drops are taken.
    void setEnabled(bool enabled) { enabled_ = enabled; }

Q_SIGNALS:
    void dropped(const QStringList& files);

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    QStringList filesOf(const QDropEvent& event) const;
    bool take(QObject* watched, QDropEvent& event);
    void showHighlight();

    QWidget& window_;
    DropHighlight* const highlight_;
    bool enabled_ = true;
};

}  // namespace VelkHost
