#include <VelkLibrary/Filter/FreeFilterIds.h>

FreeFilterIds::FreeFilterIds(const std::vector<LibraryFilter>& filters, long first) : next_(first)
{
    for (const LibraryFilter& filter : filters)
        taken_.insert(filter.getFilterId());
}

long FreeFilterIds::take()
{
    // Nothing becomes free again, so the search goes on where it ended.
    while (taken_.contains(next_))
        ++next_;
    return next_++;
}
