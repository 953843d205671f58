#include "host/browser/tree/LibraryLoader.h"

#include "host/browser/jobs/InstalledFiles.h"
#include "host/browser/language/Reasons.h"
#include "host/catalog/CatalogError.h"
#include "host/catalog/CatalogFile.h"

#include <shared_mutex>
#include <utility>

namespace VelkHost {

LibraryLoader::LibraryLoader(QObject* parent) : QObject(parent)
{
    thread_.setMaxThreadCount(1);
}

LibraryLoader::~LibraryLoader()
{
    stopping_ = true;
    thread_.clear();
    thread_.waitForDone();
}

void LibraryLoader::read(const std::vector<fileString>& files)
{
    ++batches_;
    thread_.start([this, files] {
        for (const bool complete : {false, true})
            for (const fileString& file : files)
                readOne(file, complete);
        post([this] {
            if (--batches_ == 0)
                Q_EMIT finished();
        });
    });
}

void LibraryLoader::release(BrowsedLibrary library)
{
    thread_.start([library = std::move(library)]() mutable { library = BrowsedLibrary(); });
}

void LibraryLoader::readOne(const fileString& path, bool complete)
{
    if (stopping_)
        return;
    try {
        BrowsedLibrary library{path, nullptr, nullptr};
        {
            const std::shared_lock reading(installedFiles());
            library.catalog = std::make_shared<const Catalog>(
                readCatalog(path, complete ? CatalogContent::Names : CatalogContent::Outline));
        }
        if (complete)
            library.order = std::make_shared<const CatalogOrder>(*library.catalog);
        post([this, library] { Q_EMIT libraryRead(library); });
    } catch (const CatalogError& error) {
        if (complete)
            post([this, path, reason = translated(error.why())] { Q_EMIT libraryFailed(path, reason); });
    }
}

// Runs on this object's thread; dropped when the object ends first.
void LibraryLoader::post(std::function<void()> call)
{
    QMetaObject::invokeMethod(this, std::move(call), Qt::QueuedConnection);
}

}  // namespace VelkHost
