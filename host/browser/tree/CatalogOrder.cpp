#include "host/browser/tree/CatalogOrder.h"

#include "host/support/QtText.h"

#include <QString>

#include <algorithm>
#include <iterator>

namespace VelkHost {

CatalogOrder::CatalogOrder(const Catalog& catalog)
    : folders_(sorted(catalog.folders, catalog.folders.size() + 1,
                      [](const Folder& folder) { return folder.parent == Folder::noParent ? 0 : folder.parent + 1; })),
      items_(sorted(catalog.items, catalog.folders.size(), [](const Item& item) { return item.folder; }))
{}

/// Each entry's index in its list, all lists sorted by name.
template <typename Entry, typename ListOf>
CatalogOrder::Lists CatalogOrder::sorted(const std::vector<Entry>& entries, std::size_t listCount, ListOf listOf)
{
    Lists lists;
    lists.begins.resize(listCount + 1);
    for (const Entry& entry : entries)
        ++lists.begins[listOf(entry) + 1];
    for (std::size_t i = 0; i < listCount; ++i)
        lists.begins[i + 1] += lists.begins[i];
    lists.entries.resize(entries.size());
    std::vector<std::uint32_t> ends(lists.begins.begin(), std::prev(lists.begins.end()));
    for (std::size_t i = 0; i < entries.size(); ++i)
        lists.entries[ends[listOf(entries[i])]++] = static_cast<std::uint32_t>(i);

    std::vector<QString> names(entries.size());
    std::transform(entries.begin(), entries.end(), names.begin(),
                   [](const Entry& entry) { return qtText(entry.name); });
    for (std::size_t i = 0; i < listCount; ++i)
        std::stable_sort(lists.entries.begin() + lists.begins[i], lists.entries.begin() + lists.begins[i + 1],
                         [&](std::uint32_t a, std::uint32_t b) {
                             return QString::compare(names[a], names[b], Qt::CaseInsensitive) < 0;
                         });
    return lists;
}

}  // namespace VelkHost
