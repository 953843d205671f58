// The window from the first start on, as one user goes through it: one step after the other, each continuing
// where the earlier ones ended.
#include "BrowserTest.h"
#include "DrivenWindow.h"
#include "OpenedUrls.h"

#include "support/ZipBuilder.h"

#include <VelkLibrary/ErrorLog.h>
#include <VelkLibrary/UI/Chooser.h>

#include <QApplication>
#include <QDialog>
#include <QLineEdit>
#include <QMenu>
#include <QPushButton>
#include <QToolButton>
#include <QTreeView>

using testing::ElementsAre;
using testing::HasSubstr;
using testing::StartsWith;

namespace {

class BrowserDrive : public test::DrivenWindow
{
protected:
    /// Runs all steps, until one fails.
    void goThroughEverything();

private:
    using Step = void (BrowserDrive::*)();

    void startsEmpty();
    void getsLibraries();
    void getsTheDamagedOne();
    void getsManufacturers();
    void opensFolders();
    void selectsAnItem();
    void searches();
    void choosesAHit();
    void dragsIt();
    void revealsIt();
    void filters();
    void showsAllAgain();
    void importsADrop();
    void updatesWhatIsOpen();
    void cancelsAnUpdate();
    void editsACard();
    void comesBackAsItWas();

    void update();

