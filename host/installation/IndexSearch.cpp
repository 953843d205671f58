#include "host/installation/IndexSearch.h"

#include "host/installation/EntrySort.h"
#include "host/installation/FittingHits.h"
#include "host/installation/IndexRating.h"
#include "host/support/Parallel.h"

#include <algorithm>
#include <array>
#include <atomic>
#include <chrono>
#include <utility>

namespace VelkHost {
namespace {

using Clock = std::chrono::steady_clock;

/// Where so many times more entries than hits are in order, sorting the hits is quicker than looking for them there.
constexpr std::size_t fewHits = 500;

// How many entries are placed between two looks at whether the search was stopped.
constexpr std::size_t placedAtOnce = 100'000;

std::vector<bool> searchedLibraries(const IndexState& state, const Library::Search::Info& info,
                                    const std::vector<bool>& leftOut)
{
    std::vector<bool> searched;
    searched.reserve(state.libraries().size());
    for (std::size_t i = 0; i < state.libraries().size(); ++i) {
        const libType type = toLibType(state.libraries()[i]->catalog->kind);
        searched.push_back((info.libTypes.empty() || info.libTypes.contains(type)) && (leftOut.empty() || !leftOut[i]));
    }
    return searched;
}

/// One after the other from the best priority on. Returns the number of hits.
std::size_t makeGroups(const IndexRating::Counts& counts, SearchResult& hits)
{
    std::size_t end = 0;
    for (std::size_t priority = 1; priority < counts.size(); ++priority) {
        if (counts[priority] == 0)
            continue;
        hits.groups.push_back({static_cast<SearchPriority>(priority), end, end + counts[priority]});
        end += counts[priority];
    }
    return end;
}

/// Goes through the order once: entries that are hits go to the next place in their group.
class HitPlacing
{
public:
    HitPlacing(const EntryOrder& order, const IndexRating& rating, SearchResult& hits, const std::stop_token& stop)
        : order_(order.entries), priorities_(rating.priorities()), hits_(hits), stop_(stop)
    {
        for (const SearchResult::Group& group : hits.groups) {
            begins_[static_cast<std::size_t>(group.priority)] = group.begin;
            ends_[static_cast<std::size_t>(group.priority)] = group.end;
        }
    }

    /// One thread goes up from the first entry, another one down from the last, until they meet in the middle.
    void run(std::size_t hitCount)
    {
        hits_.entries.resize(hitCount + 2, boost::container::default_init);
        std::atomic<int> next = 0;
        onThreads(std::min<std::size_t>(threadCount(), 2), [&] {
            for (int half = next++; half < 2; half = next++)
                half == 0 ? ascend(order_.size() / 2) : descend(order_.size() / 2);
        });
        hits_.entries.resize(hitCount);
    }

private:
    using Places = std::array<std::size_t, IndexRating::priorityCount>;

    // Whether an entry is a hit cannot be guessed, so there is no branch on it: one that is none goes to the spare
    // place that the thread has behind all hits.
    void ascend(std::size_t end)
    {
        Places places = begins_;
        places[Invalid] = hits_.entries.size() - 1;
        EntryNumber* const entries = hits_.entries.data();
        for (std::size_t i = 0; i < end && !mustStop(i); ++i) {
            const std::uint8_t priority = priorities_[order_[i]];
            std::size_t& place = places[priority];
            entries[place] = order_[i];
            place += priority != Invalid ? 1 : 0;
        }
    }

    void descend(std::size_t begin)
    {
        Places places = ends_;
        places[Invalid] = hits_.entries.size() - 2;
        EntryNumber* const entries = hits_.entries.data();
        for (std::size_t i = order_.size(); i > begin && !mustStop(i); --i) {
            const std::uint8_t priority = priorities_[order_[i - 1]];
            std::size_t& place = places[priority];
            place -= priority != Invalid ? 1 : 0;
            entries[place] = order_[i - 1];
        }
    }

    bool mustStop(std::size_t entry) const { return entry % placedAtOnce == 0 && stop_.stop_requested(); }

