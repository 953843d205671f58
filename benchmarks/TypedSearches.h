#pragma once

/// @file
/// What people type into a search box, key by key, with the time in which its results must be ready.

#include <string>
#include <vector>

namespace bench {

struct TypedSearch
{
    std::string text;
    bool legacy = false;  ///< a search of whole words only, which no text asks for
    double gate = 30;     ///< ms from a million items to their results in order
};

/// Each key of some texts, each single letter, and searches of other forms.
std::vector<TypedSearch> typedSearches();

}  // namespace bench
