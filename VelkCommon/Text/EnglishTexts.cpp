#include <VelkCommon/Text/EnglishTexts.h>

#include <VelkCommon/Text/TextNumbers.h>

#include <algorithm>
#include <iterator>
#include <utility>

namespace Velk {
namespace {

struct NumberedText
{
    unsigned int number;
    std::string_view text;
};

constexpr NumberedText texts[] = {
    {textNumbers::percentage, "%1% %%"},
    {textNumbers::amounts, "%1% of %2%"},
    {textNumbers::amountsToolTip, "Shows the amounts. Click to hide them."},
    {textNumbers::barOnlyToolTip, "Shows no numbers. Click to show the percentage."},
    {textNumbers::percentageToolTip, "Shows the percentage. Click to show the amounts."},
    {textNumbers::downloading, "Downloading %1%"},
    {textNumbers::checkingCatalogs, "Checking catalogs"},
    {textNumbers::checkingCatalog, "Checking "},  // a file name follows directly
    {textNumbers::askingService, "Asking the service about %1%"},
    {textNumbers::downloadUnit, "KB"},
    {textNumbers::noFilter, "No filter"},
    {textNumbers::firstStyle, "Cabinet"},
    {textNumbers::firstStyle + 1, "Column"},
    {textNumbers::firstStyle + 2, "Countertop"},
    {textNumbers::firstStyle + 3, "Curtain wall"},
    {textNumbers::firstStyle + 4, "Dimension"},
    {textNumbers::firstStyle + 5, "Door"},
    {textNumbers::firstStyle + 6, "Electrical"},
    {textNumbers::firstStyle + 7, "Fixture"},
    {textNumbers::firstStyle + 8, "Furniture"},
    {textNumbers::firstStyle + 9, "Molding"},
    {textNumbers::firstStyle + 10, "Railing"},
    {textNumbers::firstStyle + 11, "Roof"},
    {textNumbers::firstStyle + 12, "Stairs"},
    {textNumbers::firstStyle + 13, "Wall"},
    {textNumbers::lastStyle, "Window"},
    {textNumbers::manufacturerCard, "Contact the manufacturer for more information about its products."},
    {textNumbers::preferenceOfOtherType, "A preference has an unexpected type: %1%"},
    {textNumbers::unwritableFile, "The file %1% cannot be written."},
};

constexpr bool comesBefore(const NumberedText& left, const NumberedText& right)
{
    return left.number < right.number;
}
static_assert(std::is_sorted(std::begin(texts), std::end(texts), comesBefore));

}  // namespace

std::optional<std::string_view> englishText(long id) noexcept
{
    if (!std::in_range<unsigned int>(id))
        return std::nullopt;
    const auto number = static_cast<unsigned int>(id);
    const auto found = std::lower_bound(std::begin(texts), std::end(texts), NumberedText{number, {}}, comesBefore);
    if (found == std::end(texts) || found->number != number)
        return std::nullopt;
    return found->text;
}

}  // namespace Velk
