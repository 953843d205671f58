#include <VelkLibrary/Filter/FreeFilterIds.h>

FreeFilterIds::FreeFilterIds(const std::vector<LibraryFilter>& filters, long first) : next_(first)
{
    for (const LibraryFilter& filter : filters)
        taken_.insert(filter.getFilterId());
}

long FreeFilterIds::take()
{
    // No id becomes free again, so the search goes on where it last ended.
    while (taken_.contains(next_))
        ++next_;
    return next_++;
}
