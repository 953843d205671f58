#pragma once

#include <VelkLibrary/Search/detail/LoweredTexts.h>
#include <VelkLibrary/Search/detail/PlainPart.h>

#include <cstddef>
#include <cstdint>
#include <limits>
#include <string>
#include <string_view>

namespace Library::Search::detail {

/// The worth of a place where a term was found: smaller is better.
using Worth = std::int16_t;

/// The worth of not being found at all.
constexpr Worth noWorth = std::numeric_limits<Worth>::max();

/// What it is worth to find a term at a place. A place has a border on the left or right where, of the
/// two bytes that meet there, one is a word character and the other (or the end of the text) is not.
/// A place with more borders is never worth less.
struct PlaceWorths
{
    Worth begin[2];        ///< at the beginning of the name; index: border on the right
    Worth name[2][2];      ///< further on in it; indexes: border on the left, border on the right
    Worth keywords[2][2];  ///< in the keywords
};

/// Finds one term, a literal in lower case, in lowered texts. Immutable.
///
/// Gives the result of the regular expressions ".*term.*" with or without "\b" on either side, matched
/// against a whole text, for every term and text: "." stands for anything but LF and CR, so the term
/// must cover every line break of the text; a word character is an ASCII letter or digit or "_".
/// The time is linear in the size of the texts, and no memory is allocated.
class LiteralMatcher
{
public:
    /// `term` is well-formed UTF-8, or at least without the byte FF.
    explicit LiteralMatcher(std::string term);

    /// The worth of the best place of the term, `noWorth` if it has none. Lowers the keywords if they
    /// may hold the term.
    Worth best(LoweredTexts& texts, const PlaceWorths& worths) const noexcept;

    /// False if the texts of these pairs cannot hold the term.
    bool mayStandIn(const BytePairs& pairs) const noexcept
    {
        return term_.size() < 2 || (pairs.mayHold(pairs_[0]) && pairs.mayHold(pairs_[1]));
    }

    /// For ordering terms: the smaller it is, the less likely a text holds the term.
    unsigned frequency() const noexcept { return frequency_; }

    const PlainPart& plainPart() const noexcept { return plainPart_; }

    const std::string& term() const noexcept { return term_; }
    bool hasBreak() const noexcept { return firstBreak_ != std::string::npos; }

    /// The places of two bytes of the term, which is not empty, that are rare in names. They are the same place in a
    /// term of one byte.
    std::size_t probe(std::size_t which) const noexcept { return probes_[which]; }
    /// The numbers of the pairs of bytes with the probes, of a term of at least two bytes.
    std::uint16_t pair(std::size_t which) const noexcept { return pairs_[which]; }
    bool beginsInWord() const noexcept { return beginsInWord_; }
    bool endsInWord() const noexcept { return endsInWord_; }

private:
    class Places;

    void chooseProbes() noexcept;
    void factorize() noexcept;
    Worth bestAcrossBreaks(const LoweredTexts& texts, const PlaceWorths& worths) const noexcept;
    Worth bestOfEmpty(const LoweredTexts& texts, const PlaceWorths& worths) const noexcept;
    void searchByProbes(Places& places) const noexcept;
    void searchInLinearTime(Places& places, std::size_t from) const noexcept;

    std::string term_;
    std::size_t firstBreak_ = std::string::npos;  // npos: none
    PlainPart plainPart_;
    std::size_t criticalPlace_ = 0;  // of the two-way search, for long terms
    std::size_t period_ = 0;
    std::uint16_t pairs_[2] = {};  // the numbers of the pairs with the bytes at probes_
    std::uint16_t frequency_ = 0;
    std::uint8_t probes_[2] = {};  // places of two bytes of the term that are rare in names
    bool periodic_ = false;        // the term repeats itself at the distance of period_
    bool beginsInWord_ = false;
    bool endsInWord_ = false;
};

}  // namespace Library::Search::detail
