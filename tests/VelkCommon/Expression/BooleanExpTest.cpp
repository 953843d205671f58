#include <VelkCommon/Expression/BooleanExp.h>

#include "ExpressionText.h"

#include <VelkCommon/Text/StringConvert.h>

#include <gtest/gtest.h>

#include <ostream>
#include <stdexcept>
#include <type_traits>

namespace {

using test::build;
using test::describe;
using Group = BooleanExp::Group;
using Term = BooleanExp::Term;

static_assert(std::is_abstract_v<BooleanExp::Node>);

TEST(BooleanExpNode, TellsTermsFromGroups)
{
    Term term(U"chair", true);
    Group group;
    test::UnknownNode unknown;
    const BooleanExp::Node& constTerm = term;
    const BooleanExp::Node& constGroup = group;

    EXPECT_EQ(term.asTerm(), &term);
    EXPECT_EQ(constTerm.asTerm(), &term);
    EXPECT_EQ(term.asGroup(), nullptr);
    EXPECT_EQ(constTerm.asGroup(), nullptr);
    EXPECT_EQ(group.asGroup(), &group);
    EXPECT_EQ(constGroup.asGroup(), &group);
    EXPECT_EQ(group.asTerm(), nullptr);
    EXPECT_EQ(constGroup.asTerm(), nullptr);
    EXPECT_EQ(unknown.asTerm(), nullptr);
    EXPECT_EQ(unknown.asGroup(), nullptr);
}

TEST(BooleanExpNode, HoldsTextAndNegation)
{
    const Term plain(U"Chair");
    const Term negated(U"Chair", true);

    EXPECT_EQ(plain.text, U"Chair");
    EXPECT_FALSE(plain.negated);
    EXPECT_TRUE(negated.negated);
    EXPECT_FALSE(Group().negated);
}

TEST(BooleanExpNode, ConjunctionsHaveTheirNumbers)
{
    EXPECT_EQ(static_cast<int>(Group::And), 0);
    EXPECT_EQ(static_cast<int>(Group::Or), 1);
    EXPECT_TRUE((std::is_same_v<std::underlying_type_t<Group::Conjunction>, std::int32_t>));
    EXPECT_EQ(Group::ConjoinedTerm().conjunction, Group::And);
}

TEST(BooleanExpGroup, VisitsConjoinedTermsInOrderWithoutTheFirst)
{
    const BooleanExp expression = build("a & b | c & d");
    std::string visited;
    expression.root->forEachConjoinedTerm([&](const Group::ConjoinedTerm& term) {
        visited += term.conjunction == Group::Or ? "|" : "&";
        visited += StringConvert::toStdUtf8String(term.expression->asTerm()->text);
    });
    EXPECT_EQ(visited, "&b|c&d");
}

TEST(BooleanExpGroup, VisitingNothingNeedsNoFunction)
{
    EXPECT_NO_THROW(build("a").root->forEachConjoinedTerm(nullptr));
    EXPECT_THROW(build("a & b").root->forEachConjoinedTerm(nullptr), std::bad_function_call);
}

TEST(BooleanExpGroup, DestroysEveryNodeOnce)
{
    std::size_t destroyed = 0;
    const auto node = [&] { return std::make_unique<test::UnknownNode>(&destroyed); };
    {
        Group root;
        root.first = node();
        for (int i = 0; i < 3; ++i) {
            auto outer = std::make_unique<Group>();
            auto inner = std::make_unique<Group>();
            inner->conjoinedTerms.push_back({node(), Group::And});
            inner->conjoinedTerms.push_back({nullptr, Group::And});
            auto innermost = std::make_unique<Group>();
            innermost->first = node();
            inner->first = std::move(innermost);
            outer->first = std::move(inner);
            outer->conjoinedTerms.push_back({node(), Group::Or});
            root.conjoinedTerms.push_back({std::move(outer), Group::And});
        }
        auto first = std::make_unique<Group>();
        first->first = std::move(root.first);
        root.first = std::move(first);
    }
    EXPECT_EQ(destroyed, 10U);
}

/// `depth` nested groups around x, alternately as first and as following operand.
BooleanExp nested(std::size_t depth)
{
    std::unique_ptr<BooleanExp::Node> innermost = std::make_unique<Term>(U"x");
    for (std::size_t level = 0; level < depth; ++level) {
        auto group = std::make_unique<Group>();
        if (level % 2 == 0) {
            group->first = std::move(innermost);
        } else {
            group->first = std::make_unique<Term>(U"y");
            group->conjoinedTerms.push_back({std::move(innermost), Group::And});
        }
        innermost = std::move(group);
    }
    BooleanExp expression;
    expression.root = std::make_unique<Group>();
    expression.root->first = std::move(innermost);
    return expression;
}

TEST(BooleanExpGroup, DestroysAnyDepth)
{
    EXPECT_NO_FATAL_FAILURE(nested(200'000));
}

TEST(BooleanExpNormalForm, TakesNestingToItsLimit)
{
    BooleanExp deepest = nested(512);
    deepest.convertToDisjunctiveNormalForm();
    EXPECT_EQ(deepest.root->conjoinedTerms.size(), 256U);

    BooleanExp tooDeep = nested(513);
    EXPECT_THROW(tooDeep.convertToDisjunctiveNormalForm(), std::length_error);
    EXPECT_NE(tooDeep.root->first->asGroup(), nullptr);
}

TEST(BooleanExpNormalForm, RefusesAnyDepthBeyond)
{
    BooleanExp expression = nested(200'000);
    EXPECT_THROW(expression.convertToDisjunctiveNormalForm(), std::length_error);
    EXPECT_NE(expression.root->first->asGroup(), nullptr);
}

// ---- what parse() builds

struct ParseCase
{
    const char* name;
    const char32_t* text;
    const char* tree;
};

void PrintTo(const ParseCase& row, std::ostream* out)
{
    *out << StringConvert::toStdUtf8String(row.text);
}

const ParseCase parseCases[] = {
    // Groups and operators
    {"SingleTerm", U"Chair", "Chair"},
    {"BlankIsAnd", U"a b", "a & b"},
    {"OperatorWords", U"a AND b OR c", "a & b | c"},
    {"Bar", U"a|b", "a | b"},
    {"NegatedTerm", U"a NOT b", "a & !b"},
    {"NestedGroup", U"(a OR b) c", "(a | b) & c"},
    {"NegatedGroup", U"a -(b c)", "a & !(b & c)"},
    {"DoubleNegation", U"NOT -(a)", "(a)"},
    {"TripleNegation", U"NOT NOT NOT a", "!a"},
    {"GroupsNeedNoBlanks", U"(a)(b)c(d)", "(a) & (b) & c(d)"},
    {"Nothing", U"", "null"},
    {"NothingInGroups", U" ( () NOT () ) ", "null"},
    // An operand that is left out takes its NOTs with it, but the operator before it stays
    {"EmptyGroupTakesItsNot", U"a NOT () b", "a & b"},
    {"EmptyGroupKeepsTheOperator", U"a OR () b", "a | b"},
    {"EmptyPhraseTakesItsNot", U"a -\"\" b", "a & b"},
    {"EmptyPhraseKeepsTheOperator", U"a OR \"\" b", "a | b"},
    {"BarTakesTheNots", U"a NOT | b", "a | b"},
    {"BarAfterLeadingNot", U"NOT | a", "a"},
    {"UnopenedParenthesisKeepsTheNot", U"a NOT ) b", "a & !b"},
    {"NotEndsWithItsGroup", U"(a NOT) b", "(a) & b"},
    {"OperatorEndsWithItsGroup", U"(a OR) b", "(a) & b"},
    {"LastOfSeveralOperators", U"a | AND OR | AND b", "a & b"},
    {"OperatorBehindBarAndNot", U"a NOT | AND b", "a & b"},
    // Operators that count as words
    {"AndInEmptyGroup", U"(AND)", "(AND)"},
    {"AndBehindEmptyGroup", U"() AND a", "AND & a"},
    {"AndBehindLeadingBar", U"| AND a", "AND & a"},
    {"OrBehindHyphen", U"a -OR", "a & !OR"},
    {"AndBehindTwoNots", U"a NOT NOT AND b", "a & AND & b"},
    {"NotBehindNotIsNoWord", U"a NOT NOT", "a"},
    {"OnlyCapitalsAreOperators", U"a Or b aNd c not d", "a & Or & b & aNd & c & not & d"},
    {"OnlyWholeWordsAreOperators", U"a ANDOR b NOTE", "a & ANDOR & b & NOTE"},
    {"OperatorEndsAtBar", U"a AND|b", "a | b"},
    {"OperatorEndsAtParenthesis", U"(a OR)", "(a)"},
    {"OperatorWithParenthesisIsAWord", U"a OR(b)", "a & OR(b)"},
    // Words
    {"WordKeepsQuotesInside", U"a\"b c\"", "a\"b & c\""},
    {"WordKeepsPairedParentheses", U"a(b(c)d)e", "a(b(c)d)e"},
    {"WordEndsAtUnpairedParenthesis", U"(a(b)c)d", "(a(b)c) & d"},
    {"WordKeepsUnclosedParenthesis", U"a(b c", "a(b & c"},
    {"WordEndsAtBarInParentheses", U"a(b|c)", "a(b | c"},
    {"WordKeepsControlDelete", U"a\u007Fb", "a\u007Fb"},
    // Phrases
    {"PhraseKeepsBlanks", U"\"a  b \"", "a  b "},
    {"PhraseKeepsOperators", U"\"a|(b) -c OR\"", "a|(b) -c OR"},
    {"PhraseClosesWithAnyQuote", U"\u201Ea\u201C \u201Db\"", "a & b"},
    {"DoubledQuotesKeepTheFirst", U"\"a\u201C\"b\"", "a\u201Cb"},
    {"PhrasesNeedNoBlanks", U"\"a\"b\"c\"", "a & b\"c\""},
    {"PhraseStartsWithDoubledQuote", U"\"\"\"a\"", "\"a"},
    {"PhraseTakesClosingParenthesis", U"(a \")", "(a & ))"},
    {"NoOtherQuotes", U"'a b' \u00ABc\u00BB", "'a & b' & \u00ABc\u00BB"},
    // Lone marks
    {"LoneMarkInTheMiddle", U"a - b", "a & - & b"},
    {"LoneMarkAtTheStart", U"- a", "- & a"},
    {"LoneMarkBeforeBar", U"a -|b", "a & - | b"},
    {"LoneMarkAtTheEndOfItsGroup", U"(a - ) b", "(a) & b"},
    {"LoneMarkBeforeItsGroupsEnd", U"(a -) b", "(a) & b"},
    {"LoneMarkBeforeUnopenedParenthesisAtTheEnd", U"a - )", "a"},
    {"LoneMarkBeforeUnopenedParenthesisAndMore", U"a - ) b", "a & - & b"},
    {"LoneMarkBeforeOperator", U"a - AND", "a & -"},
    {"LoneMarkUnderNot", U"a NOT - b", "a & !- & b"},
    {"TwoLoneMarksAtTheEnd", U"a - -", "a & -"},
    {"LoneTypographicQuote", U"a \u201D b", "a & \u201D & b"},
};

class ParsedTree : public testing::TestWithParam<ParseCase>
{};

TEST_P(ParsedTree, IsAsDescribed)
{
    EXPECT_EQ(describe(BooleanExp::parse(GetParam().text)), GetParam().tree);
}

INSTANTIATE_TEST_SUITE_P(BooleanExp, ParsedTree, testing::ValuesIn(parseCases),
                         [](const auto& row) { return std::string(row.param.name); });

TEST(BooleanExpParse, SeparatesAtEveryBlank)
{
    const char32_t blanks[] = {0x85,   0xA0,   0x1680, 0x2000, 0x2001, 0x2002, 0x2003, 0x2004, 0x2005, 0x2006,
                               0x2007, 0x2008, 0x2009, 0x200A, 0x2028, 0x2029, 0x202F, 0x205F, 0x3000};
    std::u32string all(std::begin(blanks), std::end(blanks));
    for (char32_t c = 0; c <= U' '; ++c)
        all.push_back(c);
    for (const char32_t blank : all)
        EXPECT_EQ(describe(BooleanExp::parse(U"a" + std::u32string(1, blank) + U"b")), "a & b") << std::hex << +blank;
}

TEST(BooleanExpParse, KeepsWhatOnlyLooksBlank)
{
    constexpr char32_t notBlank[] = {0x7F,   0x84,   0x86,   0xAD,   0x180E, 0x200B,
                                     0x200C, 0x200D, 0x2060, 0xFEFF, 0xD800, 0x110000};
    for (const char32_t c : notBlank)
        EXPECT_EQ(BooleanExp::parse(U"a" + std::u32string(1, c) + U"b")->root->conjoinedTerms.size(), 0U)
            << std::hex << +c;
}

TEST(BooleanExpParse, LimitsTheText)
{
    EXPECT_NE(BooleanExp::parse(std::u32string(16'384, U'x')), nullptr);
    EXPECT_THROW(BooleanExp::parse(std::u32string(16'385, U'x')), std::length_error);
    EXPECT_THROW(BooleanExp::parse(std::u32string(16'385, U' ')), std::length_error);
}

TEST(BooleanExpParse, LimitsOpenGroups)
{
    EXPECT_NE(BooleanExp::parse(std::u32string(128, U'(') + U"x"), nullptr);
    EXPECT_THROW(BooleanExp::parse(std::u32string(129, U'(') + U"x"), std::length_error);
    EXPECT_THROW(BooleanExp::parse(std::u32string(129, U'(')), std::length_error);

    std::u32string oneByOne;
    for (int i = 0; i < 1'000; ++i)
        oneByOne += U"(x) ";
    EXPECT_EQ(BooleanExp::parse(oneByOne)->root->conjoinedTerms.size(), 999U);
}

}  // namespace
