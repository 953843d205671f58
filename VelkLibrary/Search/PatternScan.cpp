#include <VelkLibrary/Search/detail/PatternScan.h>

#include <VelkLibrary/Search/detail/ByteFrequency.h>

#include <algorithm>
#include <bit>
#include <string_view>

namespace Library::Search::detail {
namespace {

using Velk::Platform::BytePatterns;

// So many blocks are gone through before what was found in them is looked at.
constexpr std::size_t blocksAtOnce = 128;

// Where the rarest bytes in a row begin.
std::size_t rarestPart(std::string_view term)
{
    const auto frequencyAt = [&](std::size_t place) {
        unsigned sum = 0;
        for (const char byte : term.substr(place, BytePatterns::longest))
            sum += frequencyOf(byte);
        return sum;
    };
    std::size_t best = 0;
    for (std::size_t place = 1; place + BytePatterns::longest <= term.size(); ++place) {
        if (frequencyAt(place) < frequencyAt(best))
            best = place;
    }
    return best;
}

}  // namespace

static_assert(NameBlock::readable >= 2 * BytePatterns::blockSize + BytePatterns::readBehind);

struct PatternScan::Stretch
{
    std::size_t begin;  // of the piece
    std::size_t end;
    std::size_t at;
};

void PatternScan::add(std::uint32_t number, const LiteralMatcher& term)
{
    const std::string_view text = term.term();
    const std::size_t distance = rarestPart(text);
    if (numbers_.size() % BytePatterns::most == 0)
        passes_.emplace_back();
    passes_.back().distances.at(numbers_.size() % BytePatterns::most) = distance;
    passes_.back().patterns.add(text.substr(distance));
    numbers_.push_back(number);
}

void PatternScan::clear() noexcept
{
    passes_.clear();
    numbers_.clear();
}

void PatternScan::mark(const Piece& piece, std::vector<PlaceMarker>& markers) const
{
    const char* const bytes = piece.names.bytes();
    Stretch stretch{piece.names.cell(piece.first) * NameBlock::cellSize,
                    piece.names.cell(piece.end()) * NameBlock::cellSize, 0};
    std::array<BytePatterns::Block, blocksAtOnce + 1> blocks;
    for (stretch.at = stretch.begin; stretch.at < stretch.end; stretch.at += blocksAtOnce * BytePatterns::blockSize) {
        const std::size_t left = (stretch.end - stretch.at + BytePatterns::blockSize - 1) / BytePatterns::blockSize;
        PlaceMarker* ofPass = markers.data();
        for (const Pass& pass : passes_) {
            const std::size_t count =
                pass.patterns.find(bytes + stretch.at, std::min(left, blocksAtOnce), blocks.data());
            for (std::size_t i = 0; i < count; ++i)
                tryTerms(pass, stretch, blocks[i], ofPass);
            ofPass += pass.patterns.size();
        }
    }
}

// The places of a term come in their order. What begins before or behind the piece belongs to another one.
void PatternScan::tryTerms(const Pass& pass, const Stretch& stretch, const BytePatterns::Block& block,
                           PlaceMarker* markers)
{
    for (std::uint32_t places = block.places; places != 0; places &= places - 1) {
        const auto inBlock = static_cast<std::size_t>(std::countr_zero(places));
        const std::size_t place = stretch.at + block.number * BytePatterns::blockSize + inBlock;
        for (unsigned terms = block.beginning[inBlock]; terms != 0; terms &= terms - 1) {
            const auto term = static_cast<std::size_t>(std::countr_zero(terms));
            if (place >= stretch.begin + pass.distances[term] && place < stretch.end)
                markers[term].tryAt(place - pass.distances[term]);
        }
    }
}

}  // namespace Library::Search::detail
