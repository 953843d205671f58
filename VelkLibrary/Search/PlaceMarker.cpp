#include <VelkLibrary/Search/detail/PlaceMarker.h>

#include <VelkLibrary/Search/detail/Bytes64.h>
#include <VelkLibrary/Search/detail/WordBytes.h>

#include <algorithm>
#include <cstring>

using Velk::Platform::Bytes16;

namespace Library::Search::detail {
namespace {

constexpr std::size_t step = 64;

}  // namespace

PlaceMarker::PlaceMarker(const LiteralMatcher& term, const PlaceBytes& worths, const Piece& piece,
                         const TermMarks& marks)
    : term_(term), worths_(worths), piece_(piece), marks_(marks), entry_(piece.first), end_(piece.end())
{
    const std::size_t size = std::min(term.term().size(), sizeof head_);
    std::memcpy(&head_, term.term().data(), size);
    std::memset(&headBits_, 0xFF, size);
}

bool PlaceMarker::mark(std::size_t first, std::size_t end, std::size_t mostPlaces)
{
    entry_ = first;
    end_ = end;
    const char* const bytes = piece_.names.bytes();
    const Bytes16 firstByte(static_cast<std::uint8_t>(term_.term()[term_.probe(0)]));
    const Bytes16 secondByte(static_cast<std::uint8_t>(term_.term()[term_.probe(1)]));
    const char* const firsts = bytes + term_.probe(0);
    const char* const seconds = bytes + term_.probe(1);
    const std::size_t endByte = piece_.names.cell(end) * NameBlock::cellSize;
    for (std::size_t at = piece_.names.cell(first) * NameBlock::cellSize; at < endByte; at += step) {
        std::uint64_t places = pairsAt(firsts + at, firstByte, seconds + at, secondByte);
        if (places == 0)
            continue;
        if (endByte - at < step)  // what begins behind the end belongs to the next entry
            places &= (std::uint64_t{1} << (endByte - at)) - 1;
        for (; places != 0; places &= places - 1) {
            if (mostPlaces-- == 0)
                return false;
            tryAt(at + static_cast<std::size_t>(std::countr_zero(places)));
        }
    }
    return true;
}

void PlaceMarker::tryAt(std::size_t place)
{
    if (standsAt(piece_.names.bytes() + place))
        found(place);
}

bool PlaceMarker::standsAt(const char* place) const
{
    std::uint64_t bytes;
    std::memcpy(&bytes, place, sizeof bytes);
    if (((bytes ^ head_) & headBits_) != 0)
        return false;
    const std::string& term = term_.term();
    return term.size() <= sizeof head_ ||
           std::memcmp(place + sizeof head_, term.data() + sizeof head_, term.size() - sizeof head_) == 0;
}

void PlaceMarker::found(std::size_t place)
{
    ++placesFound_;
    goTo(place / NameBlock::cellSize);
    const char* const bytes = piece_.names.bytes() + place;
    const bool left = isWord(bytes[-1]) != term_.beginsInWord();
    const bool right = isWord(bytes[term_.term().size()]) != term_.endsInWord();
    const bool inName = place / NameBlock::cellSize < piece_.names.keywordsCell(entry_);
    std::uint8_t worth = (inName ? worths_.name : worths_.keywords)[left][right];
    if (inName && place == piece_.names.cell(entry_) * NameBlock::cellSize)
        worth = worths_.begin[right];
    const std::size_t number = entry_ - piece_.first;
    const std::uint64_t bit = std::uint64_t{1} << number % 64;
    std::uint64_t& holders = marks_.holds[number / 64];
    std::uint8_t& best = marks_.worths[number];
    best = (holders & bit) == 0 ? worth : std::min(best, worth);
    holders |= bit;
}

// Goes on to the entry with this cell: in leaps, then by counting the entries in the last one. How far it is cannot be
// guessed, so a search with a branch on each comparison would take several times as long.
void PlaceMarker::goTo(std::size_t cell)
{
    constexpr std::size_t leap = 16;
    const std::uint32_t* const cells = piece_.names.cells();
    while (entry_ + leap < end_ && cells[entry_ + leap] <= cell)
        entry_ += leap;
    const std::size_t most = std::min(leap, end_ - entry_);
    const std::uint32_t* const known = cells + entry_;
    for (std::size_t i = 1; i < most; ++i)
        entry_ += known[i] <= cell ? 1 : 0;
}

}  // namespace Library::Search::detail
