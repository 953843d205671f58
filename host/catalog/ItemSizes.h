#pragma once

#include "host/catalog/Catalog.h"

#include <optional>
#include <string>
#include <string_view>

/// @file
/// The sizes of items: as sources and people write them, and whether they fit.

namespace VelkHost {

/// A measure as people write it, such as "505", "50.5" or "50,5"; nothing for any other text, and for one that is not
/// above 0 or, times `factor`, beyond limits::itemMillimetres. Returns it times `factor`, rounded to a hundredth.
std::optional<float> measureFromText(std::string_view text, double factor = 1);

/// A price as catalogs hold it: digits, and a fraction of at most four behind a point. A comma before the fraction is
/// taken for a point. Nothing for any other text.
std::optional<std::string> priceFromText(std::string_view text);

/// A measure in whole millimetres or, where it has a fraction, with at most two digits of it: "505", "50.25".
std::string measureText(float millimetres);

/// "505 × 584 × 850", width, depth and height in millimetres, with "-" for an unknown one; empty where all are unknown.
std::string sizeText(const ItemSize& size);

/// The room that items must fit into, in millimetres. A measure of 0 does not matter. Width and depth may change
/// places, as whoever furnishes turns things by 90 degrees, unless `canTurn` is false.
struct RoomToFit
{
    float width = 0;
    float depth = 0;
    float height = 0;
    bool canTurn = true;

    /// Whether any measure matters.
    bool isLimited() const { return width > 0 || depth > 0 || height > 0; }
    bool operator==(const RoomToFit&) const = default;
};

/// "800x600x-", with "-" for a measure that does not matter; nothing for any other text, and where none matters.
std::optional<RoomToFit> roomFromText(std::string_view text);

enum class Fit {
    Fits,
    TooLarge,
    Unknown  ///< a measure is missing that would have to be known
};

/// Whether an item of that size fits. An item whose known measures are too large already is that, whatever is missing.
Fit fitOf(const ItemSize& size, const RoomToFit& room);

}  // namespace VelkHost
