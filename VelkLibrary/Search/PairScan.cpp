#include <VelkLibrary/Search/detail/PairScan.h>

#include <VelkLibrary/Search/detail/ByteFrequency.h>

#include <algorithm>
#include <array>
#include <cstring>

namespace Library::Search::detail {
namespace {

constexpr std::size_t pairStep = 2;

// So many bytes are gone through before what was found in them is looked at again.
constexpr std::size_t pairStretch = 2048;
constexpr std::size_t pairBlock = 32;

std::uint16_t pairAt(const char* bytes)
{
    std::uint16_t pair;
    std::memcpy(&pair, bytes, sizeof pair);
    return pair;
}

std::uint64_t eightAt(const char* bytes)
{
    std::uint64_t eight;
    std::memcpy(&eight, bytes, sizeof eight);
    return eight;
}

}  // namespace

/// Where pairs of terms stand in a stretch of the texts.
struct PairScan::Places
{
    std::size_t begin;
    std::size_t end;
    std::size_t blockCount = 0;
    std::size_t pairCount = 0;
    std::array<std::size_t, pairStretch / pairBlock> blocks;
    std::array<std::size_t, pairStretch / pairStep> pairs;
};

PairScan::PairScan() : isProbe_(1 << 16), first_(1 << 16) {}

void PairScan::add(std::uint32_t number, const LiteralMatcher& term)
{
    numbers_.push_back(number);
    addProbe(term, 0);
    addProbe(term, 1);
}

// Of the pairs at even or odd places the one with the rarest bytes.
void PairScan::addProbe(const LiteralMatcher& term, std::size_t parity)
{
    const char* const bytes = term.term().data();
    const auto frequencyAt = [&](std::size_t place) {
        return frequencyOf(bytes[place]) + frequencyOf(bytes[place + 1]);
    };
    std::size_t best = parity;
    for (std::size_t place = parity; place + 1 < term.term().size(); place += pairStep) {
        if (frequencyAt(place) < frequencyAt(best))
            best = place;
    }
    Probe probe{pairAt(bytes + best), static_cast<std::uint8_t>(best), static_cast<std::uint32_t>(numbers_.size() - 1)};
    const std::size_t headSize = std::min(term.term().size(), sizeof probe.head);
    std::memcpy(&probe.head, bytes, headSize);
    std::memset(&probe.headBits, 0xFF, headSize);
    probes_.push_back(probe);
}

void PairScan::close()
{
    std::sort(probes_.begin(), probes_.end(), [](const Probe& a, const Probe& b) { return a.pair < b.pair; });
    for (std::size_t i = probes_.size(); i > 0; --i) {
        isProbe_[probes_[i - 1].pair] = 1;
        first_[probes_[i - 1].pair] = static_cast<std::uint16_t>(i - 1);
    }
}

void PairScan::clear() noexcept
{
    for (const Probe& probe : probes_)
        isProbe_[probe.pair] = 0;
    probes_.clear();
    numbers_.clear();
}

void PairScan::mark(const Piece& piece, std::vector<PlaceMarker>& markers) const
{
    const char* const bytes = piece.names.bytes();
    const std::size_t end = piece.names.cell(piece.end()) * NameBlock::cellSize;
    Places places{};
    for (std::size_t at = piece.names.cell(piece.first) * NameBlock::cellSize; at < end; at += pairStretch) {
        places.begin = at;
        places.end = std::min(at + pairStretch, end);
        gatherBlocks(bytes, places);
        gatherPairs(bytes, places);
        for (std::size_t i = 0; i < places.pairCount; ++i)
            tryTerms(places.pairs[i], piece, markers);
    }
}

/// Gathers the blocks that hold a pair at some step.
void PairScan::gatherBlocks(const char* bytes, Places& places) const
{
    const std::uint8_t* const isProbe = isProbe_.data();
    std::size_t count = 0;
    for (std::size_t at = places.begin; at < places.end; at += pairBlock) {
        unsigned any = 0;
        for (std::size_t i = 0; i < pairBlock; i += pairStep)
            any |= isProbe[pairAt(bytes + at + i)];
        places.blocks[count] = at;
        count += any;
    }
    places.blockCount = count;
}

/// Gathers the places of the pairs themselves.
void PairScan::gatherPairs(const char* bytes, Places& places) const
{
    const std::uint8_t* const isProbe = isProbe_.data();
    std::size_t count = 0;
    for (std::size_t i = 0; i < places.blockCount; ++i) {
        const std::size_t begin = places.blocks[i];
        for (std::size_t at = begin; at < begin + pairBlock; at += pairStep) {
            places.pairs[count] = at;
            count += isProbe[pairAt(bytes + at)];
        }
    }
    while (count > 0 && places.pairs[count - 1] >= places.end)
        --count;
    places.pairCount = count;
}

// The places of a term come in their order, but for those that overlap, which are in one entry.
void PairScan::tryTerms(std::size_t at, const Piece& piece, std::vector<PlaceMarker>& markers) const
{
    const char* const bytes = piece.names.bytes();
    const std::size_t begin = piece.names.cell(piece.first) * NameBlock::cellSize;
    const Pair pair = pairAt(bytes + at);
    for (std::size_t i = first_[pair]; i < probes_.size() && probes_[i].pair == pair; ++i) {
        const Probe& probe = probes_[i];
        const auto isHead = [&](const char* place) { return ((eightAt(place) ^ probe.head) & probe.headBits) == 0; };
        if (at - begin >= probe.place && isHead(bytes + at - probe.place))
            markers[probe.index].tryAt(at - probe.place);
    }
}

}  // namespace Library::Search::detail
