#pragma once

#include <VelkLibrary/Search/Info.h>
#include <VelkLibrary/SearchPriority.h>

#include <string>
#include <vector>

/// @file
/// What programs show of a search and its hits.

namespace VelkHost {

/// What kind of match a priority stands for, such as "ItemContainsWord"; "Id" for an entry found by its id.
std::string matchName(SearchPriority priority);

/// The terms that an entry may be found by, in lower case: what to mark in it.
std::vector<std::u32string> lowerTerms(const Library::Search::Info& info);

/// The terms as they are typed, "in quotes", with commas between them.
std::string quotedTerms(const std::vector<std::u32string>& terms);

/// The parsed search for people, in English: its alternatives with terms and excluded terms.
std::string explainText(const Library::Search::Info& info);

}  // namespace VelkHost
