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
    const std::size_t bytesPer64 = search.terms.size() * (64 + 3 * 8) + plan.nodes().size() * 2 * 8;
    const std::size_t most = std::clamp<std::size_t>(mostRowBytes / bytesPer64 * 64, 64, mostEntries);
    return std::min(most, (wanted + 63) / 64 * 64);
}

using Set = std::uint64_t*;
using ConstSet = const std::uint64_t*;

/// Rates piece after piece. In each, the nodes of the plan are gone through from the rarest terms to the most frequent
/// ones: which entries hold all terms up to a node. At its leaf a group's exclusions are taken off; what is left goes
/// back up the tree, so that in the end each term knows the entries in which it counts.
class BulkRating
{
public:
    BulkRating(const CompiledSearch& search, const SearchPlan& plan, std::size_t wanted)
        : search_(search),
          plan_(plan),
          entries_(pieceSize(search, plan, wanted)),
          words_(entries_ / 64),
          terms_(search, search.wordMatchesOnly ? wholeWordBytes : anyMatchBytes, entries_, mostBytes),
          reached_(plan.nodes().size() * words_),
          rated_(plan.nodes().size() * words_),
          counting_(search.terms.size() * words_),
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
        for (std::size_t node = 0; node < plan_.nodes().size();)
            node = reach(piece, node);
        for (std::size_t group = 0; group < search_.groups.size(); ++group)
            rateGroup(piece, group);
        for (std::size_t node = plan_.nodes().size(); node > 0; --node)
            passUp(piece, node - 1);
        write(piece, priorities);
    }

    Set reached(std::size_t node) { return reached_.data() + node * words_; }
    Set rated(std::size_t node) { return rated_.data() + node * words_; }
    Set counting(std::size_t term) { return counting_.data() + term * words_; }

    /// Fills the rows of all nodes with the term of this one. Returns the node behind them.
    std::size_t reach(const Piece& piece, std::size_t node)
    {
        const std::uint32_t term = plan_.nodes()[node].term;
        std::size_t end = node;
        std::fill(set_.begin(), set_.end(), 0);
        for (; end < plan_.nodes().size() && plan_.nodes()[end].term == term; ++end)
            addParent(piece, plan_.nodes()[end].parent);
        terms_.lookFor(term, piece, set_.data());
        const ConstSet holders = terms_.holders(term);
        for (; node < end; ++node) {
            const std::uint32_t parent = plan_.nodes()[node].parent;
            const Set row = reached(node);
            if (parent == SearchPlan::none) {
                std::copy_n(holders, piece.words(), row);
                continue;
            }
            const ConstSet before = reached(parent);
            for (std::size_t word = 0; word < piece.words(); ++word)
                row[word] = before[word] & holders[word];
        }
        return end;
    }

    /// Adds the entries that have what comes before a node to the set.
    void addParent(const Piece& piece, std::uint32_t parent)
    {
        if (parent == SearchPlan::none) {
            for (std::size_t word = 0; word < piece.words(); ++word)
                set_[word] = ~std::uint64_t{0};
            if (piece.count % 64 != 0)
                set_[piece.words() - 1] = (std::uint64_t{1} << piece.count % 64) - 1;
            return;
        }
        const ConstSet row = reached(parent);
        for (std::size_t word = 0; word < piece.words(); ++word)
            set_[word] |= row[word];
    }

    /// Takes the excluded entries off those that have all terms of the group. An exact name counts although its terms
    /// may not be whole words.
    void rateGroup(const Piece& piece, std::size_t group)
    {
        const ConstSet row = reached(plan_.leaf(group));
        std::uint64_t all = 0;
        for (std::size_t word = 0; word < piece.words(); ++word)
            all |= set_[word] = row[word];
        if (all == 0)
            return;
        for (const std::uint32_t term : search_.excluded(search_.groups[group])) {
            terms_.lookFor(term, piece, set_.data());
            const ConstSet holders = terms_.holders(term);
            for (std::size_t word = 0; word < piece.words(); ++word)
                set_[word] &= ~holders[word];
        }
        for (std::size_t word = 0; word < piece.words(); ++word)
            exactCandidates_[word] |= set_[word];
        if (search_.wordMatchesOnly)
            keepWholeWords(piece, group);
        const Set sum = rated(plan_.leaf(group));
        for (std::size_t word = 0; word < piece.words(); ++word)
            sum[word] |= set_[word];
    }

    void keepWholeWords(const Piece& piece, std::size_t group)
    {
        for (const std::uint32_t term : search_.required(search_.groups[group])) {
            const std::uint8_t* const worths = terms_.worths(term);
            forEachEntry(set_.data(), piece.words(), [&](std::size_t number) {
                if (worths[number] == noWorthByte)
                    set_[number / 64] &= ~(std::uint64_t{1} << number % 64);
            });
        }
    }

    void passUp(const Piece& piece, std::size_t node)
    {
        const SearchPlan::Node& place = plan_.nodes()[node];
        const ConstSet row = rated(node);
        const Set term = counting(place.term);
        for (std::size_t word = 0; word < piece.words(); ++word)
            term[word] |= row[word];
        if (place.parent == SearchPlan::none)
            return;
        const Set parent = rated(place.parent);
        for (std::size_t word = 0; word < piece.words(); ++word)
            parent[word] |= row[word];
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
    std::vector<std::uint64_t> reached_;   // a row per node: the entries that hold all terms up to it
    std::vector<std::uint64_t> rated_;     // a row per node: the entries that some group from it on rates
    std::vector<std::uint64_t> counting_;  // a row per term: the entries in whose ratings it takes part
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
