#include "host/catalog/Catalog.h"

#include <algorithm>
#include <array>
#include <utility>

namespace VelkHost {
namespace {

constexpr std::array<std::pair<LibraryKind, std::string_view>, 4> kindNames{
    {{LibraryKind::Core, "core"},
     {LibraryKind::Manufacturer, "manufacturer"},
     {LibraryKind::Bonus, "bonus"},
     {LibraryKind::User, "user"}}};

}  // namespace

std::string_view kindName(LibraryKind kind)
{
    const auto found =
        std::find_if(kindNames.begin(), kindNames.end(), [&](const auto& row) { return row.first == kind; });
    return found == kindNames.end() ? std::string_view() : found->second;
}

std::optional<LibraryKind> kindFromName(std::string_view name)
{
    for (const auto& [kind, text] : kindNames)
        if (text == name)
            return kind;
    return std::nullopt;
}

std::optional<LibraryKind> kindFromNumber(std::int64_t number)
{
    for (const auto& row : kindNames)
        if (static_cast<std::int64_t>(row.first) == number)
            return row.first;
    return std::nullopt;
}

const ItemProperties& Catalog::propertiesOf(std::size_t item) const
{
    static const ItemProperties none;
    return properties.empty() ? none : properties[item];
}

std::vector<std::string> Catalog::folderPath(std::size_t folder) const
{
    std::vector<std::string> path;
    for (; folder != Folder::noParent; folder = folders[folder].parent)
        path.push_back(folders[folder].name);
    std::reverse(path.begin(), path.end());
    return path;
}

}  // namespace VelkHost
