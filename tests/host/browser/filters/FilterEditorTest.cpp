#include "FilteredWindow.h"

#include "host/browser/filters/FilterEditor.h"
#include "host/installation/Filters.h"

#include <QAbstractItemView>
#include <QApplication>
#include <QCheckBox>
#include <QComboBox>
#include <QDialogButtonBox>
#include <QLabel>
#include <QLineEdit>
#include <QListView>
#include <QListWidget>
#include <QPushButton>
#include <QTest>

using testing::HasSubstr;
using testing::Not;
using VelkHost::FilterEditor;
using VelkHost::LibraryKind;

namespace {

class FilterEditing : public test::FilteredWindow
{
protected:
    FilterEditing()
    {
        install("Bath", LibraryKind::Core);
        install("Garden", LibraryKind::Bonus);
        install("Kitchen", LibraryKind::User);
        haveFilter("Rooms", {"Bath", "elsewhere", "Kitchen"});
        haveFilter("Green", {"Garden"});
    }

    void openEditor()
    {
        open();
        QTest::keyClick(&window(), Qt::Key_F, Qt::ControlModifier | Qt::ShiftModifier);
        editor_ = dialog<FilterEditor>("filterEditor");
        ASSERT_NE(editor_, nullptr);
    }

    QListWidget* filters() { return find<QListWidget>("filterList", editor_); }
    QListView* libraries() { return find<QListView>("filterLibraries", editor_); }
    QLineEdit* librarySearch() { return find<QLineEdit>("filterLibrarySearch", editor_); }
    std::string problem() { return find<QLabel>("filterProblem", editor_)->text().toStdString(); }
    QPushButton* okButton() { return find<QDialogButtonBox>("filterButtons", editor_)->button(QDialogButtonBox::Ok); }

    /// Presses a key where the focus is, as the user does.
    static void press(int key, Qt::KeyboardModifiers modifiers = Qt::NoModifier)
    {
        ASSERT_NE(QApplication::focusWidget(), nullptr);
        QTest::keyClick(QApplication::focusWidget(), static_cast<Qt::Key>(key), modifiers);
    }
    /// Whether a filter's name is being entered, which begins a moment after a button's key.
    static bool isNaming()
    {
        const QWidget* const focus = QApplication::focusWidget();
        const QWidget* const above = focus == nullptr ? nullptr : focus->parentWidget();
        return qobject_cast<const QLineEdit*>(focus) != nullptr && above->parentWidget() != nullptr &&
               above->parentWidget()->objectName() == QLatin1String("filterList");
    }
    /// Enters the filter's name; null keeps the proposed one.
    static void enterName(const char* name)
    {
        eventually(isNaming);
        if (name != nullptr)
            type(name);
        press(Qt::Key_Return);
        eventually([] { return !isNaming(); });
    }
    static void type(const char* text) { test::typeText(QApplication::focusWidget(), QString::fromUtf8(text)); }

    /// The libraries offered; those of the filter are marked with a star.
    std::vector<std::string> offered()
    {
        std::vector<std::string> names;
        const QAbstractItemModel& model = *libraries()->model();
        for (int row = 0; row < model.rowCount(); ++row) {
            const QModelIndex index = model.index(row, 0);
            const bool checked = index.data(Qt::CheckStateRole).toInt() == Qt::Checked;
            names.push_back(index.data().toString().toStdString() + (checked ? "*" : ""));
        }
        return names;
    }

    void accept()
    {
        QTest::mouseClick(okButton(), Qt::LeftButton);
        settle();
    }

