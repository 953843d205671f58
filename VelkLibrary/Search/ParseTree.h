#pragma once

#include <VelkLibrary/Export.h>

#include <functional>
#include <string>
#include <vector>

namespace Library::Search {

/// One alternative of a search: terms that must all occur, and terms that must not. A plain value.
struct VELKLIBRARY_EXPORT ORGroup
{
    /// Whether both have equal terms and equal excluded terms, in the same order, compared code unit by code
    /// unit.
    bool operator==(const ORGroup& other) const;

    /// Erases the empty texts from `terms`, then from `excludedTerms`; the others keep their order.
    void removeInvalidTerms();

    std::vector<std::u32string> terms;          ///< all must match, in the order of the expression
    std::vector<std::u32string> excludedTerms;  ///< a result that contains any of them is excluded
};

/// A search text as the alternatives that it stands for. A plain value; an empty tree means that there
/// is nothing to search for.
struct VELKLIBRARY_EXPORT ParseTree
{
    /// Whether both have the same number of groups, and the groups are equal one by one.
    bool operator==(const ParseTree& other) const;

    /// Calls `f` with every term, which it may rewrite in place: group by group, within a group first
    /// the terms, then the excluded terms. An empty `f` throws std::bad_function_call as soon as there
    /// is a term.
    void forEachTerm(const std::function<void(std::u32string&)>& f);

    std::vector<ORGroup> groups;  ///< the alternatives, in the order of the expression
};

/// Parses what a user typed into the search box (docs/search-syntax.md). In the result no term is empty
/// and every group has a required term; alternatives made of excluded terms alone are dropped.
/// Text that the expression parser rejects gives an empty tree; nothing but memory exhaustion throws.
/// Any thread.
VELKLIBRARY_EXPORT ParseTree parseSearchTerms(const std::u32string& text);

}  // namespace Library::Search