    const std::string chairs = "Furniture/Seating/Chairs";
};

void BrowserDrive::update()
{
    press(Qt::Key_F5);
    EXPECT_TRUE(isPanelSeen());
    waitForJob();
    EXPECT_FALSE(isPanelSeen());
}

void BrowserDrive::startsEmpty()
{
    open(options());
    EXPECT_THAT(seen("emptyState"), HasSubstr("Check for updates"));
    EXPECT_FALSE(tree().isVisible());
    EXPECT_FALSE(find<QPushButton>("chooseButton")->isVisible());
    EXPECT_TRUE(find<QLineEdit>("searchBox")->hasFocus());
}

void BrowserDrive::getsLibraries()
{
    damage("garden.calib");
    update();
    EXPECT_EQ(message(),
              "Not everything could be updated. “furniture” was updated. “garden” is as it was: what the service sent "
              "is not a library catalog.");
    EXPECT_TRUE(tree().isVisible());
    EXPECT_EQ(tree().model()->rowCount(), 1);
    auto* const log = find<QToolButton>("errorLogButton");
    ASSERT_TRUE(log->isVisible());
    OpenedUrls opened;
    QTest::mouseClick(log, Qt::LeftButton);
    ASSERT_EQ(opened.urls.size(), 1);
    EXPECT_THAT(test::readFile(fileString(opened.urls[0].toLocalFile().toStdString())),
                HasSubstr("what the service sent is not a library catalog"));
}

void BrowserDrive::getsTheDamagedOne()
{
    repair();
    takeFromMenu(Qt::Key_F, Qt::Key_C);
    EXPECT_TRUE(isPanelSeen());
    waitForJob();
    EXPECT_EQ(message(), "“garden” was updated.");
    EXPECT_FALSE(find<QToolButton>("errorLogButton")->isVisible());
    EXPECT_EQ(tree().model()->rowCount(), 2);
}

void BrowserDrive::getsManufacturers()
{
    takeFromMenu(Qt::Key_M, Qt::Key_R);
    settle();
    EXPECT_EQ(message(), "Manufacturers: 1 new, 0 changed, 0 gone.");
}

void BrowserDrive::opensFolders()
{
    press(Qt::Key_Escape);
    ASSERT_TRUE(tree().hasFocus());
    press(Qt::Key_Home);
    EXPECT_EQ(currentPath(), "Furniture");
    pressTimes(2, Qt::Key_Right);
    EXPECT_EQ(currentPath(), "Furniture/Seating");
    pressTimes(2, Qt::Key_Right);
    EXPECT_EQ(currentPath(), chairs);
    EXPECT_EQ(seen("detailName"), "Chairs");
    press(Qt::Key_Right);
    EXPECT_TRUE(isOpen(chairs));
}

void BrowserDrive::selectsAnItem()
{
    press(Qt::Key_Down);
    EXPECT_EQ(currentPath(), chairs + "/Chair");
    press(Qt::Key_Down);
    EXPECT_EQ(currentPath(), chairs + "/Chair 100");
    EXPECT_EQ(seen("detailName"), "Chair 100");
    EXPECT_EQ(seen("detailPlace"), "Furniture library \u203A Furniture \u203A Seating \u203A Chairs");
    EXPECT_EQ(seen("manufacturerName"), "Acme Doors");
    EXPECT_EQ(seen("manufacturerPhone"), "Ask us");
    eventually([this] { return showsPicture("detailPicture") && showsPicture("manufacturerLogo"); });
}

void BrowserDrive::searches()
{
    press(Qt::Key_F, Qt::ControlModifier);
    for (const char* const key : {"c", "h"}) {
        type(key);
        waitForHits();
    }
    EXPECT_EQ(found().front(), QStringLiteral("Items that begin with these letters"));
    type("air -1");
    waitForHits();
    EXPECT_EQ(found(), QStringList({QStringLiteral("Items of this name"), QStringLiteral(" Chair"),
                                    QStringLiteral("Items with the word"), QStringLiteral(" Bench and chair"),
                                    QStringLiteral("Folders that begin with these letters"), QStringLiteral(" Chairs"),
                                    QStringLiteral("Items with the word as a keyword"), QStringLiteral(" Table")}));
    EXPECT_EQ(seen("searchSummary"), "4 hits");
    EXPECT_EQ(seen("searchExplanation"), "(hidden)");
    QTest::mouseClick(find<QToolButton>("explainButton"), Qt::LeftButton);
    EXPECT_THAT(seen("searchExplanation"), HasSubstr("none of: \"1\""));
}

void BrowserDrive::choosesAHit()
{
    find<QLineEdit>("searchBox")->setFocus();
    press(Qt::Key_Return);
    ASSERT_TRUE(hits().hasFocus());
    press(Qt::Key_Home);
    press(Qt::Key_Down);
    EXPECT_EQ(seen("detailName"), "Chair");
    eventually([this] { return showsPicture("detailPicture"); });
    press(Qt::Key_Return);
    EXPECT_EQ(message(), "Chosen: Chair");
    EXPECT_EQ(Library::Chooser::get().getData().text(), QStringLiteral("Chair"));
}

void BrowserDrive::dragsIt()
{
    const test::DraggedItem dragged = dragOut(hits(), hits().currentIndex());
    EXPECT_EQ(dragged.text, QStringLiteral("Chair"));
    EXPECT_TRUE(dragged.hasPicture);
    EXPECT_THAT(dragged.item.toStdString(), HasSubstr(R"("id":"chair")"));
}

void BrowserDrive::revealsIt()
{
    press(Qt::Key_T, Qt::ControlModifier);
    EXPECT_TRUE(tree().hasFocus());
    EXPECT_FALSE(hits().isVisible());
    EXPECT_EQ(find<QLineEdit>("searchBox")->text(), QString());
    EXPECT_EQ(currentPath(), chairs + "/Chair");
    EXPECT_TRUE(tree().viewport()->rect().intersects(tree().visualRect(tree().currentIndex())));
    EXPECT_EQ(dragOut(tree(), tree().currentIndex()).text, QStringLiteral("Chair"));
}

void BrowserDrive::filters()
{
    press(Qt::Key_F, Qt::ControlModifier | Qt::ShiftModifier);
    auto* const editor = dialog<QDialog>("filterEditor");
    ASSERT_NE(editor, nullptr);
    press(Qt::Key_A, Qt::AltModifier);
    eventually([] { return qobject_cast<QLineEdit*>(QApplication::focusWidget()) != nullptr; });
    type("Outside");
    press(Qt::Key_Return);
    eventually([] { return qobject_cast<QLineEdit*>(QApplication::focusWidget()) == nullptr; });
    press(Qt::Key_L, Qt::AltModifier);
    type("gard");
    press(Qt::Key_Tab);
    press(Qt::Key_Down);
    press(Qt::Key_Space);
    press(Qt::Key_F, Qt::AltModifier);
    eventually([&] { return find<QAbstractButton>("filterInForce", editor)->isChecked(); });
    press(Qt::Key_Return);
    settle();
    EXPECT_EQ(shown(), QStringList(QStringLiteral("Outdoors")));
    search(QStringLiteral("chair"));
    EXPECT_EQ(found(), QStringList({QStringLiteral("Items with the word"), QStringLiteral(" Bench and chair")}));
    search(QStringLiteral("chair 100"));
    EXPECT_EQ(seen("hiddenText"), "Some libraries were not searched: they are hidden by the filter “Outside”.");
}

void BrowserDrive::showsAllAgain()
{
    press(Qt::Key_Escape);
    takeFromMenu(Qt::Key_L, Qt::Key_0);
    settle();
    EXPECT_EQ(shown(), QStringList({QStringLiteral("Furniture"), QStringLiteral("Outdoors")}));
}

void BrowserDrive::importsADrop()
{
    VelkHost::Catalog baths;
    baths.id = "baths";
    baths.name = "Bath library";
    baths.folders = {{VelkHost::Folder::noParent, "Bathroom"}};
    baths.items = {{"tub", 0, "Tub", "", "", {}}};
    const fileString file = folder() / U"Baths.calibz";
    test::ZipBuilder().add("Baths.calib", test::catalogFileBytes(baths)).add("tile.png", "tile").writeTo(file);
    dropFile(file);
    EXPECT_TRUE(isPanelSeen());
    waitForJob();
    EXPECT_EQ(message(), "“Baths” was imported.");
    EXPECT_THAT(test::listFolder(folder() / U"textures"), ElementsAre(StartsWith("Baths")));
    EXPECT_EQ(shown(),
              QStringList({QStringLiteral("Bathroom"), QStringLiteral("Furniture"), QStringLiteral("Outdoors")}));
    EXPECT_EQ(currentPath(), "Bathroom") << "the imported library is shown";
    EXPECT_TRUE(isOpen("Bathroom"));
}

void BrowserDrive::updatesWhatIsOpen()
{
    press(Qt::Key_F, Qt::ControlModifier);
    type("chair 107");
    waitForHits();
    press(Qt::Key_Return);
    press(Qt::Key_Home);
    press(Qt::Key_Down);
    press(Qt::Key_T, Qt::ControlModifier);
    ASSERT_EQ(currentPath(), chairs + "/Chair 107");
    publishLibraries("Armchair");
    update();
    EXPECT_EQ(message(), "“furniture” was updated.");
    EXPECT_EQ(currentPath(), chairs + "/Armchair 107");
    EXPECT_EQ(seen("detailName"), "Armchair 107");
    EXPECT_EQ(seen("manufacturerName"), "Acme Doors");
    for (const std::string& path : {std::string("Furniture"), std::string("Furniture/Seating"), chairs})
        EXPECT_TRUE(isOpen(path)) << path;
    EXPECT_TRUE(tree().hasFocus());
}

void BrowserDrive::cancelsAnUpdate()
{
    publishLibraries("Stool");
    holdService();
    press(Qt::Key_F5);
    EXPECT_TRUE(isPanelSeen());
    waitUntilHeld();
    press(Qt::Key_Escape);
    goOn();
    waitForJob();
    EXPECT_EQ(message(), "The update was cancelled.");
    EXPECT_EQ(currentPath(), chairs + "/Armchair 107");
}

void BrowserDrive::editsACard()
{
    press(Qt::Key_R, Qt::AltModifier);
    auto* const editor = dialog<QDialog>("manufacturerEditor");
    ASSERT_NE(editor, nullptr);
    press(Qt::Key_W, Qt::AltModifier);
    type("https://www.acme.example");
    press(Qt::Key_Return);
    settle();
    EXPECT_THAT(seen("manufacturerUrl"), HasSubstr("href=\"https://www.acme.example\""));
}

void BrowserDrive::comesBackAsItWas()
{
    const QSize size(760, 420);
    window().resize(size);
    close();
    open(options());
    EXPECT_EQ(window().size(), size);
    EXPECT_EQ(currentPath(), chairs + "/Armchair 107");
    EXPECT_TRUE(isOpen(chairs));
    EXPECT_EQ(seen("detailName"), "Armchair 107");
    EXPECT_THAT(seen("manufacturerUrl"), HasSubstr("https://www.acme.example"));
    search(QStringLiteral("table"));
    EXPECT_THAT(seen("searchExplanation"), HasSubstr("\"table\"")) << "it was explained before";
}

void BrowserDrive::goThroughEverything()
{
    const std::pair<const char*, Step> steps[] = {{"starts empty", &BrowserDrive::startsEmpty},
                                                  {"gets libraries", &BrowserDrive::getsLibraries},
                                                  {"gets the damaged one", &BrowserDrive::getsTheDamagedOne},
                                                  {"gets manufacturers", &BrowserDrive::getsManufacturers},
                                                  {"opens folders", &BrowserDrive::opensFolders},
                                                  {"selects an item", &BrowserDrive::selectsAnItem},
                                                  {"searches", &BrowserDrive::searches},
                                                  {"chooses a hit", &BrowserDrive::choosesAHit},
                                                  {"drags it", &BrowserDrive::dragsIt},
                                                  {"reveals it", &BrowserDrive::revealsIt},
                                                  {"filters", &BrowserDrive::filters},
                                                  {"shows all again", &BrowserDrive::showsAllAgain},
                                                  {"imports a drop", &BrowserDrive::importsADrop},
                                                  {"updates what is open", &BrowserDrive::updatesWhatIsOpen},
                                                  {"cancels an update", &BrowserDrive::cancelsAnUpdate},
                                                  {"edits a card", &BrowserDrive::editsACard},
                                                  {"comes back as it was", &BrowserDrive::comesBackAsItWas}};
    for (const auto& [name, step] : steps) {
        SCOPED_TRACE(name);
        (this->*step)();
        if (HasFailure())
            return;
    }
}

TEST_F(BrowserDrive, GoesFromAnEmptyInstallationThroughEverything)
{
    goThroughEverything();
}

}  // namespace
