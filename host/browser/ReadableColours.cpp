#include "host/browser/ReadableColours.h"

#include <QColor>

namespace VelkHost {
namespace {

constexpr int middle = 128;  // of lightness and of opacity

bool isDark(const QColor& colour)
{
    return colour.lightness() <= middle;
}

/// As Qt does where nobody sets a colour for quiet texts.
void quietAsText(QPalette& palette)
{
    for (const QPalette::ColorGroup group : {QPalette::Active, QPalette::Inactive, QPalette::Disabled}) {
        QColor colour = palette.color(group, QPalette::Text);
        colour.setAlpha(middle);
        palette.setColor(group, QPalette::PlaceholderText, colour);
    }
}

}  // namespace

QPalette readableColours(QPalette desktop)
{
    if (!isDark(desktop.color(QPalette::Window)))
        return desktop;
    if (isDark(desktop.color(QPalette::Link)))
        for (const QPalette::ColorRole role : {QPalette::Link, QPalette::LinkVisited})
            desktop.setColor(role, QColor(0x6c, 0xb4, 0xf5));
    if (isDark(desktop.color(QPalette::PlaceholderText)))
        quietAsText(desktop);
    return desktop;
}

}  // namespace VelkHost
