#pragma once

#include <VelkLibrary/Search/detail/LiteralMatcher.h>
#include <VelkLibrary/Search/detail/Piece.h>
#include <VelkLibrary/Search/detail/PlaceMarker.h>

#include <cstdint>
#include <vector>

namespace Library::Search::detail {

/// Looks for several terms at once: in one way for a few, in another for many.
class TermScan
{
public:
    virtual ~TermScan() = default;

    /// Adds a term that the scan can find.
    virtual void add(std::uint32_t number, const LiteralMatcher& term) = 0;
    /// Afterwards terms can be looked for, and no more added until clear().
    virtual void close() = 0;
    virtual void clear() noexcept = 0;

    /// The numbers of the terms, in the order in which they were added.
    const std::vector<std::uint32_t>& numbers() const noexcept { return numbers_; }

    /// Marks where the terms stand in a piece. Takes a marker for each term, in their order.
    virtual void mark(const Piece& piece, std::vector<PlaceMarker>& markers) const = 0;

protected:
    std::vector<std::uint32_t> numbers_;
};

}  // namespace Library::Search::detail
