#include <VelkCommon/Reporting/Assertions.h>
#include <VelkLibrary/UI/TreeCategoryData.h>
#include <VelkLibrary/UI/TreeData.h>
#include <VelkLibrary/UI/TreeFolderData.h>
#include <VelkLibrary/UI/TreeItemData.h>

#include "support/Numbers.h"
#include "support/TestHost.h"

#include <gmock/gmock.h>

#include <limits>
#include <memory>
#include <type_traits>

namespace {

using Library::LibraryCategory;
using Library::TreeCategoryData;
using Library::TreeData;
using Library::TreeFolderData;
using Library::TreeItemData;
using testing::IsEmpty;
using testing::SizeIs;

static_assert(std::is_abstract_v<TreeData>);
static_assert(std::is_base_of_v<QStandardItem, TreeData>);
static_assert(std::is_same_v<std::underlying_type_t<LibraryCategory>, std::int32_t>);

constexpr LibraryCategory someCategory{7};
const fileString database(std::u32string(U"/libraries/plants.calib"));

// A node of no particular kind, to test what all kinds share.
class PlainNode : public TreeData
{
public:
    using TreeData::TreeData;
    bool isValid() const override { return false; }
};

class TreeNodes : public test::TestHost
{};

// ---- Ids -----------------------------------------------------------------------------------------

struct IdCase
{
    const char* name;
    long long id;
    bool isItemId;
};

void PrintTo(const IdCase& row, std::ostream* out)
{
    *out << row.id;
}

class TreeIds : public test::TestHost, public testing::WithParamInterface<IdCase>
{
protected:
    void expectReport(bool expected, const char* source, std::size_t line, const char* expression) const
    {
        ASSERT_THAT(assertions(), SizeIs(expected ? 1 : 0));
        if (!expected)
            return;
        EXPECT_EQ(assertions()[0].sourceFile, source);
        EXPECT_EQ(assertions()[0].line, line);
        EXPECT_EQ(assertions()[0].kind, Velk::softAssertion);
        EXPECT_EQ(assertions()[0].expression, expression);
    }
};

TEST_P(TreeIds, AreThoseOfItemsFromMinusOneOn)
{
    EXPECT_EQ(TreeData::isItemId(GetParam().id), GetParam().isItemId);
}

TEST_P(TreeIds, ACategoryReportsThatOfAnItemAndKeepsIt)
{
    const TreeCategoryData category(GetParam().id, someCategory, database);
    expectReport(GetParam().isItemId, "UI/TreeCategoryData", test::reportLine::categoryId, "!isItemId(getId())");
    EXPECT_EQ(category.getId(), GetParam().id);
    EXPECT_EQ(category.getDatabasePath(), database);
    EXPECT_EQ(category.category, someCategory);
}

TEST_P(TreeIds, AFolderReportsThatOfAnItemAndKeepsIt)
{
    const TreeFolderData folder(GetParam().id, database);
    expectReport(GetParam().isItemId, "UI/TreeFolderData", test::reportLine::folderId, "!isItemId(getId())");
    EXPECT_EQ(folder.getId(), GetParam().id);
    EXPECT_EQ(folder.asFolderData(), &folder);
    EXPECT_EQ(static_cast<int>(folder.flags()), 45);
}

TEST_P(TreeIds, ANamedFolderReportsOnceAndKeepsItsName)
{
    const TreeFolderData folder(GetParam().id, database, U"Trees");
    expectReport(GetParam().isItemId, "UI/TreeFolderData", test::reportLine::folderId, "!isItemId(getId())");
    EXPECT_EQ(folder.getId(), GetParam().id);
    EXPECT_EQ(folder.getItemName(), U"Trees");
}

TEST_P(TreeIds, AnItemReportsAnotherAndKeepsIt)
{
    const TreeItemData item(GetParam().id, database, U"Oak");
    expectReport(!GetParam().isItemId, "UI/TreeItemData", test::reportLine::itemId, "isItemId(getId())");
    EXPECT_EQ(item.getId(), GetParam().id);
    EXPECT_EQ(item.getItemName(), U"Oak");
}

TEST_P(TreeIds, AreNotReportedWhereReportsAreOff)
{
    Velk::HostServices host = services();
    host.assertionReportsEnabled = [] { return false; };
    Velk::installHost(std::move(host));
    const TreeCategoryData category(GetParam().id, someCategory, database);
    const TreeFolderData folder(GetParam().id, database);
    const TreeItemData item(GetParam().id, database);
    EXPECT_THAT(assertions(), IsEmpty());
}

const IdCase idCases[] = {
    {"Lowest", std::numeric_limits<long long>::min(), false},
    {"MinusThree", -3, false},
    {"MinusTwo", -2, false},
    {"MinusOne", -1, true},
    {"Zero", 0, true},
    {"Five", 5, true},
    {"Beyond32Bits", 4294967296, true},
    {"Highest", std::numeric_limits<long long>::max(), true},
};
INSTANTIATE_TEST_SUITE_P(Rows, TreeIds, testing::ValuesIn(idCases), [](const auto& row) { return row.param.name; });

// ---- What the nodes are --------------------------------------------------------------------------

TEST_F(TreeNodes, WithoutAnIdHaveMinusOne)
{
    const PlainNode node(database);
    EXPECT_EQ(node.getId(), -1);
    EXPECT_EQ(node.type(), -1);
    EXPECT_EQ(static_cast<int>(node.flags()), 37);
    EXPECT_EQ(node.getDatabasePath(), database);
    EXPECT_EQ(node.getItemName(), U"");
    EXPECT_FALSE(node.isItem());
    EXPECT_EQ(node.asItemData(), nullptr);
    EXPECT_EQ(node.asFolderData(), nullptr);
}

TEST_F(TreeNodes, AreAllOfTypeMinusOne)
{
    EXPECT_EQ(PlainNode(3, database).type(), -1);
    EXPECT_EQ(TreeCategoryData(-2, someCategory, database).type(), -1);
    EXPECT_EQ(TreeFolderData(-2, database).type(), -1);
    EXPECT_EQ(TreeItemData(3, database).type(), -1);
}

TEST_F(TreeNodes, CanBeSelectedAndDraggedAndFoldersDroppedOn)
{
    constexpr Qt::ItemFlags all = Qt::ItemIsSelectable | Qt::ItemIsDragEnabled | Qt::ItemIsEnabled;
    EXPECT_EQ(TreeCategoryData(-2, someCategory, database).flags(), all);
    EXPECT_EQ(TreeItemData(3, database).flags(), all);
    EXPECT_EQ(TreeFolderData(-2, database).flags(), all | Qt::ItemIsDropEnabled);
    EXPECT_EQ(static_cast<int>(all), 37);
}

TEST_F(TreeNodes, TellTheirKindWithoutACast)
{
    TreeCategoryData category(-2, someCategory, database);
    TreeFolderData folder(-2, database);
    TreeItemData item(3, database);
    const auto kinds = [](TreeData& node) {
        const TreeData& constant = node;
        EXPECT_EQ(constant.asItemData(), node.asItemData());
        EXPECT_EQ(constant.asFolderData(), node.asFolderData());
        EXPECT_EQ(node.isItem(), node.asItemData() != nullptr);
        return std::pair(node.asItemData(), node.asFolderData());
    };
    EXPECT_EQ(kinds(category), std::pair(static_cast<TreeItemData*>(nullptr), static_cast<TreeFolderData*>(nullptr)));
    EXPECT_EQ(kinds(folder), std::pair(static_cast<TreeItemData*>(nullptr), &folder));
    EXPECT_EQ(kinds(item), std::pair(&item, static_cast<TreeFolderData*>(nullptr)));
}

TEST_F(TreeNodes, AreDestroyedThroughTheirBase)
{
    std::unique_ptr<QStandardItem> item = std::make_unique<TreeItemData>(3, database, std::u32string(100, U'x'));
    static_cast<TreeItemData&>(*item).setSelectionPaneName(std::u32string(100, U'y'));
    item.reset();  // the address sanitizer would report a fault
    SUCCEED();
}

TEST_F(TreeNodes, AreNamedByTheirText)
{
    const std::u32string name = U"Stuhl \x00E4 \x6905 \x1F333 \xFEFF";
    TreeFolderData folder(-2, database);
    folder.setItemName(name);
    EXPECT_EQ(folder.getItemName(), name);
    EXPECT_EQ(folder.text(), QString::fromUcs4(name.data(), static_cast<int>(name.size())));
    folder.setText(QStringLiteral("plain"));
    EXPECT_EQ(folder.getItemName(), U"plain");
}

// ---- Whether they are valid ----------------------------------------------------------------------

TEST_F(TreeNodes, AreValidWhileTheirCatalogFileExists)
{
    const fileString path = folder() / std::u32string(U"plants.calib");
    const TreeCategoryData category(-2, someCategory, path);
    const TreeFolderData treeFolder(-2, path);
    const TreeItemData item(0, path);
    const auto validNodes = [&] { return category.isValid() + treeFolder.isValid() + item.isValid(); };
    EXPECT_EQ(validNodes(), 0);
    test::writeFile(path, "x");
    EXPECT_EQ(validNodes(), 3);
}

TEST_F(TreeNodes, AnItemNeedsAnIdToBeValid)
{
    const fileString path = folder() / std::u32string(U"plants.calib");
    test::writeFile(path, "x");
    EXPECT_TRUE(TreeItemData(0, path).isValid());
    EXPECT_TRUE(TreeItemData(1, path).isValid());
    EXPECT_FALSE(TreeItemData(-1, path).isValid());
    EXPECT_FALSE(TreeItemData(-2, path).isValid());
    EXPECT_TRUE(TreeFolderData(0, path).isValid()) << "only an item's id counts";
}

TEST_F(TreeNodes, WithoutAPathAreNotValid)
{
    EXPECT_FALSE(TreeItemData().isValid());
    EXPECT_FALSE(TreeItemData(3, fileString()).isValid());
    EXPECT_FALSE(TreeFolderData(-2, fileString()).isValid());
}

}  // namespace
