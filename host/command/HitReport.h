#pragma once

#include "host/installation/IndexSearch.h"

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

/// The hits as a table with aligned columns, and a line with the numbers. UTF-8, safe for terminals.
std::string hitTable(const LibrarySet& libraries, const SearchResult& result, const Library::Search::Info& info,
                     const ReportStyle& style);

/// The same as one JSON object (docs/command.md); valid UTF-8 whatever the names hold.
std::string hitJson(const LibrarySet& libraries, const SearchResult& result, const SearchRequest& request,
                    std::size_t limit);

/// The parsed search, see explainText(), as one JSON object.
std::string explainJson(const Library::Search::Info& info);

}  // namespace VelkHost
