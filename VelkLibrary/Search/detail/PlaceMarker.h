#pragma once

#include <VelkLibrary/Search/detail/Piece.h>

#include <cstddef>
#include <cstdint>

namespace Library::Search::detail {

/// Marks the entries that hold a term place by place. For terms that are rare, which most terms are, it is as fast as
/// a look at every byte can be; each place where the term may stand takes time of its own.
class PlaceMarker
{
public:
    /// The term has 1 to SearchPlan::longestTerm bytes, without a line break.
    PlaceMarker(const LiteralMatcher& term, const PlaceBytes& worths, const Piece& piece, const TermMarks& marks);

    /// Marks those of the entries `first` to `end` - 1, numbers in the block, that hold the term; none of them may be
    /// marked already. Returns false if it gave up half-way because the term may stand at more places than
    /// `mostPlaces`.
    bool mark(std::size_t first, std::size_t end, std::size_t mostPlaces);

    /// Marks the entry with this place if the term stands there. No place may belong to an entry before that of the
    /// last one where the term stood.
    void tryAt(std::size_t place);

    /// At how many places the term stood.
    std::size_t placesFound() const noexcept { return placesFound_; }

private:
    bool standsAt(const char* place) const;
    void found(std::size_t place);
    void goTo(std::size_t cell);

    const LiteralMatcher& term_;
    const PlaceBytes& worths_;
    const Piece& piece_;
    const TermMarks marks_;
    std::uint64_t head_ = 0;      // the first eight bytes of the term
    std::uint64_t headBits_ = 0;  // those that it has
    std::size_t entry_;           // the one in which the last place was
    std::size_t end_;
    std::size_t placesFound_ = 0;
};

}  // namespace Library::Search::detail
