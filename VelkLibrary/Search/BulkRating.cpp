#include <VelkLibrary/Search/detail/BulkRating.h>

#include <VelkLibrary/Search/detail/CompiledSearch.h>
#include <VelkLibrary/Search/detail/NameWorths.h>
#include <VelkLibrary/Search/detail/Piece.h>
#include <VelkLibrary/Search/detail/SearchPlan.h>
#include <VelkLibrary/Search/detail/TermRows.h>

#include <algorithm>
#include <vector>

namespace Library::Search::detail {
namespace {

// The texts of a piece of this size and what is known about them stay in the second-level cache.
constexpr std::size_t mostEntries = 2048;
constexpr std::size_t mostBytes = 512 << 10;
constexpr std::size_t mostRowBytes = 512 << 10;

// What is rated are items. A folder is worth one step less in each kind of match.
constexpr std::uint8_t folderStep = 1;
static_assert(folderSlots.exact == itemSlots.exact + folderStep &&
              folderSlots.beginsWithWord == itemSlots.beginsWithWord + folderStep &&
              folderSlots.containsWord == itemSlots.containsWord + folderStep &&
              folderSlots.beginsWithSequence == itemSlots.beginsWithSequence + folderStep &&
              folderSlots.wordBeginsWithSequence == itemSlots.wordBeginsWithSequence + folderStep &&
              folderSlots.containsSequence == itemSlots.containsSequence + folderStep);

constexpr PlaceBytes anyMatchBytes(itemWorths.anyMatch);
constexpr PlaceBytes wholeWordBytes(itemWorths.wholeWords);

/// How many entries a piece has, so that all rows of a search with many terms stay in the cache, too.
std::size_t pieceSize(const CompiledSearch& search, const SearchPlan& plan, std::size_t wanted)
{
    const std::size_t bytesPer64 = search.terms.size() * (64 + 4 * 8) + plan.nodeCount() * 2 * 8;
    const std::size_t most = std::clamp<std::size_t>(mostRowBytes / bytesPer64 * 64, 64, mostEntries);
    return std::min(most, (wanted + 63) / 64 * 64);
}

using Set = std::uint64_t*;
using ConstSet = const std::uint64_t*;

/// Rates piece after piece. In each, the steps of the plan are gone through: which entries come to which node. Those
/// that come to an end are rated, without the group's exclusions. Then the steps are gone through backwards: which
/// entries come from which node to an end; so each term knows the entries in whose ratings it takes part.
class BulkRating
{
public:
    BulkRating(const CompiledSearch& search, const SearchPlan& plan, std::size_t wanted)
        : search_(search),
          plan_(plan),
          entries_(pieceSize(search, plan, wanted)),
          words_(entries_ / 64),
          terms_(search, search.wordMatchesOnly ? wholeWordBytes : anyMatchBytes, entries_, mostBytes),
          reached_(plan.nodeCount() * words_),
          rated_(plan.nodeCount() * words_),
          counting_(search.terms.size() * words_),
          wholeWords_(search.wordMatchesOnly ? search.terms.size() * words_ : 0),
          set_(words_),
          exactCandidates_(words_),
          best_(entries_)
    {}

    void rate(const NameBlock& names, std::size_t begin, std::span<std::uint8_t> priorities)
    {
        for (std::size_t at = 0; at < priorities.size();) {
            const Piece piece = nextPiece(names, begin + at, priorities.size() - at);
            ratePiece(piece, priorities.data() + at);
            at += piece.count;
        }
    }

private:
    Piece nextPiece(const NameBlock& names, std::size_t first, std::size_t wanted) const
    {
        const std::size_t count = std::min(entries_, wanted);
        const std::uint32_t* const cells = names.cells() + first;
        const std::size_t limit = *cells + mostBytes / NameBlock::cellSize;
        const auto fitting = static_cast<std::size_t>(std::upper_bound(cells, cells + count, limit) - cells);
        return {names, first, cells[count] <= limit ? count : std::max<std::size_t>(fitting - 1, 1)};
    }

