#include "ManyLibraries.h"

#include "Cost.h"
#include "TimedApplication.h"

#include "host/browser/BrowserWindow.h"
#include "host/browser/jobs/LibraryJobs.h"
#include "host/catalog/CatalogFile.h"
#include "host/support/InstallHost.h"
#include "support/EventLoopLimit.h"

#include <VelkCommon/HostServices.h>

#include <QDir>
#include <QFile>
#include <QLineEdit>
#include <QTemporaryDir>
#include <QTimer>

#include <sys/mman.h>

#include <cstdio>
#include <cstdlib>
#include <string>

namespace bench {
namespace {

constexpr std::size_t libraryCounts[] = {1'000, 2'000, 4'000, 10'000};
constexpr std::size_t itemsInLibrary = 100;
constexpr const char* numberMark = "00000";  // in the first library's texts; the others have their numbers there

/// What the user's waiting is, in memory that is shared with the parent.
struct Waiting
{
    double complete = 0;      ///< ms until everything is read
    double longestEvent = 0;  ///< ms
    double mostWork = 0;      ///< ms of processor time, in one event
    double longestWait = 0;   ///< ms that a key would have had to wait at most
};

Waiting& sharedWaiting()
{
    void* const memory = ::mmap(nullptr, sizeof(Waiting), PROT_READ | PROT_WRITE, MAP_SHARED | MAP_ANONYMOUS, -1, 0);
    if (memory == MAP_FAILED)
        std::abort();
    return *new (memory) Waiting;
}

VelkHost::Catalog firstLibrary(const std::vector<Entry>& entries)
{
    VelkHost::Catalog catalog;
    catalog.id = std::string("library ") + numberMark;
    catalog.name = std::string("Library ") + numberMark;
    catalog.kind = VelkHost::LibraryKind::Core;
    catalog.folders = {{VelkHost::Folder::noParent, std::string("Things ") + numberMark}, {0, "Folder"}};
    for (const Entry& entry : entries)
        catalog.items.push_back({std::to_string(catalog.items.size()), 1, entry.name, entry.keywords, {}, {}});
    return catalog;
}

/// The number in a form as long as the mark, and in another order than the names of the files.
QByteArray marked(std::size_t number)
{
    constexpr std::size_t step = 7'919;
    constexpr std::size_t end = 100'000;
    return QByteArray::number(static_cast<qulonglong>(end + number * step % end)).mid(1);
}

/// Libraries with equal items and names of their own: the first one's file with other numbers in it.
bool makeLibraries(const std::vector<Entry>& entries, std::size_t count, const QString& home)
{
    const QString folder = home + QStringLiteral("/core");
    const QString first = folder + QStringLiteral("/first.calib");
    if (!QDir().mkpath(folder))
        return false;
    VelkHost::writeCatalog(firstLibrary(entries), fileString(first.toStdString()));
    QFile file(first);
    if (!file.open(QFile::ReadOnly))
        return false;
    const QByteArray content = file.readAll();
    file.remove();
    for (std::size_t i = 0; i < count; ++i) {
        QFile library(folder + QStringLiteral("/%1.calib").arg(i, 5, 10, QLatin1Char('0')));
        if (!library.open(QFile::WriteOnly) || library.write(QByteArray(content).replace(numberMark, marked(i))) < 0)
            return false;
    }
    return true;
}

/// Asks at short intervals whether the event loop still runs.
class WaitMeter
{
public:
    WaitMeter()
    {
        QObject::connect(&timer_, &QTimer::timeout, [this] {
            longest_ = std::max(longest_, millisecondsSince(last_) - interval);
            last_ = Clock::now();
        });
        timer_.start(interval);
    }

    double longest() const { return longest_; }

private:
    static constexpr int interval = 5;

    QTimer timer_;
    Clock::time_point last_ = Clock::now();
    double longest_ = 0;
};

/// Tells the window of each library that an update has replaced it, each in an event of its own.
class Replacements
{
public:
    explicit Replacements(VelkHost::BrowserWindow& window)
    {
        for (const auto& [path, library] : window.model().libraries())
            files_.push_back(path);
        QObject::connect(&timer_, &QTimer::timeout, [this, &window] {
            Q_EMIT window.jobs().libraryInstalled(files_[next_++], false);
            if (!areLeft())
                timer_.stop();
        });
        timer_.start(0);
    }

    bool areLeft() const { return next_ < files_.size(); }

private:
    std::vector<fileString> files_;
    std::size_t next_ = 0;
    QTimer timer_;
};

template <typename Condition>
void runWhile(Condition condition)
{
    const test::EventLoopLimit limit("the window does not get ready");
    while (condition())
        QApplication::processEvents(QEventLoop::WaitForMoreEvents);
}

bool runWindow(const std::string& home, bool replaced, Waiting& waiting)
{
    Arguments arguments;
    TimedApplication application(arguments.count, arguments.texts);
    Velk::installHost(VelkHost::hostServices(fileString(home)));
    auto begin = Clock::now();
    VelkHost::BrowserWindow window;
    WaitMeter meter;
    window.show();
    window.readLibraries();
    runWhile([&] { return window.isReading(); });
    if (replaced) {
        begin = Clock::now();
        const Replacements replacements(window);
        runWhile([&] { return replacements.areLeft() || window.isReading(); });
    }
    waiting = {millisecondsSince(begin), application.longestEvent(), application.mostWork(), meter.longest()};
    return true;
}

Waiting rowOf(std::size_t count, const std::string& home, bool replaced)
{
    Waiting& shared = sharedWaiting();
    const Cost cost = costOf("velk-browser", [&] { return runWindow(home, replaced, shared); });
    std::printf("%6zu %-16s %12.1f %12.1f %12.1f %12.1f %10.2f %10.0f\n", count, replaced ? "and replaced" : "read",
                shared.complete, shared.longestEvent, shared.mostWork, shared.longestWait, cost.cpu, cost.memory);
    const Waiting waiting = shared;
    ::munmap(&shared, sizeof shared);
    return waiting;
}

}  // namespace

void measureManyLibraries(const std::vector<Entry>& entries, std::vector<Measure>& measures)
{
    std::printf("\nlibraries of %zu items\n%-23s %12s %12s %12s %12s %10s %10s\n", itemsInLibrary, "", "complete ms",
                "longest ms", "its CPU ms", "key wait ms", "CPU s", "MiB");
    Waiting before;
    Waiting last;
    for (const std::size_t count : libraryCounts) {
        const QTemporaryDir home;
        costOf("making the libraries",
               [&] { return makeLibraries(combined(entries, itemsInLibrary), count, home.path()); });
        before = std::exchange(last, rowOf(count, home.path().toStdString(), false));
        if (count != std::end(libraryCounts)[-1])
            continue;
        const Waiting replaced = rowOf(count, home.path().toStdString(), true);
        measures.push_back({"10000 libraries: all read", last.complete, 3'000, 2'000, false, "ms"});
        measures.push_back({"10000 libraries: longest event", last.longestEvent, 50, 20, false, "ms"});
        measures.push_back({"10000 libraries: time of 4000", last.complete / before.complete, 3, 2.6, false, "x"});
        measures.push_back({"10000 replaced: all read", replaced.complete, 3'000, 2'000, false, "ms"});
        measures.push_back({"10000 replaced: longest event", replaced.longestEvent, 50, 20, false, "ms"});
    }
}

}  // namespace bench
