#include "host/installation/SearchIndex.h"

#include "host/installation/IndexBuilder.h"

#include <algorithm>
#include <utility>

namespace VelkHost {
namespace {

bool holds(const IndexState& state, const std::vector<LoadedLibrary>& libraries)
{
    return std::equal(state.libraries().begin(), state.libraries().end(), libraries.begin(), libraries.end(),
                      [](const std::shared_ptr<const LoadedLibrary>& held, const LoadedLibrary& library) {
                          return held->catalog == library.catalog && held->path == library.path;
                      });
}

}  // namespace

std::uint64_t IndexState::beginningOf(EntryNumber entry, std::size_t from) const
{
    std::string_view name = lowerName(entry);
    name.remove_prefix(std::min(from, name.size()));
    std::uint64_t beginning = 0;
    for (std::size_t i = 0; i < sizeof(beginning); ++i)
        beginning = beginning << 8 | (i < name.size() ? static_cast<unsigned char>(name[i]) : 0U);
    return beginning;
}

bool IndexState::isBefore(EntryNumber left, EntryNumber right) const
{
    if (const int order = lowerName(left).compare(lowerName(right)); order != 0)
        return order < 0;
    const std::uint32_t leftPosition = positions_[libraryOf(left)];
    const std::uint32_t rightPosition = positions_[libraryOf(right)];
    return leftPosition != rightPosition ? leftPosition < rightPosition : placeOf(left).place < placeOf(right).place;
}

std::uint32_t IndexState::libraryOf(EntryNumber entry) const
{
    const Slot& slot = slots_[entry / IndexBlock::most];
    return slot.libraries[slot.block->partOf(entry % IndexBlock::most)];
}

SearchIndex::SearchIndex() : state_(std::make_shared<const IndexState>()) {}

void SearchIndex::setLibraries(const std::vector<LoadedLibrary>& libraries, Order order)
{
    const std::lock_guard turns(changing_);
    const std::shared_ptr<const IndexState> now = state();
    if (holds(*now, libraries) && (order == Order::None || now->order() != nullptr))
        return;
    std::shared_ptr<const IndexState> next = IndexBuilder(*now, libraries, order).build();
    const std::lock_guard lock(mutex_);
    state_.swap(next);
}

std::shared_ptr<const IndexState> SearchIndex::state() const
{
    const std::lock_guard lock(mutex_);
    return state_;
}

}  // namespace VelkHost
