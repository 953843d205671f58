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
    const std::string_view texts = texts_;
    const auto text = [&](std::size_t begin, std::size_t end) { return std::string(texts.substr(begin, end - begin)); };
    std::size_t begin = 0;
    for (const auto& [folder, ends] : rows_) {
        items.push_back({text(begin, ends[0]), folder, text(ends[0], ends[1]), text(ends[1], ends[2]), {}, {}});
        begin = ends[2];
    }
}

}  // namespace VelkHost
