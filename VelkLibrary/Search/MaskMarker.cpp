#include <VelkLibrary/Search/detail/MaskMarker.h>

#include <VelkLibrary/Search/detail/Bytes64.h>

#include <algorithm>
#include <bit>
#include <cstring>
#include <string_view>

using Velk::Platform::Bytes16;

namespace Library::Search::detail {
namespace {

constexpr std::size_t blockSize = 64;
constexpr std::size_t cellsPerBlock = blockSize / NameBlock::cellSize;

// So many bits of a row can be read at once from any bit on.
constexpr std::size_t bitsAtOnce = 57;

std::uint64_t lowBits(std::size_t count)
{
    return (std::uint64_t{1} << count) - 1;
}

std::uint64_t bitsFrom(const CellRows::Row& row, std::size_t cell)
{
    std::uint64_t bits;
    std::memcpy(&bits, row.data() + cell / 8, sizeof bits);
    if constexpr (std::endian::native == std::endian::big) {
        std::uint64_t turned = 0;
        for (unsigned byte = 0; byte < sizeof bits; ++byte)
            turned |= (bits >> 8 * byte & 0xFF) << 8 * (sizeof bits - 1 - byte);
        bits = turned;
    }
    return bits >> cell % 8;
}

bool any(const CellRows::Row& row, std::size_t cell, std::size_t count)
{
    for (; count > bitsAtOnce; cell += bitsAtOnce, count -= bitsAtOnce) {
        if ((bitsFrom(row, cell) & lowBits(bitsAtOnce)) != 0)
            return true;
    }
    return (bitsFrom(row, cell) & lowBits(count)) != 0;
}

// Gathers the lowest bits of the eight bytes of a mask.
std::uint8_t firstBits(std::uint64_t mask)
{
    return static_cast<std::uint8_t>((mask & 0x0101010101010101) * 0x0102040810204080 >> 56);
}

// Which of the eight bytes of a mask are not 0.
std::uint8_t usedBytes(std::uint64_t mask)
{
    constexpr std::uint64_t lows = 0x7F7F7F7F7F7F7F7F;
    return firstBits((((mask & lows) + lows) | mask) >> 7);
}

std::uint64_t allBits(bool condition)
{
    return condition ? ~std::uint64_t{0} : 0;
}

}  // namespace

/// What is known of a term in an entry, as bits of a number.
struct MaskMarker::Flags
{
    static constexpr unsigned inName = 1;
    static constexpr unsigned atLeftInName = 2;
    static constexpr unsigned asWordInName = 4;
    static constexpr unsigned inKeywords = 8;
    static constexpr unsigned asWordInKeywords = 16;
    static constexpr unsigned beginsName = 32;
    static constexpr unsigned beginsNameAsWord = 64;
    static constexpr unsigned holds = inName | inKeywords;
};

CellRows::CellRows(std::size_t mostBytes)
{
    for (Row* const row : {&stands, &atLeft, &asWord, &first, &firstAtRight})
        row->resize(mostBytes / blockSize + 2 + sizeof(std::uint64_t));
}

MaskMarker::MaskMarker(const LiteralMatcher& term, const PlaceBytes& worths, const Piece& piece, CellRows& rows)
    : term_(term),
      worths_(worths),
      piece_(piece),
      rows_(rows),
      firstBlock_(piece.names.cell(piece.first) / cellsPerBlock)
{
    for (unsigned flags = 0; flags < byFlags_.size(); ++flags)
        byFlags_[flags] = worthOf(flags);
}

// The best place of all. The one at the name's beginning is among the others, too, where it is never worth more.
std::uint8_t MaskMarker::worthOf(unsigned flags) const
{
    std::uint8_t best = noWorthByte;
    const auto take = [&](unsigned flag, std::uint8_t worth) {
        if ((flags & flag) != 0)
            best = std::min(best, worth);
    };
    take(Flags::inName, worths_.name[0][0]);
    take(Flags::atLeftInName, worths_.name[1][0]);
    take(Flags::asWordInName, worths_.name[1][1]);
    take(Flags::inKeywords, worths_.keywords[0][0]);
    take(Flags::asWordInKeywords, worths_.keywords[1][1]);
    take(Flags::beginsName, worths_.begin[0]);
    take(Flags::beginsNameAsWord, worths_.begin[1]);
    return best;
}

// What a loop writes as bytes may be anything, as far as the compiler knows, so it keeps what it reads in variables.
template <typename Places>
void MaskMarker::fillRows(const Places& placesIn)
{
    const std::size_t size = term_.term().size();
    const std::uint64_t leftTurn = allBits(term_.beginsInWord());
    const std::uint64_t rightTurn = allBits(term_.endsInWord());
    const std::size_t endBlock = (piece_.names.cell(piece_.end()) + cellsPerBlock - 1) / cellsPerBlock;
    const std::size_t blocks = endBlock - firstBlock_;
    const std::uint64_t* const words = piece_.names.wordBits() + firstBlock_;
    const char* const bytes = piece_.names.bytes() + firstBlock_ * blockSize;
    std::uint8_t* const standing = rows_.stands.data();
    std::uint8_t* const atLeft = rows_.atLeft.data();
    std::uint8_t* const asWord = rows_.asWord.data();
    std::uint8_t* const first = rows_.first.data();
    std::uint8_t* const firstAtRight = rows_.firstAtRight.data();
    for (std::size_t block = 0; block < blocks; ++block) {
        const std::uint64_t* const word = words + block;
        const std::uint64_t before = word[0] << 1 | word[-1] >> 63;
        const std::uint64_t behind = (word[0] >> (size - 1) >> 1) | word[1] << (64 - size);
        const std::uint64_t stands = placesIn(bytes + block * blockSize);
        const std::uint64_t left = stands & (before ^ leftTurn);
        const std::uint64_t right = stands & (behind ^ rightTurn);
        standing[block] = usedBytes(stands);
        atLeft[block] = usedBytes(left);
        asWord[block] = usedBytes(left & right);
        first[block] = firstBits(stands);
        firstAtRight[block] = firstBits(right);
    }
}

void MaskMarker::fillRows()
{
    const std::string_view term = term_.term();
    const auto byteAt = [&](std::size_t place) { return Bytes16(static_cast<std::uint8_t>(term[place])); };
    const std::size_t first = term_.probe(0);
    const std::size_t second = term_.probe(1);
    const Bytes16 firstByte = byteAt(first);
    const Bytes16 secondByte = byteAt(second);
    if (term.size() == 1)
        return fillRows([=](const char* bytes) { return equalTo(bytes, firstByte); });
    fillRows([=](const char* bytes) {  // the probes first, then each byte while a place is left
        std::uint64_t places = pairsAt(bytes + first, firstByte, bytes + second, secondByte);
        for (std::size_t i = 0; i < term.size() && places != 0; ++i) {
            if (i != first && i != second)
                places &= equalTo(bytes + i, byteAt(i));
        }
        return places;
    });
}

unsigned MaskMarker::flagsOf(std::size_t entry) const
{
    const std::size_t from = piece_.names.cell(entry) - firstBlock_ * cellsPerBlock;
    const std::size_t count = piece_.names.cell(entry + 1) - piece_.names.cell(entry);
    if (count > bitsAtOnce)
        return flagsOfLarge(entry);
    const std::size_t nameCount = NameBlock::nameCells(piece_.names.nameSize(entry));
    const std::uint64_t name = lowBits(nameCount);
    const std::uint64_t keywords = lowBits(count) & ~name;
    const std::uint64_t stands = bitsFrom(rows_.stands, from);
    const std::uint64_t asWord = bitsFrom(rows_.asWord, from);
    const auto flag = [](std::uint64_t bits, unsigned value) { return bits != 0 ? value : 0U; };
    return flag(stands & name, Flags::inName) | flag(bitsFrom(rows_.atLeft, from) & name, Flags::atLeftInName) |
           flag(asWord & name, Flags::asWordInName) | flag(stands & keywords, Flags::inKeywords) |
           flag(asWord & keywords, Flags::asWordInKeywords) | flag(bitsFrom(rows_.first, from) & 1, Flags::beginsName) |
           flag(bitsFrom(rows_.firstAtRight, from) & 1, Flags::beginsNameAsWord);
}

unsigned MaskMarker::flagsOfLarge(std::size_t entry) const
{
    const std::size_t from = piece_.names.cell(entry) - firstBlock_ * cellsPerBlock;
    const std::size_t nameCount = NameBlock::nameCells(piece_.names.nameSize(entry));
    const std::size_t behind = from + nameCount;
    const std::size_t rest = piece_.names.cell(entry + 1) - piece_.names.cell(entry) - nameCount;
    return (any(rows_.stands, from, nameCount) ? Flags::inName : 0U) |
           (any(rows_.atLeft, from, nameCount) ? Flags::atLeftInName : 0U) |
           (any(rows_.asWord, from, nameCount) ? Flags::asWordInName : 0U) |
           (any(rows_.stands, behind, rest) ? Flags::inKeywords : 0U) |
           (any(rows_.asWord, behind, rest) ? Flags::asWordInKeywords : 0U) |
           (any(rows_.first, from, 1) ? Flags::beginsName : 0U) |
           (any(rows_.firstAtRight, from, 1) ? Flags::beginsNameAsWord : 0U);
}

void MaskMarker::mark(const TermMarks& marks)
{
    fillRows();
    for (std::size_t word = 0; word < piece_.words(); ++word) {
        const std::size_t first = word * 64;
        const std::size_t count = std::min<std::size_t>(piece_.count - first, 64);
        std::array<std::uint8_t, 64> flags;
        std::uint64_t holders = 0;
        for (std::size_t i = 0; i < count; ++i) {
            flags[i] = static_cast<std::uint8_t>(flagsOf(piece_.first + first + i));
            holders |= std::uint64_t{(flags[i] & Flags::holds) != 0} << i;
        }
        for (std::size_t i = 0; i < count; ++i)
            marks.worths[first + i] = byFlags_[flags[i]];
        marks.holds[word] = holders;
    }
}

}  // namespace Library::Search::detail
