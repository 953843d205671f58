// The tree as a value.
#include <VelkLibrary/Search/ParseTree.h>

#include <gtest/gtest.h>

#include <functional>

namespace {

using Library::Search::ORGroup;
using Library::Search::parseSearchTerms;
using Library::Search::ParseTree;

TEST(ParseTreeValue, EqualWhenGroupsAreEqualInOrder)
{
    const ParseTree tree = parseSearchTerms(U"a b -c OR d");
    EXPECT_EQ(tree, parseSearchTerms(U"a AND b NOT c | d"));
    EXPECT_NE(tree, parseSearchTerms(U"b a -c OR d"));
    EXPECT_NE(tree, parseSearchTerms(U"d OR a b -c"));
    EXPECT_NE(tree, parseSearchTerms(U"a b -c"));
    EXPECT_NE(tree, parseSearchTerms(U"a b -C OR d"));
    EXPECT_EQ(ParseTree(), ParseTree());
}

TEST(ParseTreeValue, GroupsCompareBothLists)
{
    const ORGroup group{{U"a", U"b"}, {U"c"}};
    EXPECT_EQ(group, (ORGroup{{U"a", U"b"}, {U"c"}}));
    EXPECT_NE(group, (ORGroup{{U"b", U"a"}, {U"c"}}));
    EXPECT_NE(group, (ORGroup{{U"a", U"b"}, {}}));
    EXPECT_NE(group, (ORGroup{{U"a"}, {U"c"}}));
    EXPECT_NE(group, (ORGroup{{U"a", U"b", U"c"}, {}}));
}

TEST(ParseTreeValue, VisitsTermsThenExcludedTermsGroupByGroup)
{
    ParseTree tree{{ORGroup{{U"a", U"b"}, {U"c"}}, ORGroup{{U"d"}, {U"e"}}}};
    std::u32string visited;
    tree.forEachTerm([&](std::u32string& term) { visited += term; });
    EXPECT_EQ(visited, U"abcde");
}

TEST(ParseTreeValue, VisitorMayRewrite)
{
    ParseTree tree{{ORGroup{{U"a", U"b"}, {U"c"}}}};
    tree.forEachTerm([](std::u32string& term) { term[0] -= U'a' - U'A'; });
    EXPECT_EQ(tree, (ParseTree{{ORGroup{{U"A", U"B"}, {U"C"}}}}));
}

TEST(ParseTreeValue, EmptyVisitorThrowsAtTheFirstTerm)
{
    EXPECT_NO_THROW(ParseTree().forEachTerm(nullptr));
    EXPECT_NO_THROW((ParseTree{{ORGroup{}}}).forEachTerm(nullptr));
    EXPECT_THROW((ParseTree{{ORGroup{{U"a"}, {}}}}).forEachTerm(nullptr), std::bad_function_call);
    EXPECT_THROW((ParseTree{{ORGroup{{}, {U"a"}}}}).forEachTerm(nullptr), std::bad_function_call);
}

TEST(ParseTreeValue, RemovesEmptyTexts)
{
    ORGroup group{{U"", U"a", U"", U"b", U""}, {U"", U"c", U" "}};
    group.removeInvalidTerms();
    EXPECT_EQ(group, (ORGroup{{U"a", U"b"}, {U"c", U" "}}));

    ORGroup onlyEmpty{{U""}, {U"", U""}};
    onlyEmpty.removeInvalidTerms();
    EXPECT_EQ(onlyEmpty, ORGroup());
}

}  // namespace
