#pragma once

/// @file
/// What a run of the catalog update did, library by library, beside the events that it sends to its receiver.

#include <VelkCommon/Files/fileString.h>
#include <VelkLibrary/UpdateData.h>

#include <cstdint>
#include <functional>
#include <map>
#include <string>

namespace LibraryCatalogUpdate {

/// Why a step of a run failed. Texts are UTF-8.
struct RunFault
{
    std::string reason;  ///< a sentence in English, or the transfer library's text; empty when nothing failed
    unsigned code = 0;   ///< of a failed transfer: its code, see Curl; otherwise 0
};

/// What became of a library in a run.
enum class LibraryOutcome {
    NotAsked,      ///< the run ended before the service was asked about it
    NotAnswered,   ///< the service could not be asked; `fault` says why
    Refused,       ///< the service answered with an error; `status` and `serviceMessage` say which
    UpToDate,      ///< the service has the version that is here
    LeftForLater,  ///< the service has another version, which this run did not try to fetch
    NotFetched,    ///< its download failed; `fault` says why
    NotInstalled,  ///< it was downloaded, but the module could not take it over; `fault` says why
    Taken          ///< it was downloaded, unpacked if need be, and handed over
};

/// Files that a download consisted of.
struct FileReport
{
    fileString path;     ///< where it is now; empty when there is no such file
    long long size = 0;  ///< bytes
    std::string sha1;    ///< as hexadecimal text
};

/// What a run knows about one library.
struct LibraryReport
{
    fileString fileName;       ///< its catalog file or archive at the service, without a folder
    std::uint32_t kind = 0;    ///< a CatalogKind
    fileString installedPath;  ///< where its catalog file, or archive, is or belongs
    LibraryOutcome outcome = LibraryOutcome::NotAsked;  ///< what became of it
    std::int32_t status = 0;                            ///< the service's HTTP status; 0 without an answer
    std::string serviceMessage;                         ///< the body of a 403 or 404 answer
    std::string localHash;                              ///< the hash that the service was told
    std::string tag;                                    ///< the version that the service has
    RunFault fault;                                     ///< why it was not answered, not fetched or not installed

    // Of a library that was downloaded:
    FileReport download;         ///< what came; it may be gone after the run has taken it over
    FileReport database;         ///< the new catalog file, before the receiver has moved it
    FileReport referencedFiles;  ///< the archive of its other files, in its place in the referenced-files folder
};

/// What a run did.
struct RunReport
{
    std::string address;      ///< the service's configured address
    std::string endpoint;     ///< where it leads to; empty when it leads nowhere, and `addressFault` says why
    RunFault addressFault;    ///< why the address leads nowhere
    bool indexAsked = false;  ///< whether the run asked for the list of core catalogs
    RunFault indexFault;      ///< why that list could not be fetched
    /// Whether something other than blanks came as that list, and none of it names a catalog: most likely a page of a
    /// proxy or of another service. The run goes on as with an empty list.
    bool indexIsNoList = false;
    /// Every library of the run, by file name with extension.
    std::map<fileString, LibraryReport> libraries;
    bool cancelled = false;  ///< the run ended with "onClose"
    UpdateData result;       ///< what its other final event carries
};

/// Functions that a run calls on its worker thread. Each may be empty. An exception counts as a failure of the run
/// and is logged.
struct RunHooks
{
    /// A library has been downloaded and is about to be unpacked and taken over: the last moment at which the archive
    /// that came (`download`) can be read, and at which the library's old referenced files are in their place.
    std::function<void(const LibraryReport& library)> downloaded;
    /// The run is done with a library that was downloaded, whatever the outcome: `database` and `referencedFiles` say
    /// what there is to install. The event of a new catalog file has been queued before.
    std::function<void(const LibraryReport& library)> done;
};

}  // namespace LibraryCatalogUpdate
