#pragma once

#include "host/browser/Worker.h"
#include "host/browser/tree/CatalogOrder.h"
#include "host/catalog/Catalog.h"

#include <VelkCommon/Files/fileString.h>

#include <QDeadlineTimer>
#include <QObject>
#include <QString>
#include <QTimer>

#include <array>
#include <atomic>
#include <cstddef>
#include <memory>
#include <mutex>
#include <span>
#include <vector>

namespace VelkHost {

/// A library as the browser holds it: shared with its workers, never changed.
struct BrowsedLibrary
{
    fileString path;
    std::shared_ptr<const Catalog> catalog;     ///< names only; without items while `order` is null
    std::shared_ptr<const CatalogOrder> order;  ///< null while only the outline is read
};

/// What became of a file that was to be read.
struct LibraryArrival
{
    BrowsedLibrary library;  ///< only its path when it cannot be read
    QString failure;         ///< why it cannot be read, a sentence for people without its subject; empty otherwise
};

/// Reads libraries in the background: first the outlines of the large ones, which takes moments whatever their size,
/// then their items. What has been read is gathered for a moment, since taking over many libraries at once costs hardly
/// more than taking over one. The signals come on this object's thread.
class LibraryLoader : public QObject
{
    Q_OBJECT

public:
    explicit LibraryLoader(QObject* parent = nullptr);
    /// Waits for the file being read.
    ~LibraryLoader() override;

    /// Reads these catalog files, in this order, after those that were asked for before.
    void read(std::vector<fileString> files);

    /// Reads the installed libraries, as read() does.
    void readInstalled();

    /// Whether anything that was asked for is still to come.
    bool isReading() const { return readings_ > 0; }

    /// Frees libraries in the background: a million items take their time.
    void release(std::vector<BrowsedLibrary> libraries);

    /// The most arrivals that come at once. The rest comes after other events have had their turn.
    static constexpr std::size_t mostAtOnce = 500;

Q_SIGNALS:
    /// Files have been read, in this order. A small library arrives once, complete; a large one first with its
    /// outline. A file that cannot be read arrives once.
    void arrived(const std::vector<VelkHost::LibraryArrival>& arrivals);
    /// Once for each folder of installed libraries that cannot be listed; `reason` is a sentence for people without its
    /// subject.
    void folderFailed(const fileString& path, const QString& reason);
    /// Everything that was asked for has arrived.
    void finished();

private:
    std::vector<fileString> takeWaiting();
    void endReading();
    void readAll(const std::vector<fileString>& files);
    std::vector<LibraryArrival> readSome(std::span<const fileString> files) const;
    void put(LibraryArrival arrival);
    void gather();
    void hurry();
    void deliver();
    std::vector<LibraryArrival> takeSome();

    // Shared with the worker:
    std::mutex mutex_;
    std::vector<fileString> waiting_;  // to be read
    std::vector<LibraryArrival> read_;
    std::atomic<bool> isStopped_ = false;

    int readings_ = 0;
    int endedReadings_ = 0;  // of these, whose arrivals may not all be delivered
    QTimer pause_;
    std::array<QDeadlineTimer, 2> earliest_{};  // when one may hurry: some time after the last delivery but one
    Worker worker_;                             // last, as its jobs use the other members
};

}  // namespace VelkHost
