#pragma once

/// @file
/// Searches from the pieces of an input, as the targets that rate by them read them.

#include <VelkCommon/Text/StringConvert.h>
#include <VelkLibrary/Search/Info.h>

#include <cstddef>
#include <set>
#include <string>
#include <string_view>
#include <vector>

namespace fuzz {

/// Adds a term. One that begins with "-" is excluded, and one that begins with "|" opens a new group.
inline void addTerm(Library::Search::Info& info, std::string_view term)
{
    if (term.starts_with('|')) {
        info.parseTree.groups.emplace_back();
        term.remove_prefix(1);
    }
    const bool excluded = term.starts_with('-');
    if (excluded)
        term.remove_prefix(1);
    auto& group = info.parseTree.groups.back();
    (excluded ? group.excludedTerms : group.terms).push_back(StringConvert::toUnicode(term, StringConvert::Utf8));
}

/// The search for the pieces from `begin` on.
inline Library::Search::Info searchFor(const std::vector<std::string>& pieces, std::size_t begin, bool wholeWords)
{
    Library::Search::Info info(std::set<libType>{});
    info.legacySearch = wholeWords;
    info.parseTree.groups.emplace_back();
    for (std::size_t i = begin; i < pieces.size(); ++i)
        addTerm(info, pieces[i]);
    return info;
}

}  // namespace fuzz
