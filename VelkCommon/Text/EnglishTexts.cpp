#include <VelkCommon/Text/EnglishTexts.h>

#include <algorithm>
#include <iterator>

namespace Velk {
namespace {

struct NumberedText
{
    long id;
    std::string_view text;
};

// In ascending order of the numbers.
constexpr NumberedText texts[] = {
    {2749, "%1% %%"},
    {2750, "%1% of %2%"},
    {2752, "Shows the amounts. Click to hide them."},
    {2753, "Shows no numbers. Click to show the percentage."},
    {2754, "Shows the percentage. Click to show the amounts."},
    {8709, "Downloading %1%"},
    {8717, "Checking catalogs"},
    {8723, "Checking "},  // a file name follows directly
    {8727, "Asking the service about %1%"},
    {8745, "KB"},
    {8930, "No filter"},
    {10000, "Cabinet"},
    {10001, "Column"},
    {10002, "Countertop"},
    {10003, "Curtain wall"},
    {10004, "Dimension"},
    {10005, "Door"},
    {10006, "Electrical"},
    {10007, "Fixture"},
    {10008, "Furniture"},
    {10009, "Molding"},
    {10010, "Railing"},
    {10011, "Roof"},
    {10012, "Stairs"},
    {10013, "Wall"},
    {10014, "Window"},
    {10108, "Contact the manufacturer for more information about its products."},
    {272032175, "A preference has an unexpected type: %1%"},
    {272032391, "The file %1% cannot be written."},
};

}  // namespace

std::optional<std::string_view> englishText(long id) noexcept
{
    const auto found = std::lower_bound(std::begin(texts), std::end(texts), id,
                                        [](const NumberedText& entry, long wanted) { return entry.id < wanted; });
    if (found == std::end(texts) || found->id != id)
        return std::nullopt;
    return found->text;
}

}  // namespace Velk
