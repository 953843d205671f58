#pragma once

#include "host/installation/IndexBlock.h"
#include "host/installation/LibrarySearch.h"

#include <cstddef>
#include <cstdint>
#include <memory>
#include <mutex>
#include <string_view>
#include <vector>

namespace VelkHost {

/// The number of an entry in an index: that of its block, times IndexBlock::most, and its own in the block.
using EntryNumber = std::uint32_t;

/// Entries in the order in which results list them: by lower-case name, by library, by their place in it.
struct EntryOrder
{
    std::vector<EntryNumber> entries;
    std::vector<std::uint64_t> beginnings;  ///< of their names, see IndexState::beginningOf()
};

/// The libraries that an index holds at a moment. It never changes, so any number of threads may search it, while the
/// index already has another one.
class IndexState
{
public:
    static constexpr std::uint32_t noLibrary = static_cast<std::uint32_t>(-1);

    /// A block, and to which of the libraries its parts belong: noLibrary for one that is not held any more. An empty
    /// slot has no block.
    struct Slot
    {
        std::shared_ptr<const IndexBlock> block;
        std::vector<std::uint32_t> libraries;
    };

    const std::vector<std::shared_ptr<const LoadedLibrary>>& libraries() const { return libraries_; }
    const std::vector<Slot>& slots() const { return slots_; }
    /// All entries of the libraries; null where they were not put in order.
    const EntryOrder* order() const { return order_.get(); }
    /// One more than the largest number of an entry.
    std::size_t numbers() const { return slots_.size() * IndexBlock::most; }

    std::string_view lowerName(EntryNumber entry) const
    {
        return slots_[entry / IndexBlock::most].block->names().lowerName(entry % IndexBlock::most);
    }
    /// Eight bytes of the name from a place in it on, to be compared before whole names are; zeros behind its end.
    std::uint64_t beginningOf(EntryNumber entry, std::size_t from) const;
    /// Whether an entry stands before another one in the order.
    bool isBefore(EntryNumber left, EntryNumber right) const;

    /// The library of an entry, by its number in libraries().
    std::uint32_t libraryOf(EntryNumber entry) const;
    EntryPlace placeOf(EntryNumber entry) const
    {
        return slots_[entry / IndexBlock::most].block->placeOf(entry % IndexBlock::most);
    }

private:
    friend class IndexBuilder;

    std::vector<std::shared_ptr<const LoadedLibrary>> libraries_;
    std::vector<std::uint32_t> positions_;  // of each library in the order of their names
    std::vector<Slot> slots_;
    std::shared_ptr<const EntryOrder> order_;
};

/// The names of libraries, made ready for searches at each key. Any thread.
class SearchIndex
{
public:
    /// Holds nothing.
    SearchIndex();

    /// Whether the entries are put in order, so that searches with many hits need not do it. That takes about as long
    /// as making them ready does, and is not worth it for a single search.
    enum class Order { Kept, None };

    /// From now on the index holds these libraries, and `libraries` tells their order where names are equal. Only those
    /// that it has not held before are made ready, and nothing is done where it holds just these; the same catalog at
    /// the same path counts as the same. Throws std::bad_alloc, and then holds what it held. Searches go on with the
    /// state that they began with.
    void setLibraries(const std::vector<LoadedLibrary>& libraries, Order order = Order::Kept);

    /// What it holds now; never null.
    std::shared_ptr<const IndexState> state() const;

private:
    std::mutex changing_;
    mutable std::mutex mutex_;
    std::shared_ptr<const IndexState> state_;
};

}  // namespace VelkHost
