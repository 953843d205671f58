#pragma once

#include <VelkLibrary/Export.h>
#include <VelkLibrary/LibraryFilter.h>

#include <set>
#include <vector>

/// Gives ids that no filter of a list has, the lowest first. One thread at a time.
class VELKLIBRARY_EXPORT FreeFilterIds
{
public:
    /// `first` is the lowest id that may be given.
    FreeFilterIds(const std::vector<LibraryFilter>& filters, long first);

    /// The lowest free id, which is taken from now on.
    long take();

private:
    std::set<long> taken_;
    long next_;
};
