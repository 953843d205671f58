#include <VelkLibrary/Update/detail/CatalogJob.h>

#include <VelkCommon/Files/FileUtils.h>
#include <VelkCommon/Files/PathUtils.h>
#include <VelkCommon/Files/SHA1.h>
#include <VelkCommon/Network/Curl.h>
#include <VelkCommon/Network/WebUtils.h>
#include <VelkCommon/Reporting/PreferenceEngine.h>
#include <VelkCommon/Reporting/PreferenceNumbers.h>
#include <VelkCommon/Text/FormatText.h>
#include <VelkCommon/Text/StringUtils.h>
#include <VelkCommon/Text/TextNumbers.h>
#include <VelkLibrary/Data/FileExtensions.h>
#include <VelkLibrary/ErrorLog.h>
#include <VelkLibrary/Update/detail/CatalogDownload.h>
#include <VelkLibrary/Update/detail/CatalogTexts.h>
#include <VelkLibrary/Update/detail/CatalogUpdateState.h>

#include <utility>
#include <vector>

namespace LibraryCatalogUpdate::detail {
namespace {

namespace preferenceNumbers = Velk::preferenceNumbers;
namespace textNumbers = Velk::textNumbers;

PrefSet& preferences()
{
    return PreferenceEngine::getThePrefs().getPrefSet();
}

bool cancelled()
{
    return CatalogUpdateState::get().cancelled();
}

void prepareFolders()
{
    FileUtils::createDirectoriesWithPerm(PathUtils::getObject().getProprietaryLibraryReferencedFilesPath());
    for (const std::uint32_t kind : {CoreCatalogs, BonusCatalogs, ManufacturerCatalogs})
        FileUtils::removeDirectoryAndFiles(downloadFolder(kind), FileUtils::overrideReadOnly);
}

// Where a catalog that the core content index names is installed.
fileString coreCatalogPath(const fileString& name)
{
    const PathUtils& paths = PathUtils::getObject();
    const bool referencedFiles = name.hasExtension(Library::extensions::referencedFiles);
    return (referencedFiles ? paths.getProprietaryLibraryReferencedFilesPath() : paths.getCoreLibraryDatabasePath()) /
           name;
}

// What a header answer means before anything is downloaded.
LibraryOutcome outcomeOf(const CatalogRecord& record)
{
    constexpr std::int32_t notModified = 304;
    if (record.needsDownload())
        return LibraryOutcome::LeftForLater;
    return record.status == 200 || record.status == notModified ? LibraryOutcome::UpToDate : LibraryOutcome::Refused;
}

std::int32_t outcomeOf(const CatalogRun& run, bool manual)
{
    if (run.failed)
        return manual ? ErrorsManual : ErrorsAutomatic;
    return run.anyInstalled ? Installed : UpToDate;
}

}  // namespace

CatalogJob::CatalogJob(CatalogJobSettings settings) : settings_(std::move(settings)) {}

void CatalogJob::run(const LibraryProgressBase& receiver)
{
    try {
        runPhases(receiver);
    } catch (...) {
        run_.failed = true;
        sendFinalEvent(receiver);
        throw;
    }
    sendFinalEvent(receiver);
}

void CatalogJob::runPhases(const LibraryProgressBase& receiver)
{
    const Curl::Run run;
    run_.report = {};
    run_.report.address = CatalogUpdateState::get().serviceAddress();
    doPart(run_, prepareFolders);
    doPart(run_, [&] {
        if (leavesCoreAlone())
            return;
        doPart(run_, [&] { fetchCoreIndex(); });
        checkKind(receiver, CoreCatalogs, settings_.coreCatalogs);
    });
    if (!settings_.manual) {
        doPart(run_, [&] { checkKind(receiver, BonusCatalogs, settings_.bonusCatalogs); });
        doPart(run_, [&] { checkKind(receiver, ManufacturerCatalogs, settings_.manufacturerCatalogs); });
    }
    doPart(run_, [&] { askService(receiver); });
    doPart(run_, [&] { DownloadPhase(receiver, run_, catalogs_, settings_.product, settings_.version).run(); });
    noteEndpoint();
    writeHashFiles();
    if (settings_.manual)
        doPart(run_, [&] { preferences().set<bool>(preferenceNumbers::lastManualUpdateFailed, run_.failed); });
}

bool CatalogJob::leavesCoreAlone() const
{
    return !settings_.manual && *preferences().get<bool>(preferenceNumbers::coreLibrariesStay);
}

void CatalogJob::fetchCoreIndex()
{
    CatalogRecord record;
    record.kind = CoreCatalogs;
    const std::string url =
        buildCatalogRequest(coreIndexFileName(), record, settings_.product, settings_.version).first;
    RunFault& fault = run_.report.indexFault;
    std::string body;
    run_.report.indexAsked = true;
    if (url.empty() || !Curl::get().browseURL(url, {}, body, fault.reason, fault.code)) {
        run_.failed = true;
        if (url.empty())
            fault = apiEndpointFault();
        Library::ErrorLog() << "Failed to Download Core Library Index File:  " << WebUtils::withoutUserInfo(url)
                            << "\n";
        return;
    }
    const std::vector<fileString> names = parseCoreIndex(body);
    run_.report.indexIsNoList = names.empty() && !StringUtils::trimmed(body, " \t\r\n").empty();
    for (const fileString& name : names)
        settings_.coreCatalogs.insert(coreCatalogPath(name));
}

void CatalogJob::checkKind(const LibraryProgressBase& receiver, std::uint32_t kind,
                           const std::set<fileString>& catalogs)
{
    if (cancelled() || catalogs.empty())
        return;
    receiver.sendText(StringUtils::loadString(textNumbers::checkingCatalogs));
    readCatalogHashFile(catalogHashFile(kind), catalogs_, kind);
    receiver.sendRange(catalogs.size());
    for (const fileString& catalog : catalogs) {
        if (cancelled())
            return;
        receiver.sendText(StringUtils::loadString(textNumbers::checkingCatalog) +
                          shownName(catalog.stemWithExtension()));
        doPart(run_, [&] { checkCatalog(kind, catalog); });
        receiver.sendStep();
    }
}

void CatalogJob::checkCatalog(std::uint32_t kind, const fileString& catalog)
{
    const fileString name = catalog.stemWithExtension();
    const auto known = catalogs_.find(name);
    if (known != catalogs_.end()) {
        known->second.kind = kind;
    } else {
        CatalogRecord record;
        record.kind = kind;
        record.localHash = SHA1::fileContentsToSHA1Hex(catalog);
        catalogs_.emplace(name, std::move(record));
    }
    reportOn(name, kind).installedPath = catalog;
}

// The hash file may name catalogs that the host did not.
LibraryReport& CatalogJob::reportOn(const fileString& fileName, std::uint32_t kind)
{
    LibraryReport& report = run_.report.libraries[fileName];
    report.fileName = fileName;
    report.kind = kind;
    if (report.installedPath.empty())
        report.installedPath = catalogFolder(kind) / fileName;
    return report;
}

// The requests overlap; the receiver, the table and the log still see them in the table's order.
void CatalogJob::askService(const LibraryProgressBase& receiver)
{
    receiver.sendRange(catalogs_.size());
    std::vector<Curl::HeaderRequest> requests;
    for (const auto& [name, record] : catalogs_) {
        auto [url, headers] = buildCatalogRequest(name, record, settings_.product, settings_.version);
        requests.push_back({std::move(url), std::move(headers)});
    }
    auto next = catalogs_.begin();
    const std::string text = StringUtils::loadString(textNumbers::askingService);
    const auto announceNext = [&] {
        if (next != catalogs_.end())
            receiver.sendText(Velk::formatText(text, shownName(next->first)));
    };
    announceNext();
    Curl::get().getURLHeaders(requests, [&](std::size_t, const Curl::HeaderAnswer& answer) {
        doPart(run_, [&] { takeAnswer(next->first, next->second, answer); });
        receiver.sendStep();
        ++next;
        announceNext();
    });
}

// An empty address, which means that there is no endpoint, counts as a failed request.
void CatalogJob::takeAnswer(const fileString& fileName, CatalogRecord& record, const Curl::HeaderAnswer& answer)
{
    LibraryReport& report = reportOn(fileName, record.kind);
    report.localHash = record.localHash;
    if (!answer.received) {
        run_.failed = true;
        report.outcome = LibraryOutcome::NotAnswered;
        report.fault = RunFault{answer.reason, answer.code};
        if (CatalogUpdateState::get().endpoint().empty())
            report.fault = apiEndpointFault();
        return;
    }
    applyHeaderResponse(record, answer.header, answer.responseCode);
    if (record.status == 403 || record.status == 404)
        fetchServiceMessage(fileName, record, settings_.product, settings_.version);
    report.outcome = outcomeOf(record);
    report.status = record.status;
    report.serviceMessage = record.serviceMessage;
    report.tag = record.remoteHash;
}

// A run may have ended before it needed the endpoint.
void CatalogJob::noteEndpoint()
{
    run_.report.endpoint = CatalogUpdateState::get().endpoint();
    run_.report.addressFault = apiEndpointFault();
}

void CatalogJob::writeHashFiles() const
{
    writeCatalogHashFile(catalogs_, CoreCatalogs);
    if (settings_.manual)
        return;
    writeCatalogHashFile(catalogs_, BonusCatalogs);
    writeCatalogHashFile(catalogs_, ManufacturerCatalogs);
}

void CatalogJob::sendFinalEvent(const LibraryProgressBase& receiver)
{
    run_.report.cancelled = cancelled();
    run_.report.result = {outcomeOf(run_, settings_.manual), run_.updatedNames, run_.resultCode};
    if (run_.report.cancelled)
        receiver.sendCancelled();
    else
        receiver.sendEnd(run_.report.result);
}

}  // namespace LibraryCatalogUpdate::detail
