#include "host/installation/IndexRating.h"

#include "host/support/Parallel.h"

#include <algorithm>
#include <chrono>
#include <span>

namespace VelkHost {
namespace {

using Clock = std::chrono::steady_clock;

// To rate a few entries that nobody asked for is quicker than to begin again behind them.
constexpr std::size_t smallGap = 1'000;

// How much a thread takes at a time: what takes about so long, and so much at first.
constexpr std::chrono::microseconds pieceTime{700};
constexpr std::size_t firstPiece = 2'048;
constexpr std::size_t smallestPiece = 64;
constexpr std::size_t largestPiece = 65'536;

std::size_t nextPieceSize(std::size_t rated, Clock::duration time)
{
    const double quickness = std::chrono::duration<double>(pieceTime) /
                             std::max(std::chrono::duration<double>(time), std::chrono::duration<double>(1e-7));
    const double size = static_cast<double>(rated) * std::clamp(quickness, 0.01, 4.0);
    return std::clamp(static_cast<std::size_t>(size), smallestPiece, largestPiece);
}

}  // namespace

IndexRating::IndexRating(const IndexState& state, const std::vector<bool>& isSearched, bool folders, bool items)
    : state_(state), isSearched_(isSearched), folders_(folders), items_(items), priorities_(state.numbers())
{
    findRanges();
}

bool IndexRating::run(const Library::Search::Info& info, const std::stop_token& stop)
{
    const LibraryResultCategorizer categorizer(info);
    const std::size_t entries = ratedFolders_ + ratedItems_;
    onThreads(entries > firstPiece ? threadCount() : 1, [&] { work(categorizer, stop); });
    return !stop.stop_requested();
}

void IndexRating::findRanges()
{
    for (std::size_t slot = 0; slot < state_.slots().size(); ++slot)
        for (std::size_t part = 0; part < state_.slots()[slot].libraries.size(); ++part)
            addPart(slot, part);
}

void IndexRating::addPart(std::size_t slot, std::size_t part)
{
    const std::uint32_t library = state_.slots()[slot].libraries[part];
    if (library == IndexState::noLibrary || !isSearched_[library])
        return;
    const IndexBlock::Part& entries = state_.slots()[slot].block->parts()[part];
    const std::size_t allFolders = entries.library->catalog->folders.size();
    const std::size_t folders = std::min(std::max(allFolders, entries.place) - entries.place, entries.count);
    const std::size_t begin = slot * IndexBlock::most + entries.begin;
    if (folders_)
        addRange({begin, begin + folders});
    if (items_)
        addRange({begin + folders, begin + entries.count});
    ratedFolders_ += folders_ ? folders : 0;
    ratedItems_ += items_ ? entries.count - folders : 0;
}

void IndexRating::addRange(const Range& range)
{
    if (range.begin == range.end)
        return;
    const bool sameBlock =
        !ranges_.empty() && ranges_.back().begin / IndexBlock::most == range.begin / IndexBlock::most;
    if (!sameBlock || range.begin - ranges_.back().end > smallGap) {
        ranges_.push_back(range);
        return;
    }
    if (range.begin > ranges_.back().end)
        gaps_.push_back({ranges_.back().end, range.begin});
    ranges_.back().end = range.end;
}

/// A piece that no other thread has; an empty one when there are no more.
IndexRating::Range IndexRating::take(std::size_t most)
{
    const std::lock_guard lock(mutex_);
    if (nextRange_ == ranges_.size())
        return {};
    const Range& range = ranges_[nextRange_];
    const std::size_t begin = std::max(nextEntry_, range.begin);
    const std::size_t end = std::min(begin + most, range.end);
    nextEntry_ = end;
    nextRange_ += end == range.end ? 1 : 0;
    return {begin, end};
}

void IndexRating::work(const LibraryResultCategorizer& categorizer, const std::stop_token& stop)
{
    Counts counts{};
    std::size_t size = firstPiece;
    while (!stop.stop_requested()) {
        const Range piece = take(size);
        if (piece.begin == piece.end)
            break;
        const Clock::time_point start = Clock::now();
        categorizer.categorize(state_.slots()[piece.begin / IndexBlock::most].block->names(),
                               piece.begin % IndexBlock::most,
                               std::span(&priorities_[piece.begin], piece.end - piece.begin));
        clearGaps(piece);
        count(piece, counts);
        size = nextPieceSize(piece.end - piece.begin, Clock::now() - start);
    }
    const std::lock_guard lock(mutex_);
    for (std::size_t i = 0; i < counts.size(); ++i)
        counts_[i] += counts[i];
}

void IndexRating::clearGaps(const Range& range)
{
    auto gap = std::partition_point(gaps_.begin(), gaps_.end(),
                                    [&](const Range& candidate) { return candidate.end <= range.begin; });
    for (; gap != gaps_.end() && gap->begin < range.end; ++gap) {
        const std::size_t begin = std::max(gap->begin, range.begin);
        std::fill_n(&priorities_[begin], std::min(gap->end, range.end) - begin, std::uint8_t{0});
    }
}

void IndexRating::count(const Range& range, Counts& counts) const
{
    // Several tables, since counting twice in the same place waits for the first time.
    std::array<Counts, 4> tables{};
    forEachHit(range, [&](EntryNumber entry) { ++tables[entry % tables.size()][priorities_[entry] % priorityCount]; });
    for (const Counts& table : tables)
        for (std::size_t i = 0; i < counts.size(); ++i)
            counts[i] += table[i];
}

}  // namespace VelkHost
