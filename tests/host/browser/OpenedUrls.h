#pragma once

#include <QDesktopServices>
#include <QList>
#include <QObject>
#include <QUrl>

/// Takes the files that are opened with the desktop's programs, while it lives.
class OpenedUrls : public QObject
{
    Q_OBJECT

public:
    OpenedUrls() { QDesktopServices::setUrlHandler(QStringLiteral("file"), this, "open"); }
    ~OpenedUrls() override { QDesktopServices::unsetUrlHandler(QStringLiteral("file")); }

    QList<QUrl> urls;

public Q_SLOTS:
    void open(const QUrl& url) { urls.append(url); }
};
