#include <VelkCommon/Reporting/Assertions.h>
#include <VelkLibrary/UI/TreeCategoryData.h>
#include <VelkLibrary/UI/TreeFolderData.h>
#include <VelkLibrary/UI/TreeItemData.h>

#include "support/Numbers.h"
#include "support/TestHost.h"

#include <gmock/gmock.h>

#include <QDataStream>
#include <QIODevice>
#include <QStandardItemModel>

#include <memory>

namespace {

using Library::LibraryCategory;
using Library::TreeCategoryData;
using Library::TreeData;
using Library::TreeFolderData;
using Library::TreeItemData;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::SizeIs;

const fileString modelDatabase(std::u32string(U"/plants.calib"));

std::unique_ptr<TreeData> makeCategory(const char32_t* name, long long id = -2)
{
    auto node = std::make_unique<TreeCategoryData>(id, LibraryCategory{1}, modelDatabase);
    node->setItemName(name);
    return node;
}

std::unique_ptr<TreeData> makeFolder(const char32_t* name, long long id = -2)
{
    return std::make_unique<TreeFolderData>(id, modelDatabase, name);
}

std::unique_ptr<TreeData> makeItem(const char32_t* name, long long id = 1)
{
    return std::make_unique<TreeItemData>(id, modelDatabase, name);
}

struct OrderCase
{
    const char* name;
    std::shared_ptr<TreeData> a;
    std::shared_ptr<TreeData> b;
    int order;  // its sign
};

void PrintTo(const OrderCase& row, std::ostream* out)
{
    *out << row.name;
}

class TreeOrder : public test::TestHost, public testing::WithParamInterface<OrderCase>
{};

int sign(int value)
{
    return (value > 0) - (value < 0);
}

TEST_P(TreeOrder, IsThatOfKindAndName)
{
    const TreeData& a = *GetParam().a;
    const TreeData& b = *GetParam().b;
    EXPECT_EQ(sign(TreeData::treeOrderComparatorStatic(a, b)), GetParam().order);
    EXPECT_EQ(sign(TreeData::treeOrderComparatorStatic(b, a)), -GetParam().order);
    EXPECT_EQ(a < b, GetParam().order < 0);
    EXPECT_EQ(b<a, GetParam().order> 0);
    EXPECT_THAT(assertions(), IsEmpty());
}

const std::vector<OrderCase>& orders()
{
    static const std::vector<OrderCase> rows = {
        // Kinds
        {"FolderBeforeItem", makeFolder(U"b"), makeItem(U"a"), -1},
        {"CategoryBeforeItem", makeCategory(U"b"), makeItem(U"a"), -1},
        {"FolderAndCategoryByName", makeFolder(U"a"), makeCategory(U"b"), -1},
        {"CategoryAndFolderByName", makeCategory(U"a"), makeFolder(U"b"), -1},
        {"CategoryAndFolderOfOneName", makeCategory(U"a"), makeFolder(U"A"), 0},
        {"NamelessFolderBeforeItem", makeFolder(U""), makeItem(U""), -1},
        // Names
        {"Items", makeItem(U"Apple"), makeItem(U"Banana"), -1},
        {"Folders", makeFolder(U"apple"), makeFolder(U"Banana"), -1},
        {"LetterCase", makeItem(U"Apple"), makeItem(U"apple"), 0},
        {"LetterCaseBeyondAscii", makeItem(U"\x00C4pfel"), makeItem(U"\x00E4pfel"), 0},
        {"Prefix", makeItem(U"App"), makeItem(U"Apple"), -1},
        {"NoNameFirst", makeItem(U""), makeItem(U"a"), -1},
        {"DigitsByText", makeItem(U"10"), makeItem(U"9"), -1},
        // What does not count
        {"Ids", makeItem(U"a", 9), makeItem(U"a", 1), 0},
    };
    return rows;
}
INSTANTIATE_TEST_SUITE_P(Rows, TreeOrder, testing::ValuesIn(orders()), [](const auto& row) { return row.param.name; });

class TreeModel : public test::TestHost
{
protected:
    QStandardItemModel model_;
};

TEST_F(TreeModel, NodesOfDifferentCatalogFilesAreOrderedByNameAlone)
{
    const TreeItemData first(1, fileString(std::u32string(U"/z.calib")), U"a");
    const TreeItemData second(1, fileString(std::u32string(U"/a.calib")), U"a");
    EXPECT_EQ(TreeData::treeOrderComparatorStatic(first, second), 0);
}

TEST_F(TreeModel, IsSortedByQtInTheOrderOfTheTree)
{
    for (const char32_t* const name : {U"pear", U"Apple", U"fig"})
        model_.appendRow(makeItem(name).release());
    for (const char32_t* const name : {U"zinnias", U"Trees"})
        model_.appendRow(makeFolder(name).release());
    model_.appendRow(makeCategory(U"Shrubs").release());
    model_.sort(0);
    std::vector<std::string> names;
    for (int row = 0; row < model_.rowCount(); ++row)
        names.push_back(model_.item(row)->text().toStdString());
    EXPECT_THAT(names, ElementsAre("Shrubs", "Trees", "zinnias", "Apple", "fig", "pear"));
    EXPECT_THAT(assertions(), IsEmpty());
}

TEST_F(TreeModel, IsSortedByQtBelowANodeToo)
{
    TreeData* const parent = makeCategory(U"Plants").release();
    model_.appendRow(parent);
    parent->appendRow(makeItem(U"b").release());
    parent->appendRow(makeItem(U"a").release());
    parent->appendRow(makeFolder(U"c").release());
    parent->sortChildren(0, Qt::DescendingOrder);
    EXPECT_EQ(parent->child(0)->text(), QStringLiteral("b"));
    EXPECT_EQ(parent->child(1)->text(), QStringLiteral("a"));
    EXPECT_EQ(parent->child(2)->text(), QStringLiteral("c"));
}

TEST_F(TreeModel, AForeignNodeIsReportedAndNotLess)
{
    const std::unique_ptr<TreeData> node = makeItem(U"a");
    const QStandardItem foreign(QStringLiteral("b"));
    const QStandardItem& left = *node;
    EXPECT_FALSE(left < foreign);
    ASSERT_THAT(assertions(), SizeIs(1));
    EXPECT_EQ(assertions()[0].sourceFile, "UI/TreeData");
    EXPECT_EQ(assertions()[0].line, test::reportLine::foreignTreeNode);
    EXPECT_EQ(assertions()[0].kind, Velk::softAssertion);
    EXPECT_EQ(assertions()[0].expression, "rhsTreeData");
}

TEST_F(TreeModel, AnAssertionsAnswerDoesNotChangeTheResult)
{
    Velk::HostServices host = services();
    host.reportAssertion = [](const Velk::AssertionReport&) { return true; };
    Velk::installHost(std::move(host));
    EXPECT_FALSE(*makeItem(U"a") < QStandardItem(QStringLiteral("b")));
    EXPECT_EQ(makeFolder(U"a", 5)->getId(), 5);
}

TEST_F(TreeModel, TellsWhatANodeIs)
{
    TreeData* const node = makeFolder(U"Trees", -3).release();
    model_.appendRow(node);
    const QModelIndex index = model_.index(0, 0);
    EXPECT_EQ(static_cast<int>(model_.flags(index)), 45);
    EXPECT_EQ(model_.itemFromIndex(index), node);
    EXPECT_EQ(model_.data(index).toString(), QStringLiteral("Trees"));
}

TEST_F(TreeModel, ANodesFurtherDataIsKeptAsQtKeepsIt)
{
    const std::unique_ptr<TreeData> node = makeItem(U"Oak");
    node->setData(42, Qt::UserRole + 3);
    EXPECT_EQ(node->data(Qt::UserRole + 3).toInt(), 42);
    node->setData(QStringLiteral("Ash"), Qt::DisplayRole);
    EXPECT_EQ(node->getItemName(), U"Ash");
}

TEST_F(TreeModel, CloneReadAndWriteAreThoseOfQt)
{
    const std::unique_ptr<TreeData> node = makeItem(U"Oak");
    const std::unique_ptr<QStandardItem> clone(node->clone());
    EXPECT_EQ(dynamic_cast<TreeData*>(clone.get()), nullptr);
    QByteArray bytes;
    QDataStream out(&bytes, QIODevice::WriteOnly);
    out << *node;
    const std::unique_ptr<TreeData> other = makeItem(U"Ash", 8);
    QDataStream in(bytes);
    in >> *other;
    EXPECT_EQ(other->getItemName(), U"Oak");
    EXPECT_EQ(other->getId(), 8);
}

}  // namespace
