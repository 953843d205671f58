#include "host/installation/CatalogInstaller.h"

#include "host/catalog/CatalogFile.h"
#include "host/support/FileError.h"

#include <VelkCommon/Files/FileState.h>
#include <VelkCommon/Files/FileUtils.h>
#include <VelkCommon/Files/PathUtils.h>
#include <VelkLibrary/CatalogDownloadProtocol.h>
#include <VelkLibrary/Data/FileExtensions.h>

#include <algorithm>
#include <utility>

namespace VelkHost {
namespace {

using LibraryCatalogUpdate::LibraryReport;

fileString referencedFolder()
{
    return PathUtils::getObject().getProprietaryLibraryReferencedFilesPath();
}

/// A core library's other files are a library of their own at the service.
bool isArchive(const LibraryReport& library)
{
    return library.fileName.hasExtension(Library::extensions::referencedFiles);
}

}  // namespace

fileString referencedArchive(const fileString& catalog)
{
    return referencedFolder() / (catalog.stem() + fileString(Library::extensions::referencedFiles));
}

bool contradicts(const std::string& tag, const std::string& sha1)
{
    constexpr std::size_t length = 40;
    const auto isDigit = [](char c) {
        return (c >= '0' && c <= '9') || (c >= 'a' && c <= 'f') || (c >= 'A' && c <= 'F');
    };
    if (tag.size() != length || !std::all_of(tag.begin(), tag.end(), isDigit))
        return false;
    return !std::equal(tag.begin(), tag.end(), sha1.begin(), sha1.end(), [](char left, char right) {
        return left == right || (left >= 'A' && left <= 'F' && left - 'A' + 'a' == right);
    });
}

CatalogInstaller::CatalogInstaller(InstalledRecord& record,
                                   std::function<void(const std::function<void()>&)> whileUnused)
    : record_(record), whileUnused_(std::move(whileUnused))
{}

void CatalogInstaller::prepare(const LibraryReport& library)
{
    content_.reset();
    contentProblem_.clear();
    archive_ = {};
    keptArchive_ = {};
    const bool isPacked = library.kind != LibraryCatalogUpdate::CoreCatalogs;
    if (isPacked) {
        try {
            content_.emplace(library.download.path);
        } catch (const FileError& error) {
            contentProblem_ = error.reason();
        }
    }
    if (isPacked || isArchive(library)) {
        archive_ = referencedArchive(library.fileName);
        keepArchive();
    }
}

void CatalogInstaller::install(const LibraryReport& library)
{
    try {
        check(library);
        putInPlace(library);
    } catch (...) {
        putArchiveBack();
        throw;
    }
    note(library);
}

// A second name costs nothing. Where there are none, a copy is made; when that fails, the library is fetched anew
// should its installation fail.
void CatalogInstaller::keepArchive()
{
    hadArchive_ = archive_.pathExists();
    if (!hadArchive_)
        return;
    if (!kept_)
        kept_.emplace(referencedFolder());
    if (kept_->path().empty())
        return;
    const fileString kept = kept_->path() / archive_.stemWithExtension();
    FileUtils::removePath(kept, FileUtils::overrideReadOnly);
    if (FileUtils::linkFile(archive_, kept) || FileUtils::copyFile(archive_, kept, true))
        keptArchive_ = kept;
}

void CatalogInstaller::putArchiveBack()
{
    if (!keptArchive_.empty())
        FileUtils::moveFile(keptArchive_, archive_, true);
    else if (!archive_.empty() && !hadArchive_)
        FileUtils::removePath(archive_, FileUtils::overrideReadOnly);
}

void CatalogInstaller::check(const LibraryReport& library) const
{
    using LibraryCatalogUpdate::LibraryOutcome;
    if (!contentProblem_.empty())
        throw FileError(library.installedPath, {"what the service sent %1", {contentProblem_}});
    if (library.outcome != LibraryOutcome::Taken)
        throw FileError(library.installedPath, {"it could not be taken over: %1", {library.fault.reason}});
    if (content_) {
        try {
            content_->requireUnpacked(library.database.path, library.referencedFiles.path);
        } catch (const FileError& error) {
            throw FileError(library.installedPath, error.why());
        }
    }
    if (!isArchive(library)) {
        try {
            readCatalog(library.database.path, CatalogContent::Names);
        } catch (const FileError& error) {
            throw FileError(library.installedPath, {"what the service sent %1", {error.why()}});
        }
    }
    const std::string& sha1 = isArchive(library) ? library.referencedFiles.sha1 : library.database.sha1;
    if (contradicts(library.tag, sha1))
        throw FileError(library.installedPath, "what the service sent is not what it announced");
}

void CatalogInstaller::putInPlace(const LibraryReport& library) const
{
    if (isArchive(library))
        return;
    if (!FileUtils::createDirectoriesWithPerm(library.installedPath.parentPath()))
        throw FileError(library.installedPath, "its folder cannot be made");
    bool moved = false;
    std::string why;
    whileUnused_([&] {
        moved = FileUtils::moveFile(library.database.path, library.installedPath, true);
        if (!moved)
            why = Velk::lastFileFailure();
    });
    if (!moved)
        throw FileError(library.installedPath, {"it cannot be replaced: %1", {why}});
}

// Only now, when everything is in place. The archive of a core library is compared with its tag by every update, so it
// needs no record.
void CatalogInstaller::note(const LibraryReport& library) const
{
    if (isArchive(library))
        return;
    InstalledLibrary installed;
    installed.tag = library.tag;
    installed.database = stateOf(library.installedPath);
    if (!installed.database || installed.database->sha1 != library.database.sha1)
        throw FileError(library.installedPath, "is not what was written");
    if (content_ && content_->hasOthers()) {
        installed.referenced = stateOf(archive_);
        if (!installed.referenced || installed.referenced->sha1 != library.referencedFiles.sha1)
            throw FileError(archive_, "is not what was written");
    }
    record_.set({library.kind, library.fileName.utf8()}, installed);
}

}  // namespace VelkHost
