#pragma once

#include <VelkLibrary/Search/detail/TermScan.h>

#include <VelkCommon/Platform/BytePatterns.h>

#include <array>
#include <cstddef>

namespace Library::Search::detail {

/// Looks for a few terms at once, by the rarest three bytes in a row of each: one pass for every eight of them, and
/// nearly each place that it finds is one of a term.
class PatternScan : public TermScan
{
public:
    static constexpr std::size_t fewestTerms = 2;
    /// With more terms it takes less time to look up pairs of bytes.
    static constexpr std::size_t mostTerms = 4 * Velk::Platform::BytePatterns::most;

    static bool canFind(const LiteralMatcher& term) noexcept { return term.term().size() > 1; }

    void add(std::uint32_t number, const LiteralMatcher& term) override;
    void close() override {}
    void clear() noexcept override;
    void mark(const Piece& piece, std::vector<PlaceMarker>& markers) const override;

private:
    using Patterns = Velk::Platform::BytePatterns;

    /// Eight terms or fewer, which one pass looks for.
    struct Pass
    {
        Patterns patterns;
        std::array<std::size_t, Patterns::most> distances{};  ///< of each pattern from the beginning of its term
    };

    /// Some bytes of a piece.
    struct Stretch;

    static void tryTerms(const Pass& pass, const Stretch& stretch, const Patterns::Block& block, PlaceMarker* markers);

    std::vector<Pass> passes_;
};

}  // namespace Library::Search::detail
