#include <VelkLibrary/UI/TreeItemData.h>

#include "support/TestHost.h"

#include <gmock/gmock.h>

#include <set>
#include <type_traits>
#include <vector>

namespace {

using Library::TreeItemData;
using Library::TreeItemDataLessThan;
using testing::IsEmpty;

static_assert(std::is_empty_v<TreeItemDataLessThan>);

const fileString pathA(std::u32string(U"/a.calib"));
const fileString pathB(std::u32string(U"/b.calib"));

class TreeItems : public test::TestHost
{};

TEST_F(TreeItems, CanBeMadeWithoutArguments)
{
    const TreeItemData item;
    EXPECT_EQ(item.getId(), -1);
    EXPECT_TRUE(item.getDatabasePath().empty());
    EXPECT_EQ(item.getItemName(), U"");
    EXPECT_EQ(item.getSelectionPaneName(), U"");
    EXPECT_TRUE(item.isItem());
    EXPECT_THAT(assertions(), IsEmpty());
}

TEST_F(TreeItems, HaveNoNamesUntilTheyAreGivenThem)
{
    TreeItemData item(4, pathA);
    EXPECT_EQ(item.getItemName(), U"");
    item.setItemName(U"Oak");
    item.setSelectionPaneName(U"Quercus \x1F333");
    EXPECT_EQ(item.getItemName(), U"Oak");
    EXPECT_EQ(item.getSelectionPaneName(), U"Quercus \x1F333");
    EXPECT_EQ(TreeItemData(4, pathA, U"Oak").getSelectionPaneName(), U"");
}

TEST_F(TreeItems, CanBeCopied)
{
    TreeItemData item(4, pathA, U"Oak");
    item.setSelectionPaneName(U"Quercus");
    item.setData(QStringLiteral("a note"), Qt::UserRole + 1);
    item.setFlags(Qt::ItemIsEnabled);
    item.appendRow(new TreeItemData(5, pathA));
    const TreeItemData copy(item);
    TreeItemData assigned(1, pathB, U"Ash");
    assigned = item;
    for (const TreeItemData* const other : {&copy, &std::as_const(assigned)}) {
        EXPECT_TRUE(*other == item);
        EXPECT_EQ(other->getItemName(), U"Oak");
        EXPECT_EQ(other->data(Qt::UserRole + 1).toString(), QStringLiteral("a note"));
        EXPECT_EQ(other->flags(), Qt::ItemIsEnabled);
        EXPECT_EQ(other->type(), -1);
        EXPECT_EQ(other->rowCount(), 0);
    }
}

// ---- Equality and order --------------------------------------------------------------------------

struct Pair
{
    const char* name;
    std::vector<TreeItemData> items;  // two
    bool equal;
    bool firstIsLess;
    bool secondIsLess;
};

void PrintTo(const Pair& row, std::ostream* out)
{
    *out << row.name;
}

TreeItemData itemOf(const fileString& path, long long id, const char32_t* paneName, const char32_t* name)
{
    TreeItemData result(id, path, name);
    result.setSelectionPaneName(paneName);
    return result;
}

class TreeItemPairs : public test::TestHost, public testing::WithParamInterface<Pair>
{};

TEST_P(TreeItemPairs, AreComparedByTheirFields)
{
    const TreeItemData& first = GetParam().items[0];
    const TreeItemData& second = GetParam().items[1];
    EXPECT_EQ(first == second, GetParam().equal);
    EXPECT_EQ(second == first, GetParam().equal);
    EXPECT_EQ(first != second, !GetParam().equal);
    constexpr TreeItemDataLessThan less;
    EXPECT_EQ(less(first, second), GetParam().firstIsLess);
    EXPECT_EQ(less(second, first), GetParam().secondIsLess);
    EXPECT_FALSE(less(first, first));
}

const std::vector<Pair>& pairs()
{
    static const std::vector<Pair> rows = {
        {"Same", {itemOf(pathA, 1, U"p", U"n"), itemOf(pathA, 1, U"p", U"n")}, true, false, false},
        {"OtherText", {itemOf(pathA, 1, U"p", U"n"), itemOf(pathA, 1, U"p", U"m")}, true, false, false},
        {"OtherPaneName", {itemOf(pathA, 1, U"p", U"n"), itemOf(pathA, 1, U"q", U"n")}, false, false, false},
        {"PaneNameByCase", {itemOf(pathA, 1, U"p", U"n"), itemOf(pathA, 1, U"P", U"n")}, false, false, false},
        {"PaneNameBeyond16Bits",
         {itemOf(pathA, 1, U"\x1F333", U"n"), itemOf(pathA, 1, U"\xF333", U"n")},
         false,
         false,
         false},
        {"OtherId", {itemOf(pathA, 1, U"p", U"n"), itemOf(pathA, 2, U"p", U"n")}, false, true, false},
        {"OtherPath", {itemOf(pathA, 1, U"p", U"n"), itemOf(pathB, 1, U"p", U"n")}, false, true, false},
        {"ThePathCountsFirst", {itemOf(pathA, 9, U"p", U"n"), itemOf(pathB, 1, U"p", U"n")}, false, true, false},
        {"NegativeId", {itemOf(pathA, -1, U"p", U"n"), itemOf(pathA, 0, U"p", U"n")}, false, true, false},
    };
    return rows;
}
INSTANTIATE_TEST_SUITE_P(Rows, TreeItemPairs, testing::ValuesIn(pairs()),
                         [](const auto& row) { return row.param.name; });

TEST_F(TreeItems, StandInASetOnceForEachPathAndId)
{
    std::set<TreeItemData, TreeItemDataLessThan> items;
    for (const fileString& path : {pathB, pathA}) {
        for (const long long id : {3, 1, 3, 2})
            items.insert(TreeItemData(id, path));
    }
    std::vector<std::string> order;
    for (const TreeItemData& found : items)
        order.push_back(found.getDatabasePath().utf8() + " " + std::to_string(found.getId()));
    EXPECT_THAT(order, testing::ElementsAre("/a.calib 1", "/a.calib 2", "/a.calib 3", "/b.calib 1", "/b.calib 2",
                                            "/b.calib 3"));
}

}  // namespace
