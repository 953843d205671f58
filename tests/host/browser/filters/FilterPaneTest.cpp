#include "FilteredWindow.h"

#include "host/browser/filters/FilterMenu.h"
#include "host/browser/filters/HiddenNote.h"
#include "host/browser/search/SearchPane.h"
#include "host/installation/Filters.h"

#include <VelkCommon/Files/FileUtils.h>
#include <VelkLibrary/LibraryFilterManager.h>

#include <QAbstractItemView>
#include <QAction>
#include <QComboBox>
#include <QDialog>
#include <QFileDialog>
#include <QLabel>
#include <QLineEdit>
#include <QListWidget>
#include <QMenu>
#include <QMenuBar>
#include <QPushButton>
#include <QTest>
#include <QTreeView>

using testing::HasSubstr;
using VelkHost::LibraryKind;

namespace {

std::string text(const QString& text)
{
    return text.toStdString();
}

/// Four libraries, one of each kind.
class FilterPane : public test::FilteredWindow
{
protected:
    FilterPane()
    {
        install("Bath", LibraryKind::Core);
        install("Garden", LibraryKind::Bonus);
        install("Kitchen", LibraryKind::Manufacturer);
        install("Own", LibraryKind::User);
    }

    QComboBox* box() { return find<QComboBox>("filterBox"); }
    QAction* action(const char* objectName) { return find<QAction>(objectName); }

