// How the browser's window does with many items: the time from its start to the first tree on the screen, the time from
// a key to ranked results, and its memory. Beside it stand a filtered item model of Qt and SQLite's full-text search on
// the same items. Each runs in its own process.
// Arguments: folders to look for libraries in, instead of the system's.
#include "Cost.h"
#include "LibraryNames.h"
#include "ManyLibraries.h"
#include "Measures.h"
#include "PaintWaiter.h"
#include "PaintedKeys.h"
#include "TimedApplication.h"

#include "host/browser/BrowserWindow.h"
#include "host/browser/search/SearchPane.h"
#include "host/catalog/CatalogFile.h"
#include "host/support/InstallHost.h"
#include "host/support/QtText.h"
#include "support/EventLoopLimit.h"

#include <VelkCommon/HostServices.h>

#include <QApplication>
#include <QDir>
#include <QEventLoop>
#include <QLineEdit>
#include <QRegularExpression>
#include <QSortFilterProxyModel>
#include <QStandardItemModel>
#include <QTemporaryDir>
#include <QTreeView>

#include <sqlite3.h>
#include <sys/mman.h>

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <memory>
#include <new>
#include <string>
#include <utility>
#include <vector>

namespace {

using bench::Arguments;
using bench::Clock;
using bench::Entry;
using bench::millisecondsSince;
using bench::PaintWaiter;
using bench::TimedApplication;

const char* const typed = "office chair";
constexpr std::size_t million = 1'000'000;
constexpr std::size_t counts[] = {1'000, 17'000, million};
constexpr std::size_t itemsInFolder = 500;
constexpr std::size_t foldersInCategory = 50;

/// What a child process finds out, in memory that it shares with its parent.
struct Findings
{
    double firstTree = 0;     ///< ms from the start to the first painted tree
    double complete = 0;      ///< ms until everything is read
    double key = 0;           ///< ms from a key to the painted results, for the slowest key
    double longestEvent = 0;  ///< ms, on the user-interface thread
    int hits = 0;
    bench::PaintedKeys keys;  ///< of all that people type
};

Findings& sharedFindings()
{
    void* const memory = ::mmap(nullptr, sizeof(Findings), PROT_READ | PROT_WRITE, MAP_SHARED | MAP_ANONYMOUS, -1, 0);
    if (memory == MAP_FAILED)
        std::abort();
    return *new (memory) Findings;
}

VelkHost::Catalog catalogOf(const std::vector<Entry>& entries)
{
    using VelkHost::Folder;
    VelkHost::Catalog catalog;
    catalog.id = "bench";
    catalog.name = "Benchmark";
    std::size_t category = 0;
    for (std::size_t i = 0; i < entries.size(); ++i) {
        if (i % (itemsInFolder * foldersInCategory) == 0) {
            category = catalog.folders.size();
            catalog.folders.push_back({Folder::noParent, "Category " + std::to_string(category)});
        }
        if (i % itemsInFolder == 0)
            catalog.folders.push_back({category, "Folder " + std::to_string(catalog.folders.size())});
        catalog.items.push_back(
            {std::to_string(i), catalog.folders.size() - 1, entries[i].name, entries[i].keywords, {}, {}});
    }
    return catalog;
}

bool runBrowser(const std::string& home, Findings& findings)
{
    Arguments arguments;
    TimedApplication application(arguments.count, arguments.texts);
    Velk::installHost(VelkHost::hostServices(fileString(home)));
    const auto begin = Clock::now();
    VelkHost::BrowserWindow window;
    bool complete = false;
    QObject::connect(&window, &VelkHost::BrowserWindow::librariesRead, [&] {
        complete = true;
        findings.complete = millisecondsSince(begin);
    });
    PaintWaiter tree(window.tree()->viewport());
    window.show();
    window.readLibraries();
    tree.wait([&] { return window.model().rowCount() > 0; });
    findings.firstTree = millisecondsSince(begin);
    {
        const test::EventLoopLimit limit("the window does not get ready");
        while (!complete)
            QApplication::processEvents(QEventLoop::WaitForMoreEvents);
    }

    const QString text = QString::fromLatin1(typed);
    for (int length = 1; length <= text.size(); ++length)
        findings.key = std::max(findings.key, bench::paintedKey(window, text.left(length)));
    findings.hits = static_cast<int>(window.searchPane()->model().outcome()->result.size());
    findings.keys = bench::paintedKeys(window);
    findings.longestEvent = application.longestEvent();
    return true;
}

/// The items that have all words of a text, in any order.
std::unique_ptr<QSortFilterProxyModel> filterOf(QStandardItemModel& model, const QString& text)
{
    QString pattern = QStringLiteral("\\A");
    for (const QString& word : text.split(u' ', Qt::SkipEmptyParts))
        pattern += QStringLiteral("(?=[\\s\\S]*%1)").arg(QRegularExpression::escape(word));
    auto filtered = std::make_unique<QSortFilterProxyModel>();
    filtered->setFilterRegularExpression(QRegularExpression(pattern, QRegularExpression::CaseInsensitiveOption));
    filtered->setSourceModel(&model);
    return filtered;
}

/// Qt's own way: a standard item for each entry in a view, and a filter by a regular expression, whose results are in
/// no order. Each key gets a new filter, since changing one takes time in the square of the rows that it drops.
bool runProxyModel(const std::vector<Entry>& entries, Findings& findings)
{
    Arguments arguments;
    TimedApplication application(arguments.count, arguments.texts);
    const auto begin = Clock::now();
    QStandardItemModel model;
    QList<QStandardItem*> items;
    for (const Entry& entry : entries)
        items.append(new QStandardItem(VelkHost::qtText(entry.name + "\n" + entry.keywords)));
    model.appendColumn(items);
    QTreeView view;
    view.setUniformRowHeights(true);
    view.setModel(&model);
    view.resize(640, 700);
    PaintWaiter painted(view.viewport());
    view.show();
    painted.wait([] { return true; });
    findings.firstTree = findings.complete = millisecondsSince(begin);
    const QString text = QString::fromLatin1(typed);
    std::unique_ptr<QSortFilterProxyModel> filtered;
    for (int length = 1; length <= text.size(); ++length) {
        const auto key = Clock::now();
        painted.arm();
        std::unique_ptr<QSortFilterProxyModel> next = filterOf(model, text.left(length));
        view.setModel(next.get());
        filtered = std::move(next);
        painted.wait([] { return true; });
        findings.key = std::max(findings.key, millisecondsSince(key));
    }
    findings.hits = filtered->rowCount();
    findings.longestEvent = std::max(findings.firstTree, findings.key);  // the user waits for both
    return true;
}

void execute(sqlite3* database, const char* sql)
{
    if (sqlite3_exec(database, sql, nullptr, nullptr, nullptr) != SQLITE_OK) {
        std::fprintf(stderr, "%s\n", sqlite3_errmsg(database));
        std::abort();
    }
}

/// SQLite's full-text search: only the ranked query, which finds words by their beginnings.
bool runFullText(const std::vector<Entry>& entries, Findings& findings)
{
    const auto begin = Clock::now();
    sqlite3* database = nullptr;
    sqlite3_open(":memory:", &database);
    execute(database, "CREATE VIRTUAL TABLE item USING fts5(name, keywords)");
    execute(database, "BEGIN");
    sqlite3_stmt* insert = nullptr;
    sqlite3_prepare_v2(database, "INSERT INTO item VALUES (?, ?)", -1, &insert, nullptr);
    for (const Entry& entry : entries) {
        sqlite3_bind_text(insert, 1, entry.name.data(), static_cast<int>(entry.name.size()), SQLITE_STATIC);
        sqlite3_bind_text(insert, 2, entry.keywords.data(), static_cast<int>(entry.keywords.size()), SQLITE_STATIC);
        sqlite3_step(insert);
        sqlite3_reset(insert);
    }
    sqlite3_finalize(insert);
    execute(database, "COMMIT");
    findings.firstTree = findings.complete = millisecondsSince(begin);
    sqlite3_stmt* query = nullptr;
    sqlite3_prepare_v2(database, "SELECT rowid FROM item WHERE item MATCH ? ORDER BY rank", -1, &query, nullptr);
    const std::string text = typed;
    for (std::size_t length = 1; length <= text.size(); ++length) {
        const auto key = Clock::now();
        std::string match;
        const QStringList words = QString::fromStdString(text.substr(0, length)).split(u' ', Qt::SkipEmptyParts);
        for (const QString& word : words)
            match.append("\"").append(word.toStdString()).append("\"* ");
        sqlite3_bind_text(query, 1, match.c_str(), -1, SQLITE_TRANSIENT);
        for (findings.hits = 0; sqlite3_step(query) == SQLITE_ROW;)
            ++findings.hits;
        sqlite3_reset(query);
        findings.key = std::max(findings.key, millisecondsSince(key));
    }
    sqlite3_finalize(query);
    sqlite3_close(database);
    return true;
}

struct Row
{
    Findings findings;
    bench::Cost cost;
};

template <typename Work>
Row rowOf(const char* name, Work work)
{
    Findings& findings = sharedFindings();
    const bench::Cost cost = bench::costOf(name, [&] { return work(findings); });
    std::printf("%-24s %12.1f %12.1f %12.1f %12.1f %10.0f %9d\n", name, findings.firstTree, findings.complete,
                findings.key, findings.longestEvent, cost.memory, findings.hits);
    const Row row{findings, cost};
    ::munmap(&findings, sizeof findings);
    return row;
}

/// Of several turns the one with the quickest key: the machine may have other things to do. A million items are so much
/// slower in the peers that one turn tells enough.
template <typename Work>
Row quickestRowOf(const char* name, std::size_t items, Work work)
{
    constexpr std::size_t manyItems = 100'000;
    Row quickest = rowOf(name, work);
    for (int turn = 1; turn < 3 && items < manyItems; ++turn) {
        const Row next = rowOf(name, work);
        if (next.findings.key < quickest.findings.key)
            quickest = next;
    }
    return quickest;
}

void measure(const std::vector<Entry>& libraries, std::size_t count, std::vector<bench::Measure>& measures)
{
    const QTemporaryDir home;
    const std::string path = home.path().toStdString();
    const auto content = [&] { return bench::combined(libraries, count); };
    bench::costOf("making the libraries", [&] {
        const fileString folder = fileString(path) / U"core";
        return QDir().mkpath(QString::fromStdString(folder.utf8())) &&
               (VelkHost::writeCatalog(catalogOf(content()), folder / U"Benchmark.calib"), true);
    });
    std::printf("\n%zu items\n%-24s %12s %12s %12s %12s %10s %9s\n", count, "", "first tree ms", "complete ms",
                "key ms", "longest ms", "MiB", "hits");
    const Row own =
        quickestRowOf("velk-browser", count, [&](Findings& findings) { return runBrowser(path, findings); });
    const Row proxy = quickestRowOf("QSortFilterProxyModel", count,
                                    [&](Findings& findings) { return runProxyModel(content(), findings); });
    rowOf("SQLite FTS5 (query)", [&](Findings& findings) { return runFullText(content(), findings); });
    const std::string of = " with " + std::to_string(count) + " items";
    measures.push_back({"longest event" + of, own.findings.longestEvent, 16, 8, false, "ms"});
    if (count == million) {
        bench::addPaintedKeys(own.findings.keys, measures);
        measures.push_back({"memory of the window" + of, own.cost.memory, 480, 400, false, "MiB"});
    }
    measures.push_back({"first tree: part of the proxy's time" + of, own.findings.firstTree / proxy.findings.firstTree,
                        count < 100'000 ? 10.0 : 1.0, count < 100'000 ? 2.0 : 0.2, false, "x"});
    measures.push_back(
        {"a key to painted results" + of, own.findings.key, 1'000, count < 100'000 ? 30.0 : 500.0, false, "ms"});
    // With few items nearly all of the time goes into painting, and our rows show more.
    const bool many = count >= 10'000;
    measures.push_back({"key: part of the proxy's time" + of, own.findings.key / proxy.findings.key, many ? 1.0 : 3.0,
                        many ? 0.5 : 2.0, false, "x"});
}

}  // namespace

int main(int argumentCount, char** arguments)
{
    ::setenv("QT_QPA_PLATFORM", "offscreen", 0);
    const std::vector<Entry> libraries = bench::readLibraries({arguments + 1, arguments + argumentCount});
    if (libraries.empty()) {
        std::fprintf(stderr, "There are no libraries in these folders.\n");
        return EXIT_FAILURE;
    }
    std::vector<bench::Measure> measures;
    bench::measureManyLibraries(libraries, measures);
    for (const std::size_t count : counts)
        measure(libraries, count, measures);
    std::printf("\n");
    return bench::printMeasures(measures) ? EXIT_SUCCESS : EXIT_FAILURE;
}
