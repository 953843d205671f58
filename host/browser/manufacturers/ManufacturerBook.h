#pragma once

#include "host/catalog/Catalog.h"

#include <QHash>
#include <QString>
#include <QStringList>

#include <vector>

namespace VelkHost {

/// A manufacturer's card as the window shows it.
struct ManufacturerCard
{
    /// A text that may be the default text.
    struct Line
    {
        QString stored;
        QString shown;
        bool isDefault = false;
    };

    long id = 0;
    QString name;
    QString url;
    Line phone;
    Line fax;
    Line email;
    QString logo;  ///< its file's name
    bool deleted = false;
};

/// All cards, and which of them belongs to which item. A value; any thread.
class ManufacturerBook
{
public:
    ManufacturerBook() = default;
    ManufacturerBook(std::vector<ManufacturerCard> cards, QString defaultText);

    const QString& defaultText() const { return defaultText_; }

    /// Null when there is none.
    const ManufacturerCard* card(long id) const;

    /// Who made an item of a library: the manufacturer who is named last among the item's keywords, or else the
    /// one who has the library's name. Letter case does not count. Of several with the same name, those
    /// that are not withdrawn come first, and then the lowest id. Null when no manufacturer is known.
    const ManufacturerCard* manufacturerOf(const Catalog& library, const Item& item) const;

private:
    using Positions = std::vector<std::size_t>;

    const ManufacturerCard* among(const QString& lastPiece, const QStringList& pieces) const;

    std::vector<ManufacturerCard> cards_;
    QString defaultText_;
    QHash<QString, Positions> byLastPiece_;  // of their names; keywords cannot hold commas
};

}  // namespace VelkHost
