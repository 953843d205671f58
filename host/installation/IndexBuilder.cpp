#include "host/installation/IndexBuilder.h"

#include "host/installation/EntrySort.h"
#include "host/support/Parallel.h"

#include <algorithm>
#include <numeric>
#include <string_view>
#include <unordered_map>
#include <utility>

namespace VelkHost {
namespace {

constexpr std::uint32_t none = IndexState::noLibrary;
constexpr std::size_t largeLibrary = IndexBlock::most / 2;

EntryNumber entryNumber(std::size_t slot, std::size_t entry)
{
    return static_cast<EntryNumber>(slot * IndexBlock::most + entry);
}

/// Entries of a block that belong to a library which is still held where it is.
std::size_t heldEntries(const IndexState::Slot& slot, const std::vector<std::uint32_t>& now)
{
    std::size_t held = 0;
    for (std::size_t part = 0; part < slot.libraries.size(); ++part)
        if (slot.libraries[part] != none && now[slot.libraries[part]] != none)
            held += slot.block->parts()[part].count;
    return held;
}

/// Whether a block is one of several small libraries. The first block of a large one is larger, the others begin later.
bool isPack(const IndexBlock& block)
{
    const IndexBlock::Part& first = block.parts().front();
    return first.place == 0 && first.count <= largeLibrary;
}

}  // namespace

IndexBuilder::IndexBuilder(const IndexState& earlier, const std::vector<LoadedLibrary>& libraries,
                           SearchIndex::Order order)
    : earlier_(earlier), order_(order)
{
    matchLibraries(libraries);
}

std::shared_ptr<const IndexState> IndexBuilder::build()
{
    giveUpSparsePacks();
    keepSlots();
    planBlocks();
    makeBlocks();
    numberParts();
    findPositions();
    if (order_ == SearchIndex::Order::Kept)
        putInOrder();
    return next_;
}

void IndexBuilder::matchLibraries(const std::vector<LoadedLibrary>& libraries)
{
    std::unordered_map<const Catalog*, std::uint32_t> known;
    for (std::uint32_t i = 0; i < earlier_.libraries().size(); ++i)
        known.emplace(earlier_.libraries()[i]->catalog.get(), i);
    now_.assign(earlier_.libraries().size(), none);
    isFresh_.reserve(libraries.size());
    next_->libraries_.reserve(libraries.size());
    for (const LoadedLibrary& library : libraries) {
        const auto found = known.find(library.catalog.get());
        const bool isKnown = found != known.end() && now_[found->second] == none &&
                             earlier_.libraries()[found->second]->path == library.path;
        if (isKnown)
            now_[found->second] = static_cast<std::uint32_t>(next_->libraries_.size());
        isFresh_.push_back(!isKnown);
        next_->libraries_.push_back(isKnown ? earlier_.libraries()[found->second]
                                            : std::make_shared<const LoadedLibrary>(library));
    }
}

void IndexBuilder::giveUpSparsePacks()
{
    for (const IndexState::Slot& slot : earlier_.slots()) {
        if (slot.block == nullptr || !isPack(*slot.block) || 2 * heldEntries(slot, now_) >= slot.block->size())
            continue;
        for (const std::uint32_t library : slot.libraries) {
            if (library == none || now_[library] == none)
                continue;
            isFresh_[now_[library]] = true;
            now_[library] = none;
        }
    }
}

void IndexBuilder::keepSlots()
{
    for (const IndexState::Slot& slot : earlier_.slots()) {
        IndexState::Slot& kept = next_->slots_.emplace_back();
        if (slot.block == nullptr || heldEntries(slot, now_) == 0)
            continue;
        kept.block = slot.block;
        kept.libraries.reserve(slot.libraries.size());
        for (const std::uint32_t library : slot.libraries)
            kept.libraries.push_back(library == none ? none : now_[library]);
    }
}

void IndexBuilder::planBlocks()
{
    for (std::size_t i = 0; i < next_->libraries_.size(); ++i) {
        if (!isFresh_[i])
            continue;
        const LoadedLibrary& library = *next_->libraries_[i];
        entriesOf(library) > largeLibrary ? planLarge(library) : planSmall(library);
    }
}

void IndexBuilder::planLarge(const LoadedLibrary& library)
{
    const std::size_t size = entriesOf(library);
    for (std::size_t place = 0; place < size; place += IndexBlock::most) {
        const std::size_t count = std::min(size - place, IndexBlock::most);
        plans_.push_back({freeSlot(), nullptr, {{&library, 0, place, count}}, count});
    }
}

void IndexBuilder::planSmall(const LoadedLibrary& library)
{
    const std::size_t size = entriesOf(library);
    if (size == 0)
        return;
    Plan& pack = packFor(size);
    pack.parts.push_back({&library, 0, 0, size});
    pack.size += size;
}

IndexBuilder::Plan& IndexBuilder::packFor(std::size_t needed)
{
    if (!pack_ || plans_[*pack_].size + needed > IndexBlock::most) {
        plans_.push_back(pack_ ? Plan{freeSlot(), nullptr, {}, 0} : packToFill(needed));
        pack_ = plans_.size() - 1;
    }
    return plans_[*pack_];
}

/// The last pack that there is already, if it has room.
IndexBuilder::Plan IndexBuilder::packToFill(std::size_t needed)
{
    for (std::size_t slot = next_->slots_.size(); slot > 0; --slot) {
        const IndexBlock* const block = next_->slots_[slot - 1].block.get();
        if (block != nullptr && isPack(*block) && block->size() + needed <= IndexBlock::most)
            return {slot - 1, block, block->parts(), block->size()};
    }
    return {freeSlot(), nullptr, {}, 0};
}

/// One that is nobody's, and never given again.
std::size_t IndexBuilder::freeSlot()
{
    while (takenSlots_ < next_->slots_.size() && next_->slots_[takenSlots_].block != nullptr)
        ++takenSlots_;
    if (takenSlots_ == next_->slots_.size())
        next_->slots_.emplace_back();
    return takenSlots_++;
}

void IndexBuilder::makeBlocks()
{
    std::vector<std::shared_ptr<const IndexBlock>> blocks(plans_.size());
    forEachInParallel(plans_.size(), [&](std::size_t i) {
        blocks[i] = std::make_shared<const IndexBlock>(std::move(plans_[i].parts), plans_[i].earlier);
    });
    for (std::size_t i = 0; i < plans_.size(); ++i)
        next_->slots_[plans_[i].slot].block = std::move(blocks[i]);
}

void IndexBuilder::numberParts()
{
    std::unordered_map<const LoadedLibrary*, std::uint32_t> numbers;
    for (std::uint32_t i = 0; i < next_->libraries_.size(); ++i)
        numbers.emplace(next_->libraries_[i].get(), i);
    for (const Plan& plan : plans_) {
        IndexState::Slot& slot = next_->slots_[plan.slot];
        for (std::size_t part = slot.libraries.size(); part < slot.block->parts().size(); ++part)
            slot.libraries.push_back(numbers.at(slot.block->parts()[part].library));
    }
}

void IndexBuilder::findPositions()
{
    const auto& libraries = next_->libraries_;
    std::vector<std::uint32_t> ordered(libraries.size());
    std::iota(ordered.begin(), ordered.end(), 0);
    std::stable_sort(ordered.begin(), ordered.end(), [&](std::uint32_t left, std::uint32_t right) {
        return libraries[left]->catalog->name < libraries[right]->catalog->name;
    });
    next_->positions_.resize(libraries.size());
    for (std::uint32_t position = 0; position < ordered.size(); ++position)
        next_->positions_[ordered[position]] = position;
}

void IndexBuilder::putInOrder()
{
    const EntryOrder* kept = earlier_.order();
    if (kept == nullptr || !hasKeptOrder()) {
        next_->order_ = std::make_shared<const EntryOrder>(sortedEntries(*next_, entries(false)));
        return;
    }
    EntryOrder rest;
    if (std::find(now_.begin(), now_.end(), none) != now_.end()) {
        rest = withoutGone(*kept);
        kept = &rest;
    }
    const EntryOrder fresh = sortedEntries(*next_, entries(true));
    next_->order_ = std::make_shared<const EntryOrder>(mergedOrders(*next_, *kept, fresh));
}

/// Whether the libraries that stay where they are follow each other as before.
bool IndexBuilder::hasKeptOrder() const
{
    std::vector<std::uint32_t> laterThan(next_->libraries_.size(), none);  // the position before, by that of now
    for (std::size_t i = 0; i < now_.size(); ++i)
        if (now_[i] != none)
            laterThan[next_->positions_[now_[i]]] = earlier_.positions_[i];
    std::erase(laterThan, none);
    return std::is_sorted(laterThan.begin(), laterThan.end());
}

EntryOrder IndexBuilder::withoutGone(const EntryOrder& order) const
{
    std::vector<std::uint8_t> isGone(earlier_.numbers());
    for (std::size_t slot = 0; slot < earlier_.slots().size(); ++slot) {
        const std::vector<std::uint32_t>& libraries = earlier_.slots()[slot].libraries;
        for (std::size_t i = 0; i < libraries.size(); ++i) {
            const Part& part = earlier_.slots()[slot].block->parts()[i];
            if (libraries[i] == none || now_[libraries[i]] == none)
                std::fill_n(&isGone[entryNumber(slot, part.begin)], part.count, std::uint8_t{1});
        }
    }
    EntryOrder rest;
    rest.entries.reserve(order.entries.size());
    rest.beginnings.reserve(order.entries.size());
    for (std::size_t i = 0; i < order.entries.size(); ++i) {
        if (isGone[order.entries[i]] != 0)
            continue;
        rest.entries.push_back(order.entries[i]);
        rest.beginnings.push_back(order.beginnings[i]);
    }
    return rest;
}

std::vector<EntryNumber> IndexBuilder::entries(bool freshOnly) const
{
    std::vector<EntryNumber> entries;
    for (std::size_t slot = 0; slot < next_->slots_.size(); ++slot) {
        const std::vector<std::uint32_t>& libraries = next_->slots_[slot].libraries;
        for (std::size_t i = 0; i < libraries.size(); ++i) {
            if (libraries[i] == none || (freshOnly && !isFresh_[libraries[i]]))
                continue;
            const Part& part = next_->slots_[slot].block->parts()[i];
            for (std::size_t entry = part.begin; entry < part.begin + part.count; ++entry)
                entries.push_back(entryNumber(slot, entry));
        }
    }
    return entries;
}

}  // namespace VelkHost
