// The parser only builds terms and groups, and of the normal form only flat ones. These are other trees.
#include <VelkCommon/Reporting/Assertions.h>
#include <VelkLibrary/Search/detail/Alternatives.h>

#include "ParseTreeText.h"
#include "support/Numbers.h"
#include "support/TestHost.h"

#include <gtest/gtest.h>

#include <memory>

namespace {

using Library::Search::detail::alternativesOf;
using Group = BooleanExp::Group;
using Term = BooleanExp::Term;

using test::describe;

class UnknownNode : public BooleanExp::Node
{};

class Alternatives : public test::TestHost
{
protected:
    static void append(Group& group, Group::Conjunction conjunction, std::unique_ptr<BooleanExp::Node> node)
    {
        group.conjoinedTerms.push_back({std::move(node), conjunction});
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

    EXPECT_EQ(describe(alternativesOf(root)), "<a> <b>");
    ASSERT_EQ(assertions().size(), 1U);
    EXPECT_EQ(assertions()[0].sourceFile, "Search/Info");
    EXPECT_EQ(assertions()[0].line, test::reportLine::searchNode);
    EXPECT_EQ(assertions()[0].kind, Velk::softAssertion);
    EXPECT_EQ(assertions()[0].expression, "Unhandled type");
}

TEST_F(Alternatives, UnknownAlternativeDisappears)
{
    Group root;
    root.first = std::make_unique<UnknownNode>();
    append(root, Group::Or, term(U"a"));
    append(root, Group::Or, std::make_unique<UnknownNode>());

    EXPECT_EQ(describe(alternativesOf(root)), "<a>");
    EXPECT_EQ(assertions().size(), 2U);
}

TEST_F(Alternatives, NestedGroupIsReadInPlace)
{
    auto inner = std::make_unique<Group>();
    inner->first = term(U"b");
    append(*inner, Group::Or, term(U"c"));
    append(*inner, Group::And, term(U"d", true));
    Group root;
    root.first = term(U"a");
    append(root, Group::And, std::move(inner));
    append(root, Group::And, term(U"e"));

    EXPECT_EQ(describe(alternativesOf(root)), "<a> <b> ; <c> <e> -<d>");
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

    EXPECT_EQ(describe(alternativesOf(root)), "<a>");
}

TEST_F(Alternatives, MissingOperandsAreNothing)
{
    Group root;
    append(root, Group::Or, term(U"a"));
    append(root, Group::Or, nullptr);

    EXPECT_EQ(describe(alternativesOf(root)), "<a>");
    EXPECT_EQ(describe(alternativesOf(Group())), "");
    EXPECT_TRUE(assertions().empty());
}

}  // namespace
