#include "host/catalog/ItemSizes.h"

#include <VelkCommon/Text/StringUtils.h>

#include <algorithm>
#include <array>
#include <charconv>
#include <cmath>
#include <cstdint>

namespace VelkHost {
namespace {

constexpr double hundredths = 100;

bool isDigits(std::string_view text)
{
    return !text.empty() && std::all_of(text.begin(), text.end(), [](char c) { return c >= '0' && c <= '9'; });
}

/// A decimal number with a point; nothing where the text has a sign, an exponent, blanks or several points.
std::optional<std::string> decimalFromText(std::string_view text)
{
    const std::string_view trimmed = StringUtils::trimmed(text, " \t");
    const std::size_t point = trimmed.find_first_of(".,");
    const std::string_view whole = trimmed.substr(0, point);
    if (!isDigits(whole))
        return std::nullopt;
    if (point == std::string_view::npos)
        return std::string(whole);
    const std::string_view fraction = trimmed.substr(point + 1);
    if (!isDigits(fraction))
        return std::nullopt;
    return std::string(whole) + "." + std::string(fraction);
}

/// A measure of a room: nothing for a wrong one, 0 for one that does not matter.
std::optional<float> measureOfRoom(std::string_view text)
{
    if (StringUtils::trimmed(text, " \t") == "-")
        return 0.0F;
    return measureFromText(text);
}

Fit fitOf(float measure, float room)
{
    if (room <= 0)
        return Fit::Fits;
    if (measure <= 0)
        return Fit::Unknown;
    return measure <= room ? Fit::Fits : Fit::TooLarge;
}

Fit worse(Fit left, Fit right)
{
    if (left == Fit::TooLarge || right == Fit::TooLarge)
        return Fit::TooLarge;
    return left == Fit::Unknown ? left : right;
}

Fit better(Fit left, Fit right)
{
    if (left == Fit::Fits || right == Fit::Fits)
        return Fit::Fits;
    return left == Fit::Unknown ? left : right;
}

}  // namespace

std::optional<float> measureFromText(std::string_view text, double factor)
{
    const std::optional<std::string> decimal = decimalFromText(text);
    if (!decimal)
        return std::nullopt;
    double value = 0;
    const char* const end = decimal->data() + decimal->size();
    const auto [stop, error] = std::from_chars(decimal->data(), end, value);
    if (error != std::errc() || stop != end)
        return std::nullopt;
    const double millimetres = std::round(value * factor * hundredths) / hundredths;
    if (!(millimetres > 0) || millimetres > static_cast<double>(limits::itemMillimetres))
        return std::nullopt;
    return static_cast<float>(millimetres);
}

std::optional<std::string> priceFromText(std::string_view text)
{
    constexpr std::size_t mostDigits = 15;
    constexpr std::size_t mostOfFraction = 4;
    std::optional<std::string> price = decimalFromText(text);
    if (!price)
        return std::nullopt;
    const std::size_t point = std::min(price->find('.'), price->size());
    const std::size_t fraction = price->size() - std::min(point + 1, price->size());
    if (point > mostDigits || fraction > mostOfFraction)
        return std::nullopt;
    return price;
}

std::string measureText(float millimetres)
{
    std::array<char, 32> text{};
    const double rounded = std::round(static_cast<double>(millimetres) * hundredths) / hundredths;
    const auto [end, error] = std::to_chars(text.data(), text.data() + text.size(), rounded, std::chars_format::fixed);
    return error == std::errc() ? std::string(text.data(), end) : std::string();
}

std::string sizeText(const ItemSize& size)
{
    if (!size.isKnown())
        return {};
    const auto measure = [](float millimetres) { return millimetres > 0 ? measureText(millimetres) : "-"; };
    return measure(size.width) + " \u00D7 " + measure(size.depth) + " \u00D7 " + measure(size.height);
}

std::optional<RoomToFit> roomFromText(std::string_view text)
{
    const std::vector<std::string> pieces = StringUtils::tokenizeString(StringUtils::toLowerUtf8(text), 'x');
    if (pieces.size() != 3)
        return std::nullopt;
    const std::optional<float> width = measureOfRoom(pieces[0]);
    const std::optional<float> depth = measureOfRoom(pieces[1]);
    const std::optional<float> height = measureOfRoom(pieces[2]);
    if (!width || !depth || !height)
        return std::nullopt;
    const RoomToFit room{*width, *depth, *height};
    return room.isLimited() ? std::optional(room) : std::nullopt;
}

Fit fitOf(const ItemSize& size, const RoomToFit& room)
{
    Fit onFloor = worse(fitOf(size.width, room.width), fitOf(size.depth, room.depth));
    if (room.canTurn)
        onFloor = better(onFloor, worse(fitOf(size.width, room.depth), fitOf(size.depth, room.width)));
    return worse(onFloor, fitOf(size.height, room.height));
}

}  // namespace VelkHost
