#include <VelkLibrary/Search/detail/PairScan.h>

#include <VelkLibrary/Search/detail/ByteFrequency.h>

#include <algorithm>
#include <cstring>

namespace Library::Search::detail {
namespace {

constexpr std::size_t pairStep = 2;
constexpr std::size_t pairsAtOnce = 16;

std::uint16_t pairAt(const char* bytes)
{
    std::uint16_t pair;
    std::memcpy(&pair, bytes, sizeof pair);
    return pair;
}

}  // namespace

PairScan::PairScan() : first_(1 << 16) {}

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
    const auto index = static_cast<std::uint32_t>(numbers_.size() - 1);
    probes_.push_back({pairAt(bytes + best), static_cast<std::uint8_t>(best), index});
}

void PairScan::close()
{
    std::sort(probes_.begin(), probes_.end(), [](const Probe& a, const Probe& b) { return a.pair < b.pair; });
    for (std::size_t i = probes_.size(); i > 0; --i)
        first_[probes_[i - 1].pair] = static_cast<std::uint16_t>(i);
}

void PairScan::clear() noexcept
{
    for (const Probe& probe : probes_)
        first_[probe.pair] = 0;
    probes_.clear();
    numbers_.clear();
}

void PairScan::mark(const Piece& piece, std::vector<PlaceMarker>& markers) const
{
    const char* const bytes = piece.names.bytes();
    const std::uint16_t* const first = first_.data();
    const std::size_t begin = piece.names.cell(piece.first) * NameBlock::cellSize;
    const std::size_t end = piece.names.cell(piece.end()) * NameBlock::cellSize;
    for (std::size_t at = begin; at < end; at += pairsAtOnce * pairStep) {
        unsigned any = 0;
        for (std::size_t i = 0; i < pairsAtOnce; ++i)
            any |= first[pairAt(bytes + at + i * pairStep)];
        if (any == 0)
            continue;
        for (std::size_t i = at; i < std::min(at + pairsAtOnce * pairStep, end); i += pairStep) {
            const Pair pair = pairAt(bytes + i);
            if (first[pair] != 0)
                tryTerms(i, pair, begin, markers);
        }
    }
}

// The places of a term come in their order, but for those that overlap, which are in one entry.
void PairScan::tryTerms(std::size_t at, Pair pair, std::size_t begin, std::vector<PlaceMarker>& markers) const
{
    for (std::size_t i = first_[pair] - 1U; i < probes_.size() && probes_[i].pair == pair; ++i) {
        const Probe& probe = probes_[i];
        if (at - begin >= probe.place)
            markers[probe.index].tryAt(at - probe.place);
    }
}

}  // namespace Library::Search::detail
