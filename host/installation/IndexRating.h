#pragma once

#include "host/installation/LibrarySearch.h"
#include "host/installation/SearchIndex.h"

#include <VelkLibrary/LibraryResultCategorizer.h>

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <mutex>
#include <stop_token>
#include <vector>

namespace VelkHost {

/// Rates the entries of an index that a search covers. Threads take pieces of them until there are no more.
class IndexRating
{
public:
    static constexpr std::size_t priorityCount = 16;  ///< of SearchPriority, `Invalid` among them
    using Counts = std::array<std::size_t, priorityCount>;

    /// `isSearched` tells it for each of the libraries. The arguments must outlive the object.
    IndexRating(const IndexState& state, const std::vector<bool>& isSearched, bool folders, bool items);

    /// Rates everything on several threads. False when it was stopped.
    bool run(const Library::Search::Info& info, const std::stop_token& stop);

    /// The priority of each entry by its number; 0 for one that is not covered.
    const std::vector<std::uint8_t>& priorities() const { return priorities_; }
    const Counts& counts() const { return counts_; }
    std::size_t ratedFolders() const { return ratedFolders_; }
    std::size_t ratedItems() const { return ratedItems_; }

    /// Calls `use(entry)` for each number of an entry that has a priority.
    template <typename Use>
    void forEachHit(Use use) const
    {
        for (const Range& range : ranges_)
            forEachHit(range, use);
    }

private:
    /// Numbers of entries, in one block.
    struct Range
    {
        std::size_t begin = 0;
        std::size_t end = 0;
    };

    /// Most searches have few hits: eight entries without one are passed over at once.
    template <typename Use>
    void forEachHit(const Range& range, Use use) const
    {
        constexpr std::size_t atOnce = sizeof(std::uint64_t);
        for (std::size_t entry = range.begin; entry < range.end;) {
            std::uint64_t next = 1;
            const std::size_t end = std::min(entry + atOnce, range.end);
            if (end - entry == atOnce)
                std::memcpy(&next, &priorities_[entry], atOnce);
            for (; next != 0 && entry < end; ++entry)
                if (priorities_[entry] != 0)
                    use(static_cast<EntryNumber>(entry));
            entry = end;
        }
    }

    void findRanges();
    void addPart(std::size_t slot, std::size_t part);
    void addRange(const Range& range);
    Range take(std::size_t most);
    void work(const LibraryResultCategorizer& categorizer, const std::stop_token& stop);
    void clearGaps(const Range& range);
    void count(const Range& range, Counts& counts) const;

    const IndexState& state_;
    const std::vector<bool>& isSearched_;
    const bool folders_;
    const bool items_;
    std::vector<Range> ranges_;  ///< that are rated; small gaps between what is covered are rated, too
    std::vector<Range> gaps_;    ///< in them, in ascending order
    std::vector<std::uint8_t> priorities_;
    std::size_t ratedFolders_ = 0;
    std::size_t ratedItems_ = 0;

    std::mutex mutex_;
    std::size_t nextRange_ = 0;
    std::size_t nextEntry_ = 0;
    Counts counts_{};
};

}  // namespace VelkHost
