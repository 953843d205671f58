#include "host/browser/jobs/ImportJob.h"

#include "host/browser/jobs/InstalledFiles.h"
#include "host/browser/jobs/PanelProgress.h"
#include "host/browser/language/Reasons.h"
#include "host/catalog/CatalogFile.h"
#include "host/installation/PackageContent.h"
#include "host/installation/TextureMerge.h"
#include "host/support/FileError.h"
#include "host/support/Folders.h"
#include "host/support/QtText.h"
#include "host/support/WholeFile.h"

#include <VelkCommon/Archive/ZipUtils.h>
#include <VelkCommon/Files/FileReaper.h>
#include <VelkCommon/Files/FileUtils.h>
#include <VelkCommon/Files/WorkFolder.h>
#include <VelkLibrary/Data/FileExtensions.h>
#include <VelkLibrary/Data/PlainFileName.h>
#include <VelkLibrary/LibraryImport.h>
#include <VelkLibrary/UI/LibraryProgressPanel.h>

#include <cstdint>
#include <exception>
#include <limits>
#include <memory>
#include <mutex>
#include <new>
#include <stdexcept>
#include <utility>

namespace VelkHost {
namespace {

using Unpacked = std::pair<std::optional<fileString>, std::optional<fileString>>;

/// Thrown when the user cancels the import.
struct ImportCancelled
{};

bool isPacked(const fileString& file)
{
    return file.hasExtensionInAnyCase(Library::extensions::packed);
}

Unpacked unpack(const fileString& file, const std::shared_ptr<PanelProgress>& progress)
{
    if (isPacked(file))
        return LibraryImport::unpackArchivedLibrary(file, progress);
    progress->showBusy(ImportJob::tr("Copying “%1”").arg(qtText(file.stem().utf8())).toStdString());
    return {LibraryImport::createTempDatabase(file, nullptr), std::nullopt};
}

void requireReadable(const fileString& file)
{
    requireFile(file, std::numeric_limits<std::uint64_t>::max());
    readBeginning(file, 1);
}

/// Why nothing was unpacked.
QString unpackingProblem(const fileString& file)
{
    if (!file.pathExists())
        return ImportJob::tr("The file is not there any more.");
    if (!isPacked(file))
        return ImportJob::tr("It cannot be read.");
    if (ZipUtils::getSizeOfArchive(file) == 0)
        return ImportJob::tr("It is not a packed library, or it is damaged.");
    return ImportJob::tr("Its catalog file is missing or damaged.");
}

void stopWhenCancelled(const ProgressSubject& progress)
{
    if (progress.isCancelled())
        throw ImportCancelled();
}

// The textures come first: they do no harm without the library, but the library is incomplete without them. Waiting for
// workers that read the installed files may take seconds.
void putInPlace(const Unpacked& unpacked, const fileString& target, bool replace, ProgressSubject& progress)
{
    const std::unique_lock replacing(installedFiles());
    stopWhenCancelled(progress);
    makeFolder(target.parentPath());
    WorkFolder::removeLeftovers(target.parentPath());
    std::optional<TextureMerge> textures;
    if (unpacked.second) {
        textures.emplace(LibraryImport::getArchivedTexturePath(target, false), "importing a library");
        textures->add(*unpacked.second, progress);
    }
    if (target.pathExists() && !replace)
        throw FileError(target, "already exists");
    if (!FileUtils::moveFile(*unpacked.first, target, replace))
        throw FileError(target, "cannot be written");
    if (textures)
        textures->keepNew();
}

}  // namespace

ImportJob::ImportJob(std::vector<ImportSource> sources, QObject* parent)
    : LibraryJob(parent), sources_(std::move(sources))
{}

ImportJob::~ImportJob()
{
    ImportJob::cancel();
    if (worker_.joinable())
        worker_.join();
}

void ImportJob::start(LibraryProgressPanel& panel)
{
    panel_ = static_cast<const LibraryProgressBase&>(panel);
    worker_ = std::thread([this] { run(); });
}

void ImportJob::cancel()
{
    stop_.request_stop();
}

// On the worker, like the functions below except outcome().
void ImportJob::run()
{
    for (const ImportSource& source : sources_)
        if (!stop_.stop_requested())
            import(source);
    post([this] {
        worker_.join();
        Q_EMIT ended(outcome());
    });
}

void ImportJob::import(const ImportSource& source)
{
    QString problem;
    try {
        take(source);
        return;
    } catch (const ImportCancelled&) {
        return;
    } catch (const std::bad_alloc&) {
        problem = tr("There is too little memory for it.");
    } catch (const std::exception& error) {
        problem = failureText(error);
    }
    problems_.append(tr("“%1” was not imported. %2").arg(qtText(source.file.stemWithExtension().utf8()), problem));
}

void ImportJob::take(const ImportSource& source)
{
    const fileString target = importTarget(source.file);
    if (!Library::isPlainFileName(target.stemWithExtension().utf8()))
        throw std::runtime_error(tr("Its name cannot be that of a library.").toStdString());
    requireReadable(source.file);
    const auto progress = std::make_shared<PanelProgress>(*panel_, stop_.get_token());
    const Unpacked unpacked = unpack(source.file, progress);
    const FileReaper databaseReaper(unpacked.first.value_or(fileString()));
    const FileReaper othersReaper(unpacked.second.value_or(fileString()));
    stopWhenCancelled(*progress);
    if (!unpacked.first)
        throw std::runtime_error(unpackingProblem(source.file).toStdString());
    if (isPacked(source.file))
        PackageContent(source.file).requireUnpacked(*unpacked.first, unpacked.second.value_or(fileString()), [&] {
            stopWhenCancelled(*progress);
        });
    progress->showBusy(tr("Checking “%1”").arg(qtText(source.file.stem().utf8())).toStdString());
    try {
        readCatalog(*unpacked.first, CatalogContent::Names);
    } catch (const FileError& error) {
        throw std::runtime_error(tr("Its catalog file %1.").arg(translated(error.why())).toStdString());
    }
    putInPlace(unpacked, target, source.replace, *progress);
    imported_.push_back(target);
    post([this, target] { Q_EMIT installed(target); });
}

JobOutcome ImportJob::outcome() const
{
    JobOutcome outcome{{}, problems_, false};
    if (imported_.size() == 1)
        outcome.message = tr("“%1” was imported.").arg(qtText(imported_.front().stem().utf8()));
    else if (!imported_.empty())
        outcome.message = tr("%Ln libraries were imported.", nullptr, static_cast<int>(imported_.size()));
    else if (stop_.stop_requested())
        outcome.message = tr("The import was cancelled.");
    else
        outcome.message = tr("Nothing was imported.");
    return outcome;
}

}  // namespace VelkHost
