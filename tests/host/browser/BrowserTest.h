#pragma once

#include "host/fixtures/PublishFixtures.h"

#include "host/browser/BrowserWindow.h"
#include "host/browser/jobs/LibraryJobs.h"
#include "support/TestHost.h"

#include <QAction>
#include <QModelIndex>
#include <QString>
#include <QStringList>

#include <memory>
#include <string>

namespace test {

/// A core library with folders in folders and many items; "Furniture", "Seating", "Chairs" holds the items
/// "chair#0" to "chair#59", called `prefix` and a number.
VelkHost::Catalog furnitureCatalog(const std::string& prefix);

/// What a search has found: the titles of the groups and, indented, the names of their hits.
QStringList resultRows(const QAbstractItemModel& results);

/// The window shows what the search for the text in the box has found.
bool hasSearched(VelkHost::BrowserWindow& window);

/// A base for tests of the window: it is shown, with an installation in the test's folder.
class BrowserTest : public TestHost
{
protected:
    BrowserTest();
    ~BrowserTest() override;

    /// Makes the window and reads the installed libraries.
    void openWindow();
    void closeWindow() { window_.reset(); }

    VelkHost::BrowserWindow& window() { return *window_; }
    QTreeView& tree() { return *window_->tree(); }
    VelkHost::LibraryTreeModel& model() { return window_->model(); }

    /// A widget or action of the window by its name; null when there is none.
    template <typename Type>
    Type* named(const char* objectName)
    {
        return window_->findChild<Type*>(QString::fromLatin1(objectName));
    }
    QAction& action(const char* objectName);
    std::string message();

    /// Runs the event loop until no job runs and nothing is being read.
    void waitForJob();

    fileString core(const std::u32string& name) const { return folder() / U"core" / name; }
    fileString user(const std::u32string& name) const { return folder() / U"user" / name; }
    QString qtPath(const fileString& path) const { return QString::fromStdString(path.utf8()); }

    QModelIndex folderIndex(const fileString& library, const QStringList& names);
    QModelIndex itemIndex(const fileString& library, const std::string& uniqueId);
    std::string currentId();

private:
    std::unique_ptr<VelkHost::BrowserWindow> window_;
    int readings_ = 0;
};

}  // namespace test
