#pragma once

#include <VelkLibrary/Search/detail/LiteralMatcher.h>
#include <VelkLibrary/Search/detail/Piece.h>
#include <VelkLibrary/Search/detail/PlaceMarker.h>

#include <cstddef>
#include <cstdint>
#include <vector>

namespace Library::Search::detail {

/// Looks for many rare terms at once, such as a list of article numbers: goes through the texts in steps of two bytes,
/// and looks up the pair of bytes at each step. Of each term two rare pairs are known, one at an even and one at an
/// odd place of the term, so that the steps meet one of them wherever the term stands.
class PairScan
{
public:
    /// With fewer terms it takes less time to look for one after the other.
    static constexpr std::size_t fewestTerms = 8;
    static constexpr std::size_t mostTerms = 30000;

    static bool canFind(const LiteralMatcher& term) noexcept { return term.term().size() > 2; }

    PairScan();

    /// Adds a term that canFind() is true of.
    void add(std::uint32_t number, const LiteralMatcher& term);
    /// Afterwards terms can be looked for, and no more added until clear().
    void close();
    void clear() noexcept;

    /// The numbers of the terms, in the order in which they were added.
    const std::vector<std::uint32_t>& numbers() const noexcept { return numbers_; }

    /// Marks where the terms stand in a piece. Takes a marker for each term, in their order.
    void mark(const Piece& piece, std::vector<PlaceMarker>& markers) const;

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

    std::vector<std::uint32_t> numbers_;
    std::vector<Probe> probes_;          // in the order of their pairs
    std::vector<std::uint8_t> isProbe_;  // by pair: 1 if it is one of them; this much stays in the cache
    std::vector<std::uint16_t> first_;   // by pair: the place of its first probe, if it has one
};

}  // namespace Library::Search::detail
