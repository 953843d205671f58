#pragma once

/// @file
/// Random searches and texts, made of few pieces, so that they meet.

#include "RatingOracle.h"

#include <gtest/gtest.h>

#include <ostream>
#include <random>
#include <sstream>
#include <string>
#include <vector>

namespace test {

using Library::Search::Info;
using Library::Search::ORGroup;

using Random = std::mt19937;

inline std::size_t below(Random& random, std::size_t limit)
{
    return std::uniform_int_distribution<std::size_t>(0, limit - 1)(random);
}

template <typename T>
const T& oneOf(Random& random, const std::vector<T>& choices)
{
    return choices[below(random, choices.size())];
}

/// What random terms and texts are made of.
struct Alphabet
{
    const char* name;
    std::vector<std::u32string> termPieces;
    std::vector<std::string> textPieces;
    std::size_t longestTerm;
    std::size_t longestText;
};

inline void PrintTo(const Alphabet& alphabet, std::ostream* os)
{
    *os << alphabet.name;
}

inline const std::string zero(1, '\0');
inline const std::u32string zeroTerm(1, U'\0');

inline const std::vector<Alphabet> alphabets = {
    {"TwoLetters", {U"a", U"B"}, {"a", "A", "b", "B"}, 3, 9},
    {"LettersAndBlanks", {U"a", U"b", U" "}, {"a", "b", "B", " "}, 4, 12},
    {"LettersAndBreaks", {U"a", U"\n", U"\r", U"-"}, {"a", "a", "a", "\n", "\r", "-"}, 3, 7},
    {"Punctuation", {U"a", U"-", U"+", U".", U"_", U"9"}, {"a", "-", "+", ".", "_", "9", "A"}, 3, 8},
    {"PatternCharacters",
     {U"a", U"(", U")", U"[", U"]", U"{", U"}", U"*", U"?", U"\\", U"^", U"$", U"|"},
     {"a", "(", ")", "[", "]", "{", "}", "*", "?", "\\", "^", "$", "|"},
     2,
     10},
    {"NonAscii",
     {U"a", U"é", U"É", U" ", U"\u0130", U"\u212A", U"Ж", U"\U0001FA91"},
     {"a", "é", "É", " ", "\u0130", "i", "\u212A", "K", "ж", "Ж", "\U0001FA91"},
     3,
     8},
    {"Malformed",
     {U"a", U"é", U"\uFFFD", std::u32string(1, char32_t{0xD800}), std::u32string(1, char32_t{0x110000})},
     {"a", "\xC3", "\xA9", "\xFF", "\uFFFD", "\xED\xA0\x80", "\xF4\x90\x80\x80", "\xE2\x84"},
     2,
     6},
    {"Anything",
     {U"a", U"b", U"_", U"-", U" ", U"\n", U"\v", zeroTerm, U"é", U"7", U"\u2028", U"\u0085"},
     {"a", "b", "A", "_", "-", " ", "\n", "\r", "\v", "\f", zero, "é", "É", "7", "\u2028", "\u0085", "\xFF"},
     4,
     12},
};

template <typename Text>
Text randomText(Random& random, const std::vector<Text>& pieces, std::size_t longest)
{
    Text text;
    for (std::size_t i = below(random, longest + 1); i > 0; --i)
        text += oneOf(random, pieces);
    return text;
}

inline std::string printable(const std::string& text)
{
    return testing::PrintToString(text);
}

inline std::string describe(const Info& info)
{
    std::ostringstream out;
    for (const ORGroup& group : info.parseTree.groups) {
        out << "[";
        for (const std::u32string& term : group.terms)
            out << printable(lowered(term)) << " ";
        out << "] / [";
        for (const std::u32string& term : group.excludedTerms)
            out << printable(lowered(term)) << " ";
        out << "] ";
    }
    out << (info.legacySearch ? "whole words" : "");
    return out.str();
}

/// Whether a pool has terms and groups of every form, or only those that most searches have: terms that are not empty,
/// and in each group a required one.
enum class Forms { All, Usual };

/// A number of terms, lists of excluded terms and texts, from which searches and names are put together.
class Pool
{
public:
    Pool(const Alphabet& alphabet, unsigned seed, Forms forms = Forms::All) : random_(seed), forms_(forms)
    {
        while (terms_.size() < 40) {
            std::u32string term = randomText(random_, alphabet.termPieces, alphabet.longestTerm);
            if (forms == Forms::All || !term.empty())
                terms_.push_back(std::move(term));
        }
        for (int i = 0; i < 30; ++i) {
            exclusions_.emplace_back();
            for (std::size_t j = below(random_, 3) + 1; j > 0; --j)
                exclusions_.back().push_back(oneOf(random_, terms_));
        }
        for (int i = 0; i < 180; ++i)
            texts_.push_back(randomText(random_, alphabet.textPieces, alphabet.longestText));
        for (int i = 0; i < 20; ++i)  // some that are exact
            texts_.push_back(lowered(oneOf(random_, terms_) + (i % 2 == 0 ? U"" : U" " + oneOf(random_, terms_))));
    }

    Info search()
    {
        Info info(std::set<libType>{});
        for (std::size_t i = below(random_, 3) + 1; i > 0; --i) {
            ORGroup group;
            const bool isEmpty = below(random_, 8) == 0 && forms_ == Forms::All;
            for (std::size_t j = isEmpty ? 0 : below(random_, 3) + 1; j > 0; --j)
                group.terms.push_back(oneOf(random_, terms_));
            if (below(random_, 3) == 0)
                group.excludedTerms = oneOf(random_, exclusions_);
            info.parseTree.groups.push_back(std::move(group));
        }
        info.legacySearch = below(random_, 4) == 0;
        return info;
    }

    const std::string& text() { return oneOf(random_, texts_); }

private:
    Random random_;
    Forms forms_;
    std::vector<std::u32string> terms_;
    std::vector<std::vector<std::u32string>> exclusions_;
    std::vector<std::string> texts_;
};

}  // namespace test
