#include "host/browser/BrowserTest.h"

#include "host/browser/tree/CatalogOrder.h"
#include "host/browser/tree/TreeState.h"

#include <QScrollBar>
#include <QTreeView>

#include <algorithm>

using test::furnitureCatalog;
using VelkHost::Catalog;
using VelkHost::TreeState;

namespace {

class TreeStateOf : public test::BrowserTest
{
protected:
    TreeStateOf()
    {
        test::writeFile(furniture, test::catalogFileBytes(furnitureCatalog("Chair ")));
        Catalog other = furnitureCatalog("Other ");
        other.folders[0].name = "Zoo";
        test::writeFile(zoo, test::catalogFileBytes(other));
        openWindow();
        for (const char* path : {"Furniture", "Furniture/Seating", "Furniture/Seating/Chairs"})
            tree().expand(folderIndex(furniture, names(path)));
        tree().expand(folderIndex(zoo, names("Zoo")));
    }

    static QStringList names(const char* path) { return QString::fromLatin1(path).split(u'/'); }

    /// Puts another version of the library into the model.
    void replace(const Catalog& catalog)
    {
        const TreeState state(tree(), model(), {furniture});
        const auto shared = std::make_shared<const Catalog>(catalog);
        model().take({{{furniture, shared, std::make_shared<const VelkHost::CatalogOrder>(*shared)}, {}}});
        state.restore();
    }

    QString top() { return tree().indexAt(QPoint(0, 0)).data().toString(); }

    const fileString furniture = core(U"furniture.calib");
    const fileString zoo = core(U"zoo.calib");
};

TEST_F(TreeStateOf, StaysWhenFoldersMoveInTheFile)
{
    tree().setCurrentIndex(folderIndex(furniture, names("Furniture/Tables")));
    Catalog catalog = furnitureCatalog("Chair ");
    catalog.folders = {{VelkHost::Folder::noParent, "Arts"},
                       {VelkHost::Folder::noParent, "Furniture"},
                       {1, "Tables"},
                       {1, "Beds"},
                       {1, "Seating"},
                       {4, "Chairs"}};
    for (VelkHost::Item& item : catalog.items)
        item.folder = item.folder == 2 ? 5 : 2;
    replace(catalog);
    for (const char* path : {"Furniture", "Furniture/Seating", "Furniture/Seating/Chairs"})
        EXPECT_TRUE(tree().isExpanded(folderIndex(furniture, names(path)))) << path;
    for (const char* path : {"Arts", "Furniture/Beds", "Furniture/Tables"})
        EXPECT_FALSE(tree().isExpanded(folderIndex(furniture, names(path)))) << path;
    EXPECT_EQ(tree().currentIndex(), folderIndex(furniture, names("Furniture/Tables")));
    EXPECT_TRUE(tree().isExpanded(folderIndex(zoo, names("Zoo"))));
}

TEST_F(TreeStateOf, SelectsTheFolderOfWhatIsGone)
{
    tree().setCurrentIndex(itemIndex(furniture, "chair#7"));
    Catalog catalog = furnitureCatalog("Chair ");
    catalog.items.erase(catalog.items.begin() + 7);
    replace(catalog);
    EXPECT_EQ(tree().currentIndex(), folderIndex(furniture, names("Furniture/Seating/Chairs")));

    catalog.folders[1].name = "Sitting";
    replace(catalog);
    EXPECT_EQ(tree().currentIndex(), folderIndex(furniture, names("Furniture")));
    EXPECT_TRUE(tree().isExpanded(folderIndex(furniture, names("Furniture"))));
    EXPECT_FALSE(tree().isExpanded(folderIndex(furniture, names("Furniture/Sitting"))));
}

TEST_F(TreeStateOf, DoesNotOpenTheFolderOfTheSelection)
{
    tree().setCurrentIndex(itemIndex(furniture, "chair#7"));
    tree().collapse(folderIndex(furniture, names("Furniture/Seating")));
    tree().setCurrentIndex(itemIndex(furniture, "table"));
    tree().collapse(folderIndex(furniture, names("Furniture/Tables")));
    ASSERT_FALSE(tree().isExpanded(folderIndex(furniture, names("Furniture/Tables"))));
    replace(furnitureCatalog("Armchair "));
    EXPECT_EQ(currentId(), "table");
    EXPECT_FALSE(tree().isExpanded(folderIndex(furniture, names("Furniture/Tables"))));
    EXPECT_FALSE(tree().isExpanded(folderIndex(furniture, names("Furniture/Seating"))));
}

TEST_F(TreeStateOf, KeepsTheSelectionInAnotherLibrary)
{
    tree().setCurrentIndex(folderIndex(zoo, names("Zoo")));
    replace(furnitureCatalog("Armchair "));
    EXPECT_EQ(tree().currentIndex(), folderIndex(zoo, names("Zoo")));
}

TEST_F(TreeStateOf, KeepsTheTopOfTheView)
{
    tree().scrollTo(itemIndex(furniture, "chair#20"), QAbstractItemView::PositionAtTop);
    ASSERT_EQ(top(), QStringLiteral("Chair 120"));
    Catalog catalog = furnitureCatalog("Chair ");
    for (int i = 0; i < 10; ++i)
        catalog.items.push_back({"new#" + std::to_string(i), 2, "Armchair " + std::to_string(i), "", "", {}});
    replace(catalog);
    EXPECT_EQ(top(), QStringLiteral("Chair 120"));
}

TEST_F(TreeStateOf, StaysInAllLibrariesThatAreReplacedTogether)
{
    tree().setCurrentIndex(folderIndex(zoo, names("Zoo/Seating")));
    const TreeState state(tree(), model(), {furniture, zoo});
    std::vector<VelkHost::LibraryArrival> arrivals;
    for (const fileString& path : {furniture, zoo}) {
        Catalog catalog = *model().library(path)->catalog;
        catalog.folders.push_back({VelkHost::Folder::noParent, "Arts"});
        const auto shared = std::make_shared<const Catalog>(catalog);
        arrivals.push_back({{path, shared, std::make_shared<const VelkHost::CatalogOrder>(*shared)}, {}});
    }
    model().take(arrivals);
    state.restore();
    EXPECT_TRUE(tree().isExpanded(folderIndex(furniture, names("Furniture/Seating/Chairs"))));
    EXPECT_TRUE(tree().isExpanded(folderIndex(zoo, names("Zoo"))));
    EXPECT_FALSE(tree().isExpanded(folderIndex(zoo, names("Arts"))));
    EXPECT_EQ(tree().currentIndex(), folderIndex(zoo, names("Zoo/Seating")));
}

TEST_F(TreeStateOf, ShowsWhatComesInAboveTheTop)
{
    ASSERT_EQ(tree().verticalScrollBar()->value(), 0);
    Catalog catalog = furnitureCatalog("Chair ");
    catalog.folders.push_back({VelkHost::Folder::noParent, "Arts"});
    replace(catalog);
    EXPECT_EQ(top(), QStringLiteral("Arts"));
}

}  // namespace
