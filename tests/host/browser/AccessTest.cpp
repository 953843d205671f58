// What users need who have no mouse, or cannot see the screen.
#include "DrivenWindow.h"

#include <VelkLibrary/UI/LibraryProgressPanel.h>

#include <QAbstractButton>
#include <QAccessible>
#include <QAction>
#include <QDialog>
#include <QLabel>
#include <QLineEdit>
#include <QMenu>
#include <QMenuBar>
#include <QShortcut>
#include <QToolButton>

#include <map>
#include <set>

namespace {

/// Widgets that Qt makes for its own widgets.
bool isQtsOwn(const QWidget& widget)
{
    return widget.objectName().startsWith(QLatin1String("qt_")) ||
           QByteArray(widget.metaObject()->className()).startsWith("QComboBoxPrivate");
}

std::string describe(const QObject& object)
{
    return object.metaObject()->className() + (" " + object.objectName().toStdString());
}

/// Whether it is a label that has nothing to tell just now, and so is not there.
bool isSilent(const QWidget& widget)
{
    const auto* const label = qobject_cast<const QLabel*>(&widget);
    return label != nullptr && label->isHidden() && label->text().isEmpty();
}

/// What a screen reader calls the widget: its accessible name, its text, or the label whose buddy it is.
QString spokenName(QWidget& widget)
{
    QAccessibleInterface* const spoken = QAccessible::queryAccessibleInterface(&widget);
    return spoken == nullptr ? QString() : spoken->text(QAccessible::Name);
}

void expectNames(QWidget& window)
{
    int controls = 0;
    for (QWidget* const widget : window.findChildren<QWidget*>()) {
        if (widget->focusPolicy() == Qt::NoFocus || isQtsOwn(*widget) || isSilent(*widget) ||
            widget->window() != &window)
            continue;
        ++controls;
        EXPECT_FALSE(spokenName(*widget).trimmed().isEmpty()) << describe(*widget);
    }
    EXPECT_GT(controls, 0);
}

QString letterOf(const QString& text)
{
    return QKeySequence::mnemonic(text).toString();
}

/// Checks that each key of a window does one thing only; keys of hidden widgets do nothing.
void expectKeysAreUnambiguous(QWidget& window)
{
    std::map<QString, std::set<std::string>> uses;
    for (const QAction* const action : window.findChildren<QAction*>())
        for (const QKeySequence& key : action->shortcuts())
            if (action->isEnabled())
                uses[key.toString()].insert(action->text().toStdString());
    for (const auto* const button : window.findChildren<QAbstractButton*>())
        if (button->isVisible() && button->window() == &window && !button->shortcut().isEmpty())
            uses[button->shortcut().toString()].insert(describe(*button));
    for (const auto* const label : window.findChildren<QLabel*>())
        if (label->isVisible() && label->window() == &window && label->buddy() != nullptr)
            uses[letterOf(label->text())].insert(describe(*label));
    if (const auto* const bar = window.findChild<QMenuBar*>())
        for (const QAction* const menu : bar->actions())
            uses[letterOf(menu->text())].insert(menu->text().toStdString());
    uses.erase(QString());
    for (const auto& [key, users] : uses)
        EXPECT_THAT(users, testing::SizeIs(1)) << key.toStdString();
}

/// Checks that each entry of the menu and of its submenus has a letter that no other has, or a key.
void expectKeysOf(const QMenu& menu)
{
    std::set<QString> letters;
    for (const QAction* const action : menu.actions()) {
        if (action->isSeparator() || !action->isVisible())
            continue;
        const QString letter = letterOf(action->text());
        EXPECT_FALSE(letter.isEmpty() && action->shortcut().isEmpty()) << action->text().toStdString();
        EXPECT_TRUE(letter.isEmpty() || letters.insert(letter).second) << action->text().toStdString();
        if (action->menu() != nullptr)
            expectKeysOf(*action->menu());
    }
    EXPECT_FALSE(letters.empty()) << menu.title().toStdString();
}

class Access : public test::DrivenWindow
{
protected:
    /// Opens the window with every part in sight: libraries, an item with its manufacturer, hits.
    void openOnAHit()
    {
        open(options());
        press(Qt::Key_F5);
        waitForJob();
        find<QAction>("refreshManufacturersAction")->trigger();
        settle();
        search(QStringLiteral("chair"));
        press(Qt::Key_Return);
        press(Qt::Key_Home);
        press(Qt::Key_Down);
        ASSERT_EQ(seen("manufacturerName"), "Acme Doors");
    }

    void expectDialog(const char* name)
    {
        auto* const shown = dialog<QDialog>(name);
        ASSERT_NE(shown, nullptr) << name;
        SCOPED_TRACE(name);
        expectNames(*shown);
        expectKeysAreUnambiguous(*shown);
        shown->reject();
        settle();
    }
};

TEST_F(Access, NamesEveryControlOfTheWindow)
{
    openOnAHit();
    expectNames(window());
}

TEST_F(Access, HasAKeyForEveryEntryOfTheMenus)
{
    openOnAHit();
    QMenuBar& bar = *window().menuBar();
    ASSERT_EQ(bar.actions().size(), 5);
    for (const QAction* const entry : bar.actions())
        expectKeysOf(*entry->menu());
}

TEST_F(Access, HasOneUseForEachKey)
{
    openOnAHit();
    find<QToolButton>("errorLogButton")->show();
    expectKeysAreUnambiguous(window());
    find<QLineEdit>("searchBox")->clear();
    expectKeysAreUnambiguous(window());
}

TEST_F(Access, CoversTheProgress)
{
    open(options());
    holdService();
    press(Qt::Key_F5);
    ASSERT_TRUE(isPanelSeen());
    expectNames(window());
    expectKeysAreUnambiguous(window());
    press(Qt::Key_Escape);
    goOn();
    waitForJob();
}

TEST_F(Access, CoversTheDialogs)
{
    openOnAHit();
    find<QAction>("editFiltersAction")->trigger();
    expectDialog("filterEditor");
    find<QAction>("editManufacturerAction")->trigger();
    expectDialog("manufacturerEditor");
    find<QLabel>("syntaxLink")->setFocus();
    press(Qt::Key_Tab);  // from the text to the link in it
    press(Qt::Key_Return);
    expectDialog("syntaxHelp");
}

}  // namespace