    /// Chooses an entry in the box with the keyboard.
    void chooseInBox(int entry)
    {
        box()->setFocus();
        while (box()->currentIndex() != entry)
            QTest::keyClick(box(), box()->currentIndex() < entry ? Qt::Key_Down : Qt::Key_Up);
        settle();
    }
};

const QStringList everything{QStringLiteral("Bath"), QStringLiteral("Garden"), QStringLiteral("Kitchen"),
                             QStringLiteral("Own")};

TEST_F(FilterPane, OffersTheFilters)
{
    haveFilter("Rooms & more", {"Bath", "Kitchen"});
    haveFilter("<b>Green</b>", {"Garden"});
    VelkHost::setCurrentFilter(VelkHost::filterNamed("<b>Green</b>").getFilterId());
    open();
    ASSERT_EQ(box()->count(), 3);
    EXPECT_EQ(text(box()->itemText(0)), "No filter");
    EXPECT_EQ(text(box()->itemText(1)), "Rooms & more");
    EXPECT_EQ(text(box()->itemText(2)), "<b>Green</b>");
    EXPECT_EQ(box()->currentIndex(), 2);
    EXPECT_EQ(text(action("filterAction0")->text()), "&0  No filter");
    EXPECT_EQ(text(action("filterAction1")->text()), "&1  Rooms && more");
    EXPECT_TRUE(action("filterAction2")->isChecked());
    EXPECT_FALSE(action("filterAction1")->isChecked());
    EXPECT_FALSE(action("moreFiltersAction")->isVisible());
    EXPECT_EQ(shown(), QStringList(QStringLiteral("Garden")));
}

TEST_F(FilterPane, ShowsEverythingWithoutFilters)
{
    open();
    EXPECT_EQ(box()->count(), 1);
    EXPECT_TRUE(action("filterAction0")->isChecked());
    EXPECT_EQ(shown(), everything);
}

TEST_F(FilterPane, LimitsTheTreeAndSaves)
{
    haveFilter("Rooms", {"Bath", "Kitchen", "not installed"});
    haveFilter("Green", {"Garden"});
    open();
    chooseInBox(2);
    EXPECT_EQ(shown(), QStringList(QStringLiteral("Garden")));
    EXPECT_THAT(savedFilters(), HasSubstr(R"("Current_Filter":2)"));
    EXPECT_TRUE(action("filterAction2")->isChecked());
    chooseInBox(1);
    EXPECT_EQ(shown(), (QStringList{QStringLiteral("Bath"), QStringLiteral("Kitchen")}));
    EXPECT_THAT(savedFilters(), HasSubstr(R"("Current_Filter":1)"));
    chooseInBox(0);
    EXPECT_EQ(shown(), everything);
    EXPECT_THAT(savedFilters(), HasSubstr(R"("Current_Filter":-1)"));
}

TEST_F(FilterPane, IsChosenInTheMenuByKeys)
{
    haveFilter("Green", {"Garden"});
    open();
    auto* const menu = find<QMenu>("filterMenu");
    window().menuBar()->setActiveAction(menu->menuAction());
    ASSERT_TRUE(menu->isVisible());
    QTest::keyClick(menu, Qt::Key_1);
    settle();
    EXPECT_EQ(box()->currentIndex(), 1);
    EXPECT_EQ(shown(), QStringList(QStringLiteral("Garden")));
    EXPECT_THAT(savedFilters(), HasSubstr(R"("Current_Filter":1)"));
}

TEST_F(FilterPane, OffersInTheBoxWhatTheMenuHasNoKeyFor)
{
    for (int i = 0; i < 40; ++i)
        haveFilter("Filter " + std::to_string(i), {"Garden"});
    open();
    auto* const menu = find<QMenu>("filterMenu");
    for (const QAction* const entry : menu->actions())
        EXPECT_TRUE(entry->isSeparator() || entry->text().contains(u'&')) << text(entry->text());
    EXPECT_EQ(window().findChild<QAction*>(QStringLiteral("filterAction39")), nullptr);
    EXPECT_EQ(box()->count(), 41);
    ASSERT_TRUE(action("moreFiltersAction")->isVisible());
    action("moreFiltersAction")->trigger();
    EXPECT_TRUE(box()->view()->isVisible());
    QTest::keyClick(box()->view(), Qt::Key_End);
    QTest::keyClick(box()->view(), Qt::Key_Return);
    settle();
    EXPECT_EQ(text(box()->currentText()), "Filter 39");
    EXPECT_THAT(savedFilters(), HasSubstr(R"("Current_Filter":40)"));
}

TEST_F(FilterPane, IsChosenWithTheMouse)
{
    haveFilter("Green", {"Garden"});
    open();
    auto* const menu = find<QMenu>("filterMenu");
    window().menuBar()->setActiveAction(menu->menuAction());
    QTest::mouseClick(menu, Qt::LeftButton, Qt::NoModifier, menu->actionGeometry(action("filterAction1")).center());
    settle();
    EXPECT_EQ(shown(), QStringList(QStringLiteral("Garden")));
}

TEST_F(FilterPane, LimitsTheSearch)
{
    haveFilter("Green", {"Garden"});
    open();
    EXPECT_EQ(search(QStringLiteral("chair")).size(), 4);
    chooseInBox(1);
    EXPECT_EQ(search(QStringLiteral("chair")), QStringList(QStringLiteral("Garden chair")));
}

TEST_F(FilterPane, SaysWhatASearchInVainLeftOut)
{
    haveFilter("Green", {"Garden"});
    open();
    auto* const strip = find<VelkHost::HiddenNote>("hiddenStrip");
    EXPECT_TRUE(search(QStringLiteral("stool")).isEmpty());
    EXPECT_FALSE(strip->isVisible()) << "nothing is hidden";
    chooseInBox(1);
    EXPECT_TRUE(search(QStringLiteral("bath")).isEmpty());
    ASSERT_TRUE(strip->isVisible());
    EXPECT_EQ(text(find<QLabel>("hiddenText", strip)->text()),
              "Some libraries were not searched: they are hidden by the filter \u201CGreen\u201D.");
    EXPECT_EQ(search(QStringLiteral("garden")).size(), 2);
    EXPECT_FALSE(strip->isVisible());
    EXPECT_TRUE(search(QStringLiteral("bath")).isEmpty());
    QTest::mouseClick(find<QPushButton>("showAllButton", strip), Qt::LeftButton);
    settle();
    EXPECT_EQ(box()->currentIndex(), 0);
    EXPECT_FALSE(search(QStringLiteral("bath")).isEmpty());
    EXPECT_FALSE(strip->isVisible());
}

TEST_F(FilterPane, SaysWhichFilterHidesEverything)
{
    haveFilter("<i>None", {"elsewhere"});
    VelkHost::setCurrentFilter(VelkHost::filterNamed("<i>None").getFilterId());
    open();
    EXPECT_EQ(shown(), QStringList());
    auto* const page = find<VelkHost::HiddenNote>("hiddenPage");
    ASSERT_TRUE(page->isVisible());
    auto* const label = find<QLabel>("hiddenText", page);
    EXPECT_EQ(text(label->text()), "All libraries are hidden by the filter \u201C<i>None\u201D.");
    EXPECT_EQ(label->textFormat(), Qt::PlainText);
    auto* const button = find<QPushButton>("showAllButton", page);
    button->setFocus();
    QTest::keyClick(button, Qt::Key_Space);
    settle();
    EXPECT_FALSE(page->isVisible());
    EXPECT_EQ(shown(), everything);
    EXPECT_THAT(savedFilters(), HasSubstr(R"("Current_Filter":-1)"));
}

TEST_F(FilterPane, TakesAnUnknownCurrentFilterForNone)
{
    haveFilter("Green", {"Garden"});
    VelkHost::setCurrentFilter(77);
    open();
    EXPECT_EQ(box()->currentIndex(), 0);
    EXPECT_EQ(shown(), everything);
}

TEST_F(FilterPane, KeepsWhatIsOpenInTheTree)
{
    haveFilter("Rooms", {"Bath", "Kitchen"});
    open();
    select("Bath", 0);
    QTreeView* const tree = window().tree();
    ASSERT_TRUE(tree->isExpanded(tree->currentIndex().parent()));
    chooseInBox(1);
    EXPECT_EQ(text(tree->currentIndex().data().toString()), "Bath chair");
    EXPECT_TRUE(tree->isExpanded(tree->currentIndex().parent()));
    chooseInBox(0);
    EXPECT_EQ(text(tree->currentIndex().data().toString()), "Bath chair");
}

TEST_F(FilterPane, StaysAsItWasWhenItCannotBeSaved)
{
    haveFilter("Green", {"Garden"});
    open();
    const fileString file = folder() / U"core" / U"catalog_filters.json";
    test::writeFile(file, "no filters");
    box()->setFocus();
    QTest::keyClick(box(), Qt::Key_Down);
    settle();
    EXPECT_EQ(box()->currentIndex(), 0);
    EXPECT_EQ(shown(), everything);
    EXPECT_THAT(text(status()), HasSubstr("The filters are as they were: "));
    EXPECT_THAT(text(status()), HasSubstr("is not a filter file; repair it, or move it away"));
    EXPECT_EQ(test::readFile(file), "no filters");
}

TEST_F(FilterPane, OpensBesideADamagedFilterFile)
{
    test::writeFile(folder() / U"core" / U"catalog_filters.json", "no filters");
    open();
    EXPECT_EQ(shown(), everything);
    EXPECT_THAT(text(status()), HasSubstr("The filters cannot be read: "));
    EXPECT_THAT(text(status()), HasSubstr("is not a filter file"));
}

TEST_F(FilterPane, EditsNoFiltersThatItCouldNotRead)
{
    const fileString file = folder() / U"core" / U"catalog_filters.json";
    haveFilter("Green", {"Garden"});
    const std::string bytes = test::readFile(file);
    test::writeFile(file, "no filters");
    open();
    action("editFiltersAction")->trigger();
    settle();
    EXPECT_EQ(window().findChild<QDialog*>(QStringLiteral("filterEditor")), nullptr);
    EXPECT_THAT(text(status()), HasSubstr("The filters cannot be read: "));
    test::writeFile(file, bytes);
    action("editFiltersAction")->trigger();
    auto* const names = find<QListWidget>("filterList", dialog<QDialog>("filterEditor"));
    EXPECT_EQ(names->findItems(QStringLiteral("Green"), Qt::MatchExactly).size(), 1);
}

// ---- Merging -------------------------------------------------------------------------------------

class FilterMerging : public FilterPane
{
protected:
    /// Chooses a file of that content in the dialog.
    void merge(const std::string& content)
    {
        const fileString file = folder() / U"colleague.json";
        test::writeFile(file, content);
        action("mergeFiltersAction")->trigger();
        auto* const chooser = dialog<QFileDialog>("filterFileDialog");
        auto* const name = find<QLineEdit>("fileNameEdit", chooser);
        name->setText(QString::fromStdString(file.utf8()));
        QTest::keyClick(name, Qt::Key_Return);
        settle();
        EXPECT_EQ(test::readFile(file), content);
    }
};

constexpr const char* twoFilters = R"({"Current_Filter": 1,
    "Filter": {"Filter_Name": "Green", "Filter_Id": 1, "Database_Ids": ["id of Garden"]},
    "Filter": {"Filter_Name": "Wet", "Filter_Id": 2, "Database_Ids": ["id of Bath"]}})";

