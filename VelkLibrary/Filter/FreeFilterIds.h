#pragma once

#include <VelkLibrary/Export.h>
#include <VelkLibrary/LibraryFilter.h>

#include <set>
#include <vector>

/// Hands out ids that no filter of a list has, the lowest first. One thread at a time.
class VELKLIBRARY_EXPORT FreeFilterIds
{
public:
    /// `first` is the lowest id that may be handed out.
    FreeFilterIds(const std::vector<LibraryFilter>& filters, long first);

    /// Hands out the lowest free id.
    long take();

private:
    std::set<long> taken_;
    long next_;
};
