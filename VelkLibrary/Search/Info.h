#pragma once

#include <VelkLibrary/Export.h>
#include <VelkLibrary/Search/ParseTree.h>

#include <cstdint>
#include <set>
#include <string>
#include <vector>

/// A kind of library. The values are the host's; to the library they are opaque keys.
enum class libType : std::int32_t {};

namespace Library::Search {

/// One library search: what to look for, where, and which kind of search it is. A plain value with
/// three shapes, told apart by its flags: a search by expression (as constructed, with `parseTree` set
/// by the host), by plain words (setupLegacySearch()) and by id (setupUniqueIdSearch()). One thread at
/// a time.
struct VELKLIBRARY_EXPORT Info
{
    /// A search by expression in the libraries of the given kinds; an empty set means no restriction.
    Info(std::set<libType> types);

    /// Whether there is nothing to look for and no restriction. The flags do not count.
    bool empty() const;

    /// Makes this a search for plain words: one group with the words (UTF-8) as they are, neither split
    /// nor lower-cased nor dropped when empty. The restriction sets stay.
    void setupLegacySearch(const std::vector<std::string>& words, std::set<libType> types);

    /// Makes this a search for the entry with this unique id. The kinds and restriction sets stay.
    void setupUniqueIdSearch(std::string id);

    ParseTree parseTree;                     ///< the terms; empty when none
    std::set<libType> libTypes;              ///< the kinds of library; empty means no restriction
    std::set<std::int32_t> restrictionSet1;  ///< a restriction of the host's; empty means none
    std::set<std::int32_t> restrictionSet2;  ///< another restriction of the host's; empty means none
    bool legacySearch = false;               ///< whole-word matches only
    bool textSearch = true;                  ///< a search by text: by expression or by plain words
    bool expressionSearch = true;            ///< a search by expression
    bool presetSearch = false;               ///< set up by one of the two setup operations
    std::string uniqueId;                    ///< the id to look for; empty when not by id
};

/// Copies each of the three restrictions of `source` (not its terms, flags or id) that is not empty
/// over that of `target`. An empty one clears nothing: restrictions are overridden, not removed.
VELKLIBRARY_EXPORT void copyRestrictions(Info& target, const Info& source);

}  // namespace Library::Search
