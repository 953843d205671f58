#include "host/catalog/ItemRows.h"

namespace VelkHost {

void ItemRows::clear()
{
    texts_.clear();
    rows_.clear();
}

void ItemRows::add(std::size_t folder, std::string_view uniqueId, std::string_view name, std::string_view keywords)
{
    const std::size_t begin = texts_.size();
    const std::size_t nameBegin = begin + uniqueId.size();
    const std::size_t keywordsBegin = nameBegin + name.size();
    rows_.push_back({folder, {nameBegin, keywordsBegin, keywordsBegin + keywords.size()}});
    texts_.append(uniqueId).append(name).append(keywords);
}

void ItemRows::appendTo(std::vector<Item>& items) const
{
    std::size_t begin = 0;
    for (const auto& [folder, ends] : rows_) {
        Item& item = items.emplace_back();
        item.folder = folder;
        item.uniqueId.assign(texts_, begin, ends[0] - begin);
        item.name.assign(texts_, ends[0], ends[1] - ends[0]);
        item.keywords.assign(texts_, ends[1], ends[2] - ends[1]);
        begin = ends[2];
    }
}

}  // namespace VelkHost
