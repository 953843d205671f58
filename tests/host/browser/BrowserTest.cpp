#include "BrowserTest.h"

#include "host/browser/search/SearchPane.h"
#include "support/Eventually.h"

#include <QLineEdit>
#include <QStatusBar>
#include <QTest>
#include <QTreeView>

namespace test {

using VelkHost::Catalog;
using VelkHost::Folder;

Catalog furnitureCatalog(const std::string& prefix)
{
    Catalog catalog;
    catalog.id = "furniture";
    catalog.name = "Furniture library";
    catalog.kind = VelkHost::LibraryKind::Core;
    catalog.folders = {{Folder::noParent, "Furniture"}, {0, "Seating"}, {1, "Chairs"}, {0, "Tables"}};
    for (int i = 0; i < 60; ++i)
        catalog.items.push_back({"chair#" + std::to_string(i), 2, prefix + std::to_string(100 + i), "", "", {}});
    catalog.items.push_back({"table", 3, "Table", "", "", {}});
    return catalog;
}

QStringList resultRows(const QAbstractItemModel& results)
{
    QStringList rows;
    for (int group = 0; group < results.rowCount(); ++group) {
        const QModelIndex index = results.index(group, 0);
        rows.append(index.data().toString());
        for (int hit = 0; hit < results.rowCount(index); ++hit)
            rows.append(u' ' + results.index(hit, 0, index).data().toString());
    }
    return rows;
}

bool hasSearched(VelkHost::BrowserWindow& window)
{
    const VelkHost::SearchOutcome* const outcome = window.searchPane()->model().outcome();
    return outcome != nullptr && outcome->text == window.findChild<QLineEdit*>(QStringLiteral("searchBox"))->text();
}

BrowserTest::BrowserTest() = default;

BrowserTest::~BrowserTest() = default;

void BrowserTest::openWindow()
{
    readings_ = 0;
    window_ = std::make_unique<VelkHost::BrowserWindow>();
    QObject::connect(window_.get(), &VelkHost::BrowserWindow::librariesRead, window_.get(), [this] { ++readings_; });
    window_->resize(800, 400);
    window_->show();
    ASSERT_TRUE(QTest::qWaitForWindowActive(window_.get(), static_cast<int>(patience.count())));
    window_->readLibraries();
    eventually([this] { return readings_ == 1; });
}

QAction& BrowserTest::action(const char* objectName)
{
    QAction* const found = named<QAction>(objectName);
    EXPECT_NE(found, nullptr) << objectName;
    return *found;
}

std::string BrowserTest::message()
{
    return window_->statusBar()->currentMessage().toStdString();
}

void BrowserTest::waitForJob()
{
    eventually([this] { return !window_->jobs().isRunning() && !window_->isReading(); });
}

QModelIndex BrowserTest::folderIndex(const fileString& library, const QStringList& names)
{
    const auto place = model().folderNamed(library, names);
    return place ? model().find(*place) : QModelIndex();
}

QModelIndex BrowserTest::itemIndex(const fileString& library, const std::string& uniqueId)
{
    const auto place = model().itemNamed(library, uniqueId);
    return place ? model().find(*place) : QModelIndex();
}

std::string BrowserTest::currentId()
{
    const auto place = model().place(tree().currentIndex());
    if (!place || place->isFolder)
        return {};
    return model().library(place->library)->catalog->items[place->index].uniqueId;
}

}  // namespace test
