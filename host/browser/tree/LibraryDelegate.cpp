#include "host/browser/tree/LibraryDelegate.h"

#include <QApplication>
#include <QPainter>
#include <QPoint>
#include <QTextLayout>
#include <QVector>

#include <algorithm>

namespace VelkHost {
namespace {

constexpr int margin = 3;
constexpr int gap = 8;

/// The name laid out in one line, its matches bold on a tint.
class NameLine
{
public:
    NameLine(const QString& name, const QVector<QPoint>& matches, const QStyleOptionViewItem& option)
        : layout_(QString(name).replace(u'\n', u' '), option.font)
    {
        QVector<QTextLayout::FormatRange> formats;
        for (const QPoint& match : matches)
            formats.append({match.x(), match.y(), matchFormat(option)});
        layout_.setFormats(formats);
        layout_.setCacheEnabled(true);
        layout_.beginLayout();
        line_ = layout_.createLine();
        layout_.endLayout();
    }

    int width() const { return static_cast<int>(line_.naturalTextWidth()) + 1; }

    /// Draws the name in the rectangle, faded out where it does not fit.
    void draw(QPainter* painter, const QRect& rect) const
    {
        painter->save();
        painter->setClipRect(rect);
        layout_.draw(painter, QPointF(rect.left(), rect.top() + (rect.height() - line_.height()) / 2));
        painter->restore();
    }

private:
    static QTextCharFormat matchFormat(const QStyleOptionViewItem& option)
    {
        QTextCharFormat format;
        format.setFontWeight(QFont::Bold);
        if (!option.state.testFlag(QStyle::State_Selected)) {
            QColor tint = option.palette.color(QPalette::Highlight);
            tint.setAlphaF(0.25F);
            format.setBackground(tint);
        }
        return format;
    }

    QTextLayout layout_;
    QTextLine line_;
};

QColor textColour(const QStyleOptionViewItem& option)
{
    const bool selected = option.state.testFlag(QStyle::State_Selected);
    const QPalette::ColorGroup group =
        option.state.testFlag(QStyle::State_Active) ? QPalette::Active : QPalette::Inactive;
    return option.palette.color(group, selected ? QPalette::HighlightedText : QPalette::Text);
}

}  // namespace

QSize LibraryDelegate::sizeHint(const QStyleOptionViewItem& option, const QModelIndex& index) const
{
    const int width = QStyledItemDelegate::sizeHint(option, index).width();
    return {width, std::max(pictureSide + 2 * margin, option.fontMetrics.height() + 2 * margin)};
}

void LibraryDelegate::paint(QPainter* painter, const QStyleOptionViewItem& given, const QModelIndex& index) const
{
    QStyleOptionViewItem option = given;
    initStyleOption(&option, index);
    const QWidget* const widget = option.widget;
    const QStyle* const style = widget == nullptr ? QApplication::style() : widget->style();
    style->drawPrimitive(QStyle::PE_PanelItemViewItem, &option, painter, widget);

    QRect rest = option.rect.adjusted(margin, 0, -gap, 0);
    if (index.data(PictureRole).toBool()) {
        auto picture = index.data(Qt::DecorationRole).value<QPixmap>();
        picture.setDevicePixelRatio(painter->device()->devicePixelRatioF());  // it is as large as on the screen
        QRect square(rest.left(), rest.top() + (rest.height() - pictureSide) / 2, pictureSide, pictureSide);
        if (!picture.isNull())
            style->drawItemPixmap(painter, square, Qt::AlignCenter, picture);
        rest.setLeft(square.right() + gap);
    }
    painter->setPen(textColour(option));
    const NameLine name(option.text, index.data(MatchesRole).value<QVector<QPoint>>(), option);
    name.draw(painter, rest);
    rest.setLeft(rest.left() + name.width() + gap);
    const QString quiet = index.data(QuietTextRole).toString();
    if (quiet.isEmpty() || rest.width() <= 0)
        return;
    QColor colour = textColour(option);
    colour.setAlphaF(0.6F);
    painter->setPen(colour);
    painter->drawText(rest, static_cast<int>(Qt::AlignVCenter | Qt::AlignLeft | Qt::TextSingleLine),
                      option.fontMetrics.elidedText(quiet, Qt::ElideRight, rest.width()));
}

}  // namespace VelkHost
