// Large and deep search texts.
#include <VelkLibrary/Search/ParseTree.h>

#include "VelkLibrary/Search/ParseTreeText.h"
#include "support/CountedMemory.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <string_view>

namespace {

using Library::Search::ORGroup;
using Library::Search::parseSearchTerms;
using Library::Search::ParseTree;
using test::describe;

std::u32string repeated(std::size_t count, std::u32string_view piece)
{
    std::u32string text;
    for (std::size_t i = 0; i < count; ++i)
        text += piece;
    return text;
}

std::u32string numbered(char32_t letter, std::size_t number)
{
    const std::string digits = std::to_string(number);
    return letter + std::u32string(digits.begin(), digits.end());
}

/// "(a1|b1) (a2|b2) ..."
std::u32string pairs(std::size_t count)
{
    std::u32string text;
    for (std::size_t i = 1; i <= count; ++i)
        text += U"(" + numbered(U'a', i) + U"|" + numbered(U'b', i) + U") ";
    return text;
}

std::vector<std::u32string> numberedTerms(char32_t letter, std::size_t count)
{
    std::vector<std::u32string> terms;
    for (std::size_t i = 1; i <= count; ++i)
        terms.push_back(numbered(letter, i));
    return terms;
}

TEST(ParseSearchTermsLimits, SevenPairsGive128Groups)
{
    const ParseTree tree = parseSearchTerms(pairs(7));
    ASSERT_EQ(tree.groups.size(), 128U);
    EXPECT_EQ(tree.groups.front().terms, numberedTerms(U'a', 7));
    EXPECT_EQ(tree.groups.back().terms, numberedTerms(U'b', 7));
    EXPECT_EQ(tree.groups[1].terms[6], U"b7");
}

TEST(ParseSearchTermsLimits, TenPairsGive1024Groups)
{
    const ParseTree tree = parseSearchTerms(pairs(10));
    ASSERT_EQ(tree.groups.size(), 1024U);
    for (const ORGroup& group : tree.groups)
        ASSERT_EQ(group.terms.size(), 10U);
}

TEST(ParseSearchTermsLimits, MorePairsGiveNothing)
{
    EXPECT_EQ(parseSearchTerms(pairs(11)), ParseTree());
    EXPECT_EQ(parseSearchTerms(pairs(30)), ParseTree());
}

TEST(ParseSearchTermsLimits, ALongWordInEveryAlternativeGivesNothing)
{
    const std::u32string factor = U"(" + repeated(72, U"a|") + U"a)";
    EXPECT_EQ(parseSearchTerms(factor + factor + U" x").groups.size(), 73U * 73U);
    EXPECT_EQ(parseSearchTerms(factor + factor + std::u32string(16'000, U'x')), ParseTree());
}

TEST(ParseSearchTermsLimits, NegatedPairsGiveNothing)
{
    std::u32string text = U"NOT (a1 b1";
    for (std::size_t i = 2; i <= 30; ++i)
        text += U" OR " + numbered(U'a', i) + U" " + numbered(U'b', i);
    EXPECT_EQ(parseSearchTerms(text + U")"), ParseTree());
    EXPECT_EQ(parseSearchTerms(U"x OR " + text + U")"), ParseTree());
}

TEST(ParseSearchTermsLimits, NestedParentheses)
{
    for (const std::u32string& closing : {repeated(128, U")"), std::u32string()}) {
        EXPECT_EQ(describe(parseSearchTerms(repeated(128, U"(") + U"x" + closing)), "<x>");
        EXPECT_EQ(parseSearchTerms(repeated(129, U"(") + U"x" + closing + U")"), ParseTree());
    }
}

TEST(ParseSearchTermsLimits, ManyNots)
{
    EXPECT_EQ(describe(parseSearchTerms(repeated(1000, U"NOT ") + U"x")), "<x>");
    EXPECT_EQ(describe(parseSearchTerms(U"y " + repeated(1001, U"NOT ") + U"x")), "<y> -<x>");
    EXPECT_EQ(describe(parseSearchTerms(repeated(16'382, U"-") + U"x")), "<x>");
}

TEST(ParseSearchTermsLimits, LongWord)
{
    const std::u32string longest(16'384, U'x');
    const ParseTree tree = parseSearchTerms(longest);
    ASSERT_EQ(tree.groups.size(), 1U);
    EXPECT_EQ(tree.groups[0].terms, std::vector{longest});
    EXPECT_EQ(parseSearchTerms(longest + U"x"), ParseTree());
}

TEST(ParseSearchTermsLimits, ManyWords)
{
    const ParseTree tree = parseSearchTerms(repeated(8000, U"x "));
    ASSERT_EQ(tree.groups.size(), 1U);
    EXPECT_EQ(tree.groups[0].terms, std::vector<std::u32string>(8000, U"x"));
}

TEST(ParseSearchTermsLimits, ArticleNumbersJoinedByOr)
{
    std::u32string text;
    for (std::size_t i = 1000; i < 2200; ++i)
        text += (text.empty() ? U"" : U" OR ") + numbered(U'A', i);
    EXPECT_EQ(parseSearchTerms(text).groups.size(), 1200U);
    std::replace(text.begin(), text.end(), U'O', U'|');
    text.erase(std::remove(text.begin(), text.end(), U'R'), text.end());
    EXPECT_EQ(parseSearchTerms(text).groups.size(), 1200U);
}

TEST(ParseSearchTermsLimits, TwoThousandArticleNumbers)
{
    std::u32string text;
    for (std::size_t i = 1000; i < 3000; ++i)
        text += (text.empty() ? U"" : U"|") + numbered(U'A', i);
    EXPECT_EQ(parseSearchTerms(text).groups.size(), 2000U);
}

TEST(ParseSearchTermsLimits, OnlyMarks)
{
    const ParseTree quotes = parseSearchTerms(repeated(4000, U"\""));
    ASSERT_EQ(quotes.groups.size(), 1U);
    EXPECT_EQ(quotes.groups[0].terms, std::vector{std::u32string(1999, U'"')});
    EXPECT_EQ(parseSearchTerms(repeated(4000, U"-")), ParseTree());
    EXPECT_EQ(parseSearchTerms(repeated(4000, U")")), ParseTree());
    EXPECT_EQ(parseSearchTerms(repeated(16'384, U"|")), ParseTree());
}

// ---- Memory --------------------------------------------------------------------------------------

// A search for nothing would find what nobody asked for.
TEST(ParseSearchTerms, LackOfMemoryIsNoEmptyTree)
{
    const std::u32string text = U"(a chair with a name that no short string holds | table) -(red | blue)";
    const ParseTree whole = parseSearchTerms(text);
    ASSERT_FALSE(whole.groups.empty());
    std::size_t refused = 0;
    for (bool ended = false; !ended; ++refused) {
        test::failingAllocation = refused;
        try {
            const ParseTree tree = parseSearchTerms(text);
            ended = test::failingAllocation != SIZE_MAX;
            test::failingAllocation = SIZE_MAX;
            ASSERT_TRUE(ended) << "the failure of allocation " << refused << " went unnoticed";
            EXPECT_EQ(describe(tree), describe(whole));
        } catch (const std::bad_alloc&) {
            test::failingAllocation = SIZE_MAX;
        }
    }
    EXPECT_GT(refused, 20U);
}

}  // namespace
