#include <VelkLibrary/Search/detail/LiteralMatcher.h>

#include <VelkCommon/Platform/Bytes16.h>
#include <VelkLibrary/Search/detail/ByteFrequency.h>
#include <VelkLibrary/Search/detail/WordBytes.h>

#include <algorithm>
#include <cstring>
#include <functional>
#include <tuple>
#include <utility>

using Velk::Platform::Bytes16;
using Velk::Platform::lowestBit;

namespace Library::Search::detail {
namespace {

// A term up to this size is compared wherever it may stand. For a longer term that would take time in
// proportion to the product of both sizes, so it has a budget of bytes to compare, which grows with the text.
constexpr std::size_t longestUnbudgetedTerm = 64;
constexpr std::size_t budgetPerByte = 8;
constexpr std::size_t leastBudget = 4096;

// The probes are chosen among this many bytes of a term, so their places fit into a byte.
constexpr std::size_t mostProbed = 256;

bool isBreak(char byte)
{
    return byte == '\n' || byte == '\r';
}

constexpr std::size_t npos = std::string::npos;

std::size_t findLastBreak(const char* bytes, const Extent& extent)
{
    for (std::size_t at = extent.end; at > extent.begin; --at) {
        if (isBreak(bytes[at - 1]))
            return at - 1;
    }
    return npos;
}

bool hasBorder(const char* bytes, std::size_t at)
{
    return isWord(bytes[static_cast<std::ptrdiff_t>(at) - 1]) != isWord(bytes[at]);
}

Worth worthOf(const LoweredTexts& texts, const PlaceWorths& worths, std::size_t at, bool left, bool right)
{
    if (at == 0)
        return worths.begin[right];
    return at <= texts.name().end ? worths.name[left][right] : worths.keywords[left][right];
}

}  // namespace

/// The places of a term in the texts, as they are found from left to right, and the best so far. Knows
/// which places need not be looked at any more.
class LiteralMatcher::Places
{
public:
    Places(const LiteralMatcher& matcher, const LoweredTexts& texts, const PlaceWorths& worths)
        : bytes(texts.bytes()),
          matcher_(matcher),
          texts_(texts),
          worths_(worths),
          last_(texts.size() - matcher.term_.size())
    {
        narrow(texts.name().end == 0);
    }

    Worth best() const { return best_; }
    /// The last place that may matter; looking at places behind it does no harm, but is useless.
    std::size_t last() const { return last_; }
    /// Whether, behind the first place, only places with both borders can be better.
    bool onlyWords() const { return onlyWords_; }

    /// Whether the term at this place would be better than the best so far.
    bool matters(std::size_t at) const
    {
        const bool left = isWord(bytes[static_cast<std::ptrdiff_t>(at) - 1]) != matcher_.beginsInWord_;
        const bool right = isWord(bytes[at + matcher_.term_.size()]) != matcher_.endsInWord_;
        return worthOf(texts_, worths_, at, left, right) < best_;
    }

    /// Takes note of the term at a place that matters. Returns the place at which to go on.
    std::size_t found(std::size_t at)
    {
        const bool inKeywords = at > texts_.name().end;
        if (texts_.hasBreak(inKeywords))
            return inKeywords ? npos : texts_.name().end + 1;
        best_ = worthOf(texts_, worths_, at, hasBorder(bytes, at), hasBorder(bytes, at + matcher_.term_.size()));
        narrow(inKeywords);
        return at + 1;
    }

    const char* const bytes;

private:
    void narrow(bool nameIsDone)
    {
        const bool nameMatters = !nameIsDone && worths_.name[1][1] < best_;
        const bool keywordsMatter = worths_.keywords[1][1] < best_;
        if (!keywordsMatter)
            last_ = nameMatters ? std::min(last_, texts_.name().end) : 0;
        onlyWords_ = (nameIsDone || best_ <= worths_.name[1][0]) && best_ <= worths_.keywords[1][0];
    }

