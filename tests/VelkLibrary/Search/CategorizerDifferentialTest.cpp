#include <VelkLibrary/LibraryResultCategorizer.h>

#include "RandomSearches.h"
#include "RememberedPatterns.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <string>
#include <vector>

using Library::Search::Info;
using Library::Search::ORGroup;

namespace {

using test::Alphabet;
using test::alphabets;
using test::below;
using test::describe;
using test::oneOf;
using test::Pool;
using test::printable;
using test::Random;
using test::RememberedPatterns;

template <typename Oracle>
void expectSame(const Info& info, const LibraryResultCategorizer& categorizer, const Oracle& oracle,
                const std::string& name, const std::string& keywords)
{
    ASSERT_EQ(categorizer.categorizeItemResult(name, keywords), oracle.item(name, keywords))
        << describe(info) << " name " << printable(name) << " keywords " << printable(keywords);
    ASSERT_EQ(categorizer.categorizeItemResult(name), oracle.item(name))
        << describe(info) << " name " << printable(name);
    ASSERT_EQ(categorizer.categorizeFolderResult(keywords), oracle.folder(keywords))
        << describe(info) << " folder " << printable(keywords);
}

class AgreesWithPatterns : public testing::TestWithParam<Alphabet>
{};

// Eight alphabets times 2,100 searches times 60 pairs of texts: more than a million, each rated by all
// three calls.
TEST_P(AgreesWithPatterns, OnRandomSearchesAndTexts)
{
    constexpr int searches = 2100;
    constexpr int pairsPerSearch = 60;
    Pool pool(GetParam(), 20);
    int matches = 0;
    for (int i = 0; i < searches; ++i) {
        const Info info = pool.search();
        const LibraryResultCategorizer categorizer(info);
        const test::RatingOracle<RememberedPatterns> oracle(info);
        for (int j = 0; j < pairsPerSearch; ++j) {
            const std::string& name = pool.text();
            ASSERT_NO_FATAL_FAILURE(expectSame(info, categorizer, oracle, name, pool.text()));
            matches += categorizer.categorizeItemResult(name) != Invalid ? 1 : 0;
        }
    }
    EXPECT_GT(matches, searches) << "random texts that never match prove nothing";
}

// Of several terms, those that a text may hold are found out first; of some dozens and of more in different ways.
TEST_P(AgreesWithPatterns, OnSearchesForManyTerms)
{
    Pool pool(GetParam(), 23);
    int matches = 0;
    for (std::size_t i = 0; i < 200; ++i) {
        Info info = pool.search();
        for (std::size_t more = 2 + i % 20; more > 0; --more) {
            const std::vector<ORGroup> groups = pool.search().parseTree.groups;
            info.parseTree.groups.insert(info.parseTree.groups.end(), groups.begin(), groups.end());
        }
        const LibraryResultCategorizer categorizer(info);
        const test::PlainOracle oracle(info);
        for (int j = 0; j < 40; ++j) {
            const std::string& name = pool.text();
            ASSERT_NO_FATAL_FAILURE(expectSame(info, categorizer, oracle, name, pool.text()));
            matches += categorizer.categorizeItemResult(name) == Invalid ? 1 : 0;
        }
    }
    EXPECT_GT(matches, 100) << "texts that always match prove nothing";
}

INSTANTIATE_TEST_SUITE_P(Categorizer, AgreesWithPatterns, testing::ValuesIn(alphabets),
                         [](const auto& row) { return std::string(row.param.name); });

std::string repeated(const std::string& piece, std::size_t times)
{
    std::string result;
    for (std::size_t i = 0; i < times; ++i)
        result += piece;
    return result;
}

/// A text with much repetition, because that is where searching goes wrong.
std::string repetitive(Random& random, std::size_t size)
{
    static const std::vector<std::string> pieces = {"a", "b", "ab", "aab", "aba", "abaab", "a ", " ", "-", "ba"};
    std::string result;
    while (result.size() < size) {
        const std::string unit = oneOf(random, pieces) + oneOf(random, pieces);
        result += repeated(unit, below(random, size / unit.size() + 1));
        if (below(random, 3) == 0)
            result += oneOf(random, pieces);
    }
    result.resize(size);
    return result;
}

std::u32string toTerm(const std::string& text)
{
    return {text.begin(), text.end()};
}

// A part of the text, perhaps with one byte changed, so that the text holds it, or almost.
std::string partOf(Random& random, const std::string& text, std::size_t longest)
{
    const std::size_t size = 1 + below(random, std::min(longest, text.size()));
    std::string part = text.substr(below(random, text.size() - size + 1), size);
    if (below(random, 2) == 0)
        part[below(random, size)] = "ab -"[below(random, 4)];
    return part;
}

class AgreesWithTrial : public testing::TestWithParam<unsigned>
{};

TEST_P(AgreesWithTrial, OnLongRepetitiveTexts)
{
    Random random(GetParam());
    int matches = 0;
    for (int i = 0; i < 400; ++i) {
        const std::string text = repetitive(random, 200 + below(random, 2000));
        const std::string other = repetitive(random, 1 + below(random, 300));
        Info info(std::set<libType>{});
        info.parseTree.groups.emplace_back();
        info.parseTree.groups.back().terms = {toTerm(partOf(random, text, 500))};
        if (below(random, 3) == 0)
            info.parseTree.groups.back().excludedTerms = {toTerm(partOf(random, text, 300))};
        info.legacySearch = below(random, 4) == 0;
        const LibraryResultCategorizer categorizer(info);
        const test::PlainOracle oracle(info);
        ASSERT_NO_FATAL_FAILURE(expectSame(info, categorizer, oracle, text, other));
        ASSERT_NO_FATAL_FAILURE(expectSame(info, categorizer, oracle, other, text));
        matches += categorizer.categorizeItemResult(text, other) != Invalid ? 1 : 0;
    }
    EXPECT_GT(matches, 50);
}

// Terms that the text almost holds at very many places, so that comparing at each of them is given up.
TEST_P(AgreesWithTrial, WhereComparingIsGivenUp)
{
    Random random(GetParam());
    static const std::vector<std::string> units = {"a", "ab", "aab", "abaab", "a b", "ab-ab ", "abcabd"};
    for (int i = 0; i < 60; ++i) {
        const std::string unit = oneOf(random, units);
        std::string term = repeated(unit, (150 + below(random, 400)) / unit.size());
        const std::string text = repeated(unit, 6000 / unit.size());
        std::string broken = text;
        for (std::size_t at = below(random, 700); at < broken.size(); at += 300 + below(random, 700))
            broken[at] = "ab "[below(random, 3)];
        if (below(random, 2) == 0)
            term[below(random, 3) == 0 ? 0 : below(random, term.size())] = "ab "[below(random, 3)];
        const std::string end = broken.substr(0, below(random, 50)) + term + (below(random, 2) == 0 ? " " : unit);
        Info info(std::set<libType>{});
        info.parseTree.groups.emplace_back();
        info.parseTree.groups.back().terms = {toTerm(term)};
        const LibraryResultCategorizer categorizer(info);
        const test::PlainOracle oracle(info);
        ASSERT_NO_FATAL_FAILURE(expectSame(info, categorizer, oracle, text, broken));
        ASSERT_NO_FATAL_FAILURE(expectSame(info, categorizer, oracle, broken, text + end));
        ASSERT_NO_FATAL_FAILURE(expectSame(info, categorizer, oracle, text + end, broken + end));
        ASSERT_NO_FATAL_FAILURE(expectSame(info, categorizer, oracle, broken, broken + " " + end));
    }
}

// Keywords so long that they are lowered only where they may hold a term, with the letters that other
// characters than their capitals become.
TEST_P(AgreesWithTrial, OnLongKeywords)
{
    const Alphabet alphabet = {"",
                               {U"a", U"b", U"I", U"k", U"é", U"\u212A", U"\u0130", U"-", U"@", U"7"},
                               {"a", "A", "b", "B",  "i", "I", "\u0130", "k",    "K",    "\u212A",
                                "é", "É", "-", "\r", "`", "@", "7",      "\x17", "\xC4", "\xE2\x84"},
                               6,
                               90};
    Random random(GetParam());
    Pool pool(alphabet, GetParam());
    int matches = 0;
    for (int i = 0; i < 2000; ++i) {
        Info info = pool.search();
        std::string name = pool.text();
        std::string keywords = pool.text();
        std::erase(name, '\r');
        if (below(random, 8) != 0)
            std::erase(keywords, '\r');
        if (below(random, 2) == 0)
            keywords.insert(
                below(random, keywords.size() + 1),
                test::lowered(info.parseTree.groups[0].terms.empty() ? U"" : info.parseTree.groups[0].terms[0]));
        const LibraryResultCategorizer categorizer(info);
        const test::PlainOracle oracle(info);
        ASSERT_NO_FATAL_FAILURE(expectSame(info, categorizer, oracle, name, keywords));
        ASSERT_NO_FATAL_FAILURE(expectSame(info, categorizer, oracle, "", keywords));
        matches += categorizer.categorizeItemResult("", keywords) != Invalid ? 1 : 0;
    }
    EXPECT_GT(matches, 100);
}

TEST_P(AgreesWithTrial, OnTextsWithBreaks)
{
    Random random(GetParam());
    for (int i = 0; i < 2000; ++i) {
        std::string text = repetitive(random, 1 + below(random, 120));
        for (std::size_t j = below(random, 3); j > 0; --j)
            text[below(random, text.size())] = "\n\r"[below(random, 2)];
        Info info(std::set<libType>{});
        info.parseTree.groups.emplace_back();
        info.parseTree.groups.back().terms = {toTerm(partOf(random, text, 120))};
        const LibraryResultCategorizer categorizer(info);
        const test::PlainOracle oracle(info);
        ASSERT_NO_FATAL_FAILURE(expectSame(info, categorizer, oracle, text, repetitive(random, 30)));
        ASSERT_NO_FATAL_FAILURE(expectSame(info, categorizer, oracle, repetitive(random, 30), text));
    }
}

INSTANTIATE_TEST_SUITE_P(Categorizer, AgreesWithTrial, testing::Values(1U, 2U, 3U, 4U));

TEST(RatingOracle, BothFormsAgree)
{
    Random random(5);
    for (const Alphabet& alphabet : alphabets) {
        Pool pool(alphabet, 6);
        for (int i = 0; i < 15; ++i) {
            const Info info = pool.search();
            const test::RegexOracle patterns(info);
            const test::PlainOracle trial(info);
            for (int j = 0; j < 10; ++j) {
                const std::string name = pool.text();
                const std::string keywords = pool.text();
                ASSERT_EQ(patterns.item(name, keywords), trial.item(name, keywords))
                    << describe(info) << " name " << printable(name) << " keywords " << printable(keywords);
            }
        }
    }
}

}  // namespace
