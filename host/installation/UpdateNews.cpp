#include "host/installation/UpdateNews.h"

#include "host/installation/CatalogInstaller.h"
#include "host/installation/InstallationCheck.h"
#include "host/installation/TransferReason.h"
#include "host/support/FileError.h"

#include <VelkCommon/Files/PathUtils.h>
#include <VelkCommon/Network/WebUtils.h>
#include <VelkCommon/Text/StringUtils.h>
#include <VelkLibrary/CatalogDownloadProtocol.h>
#include <VelkLibrary/Data/FileExtensions.h>

#include <string>
#include <string_view>
#include <utility>

namespace VelkHost {
namespace {

using LibraryCatalogUpdate::LibraryOutcome;
using LibraryCatalogUpdate::LibraryReport;
using LibraryCatalogUpdate::RunReport;

constexpr std::int32_t forbidden = 403;
constexpr std::int32_t notFound = 404;

InstalledRecord::Key keyOf(const LibraryReport& library)
{
    return {library.kind, library.fileName.utf8()};
}

/// Whether the cancelling of a run is why there is nothing to tell.
bool isUndone(const LibraryReport& library)
{
    constexpr unsigned aborted = 42;
    return library.outcome == LibraryOutcome::LeftForLater || library.fault.code == aborted;
}

std::string_view trimmedMessage(const LibraryReport& library)
{
    return StringUtils::trimmed(library.serviceMessage, " \t\r\n");
}

/// Whether more than a sentence came, which is what a service says about a library that it does not give away.
bool isPage(const LibraryReport& library)
{
    constexpr std::size_t longest = 500;  // bytes
    const std::string_view message = trimmedMessage(library);
    return message.size() > longest || message.find('\n') != std::string_view::npos;
}

}  // namespace

void UpdateNews::installed(const LibraryReport& library)
{
    add(library, LibraryNews::What::Installed, "", false);
}

void UpdateNews::failed(const LibraryReport& library, Reason why)
{
    failures_.insert(keyOf(library));
    add(library, LibraryNews::What::Failed, std::move(why), true);
}

void UpdateNews::takeReport(const RunReport& report)
{
    takeService(report);
    for (const auto& [name, library] : report.libraries)
        if (!told_.contains(keyOf(library)) && !(report.cancelled && isUndone(library)))
            takeLibrary(library);
    if (!report.cancelled)
        takeBroken(report);
}

void UpdateNews::add(const LibraryReport& library, LibraryNews::What what, Reason why, bool failure)
{
    told_.insert(keyOf(library));
    news_.push_back({what, library.installedPath, std::move(why), failure});
}

void UpdateNews::takeService(const RunReport& report)
{
    if (report.endpoint.empty() && !report.cancelled)
        failure_ =
            Reason("cannot reach %1: %2", {WebUtils::withoutUserInfo(report.address),
                                           transferReason(report.addressFault.code, report.addressFault.reason)});
    else if (report.indexFault.code != 0 && !report.cancelled)
        failure_ = Reason("the list of core libraries cannot be fetched from %1: %2",
                          {WebUtils::withoutUserInfo(report.address),
                           transferReason(report.indexFault.code, report.indexFault.reason)});
    else if (report.indexIsNoList && !report.cancelled)
        failure_ =
            Reason("what %1 sends as the list of core libraries is none", {WebUtils::withoutUserInfo(report.address)});
}

void UpdateNews::takeLibrary(const LibraryReport& library)
{
    switch (library.outcome) {
        case LibraryOutcome::NotAnswered:
            if (!failure_)
                failed(library, {"the service cannot be asked about it: %1",
                                 {transferReason(library.fault.code, library.fault.reason)}});
            break;
        case LibraryOutcome::Refused:
            takeRefusal(library);
            break;
        case LibraryOutcome::NotFetched:
            failed(library,
                   {"it cannot be downloaded: %1",
                    {transferReason(library.fault.code, library.fault.reason, PathUtils::getObject().getTempPath())}});
            break;
        case LibraryOutcome::LeftForLater:
            failed(library, "there is a newer version, which was not fetched");
            break;
        case LibraryOutcome::UpToDate:
            adopt(library);
            break;
        default:
            break;
    }
}

// The user is told once that the service no longer has a library, since it goes on to be of use. A page that forbids is
// no word of the service: something in between does not let the request through.
void UpdateNews::takeRefusal(const LibraryReport& library)
{
    const bool withdrawn = library.status == forbidden && !isPage(library);
    if (!withdrawn && library.status != notFound) {
        failed(library, {"the service answers with status %1", {std::to_string(library.status)}});
        return;
    }
    const bool isHere = library.installedPath.pathExists();
    const bool asked = asked_.contains(library.installedPath) || !isHere;
    InstalledLibrary known = record_.find(keyOf(library));
    if (withdrawn) {
        add(library, LibraryNews::What::Withdrawn, std::string(trimmedMessage(library)), !isHere);
        return;
    }
    if (known.toldGone && !asked)
        return;
    add(library, LibraryNews::What::NotServed, "not part of this service", asked);
    if (!isHere)
        return;
    known.toldGone = true;
    try {
        record_.set(keyOf(library), known);
    } catch (const FileError&) {
        // Then it is told again.
    }
}

// A library that another program installed, or that was here before there was a record, is known from now on.
void UpdateNews::adopt(const LibraryReport& library)
{
    InstalledLibrary known = record_.find(keyOf(library));
    const bool isNew = !known.database;
    if (library.fileName.hasExtension(Library::extensions::referencedFiles) || (!isNew && !known.toldGone))
        return;
    known.toldGone = false;
    if (isNew) {
        known.tag = library.localHash;
        known.database = stateOf(library.installedPath);
        if (library.kind != LibraryCatalogUpdate::CoreCatalogs)
            known.referenced = stateOf(referencedArchive(library.fileName));
        if (!known.database || contradicts(known.tag, known.database->sha1))
            return;
    }
    try {
        record_.set(keyOf(library), known);
    } catch (const FileError&) {
        // Then it is adopted by the next update.
    }
}

// What was to be repaired and was not even tried, because the service has nothing newer, or does not have it at all.
void UpdateNews::takeBroken(const RunReport& report)
{
    for (const InstalledRecord::Key& key : broken_) {
        if (told_.contains(key) || failure_)
            continue;
        const auto found = report.libraries.find(fileString(key.second));
        LibraryReport library = found == report.libraries.end() ? LibraryReport() : found->second;
        library.kind = key.first;
        library.fileName = fileString(key.second);
        library.installedPath = catalogPath(key);
        failed(library, "its files are missing or damaged, and could not be fetched again");
    }
}

}  // namespace VelkHost
