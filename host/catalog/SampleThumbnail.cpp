#include "host/catalog/SampleThumbnail.h"

#include <QBuffer>
#include <QByteArray>
#include <QImage>
#include <QPainter>

#include <array>
#include <charconv>
#include <cstddef>

namespace VelkHost {
namespace {

constexpr int side = 96;     // pixels
constexpr int penWidth = 2;  // pixels
constexpr QRgb ink = 0xFF2F4858;
constexpr QRgb fill = 0xFFE8EEF1;

/// Four numbers separated by commas.
bool readNumbers(std::string_view text, std::array<int, 4>& numbers)
{
    const char* position = text.data();
    const char* const end = position + text.size();
    for (int& number : numbers) {
        const auto [next, error] = std::from_chars(position, end, number);
        if (error != std::errc())
            return false;
        position = next == end ? end : next + 1;
    }
    return position == end;
}

void drawStroke(QPainter& painter, std::string_view stroke)
{
    std::array<int, 4> n{};
    if (stroke.empty() || !readNumbers(stroke.substr(1), n))
        return;
    if (stroke.front() == 'r')
        painter.drawRect(n[0], n[1], n[2], n[3]);
    else if (stroke.front() == 'e')
        painter.drawEllipse(n[0], n[1], n[2], n[3]);
    else if (stroke.front() == 'l')
        painter.drawLine(n[0], n[1], n[2], n[3]);
}

}  // namespace

std::string drawThumbnail(std::string_view strokes)
{
    QImage image(side, side, QImage::Format_ARGB32_Premultiplied);
    image.fill(Qt::transparent);
    QPainter painter(&image);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(QPen(QColor::fromRgb(ink), penWidth));
    painter.setBrush(QColor::fromRgb(fill));
    while (!strokes.empty()) {
        const std::size_t end = std::min(strokes.find(' '), strokes.size());
        drawStroke(painter, strokes.substr(0, end));
        strokes.remove_prefix(std::min(end + 1, strokes.size()));
    }
    painter.end();

    QByteArray bytes;
    QBuffer buffer(&bytes);
    buffer.open(QIODevice::WriteOnly);
    image.save(&buffer, "PNG");
    return bytes.toStdString();
}

}  // namespace VelkHost
