#include "host/browser/ReadableColours.h"

#include <gtest/gtest.h>

#include <QColor>

using VelkHost::readableColours;

namespace {

QPalette desktop(const QColor& window, const QColor& text)
{
    QPalette palette;
    for (const QPalette::ColorRole role : {QPalette::Window, QPalette::Base})
        palette.setColor(role, window);
    for (const QPalette::ColorRole role : {QPalette::WindowText, QPalette::Text})
        palette.setColor(role, text);
    return palette;
}

const QColor darkGrey(42, 46, 50);
const QColor lightGrey(239, 240, 241);
const QPalette::ColorRole roles[] = {QPalette::Link, QPalette::LinkVisited, QPalette::PlaceholderText};

TEST(ReadableColours, AreThoseOfALightDesktop)
{
    QPalette light = desktop(lightGrey, Qt::black);
    light.setColor(QPalette::Link, Qt::blue);
    light.setColor(QPalette::PlaceholderText, Qt::darkGray);
    EXPECT_EQ(readableColours(light), light);
}

TEST(ReadableColours, AreLightOnADarkDesktopThatSetsNone)
{
    QPalette dark = desktop(darkGrey, Qt::white);
    dark.setColor(QPalette::Link, Qt::blue);
    dark.setColor(QPalette::LinkVisited, Qt::magenta);
    dark.setColor(QPalette::PlaceholderText, QColor(0, 0, 0, 128));
    const QPalette readable = readableColours(dark);
    for (const QPalette::ColorRole role : roles)
        EXPECT_GT(readable.color(role).lightness(), 160) << role;
    EXPECT_EQ(readable.color(QPalette::PlaceholderText), QColor(255, 255, 255, 128));
}

TEST(ReadableColours, AreThoseOfADarkDesktopThatSetsThem)
{
    QPalette dark = desktop(darkGrey, Qt::white);
    for (const QPalette::ColorRole role : roles)
        dark.setColor(role, QColor(29, 153, 243));
    EXPECT_EQ(readableColours(dark), dark);
}

}  // namespace
