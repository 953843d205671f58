#pragma once

#include "host/fixtures/PublishFixtures.h"

#include "host/browser/BrowserWindow.h"

#include <QString>
#include <QStringList>
#include <QTest>

#include <memory>
#include <string>
#include <vector>

class QAction;

namespace test {

/// Types a text into a widget; QTest's own function takes ASCII only.
void typeText(QWidget* widget, const QString& text);

/// A window on its own installation, with real files. The filters begin empty.
class FilteredWindow : public PublishTest
{
protected:
    FilteredWindow();
    ~FilteredWindow() override;

    /// Installs a library with one category, "NAME things", and items of these names.
    void install(const std::string& name, VelkHost::LibraryKind kind, const std::vector<VelkHost::Item>& items = {});
    /// Saves a filter for the libraries of these names.
    static void haveFilter(const std::string& name, const std::vector<std::string>& libraries);
    static std::string idOf(const std::string& libraryName) { return "id of " + libraryName; }

    /// Opens the window and waits until everything is read.
    void open(const VelkHost::BrowserOptions& options = {});
    /// Waits until a condition holds; fails the test when it never does.
    template <typename Condition>
    static void eventually(Condition condition)
    {
        EXPECT_TRUE(QTest::qWaitFor(condition, patience));
    }
    /// Waits until nothing is under way.
    void settle();
    /// Closes the window, as the user does.
    void close();

    VelkHost::BrowserWindow& window() { return *window_; }
    template <typename Widget>
    Widget* find(const char* objectName, QWidget* parent = nullptr)
    {
        auto* const found =
            (parent == nullptr ? window_.get() : parent)->findChild<Widget*>(QString::fromLatin1(objectName));
        EXPECT_NE(found, nullptr) << objectName;
        return found;
    }
    /// The dialog of that name, once it is open and has the keys; fails the test when it does not open.
    template <typename Dialog>
    Dialog* dialog(const char* objectName)
    {
        Dialog* found = nullptr;
        eventually([&] {
            found = window_->findChild<Dialog*>(QString::fromLatin1(objectName));
            return found != nullptr && found->isVisible();
        });
        if (found != nullptr)
            activate(found);
        return found;
    }

    /// The libraries whose categories are in the tree, in its order.
    QStringList shown() const;
    QString status() const;
    /// Types a text to search for, and waits for what it finds.
    QStringList search(const QString& text);
    /// Selects the item of that index in a library.
    void select(const std::string& library, std::size_t item);

    /// The filter file, in one line without blanks.
    std::string savedFilters() const;

private:
    static constexpr int patience = 60'000;  // milliseconds; for a busy machine

    static void activate(QWidget* window);
    fileString pathOf(const std::string& name, VelkHost::LibraryKind kind) const;

    std::unique_ptr<VelkHost::BrowserWindow> window_;
    std::vector<std::pair<std::string, fileString>> installed_;
};

}  // namespace test
