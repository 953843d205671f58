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
/// The required terms of the groups form trees: a node stands for the terms on the way to it from its tree's root. So
/// what groups have in common at their beginnings is done once: the product of ten pairs of alternatives has 10,240
/// terms in 1,024 groups, and a few thousand nodes.
class SearchPlan
{
public:
    static constexpr std::uint32_t none = UINT32_MAX;

    /// A term as the last of several that must all occur.
    struct Node
    {
        std::uint32_t term;
        std::uint32_t parent;  ///< the node of the terms before it; `none` if it is the first
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

    /// The nodes of a term stand together, and behind those of all terms that are rarer.
    const std::vector<Node>& nodes() const noexcept { return nodes_; }

    /// The terms of the nodes without a parent, which are looked for in all entries.
    const std::vector<std::uint32_t>& firstTerms() const noexcept { return firstTerms_; }

    /// The node of all required terms of a group.
    std::uint32_t leaf(std::size_t group) const noexcept { return leaves_[group]; }

    /// The groups whose whole text this is.
    std::span<const ExactText> groupsWithText(std::string_view text) const noexcept;

    /// False if no group's text has this size.
    bool mayBeText(std::size_t size) const noexcept { return (textSizes_ >> size % 64 & 1) != 0; }

private:
    void growTrees(const CompiledSearch& search);
    void orderNodes(const CompiledSearch& search);

    bool oneByOne_;
    std::vector<Node> nodes_;
    std::vector<std::uint32_t> firstTerms_;
    std::vector<std::uint32_t> leaves_;
    std::vector<ExactText> exactTexts_;  // in the order of the texts
    std::uint64_t textSizes_ = 0;        // bit n: a text has that size, modulo 64
};

}  // namespace Library::Search::detail
