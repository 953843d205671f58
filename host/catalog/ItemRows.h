#pragma once

#include "host/catalog/Catalog.h"

#include <array>
#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

namespace VelkHost {

/// The rows of some items as they were read, their texts in one block: that is quickly filled, so that another thread
/// can make the items. One thread at a time.
class ItemRows
{
public:
    void clear();
    void add(std::size_t folder, std::string_view uniqueId, std::string_view name, std::string_view keywords);
    std::size_t size() const { return rows_.size(); }
    /// Makes an item of each row, at the end of `items`.
    void appendTo(std::vector<Item>& items) const;

private:
    struct Row
    {
        std::size_t folder = 0;
        std::array<std::size_t, 3> ends{};  // of its texts in the block
    };

    std::string texts_;
    std::vector<Row> rows_;
};

}  // namespace VelkHost
