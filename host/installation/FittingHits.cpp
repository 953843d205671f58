#include "host/installation/FittingHits.h"

#include <utility>
#include <vector>

namespace VelkHost {
namespace {

/// Whether a hit stays; counts it if not.
bool keeps(SearchResult& hits, std::size_t number, const RoomToFit& room)
{
    const Hit hit = hits.hit(number);
    if (hit.isFolder)
        return false;
    const Fit fit = fitOf(hits.state->libraries()[hit.library]->catalog->sizeOf(hit.index), room);
    hits.tooLarge += fit == Fit::TooLarge ? 1 : 0;
    hits.withoutSize += fit == Fit::Unknown ? 1 : 0;
    return fit == Fit::Fits;
}

}  // namespace

void keepFitting(SearchResult& hits, const RoomToFit& room, const std::stop_token& stop)
{
    constexpr std::size_t betweenLooks = 10'000;
    std::vector<SearchResult::Group> groups;
    std::size_t kept = 0;
    for (const SearchResult::Group& group : hits.groups) {
        const std::size_t begin = kept;
        // hit() looks at the group of a number, so the groups must be as they were until all have been looked at.
        for (std::size_t number = group.begin; number < group.end; ++number) {
            if (number % betweenLooks == 0 && stop.stop_requested())
                break;
            const EntryNumber entry = hits.entries[number];
            if (keeps(hits, number, room))
                hits.entries[kept++] = entry;
        }
        if (kept > begin)
            groups.push_back({group.priority, begin, kept});
    }
    hits.entries.resize(kept);
    hits.groups = std::move(groups);
}

}  // namespace VelkHost
