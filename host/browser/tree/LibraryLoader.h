#pragma once

#include "host/browser/Worker.h"
#include "host/browser/tree/CatalogOrder.h"
#include "host/catalog/Catalog.h"

#include <VelkCommon/Files/fileString.h>

#include <QObject>
#include <QString>

#include <memory>
#include <vector>

namespace VelkHost {

/// A library as the browser holds it: shared with its workers, never changed.
struct BrowsedLibrary
{
    fileString path;
    std::shared_ptr<const Catalog> catalog;     ///< names only; without items while `order` is null
    std::shared_ptr<const CatalogOrder> order;  ///< null while only the outline is read
};

/// Reads libraries in the background: first the outlines of all, which takes moments whatever their size,
/// then their items. The signals come on this object's thread.
class LibraryLoader : public QObject
{
    Q_OBJECT

public:
    explicit LibraryLoader(QObject* parent = nullptr);
    /// Waits for the file being read.
    ~LibraryLoader() override;

    /// Reads these catalog files, in this order, after those that were asked for before.
    void read(const std::vector<fileString>& files);

    /// Reads the installed libraries, as read() does.
    void readInstalled();

    /// Whether anything that was asked for is still to come.
    bool isReading() const { return batches_ > 0; }

    /// Frees a library in the background: a million items take their time.
    void release(BrowsedLibrary library);

Q_SIGNALS:
    /// Twice for each library that can be read: with its outline, and complete.
    void libraryRead(const VelkHost::BrowsedLibrary& library);
    /// Once for each library that cannot be read; `reason` is a sentence for people without its subject.
    void libraryFailed(const fileString& path, const QString& reason);
    /// Once for each folder of installed libraries that cannot be listed; `reason` as above.
    void folderFailed(const fileString& path, const QString& reason);
    /// Everything that was asked for has been read.
    void finished();

private:
    void endBatch();
    Worker::Arrival readOne(const fileString& path, bool complete);

    int batches_ = 0;
    Worker worker_;
};

}  // namespace VelkHost
