#pragma once

#include <cstdint>
#include <span>
#include <string_view>
#include <vector>

namespace Library::Search::detail {

struct CompiledSearch;

/// How a search goes about many entries at once: in which order its terms are looked for, and what groups have in
/// common. Immutable.
///
/// The required terms of a group are a way through a graph without cycles, from its first node to one where the group
/// ends; every step needs a term. Groups share their beginnings and their ends: the product of ten pairs of
/// alternatives has 10,240 terms in 1,024 groups, and 20 steps.
class SearchPlan
{
public:
    /// From one node to another, for entries that hold a term.
    struct Step
    {
        std::uint32_t term;
        std::uint32_t from;
        std::uint32_t to;
    };

    /// A node where groups with the same excluded terms end: this one and maybe others.
    struct End
    {
        std::uint32_t node;
        std::uint32_t group;
    };

    /// A name that is the whole text of a group.
    struct ExactText
    {
        std::string_view text;
        std::uint32_t group;
    };

    /// A term is larger than any that is looked for in many entries at once.
    static constexpr std::size_t longestTerm = 64;

    /// `search` must outlive this.
    explicit SearchPlan(const CompiledSearch& search);

    /// Whether the search is of an odd form, and entries must be rated one by one: when a term is empty, large or has
    /// a line break, or a group requires no term.
    bool oneByOne() const noexcept { return oneByOne_; }

    /// The first node is number 0.
    std::size_t nodeCount() const noexcept { return nodeCount_; }

    /// The steps of a term stand together, and behind those of all terms that come before it in some group.
    const std::vector<Step>& steps() const noexcept { return steps_; }

    const std::vector<End>& ends() const noexcept { return ends_; }

    /// The terms of the steps from the first node, which are looked for in all entries.
    const std::vector<std::uint32_t>& firstTerms() const noexcept { return firstTerms_; }

    /// The groups whose whole text this is.
    std::span<const ExactText> groupsWithText(std::string_view text) const noexcept;

    /// False if no group's text has this size.
    bool mayBeText(std::size_t size) const noexcept { return (textSizes_ >> size % 64 & 1) != 0; }

private:
    class Builder;

    bool oneByOne_;
    std::size_t nodeCount_ = 0;
    std::vector<Step> steps_;
    std::vector<End> ends_;
    std::vector<std::uint32_t> firstTerms_;
    std::vector<ExactText> exactTexts_;  // in the order of the texts
    std::uint64_t textSizes_ = 0;        // bit n: a text has that size, modulo 64
};

}  // namespace Library::Search::detail
