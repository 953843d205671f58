#pragma once

#include "host/installation/InstalledRecord.h"
#include "host/installation/PackageContent.h"

#include <VelkCommon/Files/WorkFolder.h>
#include <VelkCommon/Files/fileString.h>
#include <VelkLibrary/Update/RunReport.h>

#include <functional>
#include <optional>
#include <string>

namespace VelkHost {

/// Installs what a run of the catalog update brings, library by library: everything of a library or nothing, checked
/// against what the service sent and announced. For the hooks of the run, on its thread.
class CatalogInstaller
{
public:
    /// `record` learns what was installed. `whileUnused` calls what it is given at a moment when nobody has the
    /// installed files open.
    CatalogInstaller(InstalledRecord& record, std::function<void(const std::function<void()>&)> whileUnused);

    /// A library has been downloaded. Looks into what came, and keeps the old archive of its other files, whose place
    /// the run is going to take.
    void prepare(const LibraryCatalogUpdate::LibraryReport& library);

    /// The run is done with the library: checks it and puts its catalog file in place. Throws FileError when something
    /// is missing or wrong. Then the old files are back.
    void install(const LibraryCatalogUpdate::LibraryReport& library);

private:
    void keepArchive();
    void putArchiveBack();
    void check(const LibraryCatalogUpdate::LibraryReport& library) const;
    void putInPlace(const LibraryCatalogUpdate::LibraryReport& library) const;
    void note(const LibraryCatalogUpdate::LibraryReport& library) const;

    InstalledRecord& record_;
    std::function<void(const std::function<void()>&)> whileUnused_;
    std::optional<WorkFolder> kept_;  // in the referenced-files folder

    // Of the library that is being installed:
    std::optional<PackageContent> content_;
    std::string contentProblem_;
    fileString archive_;       // where the archive of its other files goes; empty when it has none of its own
    bool hadArchive_ = false;  // there was an archive
    fileString keptArchive_;   // it under another name; empty when it could not be kept
};

/// The archive of a library's other files, which has its place in the referenced-files folder.
fileString referencedArchive(const fileString& catalog);

/// Whether a tag is the SHA-1 of a file, as those of published libraries are, and another one than `sha1`.
bool contradicts(const std::string& tag, const std::string& sha1);

}  // namespace VelkHost
