#pragma once

/// @file
/// Short ways to make a search and to rate one text with it.

#include <VelkLibrary/LibraryResultCategorizer.h>

#include <VelkLibrary/Search/ParseTree.h>

#include <set>
#include <string>
#include <utility>
#include <vector>

namespace test {

using Library::Search::Info;
using Library::Search::ORGroup;

inline Info searchFor(std::vector<ORGroup> groups)
{
    Info info(std::set<libType>{});
    info.parseTree.groups = std::move(groups);
    return info;
}

inline Info searchFor(const std::u32string& text)
{
    Info info(std::set<libType>{});
    info.parseTree = Library::Search::parseSearchTerms(text);
    return info;
}

inline Info wordsFor(const std::vector<std::string>& words)
{
    Info info(std::set<libType>{});
    info.setupLegacySearch(words, {});
    return info;
}

inline ORGroup group(std::vector<std::u32string> terms, std::vector<std::u32string> excluded = {})
{
    ORGroup result;
    result.terms = std::move(terms);
    result.excludedTerms = std::move(excluded);
    return result;
}

inline SearchPriority item(const Info& info, const std::string& name)
{
    return LibraryResultCategorizer(info).categorizeItemResult(name);
}

inline SearchPriority item(const Info& info, const std::string& name, const std::string& keywords)
{
    return LibraryResultCategorizer(info).categorizeItemResult(name, keywords);
}

inline SearchPriority folder(const Info& info, const std::string& name)
{
    return LibraryResultCategorizer(info).categorizeFolderResult(name);
}

}  // namespace test
