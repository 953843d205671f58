#pragma once

#include <VelkLibrary/Search/detail/NameBlock.h>
#include <VelkLibrary/Search/detail/NameWorths.h>

#include <bit>
#include <cstddef>
#include <cstdint>

namespace Library::Search::detail {

/// Some entries of a block that are rated together, because what is known about them stays in the processor's cache.
/// Sets of them have a bit for each, in 64-bit words.
struct Piece
{
    const NameBlock& names;
    std::size_t first;
    std::size_t count;

    std::size_t end() const noexcept { return first + count; }
    std::size_t bytes() const noexcept { return (names.cell(end()) - names.cell(first)) * NameBlock::cellSize; }
    std::size_t words() const noexcept { return (count + 63) / 64; }
};

/// What is known of a term in the entries of a piece: which ones hold it, and the worth of its best place in those.
struct TermMarks
{
    std::uint64_t* holds;
    std::uint8_t* worths;
};

/// The worth of not being found, where worths are bytes.
inline constexpr std::uint8_t noWorthByte = 0xFF;

/// PlaceWorths in bytes.
struct PlaceBytes
{
    explicit constexpr PlaceBytes(const PlaceWorths& worths) noexcept
        : begin{byteOf(worths.begin[0]), byteOf(worths.begin[1])},
          name{{byteOf(worths.name[0][0]), byteOf(worths.name[0][1])},
               {byteOf(worths.name[1][0]), byteOf(worths.name[1][1])}},
          keywords{{byteOf(worths.keywords[0][0]), byteOf(worths.keywords[0][1])},
                   {byteOf(worths.keywords[1][0]), byteOf(worths.keywords[1][1])}}
    {}

    std::uint8_t begin[2];
    std::uint8_t name[2][2];
    std::uint8_t keywords[2][2];

private:
    static constexpr std::uint8_t byteOf(Worth worth) noexcept
    {
        return worth == noWorth ? noWorthByte : static_cast<std::uint8_t>(worth);
    }
};

/// Calls `f` with the number of each entry of a set, counted from the piece's first one.
template <typename Function>
void forEachEntry(const std::uint64_t* set, std::size_t words, Function f)
{
    for (std::size_t word = 0; word < words; ++word) {
        for (std::uint64_t bits = set[word]; bits != 0; bits &= bits - 1)
            f(word * 64 + static_cast<std::size_t>(std::countr_zero(bits)));
    }
}

}  // namespace Library::Search::detail
