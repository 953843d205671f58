#include "PreparedEntries.h"
#include "RandomSearches.h"
#include "RememberedPatterns.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <string>
#include <utility>
#include <vector>

namespace {

using test::below;
using test::Info;
using test::ORGroup;
using test::PreparedEntry;
using test::Random;

PreparedEntry randomEntry(Random& random, test::Pool& pool)
{
    switch (below(random, 5)) {
        case 0:
            return test::folderEntry(pool.text());
        case 1:
            return test::itemEntry(pool.text());
        default:
            return test::itemEntry(pool.text(), pool.text());
    }
}

std::vector<PreparedEntry> randomEntries(Random& random, test::Pool& pool, std::size_t count)
{
    std::vector<PreparedEntry> entries;
    for (std::size_t i = 0; i < count; ++i)
        entries.push_back(randomEntry(random, pool));
    return entries;
}

std::string describe(const PreparedEntry& entry)
{
    return (entry.isFolder ? "folder " : "item ") + test::printable(entry.name) +
           (entry.keywords ? " with " + test::printable(*entry.keywords) : "");
}

/// Compares with the calls by name. Returns the number of matches.
std::size_t compareWithCalls(const Info& info, const std::vector<PreparedEntry>& entries,
                             const Library::Search::PreparedNames& names)
{
    const LibraryResultCategorizer categorizer(info);
    const std::vector<SearchPriority> ratings = test::ratingsInBulk(categorizer, names, 0, entries.size());
    std::size_t matches = 0;
    for (std::size_t i = 0; i < entries.size(); ++i) {
        EXPECT_EQ(ratings[i], test::ratingByName(categorizer, entries[i]))
            << test::describe(info) << " entry " << i << ", " << describe(entries[i]);
        matches += ratings[i] != Invalid ? 1 : 0;
    }
    return matches;
}

class BulkAgrees : public testing::TestWithParam<test::Alphabet>
{};

TEST_P(BulkAgrees, WithPatternsOnRandomSearchesAndTexts)
{
    std::size_t matches = 0;
    for (const test::Forms forms : {test::Forms::Usual, test::Forms::All}) {
        Random random(7);
        test::Pool pool(GetParam(), 21, forms);
        const std::vector<PreparedEntry> entries = randomEntries(random, pool, 150);
        const Library::Search::PreparedNames names = test::prepared(entries);
        for (int i = 0; i < 250 && !HasFailure(); ++i) {
            const Info info = pool.search();
            const test::RatingOracle<test::RememberedPatterns> oracle(info);
            const std::vector<SearchPriority> ratings =
                test::ratingsInBulk(LibraryResultCategorizer(info), names, 0, 150);
            for (std::size_t j = 0; j < entries.size(); ++j) {
                EXPECT_EQ(ratings[j], test::ratingByOracle(oracle, entries[j]))
                    << test::describe(info) << " " << describe(entries[j]);
                matches += ratings[j] != Invalid ? 1 : 0;
            }
        }
    }
    EXPECT_GT(matches, 500U) << "random texts that never match prove nothing";
}

TEST_P(BulkAgrees, WithTheCallsByNameOnManyEntries)
{
    std::size_t matches = 0;
    Random random(8);
    test::Pool pool(GetParam(), 22, test::Forms::Usual);
    const std::vector<PreparedEntry> entries = randomEntries(random, pool, 5000);
    const Library::Search::PreparedNames names = test::prepared(entries);
    for (int i = 0; i < 40 && !HasFailure(); ++i)
        matches += compareWithCalls(pool.search(), entries, names);
    EXPECT_GT(matches, 1000U);
}

INSTANTIATE_TEST_SUITE_P(Categorizer, BulkAgrees, testing::ValuesIn(test::alphabets),
                         [](const auto& row) { return std::string(row.param.name); });

/// Words of which some are in most names and others in few, as in real libraries.
const std::vector<std::string> words = {"a",      "of",    "Chair", "chair",  "table", "in",     "oak",  "LED lamp",
                                        "office", "Büro",  "стол",  "椅子",   "3",     "24\"",   "x_y",  "armchair",
                                        "a-b",    "Sofa,", "sofa",  "lamp\n", "é",     "helium", "zinc", "quartz"};

std::string wordsFor(Random& random, std::size_t most)
{
    std::string text;
    for (std::size_t i = below(random, most + 1); i > 0; --i) {
        const std::size_t range = below(random, 12) == 0 ? words.size() : 12;  // the last ones are rare
        text += (text.empty() ? "" : below(random, 6) == 0 ? "" : " ") + words[below(random, range)];
    }
    return text;
}

PreparedEntry entryOfWords(Random& random)
{
    const std::string name = wordsFor(random, 4);
    return below(random, 6) == 0 ? test::folderEntry(name) : test::itemEntry(name, wordsFor(random, 12));
}

std::vector<PreparedEntry> entriesOfWords(Random& random, std::size_t count)
{
    std::vector<PreparedEntry> entries;
    while (entries.size() < count)
        entries.push_back(entryOfWords(random));
    return entries;
}

std::u32string partOfWord(Random& random)
{
    static const std::vector<std::u32string> parts = {U"a",   U"e",     U"o",  U"chair", U"CHAIR", U"of", U"ffice",
                                                      U"3",   U"стол",  U"т",  U"椅",    U"é",     U"-",  U"\"",
                                                      U"zin", U"oak a", U" ",  U"b",     U"sofa,", U"x_", U"lamp",
                                                      U"ü",   U"quart", U"qx", U"table", U"LED",   U"r",  U"in"};
    return test::oneOf(random, parts);
}

Info searchOfWords(Random& random, std::size_t mostGroups, std::size_t mostTerms)
{
    Info info(std::set<libType>{});
    info.legacySearch = below(random, 4) == 0;
    for (std::size_t i = below(random, mostGroups) + 1; i > 0; --i) {
        ORGroup& group = info.parseTree.groups.emplace_back();
        for (std::size_t j = below(random, mostTerms) + 1; j > 0; --j)
            group.terms.push_back(partOfWord(random));
        for (std::size_t j = below(random, 3); j > 0; --j)
            group.excludedTerms.push_back(partOfWord(random));
    }
    return info;
}

TEST(BulkDifferential, AgreesWhereTermsAreFrequentOrRare)
{
    Random random(9);
    const std::vector<PreparedEntry> entries = entriesOfWords(random, 6000);
    const Library::Search::PreparedNames names = test::prepared(entries);
    std::size_t matches = 0;
    for (int i = 0; i < 60 && !HasFailure(); ++i)
        matches += compareWithCalls(searchOfWords(random, 4, 3), entries, names);
    EXPECT_GT(matches, 20000U);
}

TEST(BulkDifferential, AgreesForManyGroups)
{
    Random random(10);
    const std::vector<PreparedEntry> entries = entriesOfWords(random, 1000);
    const Library::Search::PreparedNames names = test::prepared(entries);
    for (int i = 0; i < 8 && !HasFailure(); ++i)
        compareWithCalls(searchOfWords(random, 300, 6), entries, names);
    Info pairs(std::set<libType>{});
    pairs.parseTree = Library::Search::parseSearchTerms(
        U"(a|e) (o|chair) (of|3) (т|é) (-|r) (in|led) (b|ü) (table|sofa) (lamp|x) (l|s)");
    ASSERT_EQ(pairs.parseTree.groups.size(), 1024U);
    EXPECT_GT(compareWithCalls(pairs, entries, names), 10U);
}

std::vector<std::u32string> oneOrTwoParts(Random& random)
{
    std::vector<std::u32string> parts(1 + below(random, 8) / 6);
    std::generate(parts.begin(), parts.end(), [&] { return partOfWord(random); });
    return parts;
}

void append(std::vector<std::u32string>& terms, const std::vector<std::u32string>& more)
{
    terms.insert(terms.end(), more.begin(), more.end());
}

/// All groups with one of up to three alternatives in addition.
std::vector<ORGroup> multiplied(Random& random, const std::vector<ORGroup>& groups)
{
    std::vector<ORGroup> product;
    for (std::size_t alternatives = 1 + below(random, 3); alternatives > 0; --alternatives) {
        ORGroup alternative;
        alternative.terms = oneOrTwoParts(random);
        if (below(random, 5) == 0)
            alternative.excludedTerms = oneOrTwoParts(random);
        for (const ORGroup& group : groups) {
            product.push_back(group);
            append(product.back().terms, alternative.terms);
            append(product.back().excludedTerms, alternative.excludedTerms);
        }
    }
    return product;
}

// Groups that share their beginnings and their ends, with exclusions that they share or do not.
TEST(BulkDifferential, AgreesOnProductsOfAlternatives)
{
    Random random(15);
    const std::vector<PreparedEntry> entries = entriesOfWords(random, 3000);
    const Library::Search::PreparedNames names = test::prepared(entries);
    std::size_t matches = 0;
    for (int i = 0; i < 60 && !HasFailure(); ++i) {
        std::vector<ORGroup> groups(1);
        for (std::size_t factors = 1 + below(random, 4); factors > 0; --factors)
            groups = multiplied(random, groups);
        Info info(std::set<libType>{});
        info.parseTree.groups = std::move(groups);
        info.legacySearch = i % 4 == 0;
        matches += compareWithCalls(info, entries, names);
    }
    EXPECT_GT(matches, 20000U);
}

std::u32string partOfAnyText(Random& random, const std::vector<PreparedEntry>& entries)
{
    const PreparedEntry& entry = test::oneOf(random, entries);
    const std::u32string text = StringConvert::toUnicode(entry.keywords.value_or(entry.name), StringConvert::Utf8);
    if (text.size() < 4)
        return U"absent" + text;
    std::u32string part = text.substr(below(random, text.size() - 3), 2 + below(random, 20));
    if (below(random, 3) == 0)
        part[below(random, part.size())] = U'q';
    return part.find(U'\n') == std::u32string::npos ? part : U"absent";
}

// Terms of two bytes and more are looked for together, a few in another way than many, until one of them turns out to
// be frequent.
TEST(BulkDifferential, AgreesForSeveralTerms)
{
    Random random(14);
    const std::vector<PreparedEntry> entries = entriesOfWords(random, 5000);
    const Library::Search::PreparedNames names = test::prepared(entries);
    std::size_t matches = 0;
    for (int i = 0; i < 20 && !HasFailure(); ++i) {
        Info info(std::set<libType>{});
        info.legacySearch = i % 5 == 0;
        while (info.parseTree.groups.size() < 2U + static_cast<std::size_t>(i) * 3) {
            ORGroup& group = info.parseTree.groups.emplace_back();
            group.terms.push_back(partOfAnyText(random, entries));
            if (below(random, 4) == 0)
                group.excludedTerms.push_back(partOfWord(random));
            if (below(random, 10) == 0)
                group.terms.push_back(U"chair");
        }
        matches += compareWithCalls(info, entries, names);
    }
    EXPECT_GT(matches, 10000U);
}

TEST(BulkDifferential, AgreesOnAnyRange)
{
    Random random(11);
    const std::vector<PreparedEntry> entries = entriesOfWords(random, 2500);
    const Library::Search::PreparedNames names = test::prepared(entries);
    for (int i = 0; i < 60; ++i) {
        const LibraryResultCategorizer categorizer(searchOfWords(random, 2, 2));
        const std::size_t begin = below(random, entries.size());
        const std::size_t count = below(random, i % 2 == 0 ? 70 : 2500);
        const std::vector<SearchPriority> ratings = test::ratingsInBulk(categorizer, names, begin, count);
        for (std::size_t j = 0; j < count; ++j) {
            const bool exists = begin + j < entries.size();
            ASSERT_EQ(ratings[j], exists ? test::ratingByName(categorizer, entries[begin + j]) : Invalid);
        }
    }
}

std::string repeated(const std::string& piece, std::size_t times)
{
    std::string result;
    for (std::size_t i = 0; i < times; ++i)
        result += piece;
    return result;
}

// Texts of more cells than are looked at in one step, and of more bytes than a piece has.
TEST(BulkDifferential, AgreesOnLargeTexts)
{
    Random random(12);
    std::vector<PreparedEntry> entries;
    for (const std::size_t size : {50U, 400U, 455U, 456U, 457U, 500U, 912U, 5000U, 70000U, 600000U}) {
        const std::string text = repeated(wordsFor(random, 5) + ". ", size / 10).substr(0, size);
        entries.push_back(test::itemEntry(text + "zq", "b"));
        entries.push_back(test::itemEntry("chair", text + " zq"));
        entries.push_back(test::itemEntry(text, text + "."));
        entries.push_back(test::folderEntry("zq" + text));
        for (int i = 0; i < 40; ++i)
            entries.push_back(entryOfWords(random));
    }
    const Library::Search::PreparedNames names = test::prepared(entries);
    for (const char32_t* const search : {U"zq", U"q", U"a", U". zq", U"e -b", U"chair zq", U"т|é", U"."}) {
        Info info(std::set<libType>{});
        info.parseTree = Library::Search::parseSearchTerms(search);
        compareWithCalls(info, entries, names);
        info.legacySearch = true;
        compareWithCalls(info, entries, names);
    }
}

// A term of up to 64 bytes is looked for in all entries at once, a larger one in each.
TEST(BulkDifferential, AgreesOnLongAndRepetitiveTerms)
{
    Random random(13);
    std::vector<PreparedEntry> entries;
    for (std::size_t i = 0; i < 3000; ++i) {
        const std::string unit = i % 3 == 0 ? "a" : i % 3 == 1 ? "ab" : "a b";
        std::string text = repeated(unit, below(random, 150));
        if (!text.empty() && i % 4 == 0)
            text[below(random, text.size())] = 'c';
        entries.push_back(i % 2 == 0 ? test::itemEntry(text) : test::itemEntry("b", text));
    }
    const Library::Search::PreparedNames names = test::prepared(entries);
    for (const char32_t* const unit : {U"a", U"ab", U"a b", U"bac", U"c"}) {
        for (const std::size_t size : {2U, 7U, 8U, 9U, 16U, 17U, 63U, 64U, 65U, 100U}) {
            std::u32string term;
            while (term.size() < size)
                term += unit;
            Info info(std::set<libType>{});
            info.parseTree.groups.emplace_back().terms = {term.substr(0, size)};
            compareWithCalls(info, entries, names);
        }
    }
}

}  // namespace
