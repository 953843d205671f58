#include <VelkLibrary/Search/Info.h>

#include <gtest/gtest.h>

#include <type_traits>
#include <utility>

namespace {

using Library::Search::copyRestrictions;
using Library::Search::Info;
using Library::Search::ORGroup;
using Library::Search::parseSearchTerms;
using Library::Search::ParseTree;

const std::set<libType> objects{libType(1)};
const std::set<libType> materials{libType(2), libType(-7)};

/// Legacy, text, expression, preset: a letter for each flag that is set.
std::string flags(const Info& info)
{
    return std::string(info.legacySearch ? "L" : "") + (info.textSearch ? "T" : "") +
           (info.expressionSearch ? "E" : "") + (info.presetSearch ? "P" : "");
}

Info restricted()
{
    Info info(objects);
    info.restrictionSet1 = {1, -1};
    info.restrictionSet2 = {2};
    return info;
}

bool sameRestrictions(const Info& a, const Info& b)
{
    return a.libTypes == b.libTypes && a.restrictionSet1 == b.restrictionSet1 && a.restrictionSet2 == b.restrictionSet2;
}

TEST(SearchInfo, StartsAsAnExpressionSearch)
{
    const Info info(objects);
    EXPECT_EQ(flags(info), "TE");
    EXPECT_EQ(info.libTypes, objects);
    EXPECT_EQ(info.parseTree, ParseTree());
    EXPECT_TRUE(info.restrictionSet1.empty());
    EXPECT_TRUE(info.restrictionSet2.empty());
    EXPECT_TRUE(info.uniqueId.empty());
}

TEST(SearchInfo, CopiesAndMovesAsAValue)
{
    Info original = restricted();
    original.setupLegacySearch({"chair"}, materials);
    Info copy = original;
    copy.setupUniqueIdSearch("id");
    EXPECT_EQ(flags(original), "LTP");
    EXPECT_EQ(original.parseTree.groups.size(), 1U);

    const Info moved = std::move(original);
    EXPECT_EQ(flags(moved), "LTP");
    EXPECT_EQ(moved.parseTree, (ParseTree{{ORGroup{{U"chair"}, {}}}}));
    EXPECT_EQ(moved.libTypes, materials);
}

TEST(SearchInfo, KindsAreOpaque32BitKeys)
{
    EXPECT_TRUE((std::is_same_v<std::underlying_type_t<libType>, std::int32_t>));
}

TEST(SearchInfo, IsEmptyWithoutTermsIdAndRestrictions)
{
    EXPECT_TRUE(Info({}).empty());
    EXPECT_FALSE(Info(objects).empty());

    Info info(std::set<libType>{});
    info.restrictionSet1 = {0};
    EXPECT_FALSE(info.empty());
    info.restrictionSet1.clear();
    info.restrictionSet2 = {0};
    EXPECT_FALSE(info.empty());
    info.restrictionSet2.clear();
    info.uniqueId = "x";
    EXPECT_FALSE(info.empty());
    info.uniqueId.clear();
    info.parseTree = parseSearchTerms(U"chair");
    EXPECT_FALSE(info.empty());
    info.parseTree = {};
    EXPECT_TRUE(info.empty());
}

TEST(SearchInfo, FlagsPlayNoPartInEmpty)
{
    Info info(std::set<libType>{});
    info.setupUniqueIdSearch("");
    EXPECT_EQ(flags(info), "P");
    EXPECT_TRUE(info.empty());
}

TEST(SearchInfo, LegacySearchTakesWordsAsTheyAre)
{
    Info info = restricted();
    info.uniqueId = "id";
    info.parseTree = parseSearchTerms(U"a OR b -c");
    info.setupLegacySearch({"Chair", "", "caf\xC3\xA9 noir", "OR"}, materials);

    EXPECT_EQ(flags(info), "LTP");
    EXPECT_EQ(info.parseTree, (ParseTree{{ORGroup{{U"Chair", U"", U"caf\u00E9 noir", U"OR"}, {}}}}));
    EXPECT_EQ(info.libTypes, materials);
    EXPECT_TRUE(info.uniqueId.empty());
    EXPECT_EQ(info.restrictionSet1, restricted().restrictionSet1);
    EXPECT_EQ(info.restrictionSet2, restricted().restrictionSet2);
}

TEST(SearchInfo, LegacySearchWithoutWordsIsNotEmpty)
{
    Info info(std::set<libType>{});
    info.setupLegacySearch({}, {});
    EXPECT_EQ(info.parseTree, ParseTree{{ORGroup()}});
    EXPECT_FALSE(info.empty());
}

TEST(SearchInfo, LegacySearchMayClearTheKinds)
{
    Info info(objects);
    info.setupLegacySearch({"a"}, {});
    EXPECT_TRUE(info.libTypes.empty());
    info.setupLegacySearch({"b"}, info.libTypes = materials);
    EXPECT_EQ(info.libTypes, materials);
}

TEST(SearchInfo, UniqueIdSearchDropsTermsOnly)
{
    Info info = restricted();
    info.parseTree = parseSearchTerms(U"chair");
    info.setupUniqueIdSearch("id-1");

    EXPECT_EQ(flags(info), "P");
    EXPECT_EQ(info.uniqueId, "id-1");
    EXPECT_EQ(info.parseTree, ParseTree());
    EXPECT_TRUE(sameRestrictions(info, restricted()));
}

TEST(SearchInfo, UniqueIdSearchTakesItsOwnField)
{
    const std::string id = "an id that is too long for the string's own room";
    Info info(objects);
    info.setupUniqueIdSearch(id);
    info.setupUniqueIdSearch(info.uniqueId);
    EXPECT_EQ(info.uniqueId, id);
    info.setupUniqueIdSearch(std::move(info.uniqueId));
    EXPECT_EQ(info.uniqueId, id);
}

TEST(SearchInfo, LaterSetupReplacesTheEarlier)
{
    Info info(objects);
    info.setupLegacySearch({"a"}, materials);
    info.setupUniqueIdSearch("id");
    EXPECT_EQ(flags(info), "P");
    EXPECT_EQ(info.libTypes, materials);
    info.setupLegacySearch({"b"}, objects);
    EXPECT_EQ(flags(info), "LTP");
    EXPECT_TRUE(info.uniqueId.empty());
}

TEST(CopyRestrictions, CopiesEachOneThatIsNotEmpty)
{
    Info target(materials);
    target.restrictionSet1 = {8};
    target.restrictionSet2 = {9};
    copyRestrictions(target, restricted());
    EXPECT_TRUE(sameRestrictions(target, restricted()));
}

TEST(CopyRestrictions, EmptyOnesNeverClear)
{
    Info target = restricted();
    copyRestrictions(target, Info({}));
    EXPECT_TRUE(sameRestrictions(target, restricted()));

    Info source(std::set<libType>{});
    source.restrictionSet2 = {5};
    copyRestrictions(target, source);
    EXPECT_EQ(target.libTypes, objects);
    EXPECT_EQ(target.restrictionSet1, restricted().restrictionSet1);
    EXPECT_EQ(target.restrictionSet2, std::set<std::int32_t>{5});
}

TEST(CopyRestrictions, LeavesTermsFlagsAndId)
{
    Info target(std::set<libType>{});
    target.parseTree = parseSearchTerms(U"chair");
    Info source = restricted();
    source.setupUniqueIdSearch("id");
    copyRestrictions(target, source);
    EXPECT_EQ(target.parseTree, parseSearchTerms(U"chair"));
    EXPECT_EQ(flags(target), "TE");
    EXPECT_TRUE(target.uniqueId.empty());
}

TEST(CopyRestrictions, OntoItselfChangesNothing)
{
    Info info = restricted();
    copyRestrictions(info, info);
    EXPECT_TRUE(sameRestrictions(info, restricted()));
}

}  // namespace
