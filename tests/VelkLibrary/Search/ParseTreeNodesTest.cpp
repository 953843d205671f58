// The parser builds terms and groups only, and its normal form holds flat groups only. Other trees reach the
// walk only from within its source file, so this program compiles that file instead of using the library.
#include <VelkLibrary/Search/ParseTree.cpp>

#include "support/TestHost.h"

#include <gtest/gtest.h>

namespace Library::Search {
namespace {

using Group = BooleanExp::Group;
using Term = BooleanExp::Term;

class UnknownNode : public BooleanExp::Node
{};

class ParseTreeNodes : public test::TestHost
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

    ParseTree walk(const Group& group)
    {
        ParseTree tree{{ORGroup()}};
        addGroup(tree, group);
        closeGroup(tree);
        return tree;
    }
};

TEST_F(ParseTreeNodes, UnknownNodeIsReportedAndSkipped)
{
    Group root;
    root.first = term(U"a");
    append(root, Group::And, std::make_unique<UnknownNode>());
    append(root, Group::And, term(U"b"));

    EXPECT_EQ(walk(root), (ParseTree{{ORGroup{{U"a", U"b"}, {}}}}));
    ASSERT_EQ(assertions().size(), 1U);
    EXPECT_EQ(assertions()[0].sourceFile, "Search/Info");
    EXPECT_EQ(assertions()[0].line, 142U);
    EXPECT_EQ(assertions()[0].kind, -4);
    EXPECT_EQ(assertions()[0].expression, "Unhandled type");
}

TEST_F(ParseTreeNodes, UnknownAlternativeDisappears)
{
    Group root;
    root.first = std::make_unique<UnknownNode>();
    append(root, Group::Or, term(U"a"));
    append(root, Group::Or, std::make_unique<UnknownNode>());

    EXPECT_EQ(walk(root), (ParseTree{{ORGroup{{U"a"}, {}}}}));
    EXPECT_EQ(assertions().size(), 2U);
}

TEST_F(ParseTreeNodes, NestedGroupIsReadInPlace)
{
    auto inner = std::make_unique<Group>();
    inner->first = term(U"b");
    append(*inner, Group::Or, term(U"c"));
    append(*inner, Group::And, term(U"d", true));
    Group root;
    root.first = term(U"a");
    append(root, Group::And, std::move(inner));
    append(root, Group::And, term(U"e"));

    EXPECT_EQ(walk(root), (ParseTree{{ORGroup{{U"a", U"b"}, {}}, ORGroup{{U"c", U"e"}, {U"d"}}}}));
    EXPECT_TRUE(assertions().empty());
}

TEST_F(ParseTreeNodes, EmptyTextsAreDropped)
{
    Group root;
    root.first = term(U"");
    append(root, Group::And, term(U"x", true));
    append(root, Group::Or, term(U"a"));
    append(root, Group::And, term(U"", true));
    append(root, Group::And, term(U""));

    EXPECT_EQ(walk(root), (ParseTree{{ORGroup{{U"a"}, {}}}}));
}

TEST_F(ParseTreeNodes, MissingOperandsAreNothing)
{
    Group root;
    append(root, Group::Or, term(U"a"));
    append(root, Group::Or, nullptr);

    EXPECT_EQ(walk(root), (ParseTree{{ORGroup{{U"a"}, {}}}}));
    EXPECT_EQ(walk(Group()), ParseTree());
    EXPECT_TRUE(assertions().empty());
}

}  // namespace
}  // namespace Library::Search