    FilterEditor* editor_ = nullptr;
};

using testing::ElementsAre;

TEST_F(FilterEditing, ShowsFiltersAndTheirLibraries)
{
    openEditor();
    ASSERT_EQ(filters()->count(), 2);
    EXPECT_EQ(filters()->item(0)->text(), QStringLiteral("Rooms"));
    EXPECT_THAT(offered(), ElementsAre("Bath*", "Garden", "Kitchen*", "id of elsewhere (not installed)*"));
    press(Qt::Key_Down);
    EXPECT_THAT(offered(), ElementsAre("Bath", "Garden*", "Kitchen", "id of elsewhere (not installed)"));
}

TEST_F(FilterEditing, MakesAFilterByKeysAlone)
{
    openEditor();
    press(Qt::Key_A, Qt::AltModifier);
    enterName("Wet");
    EXPECT_EQ(filters()->currentItem()->text(), QStringLiteral("Wet"));
    press(Qt::Key_L, Qt::AltModifier);
    EXPECT_TRUE(librarySearch()->hasFocus());
    type("BAT");
    EXPECT_THAT(offered(), ElementsAre("Bath"));
    press(Qt::Key_Tab);
    EXPECT_TRUE(libraries()->hasFocus());
    press(Qt::Key_Down);
    press(Qt::Key_Space);
    EXPECT_THAT(offered(), ElementsAre("Bath*"));
    press(Qt::Key_F, Qt::AltModifier);
    eventually([&] { return find<QCheckBox>("filterInForce", editor_)->isChecked(); });
    press(Qt::Key_Return);
    settle();
    EXPECT_EQ(shown(), QStringList(QStringLiteral("Bath")));
    EXPECT_EQ(find<QComboBox>("filterBox")->currentText(), QStringLiteral("Wet"));
    EXPECT_THAT(savedFilters(), HasSubstr(R"("Current_Filter":3)"));
    EXPECT_THAT(savedFilters(), HasSubstr(R"({"Filter_Name":"Wet","Filter_Id":3,"Database_Ids":["idofBath"]})"));
}

TEST_F(FilterEditing, ChangesLibrariesAndKeepsTheOrderOfTheOthers)
{
    openEditor();
    auto* const view = libraries();
    for (const int row : {0, 1}) {
        view->setCurrentIndex(view->model()->index(row, 0));
        QTest::keyClick(view, Qt::Key_Space);
    }
    accept();
    EXPECT_THAT(VelkHost::filterNamed("Rooms").getDatabaseIds(),
                ElementsAre("id of elsewhere", "id of Kitchen", "id of Garden"));
    EXPECT_THAT(savedFilters(), HasSubstr(R"(["idofelsewhere","idofKitchen","idofGarden"])"));
}

TEST_F(FilterEditing, RenamesAndTrims)
{
    openEditor();
    press(Qt::Key_F2);
    enterName("  B\u00E4der ");
    accept();
    EXPECT_EQ(VelkHost::filterNamed("B\u00E4der").getFilterId(), 1);
    EXPECT_THAT(savedFilters(), Not(HasSubstr("Rooms")));
    EXPECT_EQ(find<QComboBox>("filterBox")->itemText(1), QStringLiteral("B\u00E4der"));
}

TEST_F(FilterEditing, RemovesTheOneInForce)
{
    VelkHost::setCurrentFilter(1);
    openEditor();
    EXPECT_TRUE(find<QCheckBox>("filterInForce", editor_)->isChecked());
    press(Qt::Key_Delete);
    EXPECT_EQ(filters()->count(), 1);
    EXPECT_FALSE(find<QCheckBox>("filterInForce", editor_)->isChecked());
    EXPECT_THAT(offered(), ElementsAre("Bath", "Garden*", "Kitchen", "id of elsewhere (not installed)"));
    accept();
    EXPECT_THAT(savedFilters(), HasSubstr(R"("Current_Filter":-1)"));
    EXPECT_THAT(savedFilters(), Not(HasSubstr("Rooms")));
    EXPECT_EQ(shown().size(), 3);
}

TEST_F(FilterEditing, RemovesTheLastOne)
{
    openEditor();
    QTest::mouseClick(find<QPushButton>("removeFilterButton", editor_), Qt::LeftButton);
    QTest::mouseClick(find<QPushButton>("removeFilterButton", editor_), Qt::LeftButton);
    EXPECT_FALSE(find<QPushButton>("removeFilterButton", editor_)->isEnabled());
    EXPECT_FALSE(libraries()->isEnabled());
    accept();
    EXPECT_FALSE((folder() / U"core" / U"catalog_filters.json").pathExists());
    EXPECT_EQ(find<QComboBox>("filterBox")->count(), 1);
}

TEST_F(FilterEditing, TakesNeitherEmptyNorEqualNames)
{
    openEditor();
    const auto rename = [&](const char* name) {
        press(Qt::Key_N, Qt::AltModifier);
        enterName(name);
    };
    rename("Green");
    EXPECT_EQ(problem(), "There are two filters \u201CGreen\u201D.");
    EXPECT_FALSE(okButton()->isEnabled());
    rename(" ");
    EXPECT_EQ(problem(), "A filter needs a name.");
    EXPECT_FALSE(okButton()->isEnabled());
    rename("green");
    EXPECT_EQ(problem(), "");
    EXPECT_TRUE(okButton()->isEnabled());
}

TEST_F(FilterEditing, NamesNewFiltersApart)
{
    openEditor();
    QTest::mouseClick(find<QPushButton>("addFilterButton", editor_), Qt::LeftButton);
    enterName(nullptr);
    QTest::mouseClick(find<QPushButton>("addFilterButton", editor_), Qt::LeftButton);
    enterName(nullptr);
    EXPECT_EQ(filters()->item(2)->text(), QStringLiteral("New filter"));
    EXPECT_EQ(filters()->item(3)->text(), QStringLiteral("New filter 2"));
    EXPECT_TRUE(okButton()->isEnabled());
}

TEST_F(FilterEditing, ForgetsEverythingWhenCancelled)
{
    VelkHost::setCurrentFilter(2);
    openEditor();
    const std::string before = savedFilters();
    find<QCheckBox>("filterInForce", editor_)->click();
    press(Qt::Key_Delete);
    filters()->setFocus();
    press(Qt::Key_Escape);
    settle();
    EXPECT_EQ(savedFilters(), before);
    EXPECT_EQ(find<QComboBox>("filterBox")->currentIndex(), 2);
    EXPECT_EQ(shown(), QStringList(QStringLiteral("Garden")));
    EXPECT_EQ(window().findChild<FilterEditor*>(), nullptr);
}

TEST_F(FilterEditing, MayEndWhileANameIsEntered)
{
    openEditor();
    press(Qt::Key_F2);
    eventually(isNaming);
    type("Wet");
    delete editor_;
    EXPECT_EQ(VelkHost::filterNamed("Rooms").getFilterId(), 1);
}

TEST_F(FilterEditing, HasANameForEveryControl)
{
    openEditor();
    for (const QWidget* const widget : editor_->findChildren<QWidget*>()) {
        const bool takesFocus = (widget->focusPolicy() & Qt::TabFocus) != 0 && widget->isVisible();
        if (!takesFocus || widget->objectName().startsWith(QLatin1String("qt_")))
            continue;
        const auto* const button = qobject_cast<const QAbstractButton*>(widget);
        EXPECT_FALSE(widget->accessibleName().isEmpty() && (button == nullptr || button->text().isEmpty()))
            << widget->metaObject()->className() << " " << widget->objectName().toStdString();
    }
}

}  // namespace
