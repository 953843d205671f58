#include "host/browser/jobs/LibraryDrop.h"

#include "host/browser/jobs/DropHighlight.h"
#include "host/browser/jobs/ImportPlan.h"

#include <QDropEvent>
#include <QMimeData>
#include <QUrl>
#include <QWidget>

namespace VelkHost {

LibraryDrop::LibraryDrop(QWidget& window) : QObject(&window), window_(window), highlight_(new DropHighlight(&window))
{
    window.setAcceptDrops(true);
    window.installEventFilter(this);
}

void LibraryDrop::coverWidget(QWidget* widget)
{
    widget->installEventFilter(this);
}

bool LibraryDrop::eventFilter(QObject* watched, QEvent* event)
{
    switch (event->type()) {
        case QEvent::DragEnter:
        case QEvent::DragMove:
        case QEvent::Drop:
            return take(watched, *static_cast<QDropEvent*>(event));
        case QEvent::DragLeave:
            highlight_->hide();
            return false;
        default:
            return false;
    }
}

/// The dropped files if all of them can be imported, otherwise none.
QStringList LibraryDrop::filesOf(const QDropEvent& event) const
{
    QStringList files;
    if (!enabled_)
        return files;
    for (const QUrl& url : event.mimeData()->urls()) {
        const QString file = url.toLocalFile();
        if (!isImportable(fileString(file.toStdString())))
            return {};
        files.append(file);
    }
    return files;
}

// A drop that is not of library files is left to the widget below it.
bool LibraryDrop::take(QObject* watched, QDropEvent& event)
{
    const QStringList files = filesOf(event);
    if (files.isEmpty()) {
        highlight_->hide();
        if (watched == &window_)
            event.ignore();
        return watched == &window_;
    }
    event.setDropAction(Qt::CopyAction);
    event.accept();
    if (event.type() == QEvent::Drop) {
        highlight_->hide();
        Q_EMIT dropped(files);
    } else {
        showHighlight();
    }
    return true;
}

void LibraryDrop::showHighlight()
{
    highlight_->setGeometry(window_.rect());
    highlight_->raise();
    highlight_->show();
}

}  // namespace VelkHost
