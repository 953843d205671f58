#pragma once

#include "host/installation/Filters.h"
#include "host/installation/LibrarySearch.h"

#include <cstddef>
#include <string>
#include <vector>

namespace VelkHost {

/// The filters by name, the current one marked with a star. UTF-8, safe for terminals.
std::string filterTable(std::vector<LibraryFilter> filters, long current, std::size_t columns);
/// The same as one JSON object (docs/command.md).
std::string filterJson(std::vector<LibraryFilter> filters, long current);

/// The libraries of a filter, with what is known of those that are installed.
std::string filteredLibraryTable(const LibraryFilter& filter, const LibrarySet& installed, std::size_t columns);
/// The same as one JSON object.
std::string filteredLibraryJson(const LibraryFilter& filter, const LibrarySet& installed, long current);

/// The filter in force as one JSON object; the empty filter stands for none.
std::string currentFilterJson(const LibraryFilter& filter);

/// What a merge brought: the names, and a line with the sum.
std::string mergeText(const FilterMerge& merge, const fileString& path);
/// The same as one JSON object.
std::string mergeJson(const FilterMerge& merge);

}  // namespace VelkHost
