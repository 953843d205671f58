#include "host/browser/jobs/DropHighlight.h"

#include <QPainter>

namespace VelkHost {
namespace {

constexpr int frameMargin = 6;
constexpr int frameCorner = 8;
constexpr int labelPadding = 16;

}  // namespace

DropHighlight::DropHighlight(QWidget* parent) : QWidget(parent)
{
    setObjectName(QStringLiteral("dropHighlight"));
    setAccessibleName(tr("Drop to import"));
    setAttribute(Qt::WA_TransparentForMouseEvents);
    hide();
}

void DropHighlight::paintEvent(QPaintEvent*)
{
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    const QColor colour = palette().color(QPalette::Highlight);
    QColor veil = palette().color(QPalette::Window);
    veil.setAlpha(170);
    painter.fillRect(rect(), veil);
    painter.setPen(QPen(colour, 2, Qt::DashLine));
    painter.drawRoundedRect(rect().adjusted(frameMargin, frameMargin, -frameMargin, -frameMargin), frameCorner,
                            frameCorner);

    QFont large = font();
    large.setPointSizeF(large.pointSizeF() * 1.3);
    painter.setFont(large);
    const QString text = tr("Drop to import");
    QRect label = painter.fontMetrics().boundingRect(text).adjusted(-labelPadding, -labelPadding / 2, labelPadding,
                                                                    labelPadding / 2);
    label.moveCenter(rect().center());
    painter.setPen(Qt::NoPen);
    painter.setBrush(colour);
    painter.drawRoundedRect(label, frameCorner, frameCorner);
    painter.setPen(palette().color(QPalette::HighlightedText));
    painter.drawText(label, Qt::AlignCenter, text);
}

}  // namespace VelkHost
