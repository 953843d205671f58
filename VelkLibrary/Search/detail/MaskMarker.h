#pragma once

#include <VelkLibrary/Search/detail/Piece.h>

#include <array>
#include <cstddef>
#include <cstdint>
#include <vector>

namespace Library::Search::detail {

/// Rows with a bit for each cell of a piece: what a term does there.
struct CellRows
{
    /// For pieces of so many bytes.
    explicit CellRows(std::size_t mostBytes);

    using Row = std::vector<std::uint8_t>;

    Row stands;        ///< it begins in the cell
    Row atLeft;        ///< with a border on its left
    Row asWord;        ///< with borders on both sides
    Row first;         ///< it begins with the cell
    Row firstAtRight;  ///< and has a border on its right
};

/// Marks the entries that hold a term, with the same work for each byte and each entry, wherever the term stands. So it
/// is the way for terms that stand nearly everywhere, as single letters do: whatever asks about each place would
/// guess wrong at many of them.
class MaskMarker
{
public:
    /// The term has 1 to SearchPlan::longestTerm bytes, without a line break.
    MaskMarker(const LiteralMatcher& term, const PlaceBytes& worths, const Piece& piece, CellRows& rows);

    /// Marks all entries of the piece. Writes every byte of their worths.
    void mark(const TermMarks& marks);

private:
    struct Flags;

    void fillRows();
    template <typename Places>
    void fillRows(const Places& placesIn);
    unsigned flagsOf(std::size_t entry) const;
    unsigned flagsOfLarge(std::size_t entry) const;
    std::uint8_t worthOf(unsigned flags) const;

    const LiteralMatcher& term_;
    const PlaceBytes& worths_;
    const Piece& piece_;
    CellRows& rows_;
    const std::size_t firstBlock_;
    std::array<std::uint8_t, 128> byFlags_;
};

}  // namespace Library::Search::detail
