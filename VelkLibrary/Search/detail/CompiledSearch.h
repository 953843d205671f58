#pragma once

#include <VelkLibrary/Search/Info.h>
#include <VelkLibrary/Search/detail/LiteralMatcher.h>

#include <cstdint>
#include <span>
#include <string>
#include <vector>

namespace Library::Search::detail {

/// The compiled search. Each distinct term is compiled once, however many groups hold it.
struct CompiledSearch
{
    /// A group's range in the list of all groups' terms: the required ones, then the excluded ones. In both parts
    /// each term stands once, those that are most likely to be missing first.
    struct Group
    {
        std::string exactText;
        std::uint32_t requiredBegin = 0;
        std::uint32_t excludedBegin = 0;
        std::uint32_t end = 0;
    };

    explicit CompiledSearch(const Info& info);

    std::span<const std::uint32_t> required(const Group& group) const noexcept
    {
        return {groupTerms.data() + group.requiredBegin, group.excludedBegin - group.requiredBegin};
    }
    std::span<const std::uint32_t> excluded(const Group& group) const noexcept
    {
        return {groupTerms.data() + group.excludedBegin, group.end - group.excludedBegin};
    }

    std::vector<LiteralMatcher> terms;
    std::vector<std::uint32_t> groupTerms;  // indexes into `terms`
    std::vector<Group> groups;
    bool wordMatchesOnly;

private:
    class Builder;
};

}  // namespace Library::Search::detail
