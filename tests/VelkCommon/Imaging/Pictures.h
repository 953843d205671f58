#pragma once

#include <QColor>
#include <QGuiApplication>
#include <QImage>

/// A picture of one colour.
inline QImage plainPicture(int width, int height, const QColor& colour)
{
    QImage picture(width, height, QImage::Format_ARGB32);
    picture.fill(colour);
    return picture;
}

/// Makes a Qt application without a display. It lasts until the program ends, because the offscreen platform
/// leaks its screen when an application is destroyed.
inline void useOffscreenApplication()
{
    static char name[] = "test";
    static char* arguments[] = {name, nullptr};
    static int count = 1;
    static const QGuiApplication* const application = [] {
        qputenv("QT_QPA_PLATFORM", "offscreen");
        return new QGuiApplication(count, arguments);
    }();
    static_cast<void>(application);
}
