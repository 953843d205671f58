#include "FilteredWindow.h"

#include "host/browser/filters/ShownLibraries.h"
#include "host/browser/search/SearchPane.h"
#include "host/catalog/CatalogFile.h"
#include "host/installation/Filters.h"
#include "host/support/QtText.h"

#include <VelkLibrary/LibraryFilterManager.h>
#include <VelkLibrary/Manufacturer/ManufacturerManager.h>

#include <QApplication>
#include <QLineEdit>
#include <QSignalSpy>
#include <QStatusBar>
#include <QTest>
#include <QTreeView>

#include <algorithm>
#include <map>

namespace test {
void typeText(QWidget* widget, const QString& text)
{
    for (const QChar& sign : text)
        QTest::sendKeyEvent(QTest::Click, widget, Qt::Key_unknown, QString(sign), Qt::NoModifier);
}

// All tests share one process, and so one manager: each test leaves it as it found it.
FilteredWindow::FilteredWindow()
{
    LibraryFilterManager& manager = LibraryFilterManager::getLibraryFilterManager();
    manager.setLibraryFilters({});
    manager.setCurrentFilterId(VelkHost::noFilterId);
    ManufacturerManager::cleanup();
}

FilteredWindow::~FilteredWindow()
{
    window_.reset();
    ManufacturerManager::cleanup();
}

fileString FilteredWindow::pathOf(const std::string& name, VelkHost::LibraryKind kind) const
{
    const std::map<VelkHost::LibraryKind, std::u32string> folders{
        {VelkHost::LibraryKind::Core, U"core"},
        {VelkHost::LibraryKind::Bonus, U"bonus"},
        {VelkHost::LibraryKind::Manufacturer, U"manufacturer"},
        {VelkHost::LibraryKind::User, U"user"}};
    return folder() / folders.at(kind) / fileString(name + ".calib");
}

void FilteredWindow::install(const std::string& name, VelkHost::LibraryKind kind,
                             const std::vector<VelkHost::Item>& items)
{
    VelkHost::Catalog catalog;
    catalog.id = idOf(name);
    catalog.name = name;
    catalog.kind = kind;
    catalog.folders = {{VelkHost::Folder::noParent, name + " things"}};
    catalog.items = items;
    if (items.empty())
        catalog.items = {{name + "#1", 0, name + " chair", "", "", {}}};
    VelkHost::writeCatalog(catalog, pathOf(name, kind));
    installed_.emplace_back(name, pathOf(name, kind));
}

void FilteredWindow::haveFilter(const std::string& name, const std::vector<std::string>& libraries)
{
    std::vector<std::string> ids;
    for (const std::string& library : libraries)
        ids.push_back(idOf(library));
    VelkHost::addToFilter(name, ids);
}

void FilteredWindow::open(const VelkHost::BrowserOptions& options)
{
    window_ = std::make_unique<VelkHost::BrowserWindow>(options);
    QSignalSpy read(window_.get(), &VelkHost::BrowserWindow::librariesRead);
    window_->show();
    activate(window_.get());
    window_->readLibraries();
    ASSERT_TRUE(QTest::qWaitFor([&] { return !read.isEmpty(); }, patience));
    settle();
}

// QTest::qWaitForWindowActive() counts a window as active while one of its dialogs is, and the other way round.
void FilteredWindow::activate(QWidget* window)
{
    window->activateWindow();
    EXPECT_TRUE(QTest::qWaitFor([&] { return QApplication::activeWindow() == window; }, patience));
}

void FilteredWindow::settle()
{
    EXPECT_TRUE(QTest::qWaitFor(
        [&] { return !window_->shownLibraries()->filters().isBusy() && !window_->manufacturers().isBusy(); },
        patience));
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
}

void FilteredWindow::close()
{
    EXPECT_TRUE(window_->close());
    window_.reset();
}

QStringList FilteredWindow::shown() const
{
    QStringList names;
    const QAbstractItemModel& model = *window_->tree()->model();
    for (int row = 0; row < model.rowCount(); ++row)
        names.append(model.index(row, 0).data().toString().remove(QStringLiteral(" things")));
    names.sort();
    return names;
}

QString FilteredWindow::status() const
{
    return window_->statusBar()->currentMessage();
}

QStringList FilteredWindow::search(const QString& text)
{
    auto* const box = find<QLineEdit>("searchBox");
    box->clear();
    QSignalSpy found(window_->searchPane(), &VelkHost::SearchPane::shown);
    typeText(box, text);
    EXPECT_TRUE(QTest::qWaitFor([&] { return !found.isEmpty(); }, patience));
    QStringList names;
    const VelkHost::SearchResultModel& model = window_->searchPane()->model();
    for (int group = 0; group < model.rowCount(); ++group)
        for (int row = 0; row < model.rowCount(model.index(group, 0)); ++row)
            names.append(model.index(row, 0, model.index(group, 0)).data().toString());
    names.sort();
    return names;
}

void FilteredWindow::select(const std::string& library, std::size_t item)
{
    const auto found = std::find_if(installed_.begin(), installed_.end(),
                                    [&](const auto& installed) { return installed.first == library; });
    ASSERT_NE(found, installed_.end());
    window_->reveal({found->second, false, item});
    settle();
}

std::string FilteredWindow::savedFilters() const
{
    std::string text = readFile(folder() / U"core" / U"catalog_filters.json");
    std::erase_if(text, [](char sign) { return sign == ' ' || sign == '\n' || sign == '\r' || sign == '\t'; });
    return text;
}

}  // namespace test