TEST_F(FilterMerging, AddsAndTells)
{
    haveFilter("Green", {"Garden"});
    open();
    merge(twoFilters);
    EXPECT_EQ(box()->count(), 3);
    EXPECT_EQ(text(status()), "1 filter added: Wet. 1 filter was here already.");
    EXPECT_EQ(box()->currentIndex(), 0) << "the filter in force stays";
    EXPECT_THAT(savedFilters(), HasSubstr(R"("Filter_Name":"Wet")"));
    merge(twoFilters);
    EXPECT_EQ(text(status()), "No filter was added. 2 filters were here already.");
}

TEST_F(FilterMerging, RefusesOtherFiles)
{
    haveFilter("Green", {"Garden"});
    open();
    const std::string before = savedFilters();
    merge("[]");
    EXPECT_THAT(text(status()), HasSubstr("colleague.json: is not a filter file"));
    EXPECT_EQ(box()->count(), 2);
    EXPECT_EQ(savedFilters(), before);
}

// ---- Kinds ---------------------------------------------------------------------------------------

struct KindCase
{
    const char* action;
    const char* library;
};

void PrintTo(const KindCase& row, std::ostream* stream)
{
    *stream << row.action;
}

class KindsOfLibrary : public FilterPane, public testing::WithParamInterface<KindCase>
{};

