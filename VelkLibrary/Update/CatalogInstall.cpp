#include <VelkLibrary/Update/detail/CatalogInstall.h>

#include <VelkCommon/Files/FileSearch.h>
#include <VelkCommon/Files/FileUtils.h>
#include <VelkCommon/Files/PathUtils.h>
#include <VelkCommon/Reporting/Assertions.h>
#include <VelkLibrary/Data/FileExtensions.h>
#include <VelkLibrary/ErrorLog.h>
#include <VelkLibrary/LibraryImport.h>
#include <VelkLibrary/detail/ReportPlaces.h>

#include <optional>
#include <stdexcept>

using Library::ErrorLog;

namespace LibraryCatalogUpdate::detail {
namespace {

// What a download consists of; a path is empty where there is no such file.
struct NewFiles
{
    fileString database;
    fileString referencedFiles;
};

void giveEveryoneFullAccess(const fileString& path)
{
    try {
        FileUtils::setFilePermEveryoneFullAccess(path);
    } catch (const std::runtime_error& error) {
        Velk::assertionFailed(Library::detail::places::accessNotGranted,
                              "Exception while setting universal access file permissions.");
        const std::string reason = error.what();
        ErrorLog() << "Error setting file permissions:" << (reason.empty() ? std::string("Unknown error") : reason);
    }
}

const char* renamingFault(const fileString& downloaded, const fileString& finalName)
{
    if (FileUtils::isPathWriteLocked(downloaded))
        return "Download destination file was locked or not writeable:  ";
    if (FileUtils::isPathWriteLocked(finalName))
        return "Download final destination file was locked or not writeable:  ";
    if (!FileUtils::renameFile(downloaded, finalName))
        return "Unable to rename catalog update file:  ";
    return nullptr;
}

// Core catalogs travel as they are: the file only gets its extension back.
std::optional<NewFiles> takeCoreFile(CatalogRun& run, const fileString& downloaded, const fileString& fileName)
{
    const fileString finalName = downloaded.pathAndName() + fileName.extension();
    RunFault& reported = run.report.libraries[fileName].fault;
    if (const char* const fault = renamingFault(downloaded, finalName)) {
        ErrorLog() << fault << downloaded;
        reported.reason = "the downloaded file cannot be renamed";
        run.resultCode = CatalogNotRenamed;
        return std::nullopt;
    }
    if (fileName.hasExtension(Library::extensions::database))
        return NewFiles{finalName, {}};
    if (fileName.hasExtension(Library::extensions::referencedFiles))
        return NewFiles{{}, finalName};
    ErrorLog() << "Unsupported file extension:  " << fileName;
    reported.reason = "files of this kind cannot be installed";
    return std::nullopt;
}

// An archive without referenced files stays until the next run removes the folder. An empty archive counts as
// installed, because asking for it again would bring the same one.
NewFiles takePackedFile(const fileString& downloaded)
{
    const auto [database, referencedFiles] = LibraryImport::unpack(downloaded, false, nullptr);
    if (!database && !referencedFiles)
        ErrorLog() << "Nothing to install in download:  " << downloaded << "\n";
    if (referencedFiles)
        FileUtils::removePath(downloaded, FileUtils::overrideReadOnly);
    return {database.value_or(fileString()), referencedFiles.value_or(fileString())};
}

void noteInstalled(CatalogRun& run, const fileString& file)
{
    run.anyInstalled = true;
    run.updatedNames.insert(shownName(file.stem()));
}

// The access rights are set before the event is sent, because from then on the file is the receiver's, which
// may move it at once.
void handOverDatabase(const LibraryProgressBase& receiver, CatalogRun& run, const fileString& database,
                      const fileString& installed)
{
    giveEveryoneFullAccess(database);
    receiver.sendCatalogUpdated({installed, database});
    noteInstalled(run, database);
}

bool placeReferencedFiles(CatalogRun& run, const fileString& archive, LibraryReport& report)
{
    const fileString folder = PathUtils::getObject().getProprietaryLibraryReferencedFilesPath();
    const fileString target = folder / archive.stemWithExtension();
    if (!FileUtils::moveFile(archive, target, true)) {
        ErrorLog() << "Unable to copy referenced file:  " << archive;
        report.fault.reason = "its other files cannot be moved into their folder";
        return false;
    }
    report.referencedFiles.path = target;
    giveEveryoneFullAccess(target);
    noteInstalled(run, target);
    FileSearch::get().resetFileSearch(folder);
    return true;
}

}  // namespace

bool installCatalog(const LibraryProgressBase& receiver, CatalogRun& run, const fileString& downloaded,
                    const fileString& fileName, CatalogRecord& record)
{
    LibraryReport& report = run.report.libraries[fileName];
    if (FileUtils::fileSize(downloaded) <= 0) {
        FileUtils::removePath(downloaded, FileUtils::overrideReadOnly);
        ErrorLog() << "Empty Download File:  " << downloaded << "\n";
        report.fault.reason = "the downloaded file is empty";
        return false;
    }
    const auto files =
        record.kind == CoreCatalogs ? takeCoreFile(run, downloaded, fileName) : takePackedFile(downloaded);
    if (!files)
        return false;
    report.database = reportOf(files->database);
    report.referencedFiles = reportOf(files->referencedFiles);
    if (files->database.pathExists())
        handOverDatabase(receiver, run, files->database, catalogFolder(record.kind) / fileName);
    if (files->referencedFiles.pathExists() && !placeReferencedFiles(run, files->referencedFiles, report))
        return false;
    record.updated = true;
    return true;
}

}  // namespace LibraryCatalogUpdate::detail
