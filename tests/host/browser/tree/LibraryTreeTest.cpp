#include "host/browser/BrowserTest.h"

#include "host/browser/tree/ItemDrag.h"
#include "host/browser/tree/LibraryDelegate.h"

#include <VelkCommon/Files/FileUtils.h>
#include <VelkLibrary/UI/Chooser.h>
#include <VelkLibrary/UI/TreeItemData.h>

#include <QJsonDocument>
#include <QJsonObject>
#include <QLabel>
#include <QMimeData>
#include <QPushButton>
#include <QTest>
#include <QTreeView>

using test::furnitureCatalog;
using VelkHost::Catalog;
using VelkHost::Folder;
using VelkHost::LibraryDelegate;

namespace {

class LibraryTree : public test::BrowserTest
{
protected:
    void install(const std::u32string& name, const Catalog& catalog)
    {
        test::writeFile(core(name), test::catalogFileBytes(catalog));
    }

    QStringList texts(const QModelIndex& parent = {})
    {
        QStringList found;
        for (int row = 0; row < model().rowCount(parent); ++row)
            found.append(model().index(row, 0, parent).data().toString());
        return found;
    }
};

Catalog mixedCatalog()
{
    Catalog catalog;
    catalog.id = "mixed";
    catalog.name = "Mixed";
    catalog.folders = {{Folder::noParent, "things"}, {0, "beta"}, {0, "Alpha"}};
    catalog.items = {
        {"1", 0, "aaa", "", "", {}}, {"2", 0, "Zebra", "striped", test::png("z"), {}}, {"3", 0, "mouse", "", "", {}}};
    return catalog;
}

TEST_F(LibraryTree, HasFoldersBeforeItemsEachByNameInAnyCase)
{
    install(U"a.calib", mixedCatalog());
    openWindow();
    const QModelIndex things = model().index(0, 0);
    if (model().canFetchMore(things))
        model().fetchMore(things);
    EXPECT_EQ(texts(things), QStringList({QStringLiteral("Alpha"), QStringLiteral("beta"), QStringLiteral("aaa"),
                                          QStringLiteral("mouse"), QStringLiteral("Zebra")}));
}

TEST_F(LibraryTree, SortsTheCategoriesOfAllLibrariesTogetherAndTellsWhoseTheyAre)
{
    Catalog other = furnitureCatalog("Chair ");
    install(U"b.calib", other);
    other.name = "Another library";
    other.folders[0].name = "Zoo";
    install(U"a.calib", other);
    install(U"c.calib", mixedCatalog());
    openWindow();
    EXPECT_EQ(texts(), QStringList({QStringLiteral("Furniture"), QStringLiteral("things"), QStringLiteral("Zoo")}));
    EXPECT_EQ(model().index(2, 0).data(LibraryDelegate::QuietTextRole).toString(), QStringLiteral("Another library"));
}

TEST_F(LibraryTree, MakesNodesWhenTheyAreLookedAt)
{
    Catalog catalog = mixedCatalog();
    for (int i = 0; i < 5'000; ++i)
        catalog.items.push_back({"n" + std::to_string(i), 1, "Item " + std::to_string(10'000 + i), "", "", {}});
    install(U"a.calib", catalog);
    openWindow();
    const QModelIndex beta = folderIndex(core(U"a.calib"), {QStringLiteral("things"), QStringLiteral("beta")});
    ASSERT_TRUE(beta.isValid());
    EXPECT_EQ(model().rowCount(beta), 0);
    EXPECT_TRUE(model().hasChildren(beta));
    model().fetchMore(beta);
    EXPECT_GT(model().rowCount(beta), 0);
    EXPECT_LT(model().rowCount(beta), 1'000);
    const QModelIndex distant = itemIndex(core(U"a.calib"), "n4321");
    EXPECT_EQ(distant.data().toString(), QStringLiteral("Item 14321"));
    EXPECT_EQ(distant.row(), 4321);
}

TEST_F(LibraryTree, DragsAnItemAsTextAndPicture)
{
    install(U"a.calib", mixedCatalog());
    openWindow();
    const QModelIndex zebra = itemIndex(core(U"a.calib"), "2");
    const std::unique_ptr<QMimeData> dragged(model().mimeData({zebra}));
    ASSERT_NE(dragged, nullptr);
    EXPECT_EQ(dragged->text(), QStringLiteral("Zebra"));
    const QJsonObject object =
        QJsonDocument::fromJson(dragged->data(QString::fromLatin1(VelkHost::itemMimeType))).object();
    EXPECT_EQ(object.value(QStringLiteral("id")).toString(), QStringLiteral("2"));
    EXPECT_EQ(object.value(QStringLiteral("library")).toString(), qtPath(core(U"a.calib")));
    const QModelIndex things = model().index(0, 0);
    EXPECT_EQ(std::unique_ptr<QMimeData>(model().mimeData({things})), nullptr);
}

TEST_F(LibraryTree, TellsTheSizeOfAnItem)
{
    Catalog catalog = mixedCatalog();
    catalog.sizes.resize(catalog.items.size());
    for (std::size_t i = 0; i < catalog.items.size(); ++i)
        if (catalog.items[i].uniqueId == "2")
            catalog.sizes[i] = {2'500, 600.5F, 1'500};
    install(U"a.calib", catalog);
    openWindow();
    const QModelIndex zebra = itemIndex(core(U"a.calib"), "2");
    const QString size = QStringLiteral("2500 \u00D7 600.5 \u00D7 1500 mm");
    EXPECT_EQ(zebra.data(LibraryDelegate::QuietTextRole).toString(), size);
    tree().setCurrentIndex(zebra);
    EXPECT_EQ(named<QLabel>("detailSize")->text(), size);
    EXPECT_FALSE(named<QLabel>("detailSize")->isHidden());
    const std::unique_ptr<QMimeData> dragged(model().mimeData({zebra}));
    const QJsonObject object =
        QJsonDocument::fromJson(dragged->data(QString::fromLatin1(VelkHost::itemMimeType))).object();
    const QJsonObject measures{
        {QStringLiteral("width"), 2'500}, {QStringLiteral("depth"), 600.5}, {QStringLiteral("height"), 1'500}};
    EXPECT_EQ(object.value(QStringLiteral("size")).toObject(), measures);
}

TEST_F(LibraryTree, ShowsWhatIsSelectedAndChoosesIt)
{
    install(U"a.calib", mixedCatalog());
    openWindow();
    tree().setCurrentIndex(itemIndex(core(U"a.calib"), "2"));
    EXPECT_EQ(named<QLabel>("detailName")->text(), QStringLiteral("Zebra"));
    EXPECT_EQ(named<QLabel>("detailPlace")->text(), QStringLiteral("Mixed \u203A things"));
    EXPECT_EQ(named<QLabel>("detailKeywords")->text(), QStringLiteral("striped"));
    Library::Chooser::get().clearData();
    QTest::mouseClick(named<QPushButton>("chooseButton"), Qt::LeftButton);
    const Library::TreeItemData chosen = Library::Chooser::get().getData();
    EXPECT_EQ(chosen.getItemName(), U"Zebra");
    EXPECT_EQ(chosen.getDatabasePath(), core(U"a.calib"));
    EXPECT_EQ(chosen.getId(), 1);
    EXPECT_EQ(message(), "Chosen: Zebra");
    Library::Chooser::cleanup();
}

TEST_F(LibraryTree, TellsWhichLibraryCannotBeRead)
{
    install(U"a.calib", mixedCatalog());
    test::writeFile(core(U"broken.calib"), "no catalog");
    openWindow();
    EXPECT_EQ(texts(), QStringList(QStringLiteral("things")));
    EXPECT_EQ(message(), "“broken” is not a library catalog");
}

TEST_F(LibraryTree, TellsWhichFolderCannotBeRead)
{
    install(U"a.calib", mixedCatalog());
    FileUtils::removeDirectoryAndFiles(folder() / U"bonus", FileUtils::noFlags);
    test::writeFile(folder() / U"bonus", "a file in the folder's place");
    openWindow();
    EXPECT_EQ(texts(), QStringList(QStringLiteral("things"))) << "the others are shown";
    const std::string bonus = (folder() / U"bonus").humanReadableString();
    EXPECT_THAT(message(),
                testing::AllOf(testing::StartsWith("“" + bonus), testing::HasSubstr(bonus + " is not a folder")));
}

TEST_F(LibraryTree, SaysWhatToDoWithoutLibraries)
{
    openWindow();
    const auto* const empty = named<QLabel>("emptyState");
    EXPECT_TRUE(empty->isVisible());
    EXPECT_TRUE(empty->text().contains(QStringLiteral("Check for updates"))) << empty->text().toStdString();
}

}  // namespace