TEST_P(KindsOfLibrary, AreInNeitherTreeNorSearchWhenHidden)
{
    open();
    QAction* const kind = action(GetParam().action);
    EXPECT_TRUE(kind->isCheckable() && kind->isChecked());
    kind->trigger();
    const QString library = QString::fromLatin1(GetParam().library);
    QStringList rest = everything;
    rest.removeOne(library);
    EXPECT_EQ(shown(), rest);
    EXPECT_EQ(search(QStringLiteral("chair")).size(), 3);
    EXPECT_TRUE(search(library).isEmpty());
    kind->trigger();
    EXPECT_EQ(shown(), everything);
    EXPECT_EQ(search(QStringLiteral("chair")).size(), 4);
}

constexpr KindCase kindCases[] = {{"coreKindAction", "Bath"},
                                  {"bonusKindAction", "Garden"},
                                  {"manufacturerKindAction", "Kitchen"},
                                  {"userKindAction", "Own"}};

INSTANTIATE_TEST_SUITE_P(Kinds, KindsOfLibrary, testing::ValuesIn(kindCases),
                         [](const auto& row) { return std::string(row.param.library); });

TEST_F(FilterPane, CombinesKindsAndFilter)
{
    haveFilter("Rooms", {"Bath", "Kitchen"});
    open();
    chooseInBox(1);
    action("coreKindAction")->trigger();
    EXPECT_EQ(shown(), QStringList(QStringLiteral("Kitchen")));
    action("manufacturerKindAction")->trigger();
    EXPECT_EQ(shown(), QStringList());
    auto* const page = find<VelkHost::HiddenNote>("hiddenPage");
    ASSERT_TRUE(page->isVisible());
    EXPECT_EQ(text(find<QLabel>("hiddenText", page)->text()),
              "All libraries are hidden by the filter \u201CRooms\u201D and the choice of kinds.");
    QTest::mouseClick(find<QPushButton>("showAllButton", page), Qt::LeftButton);
    settle();
    EXPECT_EQ(shown(), everything);
    EXPECT_TRUE(action("coreKindAction")->isChecked());
}

TEST_F(FilterPane, SaysThatKindsHideEverything)
{
    open();
    for (const KindCase& row : kindCases)
        action(row.action)->trigger();
    auto* const page = find<VelkHost::HiddenNote>("hiddenPage");
    ASSERT_TRUE(page->isVisible());
    EXPECT_EQ(text(find<QLabel>("hiddenText", page)->text()), "All libraries are hidden by the choice of kinds.");
}

}  // namespace
