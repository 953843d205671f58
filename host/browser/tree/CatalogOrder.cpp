#include "host/browser/tree/CatalogOrder.h"

#include "host/support/QtText.h"

#include <QString>

#include <algorithm>
#include <iterator>
#include <utility>

namespace VelkHost {
namespace {

/// Sorts one list after the other by name. The names that Qt compares take more memory than those of the catalog, so
/// there are never those of more than one list.
class NameSort
{
public:
    template <typename Entry>
    void operator()(const std::vector<Entry>& entries, std::span<std::uint32_t> list)
    {
        named_.clear();
        for (const std::uint32_t entry : list)
            named_.emplace_back(qtText(entries[entry].name), entry);
        std::stable_sort(named_.begin(), named_.end(), [](const Named& left, const Named& right) {
            return QString::compare(left.first, right.first, Qt::CaseInsensitive) < 0;
        });
        std::transform(named_.begin(), named_.end(), list.begin(), [](const Named& named) { return named.second; });
    }

private:
    using Named = std::pair<QString, std::uint32_t>;

    std::vector<Named> named_;
};

}  // namespace

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

    NameSort sort;
    for (std::size_t i = 0; i < listCount; ++i)
        sort(entries, std::span(lists.entries).subspan(lists.begins[i], lists.begins[i + 1] - lists.begins[i]));
    return lists;
}

}  // namespace VelkHost
