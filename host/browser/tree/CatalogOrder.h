#pragma once

#include "host/catalog/Catalog.h"

#include <cstddef>
#include <cstdint>
#include <span>
#include <vector>

namespace VelkHost {

/// The folders and items in each folder of a catalog, as indexes into its lists, in the order of the browser's tree:
/// by name without regard to letter case; equal names in the catalog's order.
class CatalogOrder
{
public:
    explicit CatalogOrder(const Catalog& catalog);

    using Indexes = std::span<const std::uint32_t>;

    /// The folders without a parent.
    Indexes categories() const { return folders_.of(0); }
    Indexes foldersIn(std::size_t folder) const { return folders_.of(folder + 1); }
    Indexes itemsIn(std::size_t folder) const { return items_.of(folder); }

private:
    /// Several lists, one after the other.
    struct Lists
    {
        Indexes of(std::size_t list) const
        {
            return Indexes(entries).subspan(begins[list], begins[list + 1] - begins[list]);
        }

        std::vector<std::uint32_t> entries;
        std::vector<std::uint32_t> begins;  // of each list, and the end of the last
    };

    template <typename Entry, typename ListOf>
    static Lists sorted(const std::vector<Entry>& entries, std::size_t listCount, ListOf listOf);

    Lists folders_;  // the first list: categories
    Lists items_;
};

}  // namespace VelkHost
