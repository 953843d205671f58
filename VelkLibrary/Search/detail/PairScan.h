#pragma once

#include <VelkLibrary/Search/detail/TermScan.h>

#include <cstddef>
#include <cstdint>
#include <vector>

namespace Library::Search::detail {

/// Looks for many rare terms at once, such as a list of article numbers: goes through the texts in steps of two bytes,
/// and looks up the pair of bytes at each step. Of each term two rare pairs are known, one at an even and one at an
/// odd place of the term, so that the steps meet one of them wherever the term stands.
class PairScan : public TermScan
{
public:
    /// With fewer terms it takes less time to look for one after the other.
    static constexpr std::size_t fewestTerms = 8;
    static constexpr std::size_t mostTerms = 30000;

    static bool canFind(const LiteralMatcher& term) noexcept { return term.term().size() > 2; }

    PairScan();

    void add(std::uint32_t number, const LiteralMatcher& term) override;
    void close() override;
    void clear() noexcept override;
    void mark(const Piece& piece, std::vector<PlaceMarker>& markers) const override;

private:
    using Pair = std::uint16_t;

    struct Probe
    {
        Pair pair;
        std::uint8_t place;          ///< of the pair in the term
        std::uint32_t index;         ///< of the term
        std::uint64_t head = 0;      ///< the first eight bytes of the term
        std::uint64_t headBits = 0;  ///< those that it has
    };

    struct Places;

    void addProbe(const LiteralMatcher& term, std::size_t parity);
    void gatherBlocks(const char* bytes, Places& places) const;
    void gatherPairs(const char* bytes, Places& places) const;
    void tryTerms(std::size_t at, const Piece& piece, std::vector<PlaceMarker>& markers) const;

    std::vector<Probe> probes_;          // in the order of their pairs
    std::vector<std::uint8_t> isProbe_;  // by pair: 1 if it is one of them; this much stays in the cache
    std::vector<std::uint16_t> first_;   // by pair: the place of its first probe, if it has one
};

}  // namespace Library::Search::detail
