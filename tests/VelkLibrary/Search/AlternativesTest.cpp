// The parser only builds terms and groups, and terms with a text. These are other trees.
#include <VelkCommon/Reporting/Assertions.h>
#include <VelkLibrary/Search/detail/Alternatives.h>

#include "ParseTreeText.h"
#include "support/Numbers.h"
#include "support/TestHost.h"

#include <gtest/gtest.h>

#include <memory>
#include <utility>

namespace {

using Group = BooleanExp::Group;
using Term = BooleanExp::Term;

class UnknownNode : public BooleanExp::Node
{};

class Alternatives : public test::TestHost
{
protected:
    static void append(Group& group, Group::Conjunction conjunction, std::unique_ptr<BooleanExp::Node> node)
    {
        group.conjoinedTerms.push_back({std::move(node), conjunction});
    }

    /// Takes the operands of `root`.
    static std::string alternativesOf(Group& root)
    {
        BooleanExp expression;
        expression.root = std::make_unique<Group>();
        expression.root->first = std::move(root.first);
        expression.root->conjoinedTerms = std::move(root.conjoinedTerms);
        return test::describe(Library::Search::detail::alternativesOf(expression));
    }

    static std::unique_ptr<Term> term(const char32_t* text, bool negated = false)
    {
        return std::make_unique<Term>(text, negated);
    }
};

TEST_F(Alternatives, UnknownNodeIsReportedAndSkipped)
{
    Group root;
    root.first = term(U"a");
    append(root, Group::And, std::make_unique<UnknownNode>());
    append(root, Group::And, term(U"b"));

    EXPECT_EQ(alternativesOf(root), "<a> <b>");
    ASSERT_EQ(assertions().size(), 1U);
    EXPECT_EQ(assertions()[0].sourceFile, "Search/Info");
    EXPECT_EQ(assertions()[0].line, test::reportLine::searchNode);
    EXPECT_EQ(assertions()[0].kind, Velk::softAssertion);
    EXPECT_EQ(assertions()[0].expression, "Unhandled type");
}

TEST_F(Alternatives, UnknownNodeIsReportedForEachAlternative)
{
    auto inner = std::make_unique<Group>();
    inner->first = term(U"a");
    append(*inner, Group::Or, term(U"b"));
    Group root;
    root.first = std::make_unique<UnknownNode>();
    append(root, Group::And, std::move(inner));

    EXPECT_EQ(alternativesOf(root), "<a> ; <b>");
    EXPECT_EQ(assertions().size(), 2U);
}

TEST_F(Alternatives, UnknownAlternativeDisappears)
{
    Group root;
    root.first = std::make_unique<UnknownNode>();
    append(root, Group::Or, term(U"a"));
    append(root, Group::Or, std::make_unique<UnknownNode>());

    EXPECT_EQ(alternativesOf(root), "<a>");
    EXPECT_EQ(assertions().size(), 2U);
}

TEST_F(Alternatives, NestedGroupIsMultipliedOut)
{
    auto inner = std::make_unique<Group>();
    inner->first = term(U"b");
    append(*inner, Group::Or, term(U"c"));
    append(*inner, Group::And, term(U"d", true));
    Group root;
    root.first = term(U"a");
    append(root, Group::And, std::move(inner));
    append(root, Group::And, term(U"e"));

    EXPECT_EQ(alternativesOf(root), "<a> <b> <e> ; <a> <c> <e> -<d>");
    EXPECT_TRUE(assertions().empty());
}

TEST_F(Alternatives, EmptyTextsAreDropped)
{
    Group root;
    root.first = term(U"");
    append(root, Group::And, term(U"x", true));
    append(root, Group::Or, term(U"a"));
    append(root, Group::And, term(U"", true));
    append(root, Group::And, term(U""));

    EXPECT_EQ(alternativesOf(root), "<a>");
}

TEST_F(Alternatives, MissingOperandsAreNothing)
{
    Group root;
    append(root, Group::Or, term(U"a"));
    append(root, Group::Or, nullptr);

    EXPECT_EQ(alternativesOf(root), "<a>");
    Group nothing;
    EXPECT_EQ(alternativesOf(nothing), "");
    EXPECT_TRUE(assertions().empty());
}

}  // namespace
