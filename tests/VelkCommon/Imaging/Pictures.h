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

/// A Qt application without a display, for the length of a scope.
class OffscreenApplication
{
public:
    QGuiApplication& operator*() noexcept { return application_; }

private:
    struct Platform
    {
        Platform() { qputenv("QT_QPA_PLATFORM", "offscreen"); }
    };

    Platform platform_;  // to be set before the application looks at it
    char name_[5] = "test";
    char* arguments_[2] = {name_, nullptr};
    int count_ = 1;
    QGuiApplication application_{count_, arguments_};
};