    const LiteralMatcher& matcher_;
    const LoweredTexts& texts_;
    const PlaceWorths& worths_;
    std::size_t last_;
    Worth best_ = noWorth;
    bool onlyWords_ = false;
};

LiteralMatcher::LiteralMatcher(std::string term) : term_(std::move(term)), plainPart_(term_)
{
    const auto firstBreak = std::find_if(term_.begin(), term_.end(), isBreak);
    if (firstBreak != term_.end())
        firstBreak_ = static_cast<std::size_t>(firstBreak - term_.begin());
    if (term_.empty())
        return;
    beginsInWord_ = isWord(term_.front());
    endsInWord_ = isWord(term_.back());
    chooseProbes();
    if (term_.size() > longestUnbudgetedTerm)
        factorize();
}

Worth LiteralMatcher::best(LoweredTexts& texts, const PlaceWorths& worths) const noexcept
{
    if (!texts.pendingKeywords().empty() && plainPart_.mayStandIn(texts.pendingKeywords()))
        texts.lowerKeywords();
    if (term_.size() > texts.size())
        return noWorth;
    if (firstBreak_ != npos)
        return bestAcrossBreaks(texts, worths);
    if (term_.empty())
        return bestOfEmpty(texts, worths);
    Places places(*this, texts, worths);
    searchByProbes(places);
    return places.best();
}

// Chooses the two rarest bytes, different ones if there are any; of equally rare bytes the first.
void LiteralMatcher::chooseProbes() noexcept
{
    const std::size_t size = std::min(term_.size(), mostProbed);
    std::size_t rarest = 0;
    for (std::size_t i = 1; i < size; ++i) {
        if (frequencyOf(term_[i]) < frequencyOf(term_[rarest]))
            rarest = i;
    }
    std::size_t second = rarest == 0 ? size - 1 : 0;
    for (std::size_t i = 0; i < size; ++i) {
        const bool different = term_[i] != term_[rarest];
        if (different && (term_[second] == term_[rarest] || frequencyOf(term_[i]) < frequencyOf(term_[second])))
            second = i;
    }
    probes_[0] = static_cast<std::uint8_t>(rarest);
    probes_[1] = static_cast<std::uint8_t>(second);
    for (std::size_t i = 0; i < 2 && term_.size() > 1; ++i) {
        const std::size_t first = probes_[i] == 0 ? 0 : probes_[i] - 1U;
        pairs_[i] = BytePairs::number(term_[first], term_[first + 1]);
    }
    frequency_ = static_cast<std::uint16_t>(frequencyOf(term_[rarest]) * 256 + frequencyOf(term_[second]));
}

// For a term that holds a line break. It must cover all breaks of the text, so its first break must lie on the
// text's first one.
Worth LiteralMatcher::bestAcrossBreaks(const LoweredTexts& texts, const PlaceWorths& worths) const noexcept
{
    const char* const bytes = texts.bytes();
    Worth best = noWorth;
    for (const Extent& extent : {texts.name(), texts.keywords()}) {
        const std::size_t first = findBreak(bytes, extent);
        if (first == npos || first - extent.begin < firstBreak_)
            continue;
        const std::size_t at = first - firstBreak_;
        const std::size_t end = at + term_.size();
        if (end > extent.end || findLastBreak(bytes, {first, extent.end}) >= end)
            continue;
        if (std::memcmp(bytes + at, term_.data(), term_.size()) == 0)
            best = std::min(best, worthOf(texts, worths, at, hasBorder(bytes, at), hasBorder(bytes, end)));
    }
    return best;
}

// The empty term is found everywhere, even at the end, and its left border is also its right one.
Worth LiteralMatcher::bestOfEmpty(const LoweredTexts& texts, const PlaceWorths& worths) const noexcept
{
    Worth best = noWorth;
    if (!texts.hasBreak(false)) {
        for (std::size_t at = 0; at <= texts.name().end && best > worths.name[1][1]; ++at) {
            const bool border = hasBorder(texts.bytes(), at);
            best = std::min(best, worthOf(texts, worths, at, border, border));
        }
    }
    if (texts.hasKeywords() && !texts.hasBreak(true)) {
        for (std::size_t at = texts.keywords().begin; at <= texts.size() && best > worths.keywords[1][1]; ++at) {
            const bool border = hasBorder(texts.bytes(), at);
            best = std::min(best, worths.keywords[border][border]);
        }
    }
    return best;
}

namespace {

// Of 16 places from `at` on, those where a term with these ends has a border on both sides.
std::uint32_t bordered(const char* at, std::size_t size, bool beginsInWord, bool endsInWord)
{
    const std::uint32_t before = areWord(at - 1).mask();
    const std::uint32_t behind = areWord(at + size).mask();
    return (beginsInWord ? ~before : before) & (endsInWord ? ~behind : behind);
}

}  // namespace

// Looks for both probes at 16 places at once and compares only where the term would matter.
void LiteralMatcher::searchByProbes(Places& places) const noexcept
{
    const Bytes16 firstByte(static_cast<std::uint8_t>(term_[probes_[0]]));
    const Bytes16 secondByte(static_cast<std::uint8_t>(term_[probes_[1]]));
    const char* const firstProbe = places.bytes + probes_[0];
    const char* const secondProbe = places.bytes + probes_[1];
    std::size_t budget = leastBudget + budgetPerByte * places.last();
    for (std::size_t block = 0; block <= places.last();) {
        std::uint32_t candidates = (equal(Bytes16::load(firstProbe + block), firstByte) &
                                    equal(Bytes16::load(secondProbe + block), secondByte))
                                       .mask();
        if (candidates != 0 && block != 0 && places.onlyWords())
            candidates &= bordered(places.bytes + block, term_.size(), beginsInWord_, endsInWord_);
        std::size_t next = block + Bytes16::size;
        for (; candidates != 0; candidates &= candidates - 1) {
            const std::size_t at = block + lowestBit(candidates);
            if (!places.matters(at))
                continue;
            if (std::memcmp(places.bytes + at, term_.data(), term_.size()) == 0) {
                const std::size_t resume = places.found(at);
                if (resume == at + 1)
                    continue;
                next = resume;
                break;
            }
            if (term_.size() > longestUnbudgetedTerm) {
                if (budget < term_.size())
                    return searchInLinearTime(places, at + 1);
                budget -= term_.size();
            }
        }
        block = next;
    }
}

namespace {

// The largest suffix of `text` in the given order of bytes: its beginning and its period.
template <typename Less>
std::pair<std::size_t, std::size_t> largestSuffix(std::string_view text, Less less)
{
    std::size_t suffix = 0;
    std::size_t rival = 1;
    std::size_t matched = 0;
    std::size_t period = 1;
    while (rival + matched < text.size()) {
        const char a = text[rival + matched];
        const char b = text[suffix + matched];
        if (less(a, b)) {
            rival += matched + 1;
            matched = 0;
            period = rival - suffix;
        } else if (less(b, a)) {
            suffix = rival;
            ++rival;
            matched = 0;
            period = 1;
        } else if (++matched == period) {
            rival += period;
            matched = 0;
        }
    }
    return {suffix, period};
}

}  // namespace

// The critical factorisation of the two-way search (M. Crochemore, D. Perrin, "Two-way
// string-matching", Journal of the ACM 38, 1991).
void LiteralMatcher::factorize() noexcept
{
    const auto ascending = largestSuffix(term_, std::less<char>());
    const auto descending = largestSuffix(term_, std::greater<char>());
    std::tie(criticalPlace_, period_) = std::max(ascending, descending);
    periodic_ = std::memcmp(term_.data(), term_.data() + period_, criticalPlace_) == 0;
    if (!periodic_)
        period_ = std::max(criticalPlace_, term_.size() - criticalPlace_) + 1;
}

// The two-way search: compares each byte of the text a bounded number of times, whatever the term.
void LiteralMatcher::searchInLinearTime(Places& places, std::size_t from) const noexcept
{
    const char* const term = term_.data();
    std::size_t known = 0;  // how many bytes at the beginning of the term are known to match
    for (std::size_t at = from; at <= places.last();) {
        const char* const bytes = places.bytes + at;
        std::size_t right = std::max(criticalPlace_, known);
        while (right < term_.size() && term[right] == bytes[right])
            ++right;
        if (right < term_.size()) {
            at += right - criticalPlace_ + 1;
            known = 0;
            continue;
        }
        std::size_t left = criticalPlace_;
        while (left > known && term[left - 1] == bytes[left - 1])
            --left;
        const bool occurs = left <= known;
        known = periodic_ ? term_.size() - period_ : 0;
        const std::size_t place = at;
        at += period_;
        if (occurs && places.matters(place)) {
            const std::size_t resume = places.found(place);
            if (resume != place + 1) {
                at = resume;
                known = 0;
            }
        }
    }
}

}  // namespace Library::Search::detail
