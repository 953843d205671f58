#include <VelkLibrary/Search/detail/TermRows.h>

#include <VelkLibrary/Search/detail/PlaceMarker.h>

#include <algorithm>
#include <bit>
#include <limits>

namespace Library::Search::detail {
namespace {

// Looking at all entries of a piece takes less time than looking at more than this part of them one by one.
constexpr std::size_t worthwhilePart = 8;

// A term that fewer than this part of the entries hold is found faster place by place.
constexpr std::size_t frequentPart = 4;

constexpr std::size_t anyNumber = std::numeric_limits<std::size_t>::max();

std::size_t countOf(const std::uint64_t* set, std::size_t words)
{
    std::size_t count = 0;
    for (std::size_t word = 0; word < words; ++word)
        count += static_cast<std::size_t>(std::popcount(set[word]));
    return count;
}

}  // namespace

TermRows::TermRows(const CompiledSearch& search, const PlaceBytes& worths, std::size_t mostEntries,
                   std::size_t mostBytes)
    : search_(search),
      worthBytes_(worths),
      words_(mostEntries / 64),
      mostBytes_(mostBytes),
      known_(search.terms.size() * words_),
      holds_(search.terms.size() * words_),
      worths_(search.terms.size() * mostEntries),
      cellRows_(mostBytes)
{
    frequencies_.reserve(search.terms.size());
    for (const LiteralMatcher& term : search.terms)
        frequencies_.push_back({.isHigh = term.term().size() == 1});
}

void TermRows::begin()
{
    std::fill(known_.begin(), known_.end(), 0);
    std::fill(holds_.begin(), holds_.end(), 0);
}

void TermRows::chooseTogether(std::span<const std::uint32_t> terms)
{
    isChosen_ = true;
    together_ = nullptr;
    if (!Velk::Platform::BytePatterns::isQuick() || !lookWith(fewTerms_, terms))
        lookWith(manyTerms_, terms);
}

// Takes the terms that are long enough and have not turned out to be frequent, if their number suits this way.
template <typename Scan>
bool TermRows::lookWith(std::unique_ptr<Scan>& scan, std::span<const std::uint32_t> terms)
{
    const auto isFit = [&](std::uint32_t term) {
        return Scan::canFind(search_.terms[term]) && !frequencies_[term].isHigh;
    };
    const auto count = static_cast<std::size_t>(std::count_if(terms.begin(), terms.end(), isFit));
    if (count < Scan::fewestTerms || count > Scan::mostTerms)
        return false;
    if (!scan)
        scan = std::make_unique<Scan>();
    scan->clear();
    for (const std::uint32_t term : terms) {
        if (isFit(term))
            scan->add(term, search_.terms[term]);
    }
    scan->close();
    markers_.reserve(count);
    together_ = scan.get();
    return true;
}

void TermRows::lookForTogether(std::span<const std::uint32_t> terms, const Piece& piece)
{
    if (!isChosen_)
        chooseTogether(terms);
    if (together_ == nullptr)
        return;
    markers_.clear();
    for (const std::uint32_t term : together_->numbers()) {
        markers_.emplace_back(search_.terms[term], worthBytes_, piece, marks(term));
        std::fill_n(known_.data() + term * words_, piece.words(), ~std::uint64_t{0});
    }
    together_->mark(piece, markers_);
    for (std::size_t i = 0; i < markers_.size(); ++i) {
        if (markers_[i].placesFound() <= piece.count)
            continue;
        frequencies_[together_->numbers()[i]] = {.isHigh = true, .isProven = true};
        isChosen_ = false;
    }
}

void TermRows::lookFor(std::uint32_t term, const Piece& piece, const std::uint64_t* entries)
{
    std::uint64_t* const known = known_.data() + term * words_;
    std::size_t missing = 0;
    for (std::size_t word = 0; word < piece.words(); ++word)
        missing += static_cast<std::size_t>(std::popcount(entries[word] & ~known[word]));
    if (missing == 0)
        return;
    if (missing <= piece.count / worthwhilePart)
        return lookOneByOne(term, piece, entries);
    lookEverywhere(term, piece);
    std::fill_n(known, piece.words(), ~std::uint64_t{0});
}

void TermRows::lookOneByOne(std::uint32_t term, const Piece& piece, const std::uint64_t* entries)
{
    std::uint64_t* const known = known_.data() + term * words_;
    const TermMarks termMarks = marks(term);
    PlaceMarker marker(search_.terms[term], worthBytes_, piece, termMarks);
    for (std::size_t word = 0; word < piece.words(); ++word) {
        const std::uint64_t missing = entries[word] & ~known[word];
        known[word] |= missing;
        forEachEntry(&missing, 1, [&](std::size_t number) {
            const std::size_t entry = piece.first + word * 64 + number;
            marker.mark(entry, entry + 1, anyNumber);
        });
    }
}

void TermRows::lookEverywhere(std::uint32_t term, const Piece& piece)
{
    const LiteralMatcher& matcher = search_.terms[term];
    const TermMarks termMarks = marks(term);
    std::fill_n(termMarks.holds, piece.words(), 0);
    Frequency& frequency = frequencies_[term];
    if (piece.bytes() > mostBytes_ || !frequency.isHigh) {
        const std::size_t mostPlaces = piece.bytes() > mostBytes_ ? anyNumber : piece.count;
        if (PlaceMarker(matcher, worthBytes_, piece, termMarks).mark(piece.first, piece.end(), mostPlaces))
            return;
        frequency = {.isHigh = true, .isProven = true};
    }
    MaskMarker(matcher, worthBytes_, piece, cellRows_).mark(termMarks);
    frequency.isHigh = frequency.isProven || countOf(termMarks.holds, piece.words()) > piece.count / frequentPart;
}

}  // namespace Library::Search::detail
