#include "host/browser/tree/LibraryLoader.h"

#include "host/browser/jobs/InstalledFiles.h"
#include "host/browser/language/Reasons.h"
#include "host/catalog/CatalogFile.h"
#include "host/installation/LibrarySearch.h"
#include "host/support/FileError.h"
#include "host/support/Parallel.h"

#include <VelkCommon/Files/FileUtils.h>
#include <VelkCommon/Files/PathUtils.h>

#include <algorithm>
#include <iterator>
#include <new>
#include <shared_mutex>
#include <utility>

namespace VelkHost {
namespace {

constexpr int gatherMilliseconds = 50;
constexpr int smallLibraryBytes = 256 * 1024;
constexpr std::size_t sideBySide = 64;  // libraries that several threads share at a time

/// Why a library was not read that there was too little memory for.
QString unreadWithoutMemory()
{
    return translated({"cannot be read: %1", {Reason("there is too little memory")}});
}

/// Whether reading all names of a library takes hardly longer than reading its outline.
bool isSmall(const fileString& library)
{
    const std::shared_lock reading(installedFiles());
    return FileUtils::fileSize(library) <= smallLibraryBytes;
}

BrowsedLibrary browsedLibrary(const fileString& path, bool complete)
{
    BrowsedLibrary library{path, nullptr, nullptr};
    {
        const std::shared_lock reading(installedFiles());
        library.catalog = std::make_shared<const Catalog>(
            readCatalog(path, complete ? CatalogContent::Names : CatalogContent::Outline));
    }
    if (complete)
        library.order = std::make_shared<const CatalogOrder>(*library.catalog);
    return library;
}

LibraryArrival readLibrary(const fileString& path, bool complete)
{
    try {
        return {browsedLibrary(path, complete), {}};
    } catch (const FileError& error) {
        return {{path, nullptr, nullptr}, translated(error.why())};
    } catch (const std::bad_alloc&) {
        return {{path, nullptr, nullptr}, unreadWithoutMemory()};
    }
}

/// Whether there is more to be had of the library.
bool isOutline(const LibraryArrival& arrival)
{
    return arrival.library.catalog != nullptr && arrival.library.order == nullptr;
}

}  // namespace

LibraryLoader::LibraryLoader(QObject* parent) : QObject(parent)
{
    pause_.setSingleShot(true);
    connect(&pause_, &QTimer::timeout, this, &LibraryLoader::deliver);
}

LibraryLoader::~LibraryLoader()
{
    isStopped_ = true;
    worker_.drop();
}

void LibraryLoader::read(std::vector<fileString> files)
{
    ++readings_;
    {
        const std::lock_guard lock(mutex_);
        waiting_.insert(waiting_.end(), std::make_move_iterator(files.begin()), std::make_move_iterator(files.end()));
    }
    auto job = [this]() -> Worker::Arrival {
        readAll(takeWaiting());
        return [this] { endReading(); };
    };
    worker_.run(std::move(job), [this] { endReading(); });
}

void LibraryLoader::readInstalled()
{
    ++readings_;
    auto job = [this]() -> Worker::Arrival {
        InstalledLibraryFiles installed = installedLibraryFiles();
        readAll(installed.files);
        return [this, unreadable = std::move(installed.unreadable)] {
            for (const FileError& error : unreadable)
                Q_EMIT folderFailed(error.path(), translated(error.why()));
            endReading();
        };
    };
    worker_.run(std::move(job), [this] {
        Q_EMIT folderFailed(PathUtils::getObject().getUserDatabasePath(), unreadWithoutMemory());
        endReading();
    });
}

/// All files that are still to be read. An update names one library after the other, faster than they are read one by
/// one: what waits together is read side by side, and the jobs that came with the rest find nothing left to do.
std::vector<fileString> LibraryLoader::takeWaiting()
{
    const std::lock_guard lock(mutex_);
    return std::exchange(waiting_, {});
}

void LibraryLoader::endReading()
{
    ++endedReadings_;
    hurry();
}

void LibraryLoader::release(std::vector<BrowsedLibrary> libraries)
{
    if (!libraries.empty())
        worker_.release(std::move(libraries));
}

// On the worker. The user sees the large libraries' categories before waiting for their items.
void LibraryLoader::readAll(const std::vector<fileString>& files)
{
    std::vector<fileString> large;
    const std::span<const fileString> all(files);
    for (std::size_t begin = 0; begin < all.size(); begin += sideBySide)
        for (LibraryArrival& arrival : readSome(all.subspan(begin, std::min(sideBySide, all.size() - begin)))) {
            if (isOutline(arrival))
                large.push_back(arrival.library.path);
            put(std::move(arrival));
        }
    if (large.empty())
        return;
    QMetaObject::invokeMethod(this, &LibraryLoader::hurry, Qt::QueuedConnection);
    for (const fileString& file : large)
        if (!isStopped_)
            put(readLibrary(file, true));
}

/// Several threads read them, until the loader is stopped.
std::vector<LibraryArrival> LibraryLoader::readSome(std::span<const fileString> files) const
{
    std::vector<LibraryArrival> arrivals(files.size());
    forEachInParallel(files.size(), [&](std::size_t i) {
        if (!isStopped_)
            arrivals[i] = readLibrary(files[i], isSmall(files[i]));
    });
    std::erase_if(arrivals, [](const LibraryArrival& arrival) { return arrival.library.path.empty(); });
    return arrivals;
}

void LibraryLoader::put(LibraryArrival arrival)
{
    const std::lock_guard lock(mutex_);
    read_.push_back(std::move(arrival));
    if (read_.size() == 1)
        QMetaObject::invokeMethod(this, &LibraryLoader::gather, Qt::QueuedConnection);
}

// On the user-interface thread again.
void LibraryLoader::gather()
{
    if (!pause_.isActive())
        pause_.start(gatherMilliseconds);
}

/// What has been read is all for now, so it comes at once; unless there has been much of that lately, as when an
/// update replaces one library after the other.
void LibraryLoader::hurry()
{
    const QDeadlineTimer& earliest = earliest_.front();
    if (earliest.hasExpired())
        deliver();
    else if (const auto rest = static_cast<int>(earliest.remainingTime());
             !pause_.isActive() || pause_.remainingTime() > rest)
        pause_.start(rest);
}

void LibraryLoader::deliver()
{
    pause_.stop();
    const int ended = endedReadings_;
    std::vector<LibraryArrival> arrivals = takeSome();
    const bool mayBeMore = arrivals.size() == mostAtOnce;
    if (!arrivals.empty()) {
        Q_EMIT arrived(arrivals);
        worker_.release(std::move(arrivals));  // one may have replaced another
        earliest_.front() = std::exchange(earliest_.back(), QDeadlineTimer(2 * gatherMilliseconds));
    }
    if (mayBeMore) {
        pause_.start(0);
        return;
    }
    endedReadings_ -= ended;
    readings_ -= ended;
    if (ended > 0 && readings_ == 0)
        Q_EMIT finished();
}

std::vector<LibraryArrival> LibraryLoader::takeSome()
{
    const std::lock_guard lock(mutex_);
    std::vector<LibraryArrival> taken;
    if (read_.size() <= mostAtOnce) {
        taken.swap(read_);
        return taken;
    }
    const auto end = read_.begin() + static_cast<std::ptrdiff_t>(mostAtOnce);
    taken.assign(std::make_move_iterator(read_.begin()), std::make_move_iterator(end));
    read_.erase(read_.begin(), end);
    return taken;
}

}  // namespace VelkHost
