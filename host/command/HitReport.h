#pragma once

#include "host/command/LibrarySearch.h"

#include <string>
#include <vector>

namespace VelkHost {

/// How to show hits.
struct ReportStyle
{
    std::size_t limit = 0;    ///< hits to show; 0 for all
    std::size_t columns = 0;  ///< the terminal's width; 0 for no limit
    bool styles = false;      ///< matched words in bold
};

/// What kind of match a priority stands for, such as "ItemContainsWord"; "Id" for an entry found by its id.
std::string matchName(SearchPriority priority);

/// The hits as a table with aligned columns, and a line with the figures. UTF-8, safe for terminals.
std::string hitTable(const LibrarySet& libraries, const SearchResult& result, const Library::Search::Info& info,
                     const ReportStyle& style);

/// The same as one JSON object (docs/command.md); valid UTF-8 whatever the names hold.
std::string hitJson(const LibrarySet& libraries, const SearchResult& result, const SearchRequest& request,
                    std::size_t limit);

/// The terms that an entry may be found by, in lower case: what to mark in it.
std::vector<std::u32string> lowerTerms(const Library::Search::Info& info);

/// The parsed search for people: its alternatives with terms and excluded terms.
std::string explainText(const Library::Search::Info& info);
/// The same as one JSON object.
std::string explainJson(const Library::Search::Info& info);

}  // namespace VelkHost
