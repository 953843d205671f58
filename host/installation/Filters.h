#pragma once

#include <VelkCommon/Files/fileString.h>
#include <VelkLibrary/LibraryFilter.h>

#include <cstddef>
#include <string>
#include <vector>

class LibraryFilterManager;

/// @file
/// The installation's library filters and their file. Each function reads the file as it is now and has saved its
/// change when it returns; when it throws, neither the file nor the module's manager has changed. One thread at a
/// time. Everything throws FileError when the filter file is damaged or cannot be written, and DataError for a
/// filter that is not there.

namespace VelkHost {

/// An id that no filter has.
constexpr long noFilterId = -1;

/// The module's manager, with the current content of the installation's filter file.
LibraryFilterManager& installedFilters();

/// The filter of that name; the first one if there are several.
LibraryFilter filterNamed(const std::string& name);

/// What became of a filter.
struct FilterChange
{
    bool made = false;          ///< there was no filter of this name
    std::size_t added = 0;      ///< libraries that it did not have
    std::size_t libraries = 0;  ///< how many it has now
};
/// Adds libraries, by their ids, to the filter of that name, which is made when missing.
FilterChange addToFilter(const std::string& name, const std::vector<std::string>& ids);

/// Takes libraries out of a filter.
void removeFromFilter(const std::string& name, const std::vector<std::string>& ids);
/// Removes a filter; true when it was the current one, so that no filter is in force now.
bool removeFilter(const std::string& name);

/// Puts a filter in force; noFilterId for none.
void setCurrentFilter(long id);

/// The filters, and which one is in force.
struct FilterSet
{
    std::vector<LibraryFilter> filters;
    long currentId = noFilterId;
};
/// Changes what is different in `after`, which somebody has made of `before`. What others have changed meanwhile stays:
/// filters are told apart by their ids.
void applyFilterChanges(const FilterSet& before, const FilterSet& after);

/// What merging another filter file brought.
struct FilterMerge
{
    std::vector<std::string> came;  ///< the names that the added filters have here
    std::size_t present = 0;        ///< filters that were here already
};
/// Adds the filters of the file at `path`, which is not changed. Filters that are here already (same name, same
/// libraries) are not added again; a filter whose name is taken gets a number.
FilterMerge mergeFilterFile(const fileString& path);

}  // namespace VelkHost
