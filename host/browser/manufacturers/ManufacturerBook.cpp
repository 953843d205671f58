#include "host/browser/manufacturers/ManufacturerBook.h"

#include "host/support/QtText.h"

#include <algorithm>
#include <iterator>
#include <tuple>
#include <utility>

namespace VelkHost {
namespace {

constexpr int keywordCharactersRead = 16 * 1024;  // from the end, where an item's manufacturer stands

/// The pieces between the commas, in the form in which names are compared.
QStringList namePieces(const QString& text)
{
    QStringList pieces;
    for (const QString& piece : text.toCaseFolded().split(u','))
        if (const QString name = piece.simplified(); !name.isEmpty())
            pieces.append(name);
    return pieces;
}

}  // namespace

ManufacturerBook::ManufacturerBook(std::vector<ManufacturerCard> cards, QString defaultText)
    : cards_(std::move(cards)), defaultText_(std::move(defaultText))
{
    std::sort(cards_.begin(), cards_.end(), [](const ManufacturerCard& left, const ManufacturerCard& right) {
        return std::tie(left.deleted, left.id) < std::tie(right.deleted, right.id);
    });
    for (std::size_t i = 0; i < cards_.size(); ++i)
        if (const QStringList pieces = namePieces(cards_[i].name); !pieces.isEmpty())
            byLastPiece_[pieces.back()].push_back(i);
}

const ManufacturerCard* ManufacturerBook::card(long id) const
{
    const auto found =
        std::find_if(cards_.begin(), cards_.end(), [id](const ManufacturerCard& card) { return card.id == id; });
    return found == cards_.end() ? nullptr : &*found;
}

const ManufacturerCard* ManufacturerBook::manufacturerOf(const Catalog& library, const Item& item) const
{
    if (cards_.empty())
        return nullptr;
    const QStringList keywords = namePieces(qtText(item.keywords).right(keywordCharactersRead));
    for (auto keyword = keywords.rbegin(); keyword != keywords.rend(); ++keyword)
        if (const ManufacturerCard* const manufacturer = among(*keyword, keywords))
            return manufacturer;
    const QStringList name = namePieces(qtText(library.name));
    return name.isEmpty() ? nullptr : among(name.back(), name);
}

/// A manufacturer whose name ends in that piece, and has no other pieces than these.
const ManufacturerCard* ManufacturerBook::among(const QString& lastPiece, const QStringList& pieces) const
{
    const auto candidates = byLastPiece_.find(lastPiece);
    if (candidates == byLastPiece_.end())
        return nullptr;
    for (const std::size_t position : *candidates) {
        const QStringList name = namePieces(cards_[position].name);
        if (std::all_of(name.begin(), name.end(), [&](const QString& piece) { return pieces.contains(piece); }))
            return &cards_[position];
    }
    return nullptr;
}

}  // namespace VelkHost
