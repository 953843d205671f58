#pragma once

#include "host/installation/SearchIndex.h"

#include <cstddef>
#include <cstdint>
#include <memory>
#include <optional>
#include <vector>

namespace VelkHost {

/// Makes the state of an index that holds other libraries than the one before, and keeps what is known of those that
/// both hold: their blocks, the numbers of their entries, and the order.
///
/// A large library has blocks of its own. Small ones are packed: each new one is added to the end of the last pack.
/// Those that are not held any more leave gaps; a pack that is mostly gaps is given up, and the others in it are added
/// again.
class IndexBuilder
{
public:
    IndexBuilder(const IndexState& earlier, const std::vector<LoadedLibrary>& libraries, SearchIndex::Order order);

    /// Throws std::bad_alloc. Called once.
    std::shared_ptr<const IndexState> build();

private:
    using Part = IndexBlock::Part;

    /// A block that is to be made.
    struct Plan
    {
        std::size_t slot = 0;
        const IndexBlock* earlier = nullptr;
        std::vector<Part> parts;
        std::size_t size = 0;
    };

    void matchLibraries(const std::vector<LoadedLibrary>& libraries);
    void giveUpSparsePacks();
    void keepSlots();
    void planBlocks();
    void planLarge(const LoadedLibrary& library);
    void planSmall(const LoadedLibrary& library);
    Plan& packFor(std::size_t needed);
    Plan packToFill(std::size_t needed);
    std::size_t freeSlot();
    void makeBlocks();
    void numberParts();
    void findPositions();
    void putInOrder();
    bool hasKeptOrder() const;
    EntryOrder withoutGone(const EntryOrder& order) const;
    std::vector<EntryNumber> entries(bool freshOnly) const;

    const IndexState& earlier_;
    const SearchIndex::Order order_;
    std::shared_ptr<IndexState> next_ = std::make_shared<IndexState>();
    std::vector<std::uint32_t> now_;  ///< the number that each earlier library has now, or noLibrary
    std::vector<bool> isFresh_;       ///< of the libraries now: it is not in a block yet
    std::vector<Plan> plans_;
    std::optional<std::size_t> pack_;  ///< the plan that small libraries are added to
    std::size_t takenSlots_ = 0;       ///< at the beginning, in which there is no free one
};

}  // namespace VelkHost
