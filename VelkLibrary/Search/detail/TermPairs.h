#pragma once

#include <VelkLibrary/Search/detail/CompiledSearch.h>

#include <array>
#include <cstddef>
#include <cstdint>
#include <vector>

namespace Library::Search::detail {

/// Tells which of some dozen terms texts may hold, in one look at each pair of neighbouring bytes, so that most groups
/// need no look of their own. It may name a term that the texts do not hold, but never misses one that they do.
/// Immutable.
class TermPairs
{
public:
    static constexpr std::size_t mostTerms = 32;

    /// Bit n stands for term n.
    using Terms = std::uint32_t;

    /// `search` has at most `mostTerms`.
    explicit TermPairs(const CompiledSearch& search);

    Terms termsIn(const LoweredTexts& texts) const noexcept;

    /// The required terms of a group.
    Terms required(std::size_t group) const noexcept { return required_[group]; }

private:
    std::array<std::uint64_t, BytePairs::count> terms_{};  // by pair: those with it, in either half one of its two
    Terms short_ = 0;                                      // those without pairs
    std::vector<Terms> required_;
};

}  // namespace Library::Search::detail
