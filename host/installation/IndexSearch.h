#pragma once

#include "host/installation/LibrarySearch.h"
#include "host/installation/SearchIndex.h"

#include <boost/container/vector.hpp>

#include <cstddef>
#include <memory>
#include <stop_token>
#include <vector>

namespace VelkHost {

/// @file
/// Searches of libraries, as the window, the command and the tour run them.

/// What a search has found. A million hits take four megabytes: more is worked out for a hit when it is looked at.
struct SearchResult
{
    /// The hits of one priority.
    struct Group
    {
        SearchPriority priority = Invalid;
        std::size_t begin = 0;
        std::size_t end = 0;
    };

    /// Of a million hits, four megabytes of zeros that are written over would be a part of each key's time.
    using Entries = boost::container::vector<EntryNumber>;

    std::shared_ptr<const IndexState> state;  ///< that was searched
    Entries entries;                          ///< group by group, each in the order of the index
    std::vector<Group> groups;                ///< best first
    std::size_t ratedFolders = 0;
    std::size_t ratedItems = 0;
    std::size_t searchedLibraries = 0;
    std::size_t tooLarge = 0;     ///< items that are no hits for their size, see SearchRequest::room
    std::size_t withoutSize = 0;  ///< and those of which a measure is missing that matters
    double milliseconds = 0;      ///< that rating took, without sorting

    std::size_t size() const { return entries.size(); }
    /// A hit; its library is the number in IndexState::libraries().
    Hit hit(std::size_t number) const;
};

/// Rates the entries that `request` covers against `info`, which searchInfo() made from it. `leftOut` tells for each of
/// the libraries whether it is not searched; it may be empty. Several threads work on it. Any thread; once a stop is
/// requested, it ends soon, without hits: for what people type, within two
/// milliseconds. Throws std::bad_alloc.
SearchResult searchIndex(const std::shared_ptr<const IndexState>& state, const SearchRequest& request,
                         const Library::Search::Info& info, const std::vector<bool>& leftOut = {},
                         const std::stop_token& stop = {});

/// One search of libraries that no index holds. The hits' libraries are numbers in LibrarySet::loaded.
SearchResult runSearch(const LibrarySet& libraries, const SearchRequest& request, const Library::Search::Info& info,
                       const std::stop_token& stop = {});

}  // namespace VelkHost
