#include "host/installation/IndexBlock.h"

#include <algorithm>
#include <span>
#include <utility>

namespace VelkHost {
namespace {

std::size_t bytesOf(const IndexBlock::Part& part)
{
    const Catalog& catalog = *part.library->catalog;
    std::size_t bytes = 0;
    for (std::size_t place = part.place; place < part.place + part.count; ++place) {
        const EntryPlace entry{part.library, place};
        bytes += entry.isFolder()
                     ? catalog.folders[entry.index()].name.size()
                     : catalog.items[entry.index()].name.size() + catalog.items[entry.index()].keywords.size();
    }
    return bytes;
}

}  // namespace

IndexBlock::IndexBlock(std::vector<Part> parts, const IndexBlock* earlier) : parts_(std::move(parts))
{
    std::size_t size = 0;
    for (Part& part : parts_) {
        part.begin = size;
        size += part.count;
    }
    const std::size_t known = earlier == nullptr ? 0 : earlier->parts_.size();
    const std::span fresh = std::span(parts_).subspan(known);
    std::size_t bytes = 0;
    for (const Part& part : fresh)
        bytes += bytesOf(part);
    names_.reserve(size, bytes);
    if (earlier != nullptr)
        names_.append(earlier->names_);
    for (const Part& part : fresh)
        addNames(part);
    names_.close();
}

std::size_t IndexBlock::partOf(std::size_t entry) const
{
    const auto behind = std::upper_bound(parts_.begin(), parts_.end(), entry,
                                         [](std::size_t wanted, const Part& part) { return wanted < part.begin; });
    return static_cast<std::size_t>(behind - parts_.begin()) - 1;
}

EntryPlace IndexBlock::placeOf(std::size_t entry) const
{
    const Part& part = parts_[partOf(entry)];
    return {part.library, part.place + (entry - part.begin)};
}

void IndexBlock::addNames(const Part& part)
{
    const Catalog& catalog = *part.library->catalog;
    const std::size_t end = part.place + part.count;
    std::size_t place = part.place;
    for (; place < end && place < catalog.folders.size(); ++place)
        names_.addFolder(catalog.folders[place].name);
    for (; place < end; ++place) {
        const Item& item = catalog.items[place - catalog.folders.size()];
        names_.addItem(item.name, item.keywords);
    }
}

}  // namespace VelkHost
