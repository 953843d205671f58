#include "host/browser/tree/LibraryLoader.h"

#include "host/browser/jobs/InstalledFiles.h"
#include "host/browser/language/Reasons.h"
#include "host/catalog/CatalogFile.h"
#include "host/installation/LibrarySearch.h"
#include "host/support/FileError.h"

#include <shared_mutex>
#include <utility>

namespace VelkHost {

LibraryLoader::LibraryLoader(QObject* parent) : QObject(parent) {}

LibraryLoader::~LibraryLoader()
{
    worker_.drop();
}

void LibraryLoader::read(const std::vector<fileString>& files)
{
    ++batches_;
    for (const bool complete : {false, true})
        for (const fileString& file : files)
            worker_.run([this, file, complete] { return readOne(file, complete); });
    worker_.run([this]() -> Worker::Arrival { return [this] { endBatch(); }; });
}

void LibraryLoader::readInstalled()
{
    ++batches_;
    worker_.run([this]() -> Worker::Arrival {
        return [this, installed = installedLibraryFiles()] {
            for (const FileError& error : installed.unreadable)
                Q_EMIT folderFailed(error.path(), translated(error.why()));
            read(installed.files);
            endBatch();
        };
    });
}

void LibraryLoader::release(BrowsedLibrary library)
{
    worker_.run([library = std::move(library)]() mutable -> Worker::Arrival {
        library = BrowsedLibrary();
        return {};
    });
}

void LibraryLoader::endBatch()
{
    if (--batches_ == 0)
        Q_EMIT finished();
}

// On the worker.
Worker::Arrival LibraryLoader::readOne(const fileString& path, bool complete)
{
    try {
        BrowsedLibrary library{path, nullptr, nullptr};
        {
            const std::shared_lock reading(installedFiles());
            library.catalog = std::make_shared<const Catalog>(
                readCatalog(path, complete ? CatalogContent::Names : CatalogContent::Outline));
        }
        if (complete)
            library.order = std::make_shared<const CatalogOrder>(*library.catalog);
        return [this, library] { Q_EMIT libraryRead(library); };
    } catch (const FileError& error) {
        if (!complete)
            return {};  // the failure is told once, by the complete reading
        return [this, path, reason = translated(error.why())] { Q_EMIT libraryFailed(path, reason); };
    }
}

}  // namespace VelkHost