    const std::vector<EntryNumber>& order_;
    const std::vector<std::uint8_t>& priorities_;
    SearchResult& hits_;
    const std::stop_token& stop_;
    Places begins_{};
    Places ends_{};
};

/// Puts the hits into their groups, and sorts each group.
void sortHits(const IndexRating& rating, std::size_t hitCount, SearchResult& hits)
{
    hits.entries.resize(hitCount, boost::container::default_init);
    std::array<std::vector<EntryNumber>, IndexRating::priorityCount> found;
    rating.forEachHit([&](EntryNumber entry) { found[rating.priorities()[entry]].push_back(entry); });
    for (const SearchResult::Group& group : hits.groups) {
        const EntryOrder sorted = sortedEntries(*hits.state, found[static_cast<std::size_t>(group.priority)]);
        std::copy(sorted.entries.begin(), sorted.entries.end(),
                  hits.entries.begin() + static_cast<std::ptrdiff_t>(group.begin));
    }
}

void findId(const std::string& id, const std::vector<bool>& isSearched, const std::stop_token& stop, SearchResult& hits)
{
    std::vector<EntryNumber> found;
    const auto& slots = hits.state->slots();
    for (std::size_t slot = 0; slot < slots.size(); ++slot) {
        for (std::size_t i = 0; i < slots[slot].libraries.size() && !stop.stop_requested(); ++i) {
            const std::uint32_t library = slots[slot].libraries[i];
            if (library == IndexState::noLibrary || !isSearched[library])
                continue;
            const IndexBlock::Part& part = slots[slot].block->parts()[i];
            const Catalog& catalog = *part.library->catalog;
            for (std::size_t place = std::max(part.place, catalog.folders.size()); place < part.place + part.count;
                 ++place) {
                ++hits.ratedItems;
                if (catalog.items[place - catalog.folders.size()].uniqueId == id)
                    found.push_back(
                        static_cast<EntryNumber>(slot * IndexBlock::most + part.begin + place - part.place));
            }
        }
    }
    const EntryOrder sorted = sortedEntries(*hits.state, found);
    hits.entries.assign(sorted.entries.begin(), sorted.entries.end());
    if (!hits.entries.empty())
        hits.groups.push_back({Invalid, 0, hits.entries.size()});
}

void rate(const SearchRequest& request, const Library::Search::Info& info, const std::vector<bool>& isSearched,
          const std::stop_token& stop, SearchResult& hits)
{
    const Clock::time_point start = Clock::now();
    IndexRating rating(*hits.state, isSearched, request.folders, request.items);
    const bool ended = rating.run(info, stop);
    hits.milliseconds = std::chrono::duration<double, std::milli>(Clock::now() - start).count();
    hits.ratedFolders = rating.ratedFolders();
    hits.ratedItems = rating.ratedItems();
    if (!ended)
        return;
    const std::size_t hitCount = makeGroups(rating.counts(), hits);
    const EntryOrder* const order = hits.state->order();
    if (order == nullptr || hitCount < order->entries.size() / fewHits)
        sortHits(rating, hitCount, hits);
    else
        HitPlacing(*order, rating, hits, stop).run(hitCount);
}

}  // namespace

Hit SearchResult::hit(std::size_t number) const
{
    const EntryNumber entry = entries[number];
    const auto group = std::partition_point(groups.begin(), groups.end(),
                                            [&](const Group& candidate) { return candidate.end <= number; });
    const EntryPlace place = state->placeOf(entry);
    return {group->priority, place.isFolder(), state->libraryOf(entry), place.index()};
}

SearchResult searchIndex(const std::shared_ptr<const IndexState>& state, const SearchRequest& request,
                         const Library::Search::Info& info, const std::vector<bool>& leftOut,
                         const std::stop_token& stop)
{
    SearchResult hits;
    hits.state = state;
    const std::vector<bool> isSearched = searchedLibraries(*state, info, leftOut);
    hits.searchedLibraries = static_cast<std::size_t>(std::count(isSearched.begin(), isSearched.end(), true));
    if (info.uniqueId.empty())
        rate(request, info, isSearched, stop, hits);
    else
        findId(info.uniqueId, isSearched, stop, hits);
    if (request.room.isLimited())
        keepFitting(hits, request.room, stop);
    if (stop.stop_requested()) {
        hits.entries.clear();
        hits.groups.clear();
    }
    return hits;
}

SearchResult runSearch(const LibrarySet& libraries, const SearchRequest& request, const Library::Search::Info& info,
                       const std::stop_token& stop)
{
    const Clock::time_point start = Clock::now();
    SearchIndex index;
    index.setLibraries(libraries.loaded, SearchIndex::Order::None);
    const double preparing = std::chrono::duration<double, std::milli>(Clock::now() - start).count();
    SearchResult result = searchIndex(index.state(), request, info, {}, stop);
    result.milliseconds += preparing;
    return result;
}

}  // namespace VelkHost
