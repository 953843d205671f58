#pragma once

#include <QStyledItemDelegate>

namespace VelkHost {

/// Paints the rows of the tree and of the search's results: a picture in a square of fixed size, the name with
/// its matched parts marked, and after it, in a quieter colour, where it stands. All rows have the same height.
class LibraryDelegate : public QStyledItemDelegate
{
    Q_OBJECT

public:
    enum Role {
        QuietTextRole = Qt::UserRole + 100,  ///< QString after the name
        PictureRole,                         ///< bool: there is room for a picture before the name
        MatchesRole,                         ///< QVector<QPoint>: begins and lengths of the name's marked parts
    };

    using QStyledItemDelegate::QStyledItemDelegate;

    /// The side of the square for pictures, in the widget's pixels.
    static constexpr int pictureSide = 32;

    QSize sizeHint(const QStyleOptionViewItem& option, const QModelIndex& index) const override;
    void paint(QPainter* painter, const QStyleOptionViewItem& option, const QModelIndex& index) const override;
};

}  // namespace VelkHost