    void ratePiece(const Piece& piece, std::uint8_t* priorities)
    {
        terms_.begin();
        std::fill(rated_.begin(), rated_.end(), 0);
        std::fill(counting_.begin(), counting_.end(), 0);
        std::fill(exactCandidates_.begin(), exactCandidates_.end(), 0);
        terms_.lookForTogether(plan_.firstTerms(), piece);
        begin(piece);
        for (std::size_t step = 0; step < plan_.steps().size();)
            step = goOn(piece, step);
        for (const SearchPlan::End& end : plan_.ends())
            rateEnd(piece, end);
        if (search_.wordMatchesOnly)
            keepWholeWords(piece);
        for (std::size_t step = plan_.steps().size(); step > 0; --step)
            goBack(piece, plan_.steps()[step - 1]);
        write(piece, priorities);
    }

    Set reached(std::size_t node) { return reached_.data() + node * words_; }
    Set rated(std::size_t node) { return rated_.data() + node * words_; }
    Set counting(std::size_t term) { return counting_.data() + term * words_; }
    Set wholeWords(std::size_t term) { return wholeWords_.data() + term * words_; }

    /// All entries are at the first node.
    void begin(const Piece& piece)
    {
        std::fill(reached_.begin(), reached_.end(), 0);
        std::fill_n(reached(0), piece.words(), ~std::uint64_t{0});
        if (piece.count % 64 != 0)
            reached(0)[piece.words() - 1] = (std::uint64_t{1} << piece.count % 64) - 1;
    }

    /// Goes on by all steps with the term of this one. Returns the step behind them.
    std::size_t goOn(const Piece& piece, std::size_t step)
    {
        const std::vector<SearchPlan::Step>& steps = plan_.steps();
        const std::uint32_t term = steps[step].term;
        std::size_t end = step;
        std::fill(set_.begin(), set_.end(), 0);
        for (; end < steps.size() && steps[end].term == term; ++end)
            addTo(set_.data(), piece, reached(steps[end].from));
        terms_.lookFor(term, piece, set_.data());
        for (; step < end; ++step)
            addTo(reached(steps[step].to), piece, reached(steps[step].from), terms_.holders(term));
        return end;
    }

    static void addTo(Set sum, const Piece& piece, ConstSet set)
    {
        for (std::size_t word = 0; word < piece.words(); ++word)
            sum[word] |= set[word];
    }

    /// Adds what is in both sets.
    static void addTo(Set sum, const Piece& piece, ConstSet a, ConstSet b)
    {
        for (std::size_t word = 0; word < piece.words(); ++word)
            sum[word] |= a[word] & b[word];
    }

    /// Takes the excluded entries off those that have come to an end. An exact name counts although its terms may not
    /// be whole words.
    void rateEnd(const Piece& piece, const SearchPlan::End& end)
    {
        const ConstSet row = reached(end.node);
        std::uint64_t all = 0;
        for (std::size_t word = 0; word < piece.words(); ++word)
            all |= set_[word] = row[word];
        if (all == 0)
            return;
        for (const std::uint32_t term : search_.excluded(search_.groups[end.group])) {
            terms_.lookFor(term, piece, set_.data());
            const ConstSet holders = terms_.holders(term);
            for (std::size_t word = 0; word < piece.words(); ++word)
                set_[word] &= ~holders[word];
        }
        addTo(exactCandidates_.data(), piece, set_.data());
        addTo(rated(end.node), piece, set_.data());
    }

    /// From now on only whole words lead from node to node.
    void keepWholeWords(const Piece& piece)
    {
        std::fill(wholeWords_.begin(), wholeWords_.end(), 0);
        begin(piece);
        for (const SearchPlan::Step& step : plan_.steps()) {
            const Set row = wholeWords(step.term);
            const std::uint8_t* const worths = terms_.worths(step.term);
            forEachEntry(terms_.holders(step.term), piece.words(), [&](std::size_t number) {
                row[number / 64] |= std::uint64_t{worths[number] != noWorthByte} << number % 64;
            });
            addTo(reached(step.to), piece, reached(step.from), row);
        }
    }

