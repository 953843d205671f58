#pragma once

#include <QObject>
#include <QStringList>

class QDropEvent;
class QWidget;

namespace VelkHost {

class DropHighlight;

/// Takes library files that are dropped on a window, wherever on it.
class LibraryDrop : public QObject
{
    Q_OBJECT

public:
    explicit LibraryDrop(QWidget& window);

    /// A widget in the window that takes drops itself; those of library files go to the window.
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
