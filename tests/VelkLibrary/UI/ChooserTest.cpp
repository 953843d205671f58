#include <VelkLibrary/UI/Chooser.h>

#include "support/TestHost.h"

#include <gmock/gmock.h>

#include <type_traits>

namespace {

using Library::Chooser;
using Library::TreeItemData;

static_assert(!std::has_virtual_destructor_v<Chooser>);
static_assert(!std::is_copy_constructible_v<Chooser>);

const fileString chosenDatabase(std::u32string(U"/plants.calib"));

TreeItemData oak()
{
    TreeItemData item(4, chosenDatabase, U"Oak");
    item.setSelectionPaneName(U"Quercus");
    item.setData(QStringLiteral("a note"), Qt::UserRole + 1);
    item.setFlags(Qt::ItemIsEnabled);
    return item;
}

class ChooserTest : public test::TestHost
{
protected:
    ~ChooserTest() override { Chooser::cleanup(); }

    static void expectNothingChosen()
    {
        const TreeItemData chosen = Chooser::get().getData();
        EXPECT_TRUE(chosen == TreeItemData());
        EXPECT_EQ(chosen.getId(), -1);
        EXPECT_TRUE(chosen.getDatabasePath().empty());
        EXPECT_EQ(chosen.getItemName(), U"");
        EXPECT_EQ(chosen.getSelectionPaneName(), U"");
        EXPECT_EQ(static_cast<int>(chosen.flags()), 37);
        EXPECT_FALSE(chosen.data(Qt::UserRole + 1).isValid());
    }
};

TEST_F(ChooserTest, IsOneObject)
{
    EXPECT_EQ(&Chooser::get(), &Chooser::get());
    expectNothingChosen();
}

TEST_F(ChooserTest, RemembersACopy)
{
    TreeItemData item = oak();
    Chooser::get().setData(item);
    item.setItemName(U"Ash");
    item.setSelectionPaneName(U"Fraxinus");
    const TreeItemData chosen = Chooser::get().getData();
    EXPECT_TRUE(chosen == oak());
    EXPECT_EQ(chosen.getItemName(), U"Oak");
    EXPECT_EQ(chosen.getId(), 4);
    EXPECT_EQ(chosen.type(), -1);
    EXPECT_EQ(chosen.getDatabasePath(), chosenDatabase);
    EXPECT_EQ(chosen.getSelectionPaneName(), U"Quercus");
    EXPECT_EQ(chosen.data(Qt::UserRole + 1).toString(), QStringLiteral("a note"));
    EXPECT_EQ(chosen.flags(), Qt::ItemIsEnabled);
}

TEST_F(ChooserTest, RemembersTheLastOne)
{
    Chooser::get().setData(oak());
    Chooser::get().setData(TreeItemData(9, chosenDatabase, U"Elm"));
    const TreeItemData chosen = Chooser::get().getData();
    EXPECT_EQ(chosen.getItemName(), U"Elm");
    EXPECT_EQ(chosen.getSelectionPaneName(), U"");
    EXPECT_FALSE(chosen.data(Qt::UserRole + 1).isValid());
}

TEST_F(ChooserTest, HandsOutACopy)
{
    Chooser::get().setData(oak());
    Chooser::get().getData().setItemName(U"Ash");
    EXPECT_EQ(Chooser::get().getData().getItemName(), U"Oak");
}

TEST_F(ChooserTest, ForgetsWhatWasChosen)
{
    Chooser::get().setData(oak());
    Chooser::get().clearData();
    expectNothingChosen();
}

TEST_F(ChooserTest, IsMadeAnewAfterCleanup)
{
    Chooser::get().setData(oak());
    Chooser::cleanup();
    expectNothingChosen();
}

TEST_F(ChooserTest, CleanupWithoutAnInstanceDoesNothing)
{
    Chooser::cleanup();
    Chooser::cleanup();
    expectNothingChosen();
}

}  // namespace