    /// Goes back from node to node with the entries that are rated.
    void goBack(const Piece& piece, const SearchPlan::Step& step)
    {
        const ConstSet holders = search_.wordMatchesOnly ? wholeWords(step.term) : terms_.holders(step.term);
        const ConstSet before = reached(step.from);
        const ConstSet behind = rated(step.to);
        const Set sum = rated(step.from);
        const Set term = counting(step.term);
        for (std::size_t word = 0; word < piece.words(); ++word) {
            const std::uint64_t entries = before[word] & holders[word] & behind[word];
            sum[word] |= entries;
            term[word] |= entries;
        }
    }

    /// The best worths of all terms that count in each entry.
    const std::uint8_t* bestWorths(const Piece& piece)
    {
        std::uint8_t* const best = best_.data();
        std::fill_n(best, piece.count, noWorthByte);
        for (std::uint32_t term = 0; term < search_.terms.size(); ++term) {
            const std::uint8_t* const worths = terms_.worths(term);
            forEachEntry(counting(term), piece.words(),
                         [=](std::size_t number) { best[number] = std::min(best[number], worths[number]); });
        }
        return best;
    }

    void write(const Piece& piece, std::uint8_t* priorities)
    {
        const std::uint8_t* const best = search_.terms.size() == 1 ? terms_.worths(0) : bestWorths(piece);
        std::fill_n(priorities, piece.count, std::uint8_t{Invalid});
        forEachEntry(exactCandidates_.data(), piece.words(), [&](std::size_t number) {
            const std::size_t entry = piece.first + number;
            std::uint8_t worth = best[number];
            if (plan_.mayBeText(piece.names.nameSize(entry)) && isExact(piece, number))
                worth = static_cast<std::uint8_t>(itemSlots.exact);
            if (worth != noWorthByte)
                priorities[number] = static_cast<std::uint8_t>(worth + (piece.names.isFolder(entry) ? folderStep : 0));
        });
    }

    /// Whether the name is the text of a group that does not exclude it.
    bool isExact(const Piece& piece, std::size_t number) const
    {
        const auto groups = plan_.groupsWithText(piece.names.name(piece.first + number));
        return std::any_of(groups.begin(), groups.end(), [&](const SearchPlan::ExactText& text) {
            const auto excluded = search_.excluded(search_.groups[text.group]);
            return std::none_of(excluded.begin(), excluded.end(), [&](std::uint32_t term) {
                return (terms_.holders(term)[number / 64] >> number % 64 & 1) != 0;
            });
        });
    }

    const CompiledSearch& search_;
    const SearchPlan& plan_;
    const std::size_t entries_;  // of a piece, at most
    const std::size_t words_;
    TermRows terms_;
    std::vector<std::uint64_t> reached_;     // a row per node: the entries that come to it from the first
    std::vector<std::uint64_t> rated_;       // a row per node: those that come from it to an end
    std::vector<std::uint64_t> counting_;    // a row per term: the entries in whose ratings it takes part
    std::vector<std::uint64_t> wholeWords_;  // a row per term: the entries that have it as a word, if only words count
    std::vector<std::uint64_t> set_;
    std::vector<std::uint64_t> exactCandidates_;
    std::vector<std::uint8_t> best_;
};

}  // namespace

void rateInBulk(const CompiledSearch& search, const SearchPlan& plan, const NameBlock& names, std::size_t begin,
                std::span<std::uint8_t> priorities)
{
    if (search.groups.empty())
        std::fill(priorities.begin(), priorities.end(), std::uint8_t{Invalid});
    else
        BulkRating(search, plan, priorities.size()).rate(names, begin, priorities);
}

}  // namespace Library::Search::detail
