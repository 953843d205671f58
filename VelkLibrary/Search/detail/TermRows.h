#pragma once

#include <VelkLibrary/Search/detail/CompiledSearch.h>
#include <VelkLibrary/Search/detail/MaskMarker.h>
#include <VelkLibrary/Search/detail/PairScan.h>
#include <VelkLibrary/Search/detail/PatternScan.h>
#include <VelkLibrary/Search/detail/Piece.h>
#include <VelkLibrary/Search/detail/PlaceMarker.h>

#include <cstddef>
#include <cstdint>
#include <memory>
#include <span>
#include <vector>

namespace Library::Search::detail {

/// What is known of each term in the entries of a piece. A term is looked for only in the entries for which somebody
/// asks, and in each of them once. Learns from piece to piece which terms are frequent.
class TermRows
{
public:
    /// For pieces of at most `mostEntries`, which is a multiple of 64. Those with more bytes than `mostBytes` take more
    /// time.
    TermRows(const CompiledSearch& search, const PlaceBytes& worths, std::size_t mostEntries, std::size_t mostBytes);

    /// Forgets what was known, for the next piece.
    void begin();

    /// Looks for terms in all entries, at once as far as that saves time. What this leaves undone lookFor() does.
    void lookForTogether(std::span<const std::uint32_t> terms, const Piece& piece);

    /// Looks for a term in the entries of a set.
    void lookFor(std::uint32_t term, const Piece& piece, const std::uint64_t* entries);

    /// The entries that hold a term, as far as it was looked for.
    const std::uint64_t* holders(std::uint32_t term) const noexcept { return holds_.data() + term * words_; }

    /// The worths of a term in the entries that hold it.
    const std::uint8_t* worths(std::uint32_t term) const noexcept { return worths_.data() + term * words_ * 64; }

private:
    /// What was learnt of a term.
    struct Frequency
    {
        bool isHigh;
        bool isProven = false;
    };

    void chooseTogether(std::span<const std::uint32_t> terms);
    template <typename Scan>
    bool lookWith(std::unique_ptr<Scan>& scan, std::span<const std::uint32_t> terms);
    void lookEverywhere(std::uint32_t term, const Piece& piece);
    void lookOneByOne(std::uint32_t term, const Piece& piece, const std::uint64_t* entries);
    TermMarks marks(std::uint32_t term) noexcept
    {
        return {holds_.data() + term * words_, worths_.data() + term * words_ * 64};
    }

    const CompiledSearch& search_;
    const PlaceBytes worthBytes_;
    const std::size_t words_;
    const std::size_t mostBytes_;
    std::vector<std::uint64_t> known_;  // a row per term: where it was looked for
    std::vector<std::uint64_t> holds_;
    std::vector<std::uint8_t> worths_;
    std::vector<Frequency> frequencies_;
    CellRows cellRows_;
    std::unique_ptr<PatternScan> fewTerms_;  // made when they are first needed
    std::unique_ptr<PairScan> manyTerms_;
    TermScan* together_ = nullptr;  // one of them; null if no terms are looked for together
    std::vector<PlaceMarker> markers_;
    bool isChosen_ = false;  // what together_ looks for
};

}  // namespace Library::Search::detail
