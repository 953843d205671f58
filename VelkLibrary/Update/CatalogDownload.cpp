#include <VelkLibrary/Update/detail/CatalogDownload.h>

#include <VelkCommon/Files/FileUtils.h>
#include <VelkCommon/Network/Curl.h>
#include <VelkCommon/Text/FormatText.h>
#include <VelkCommon/Text/StringUtils.h>
#include <VelkCommon/Text/TextNumbers.h>
#include <VelkLibrary/Data/FileExtensions.h>
#include <VelkLibrary/ErrorLog.h>
#include <VelkLibrary/Update/detail/CatalogInstall.h>
#include <VelkLibrary/Update/detail/CatalogUpdateState.h>

#include <algorithm>

namespace LibraryCatalogUpdate::detail {
namespace {

constexpr unsigned mostStalledCalls = 600;
constexpr unsigned mostUnreportedCalls = 500;
constexpr std::uint32_t bytesPerKilobyte = 1000;

constexpr unsigned abortedByCallback = 42;

std::uint64_t kilobytesToDownload(const CatalogTable& catalogs)
{
    std::uint64_t sum = 0;
    for (const auto& [name, record] : catalogs)
        if (record.needsDownload())
            sum += record.contentLength / bytesPerKilobyte;
    return sum;
}

bool isStalled(TransferCounters& counters, bool receivedNothing)
{
    if (!receivedNothing) {
        counters.stalledCalls = 0;
        return false;
    }
    if (counters.stalledCalls >= mostStalledCalls)
        return true;
    ++counters.stalledCalls;
    return false;
}

// Few of the many calls are worth an event.
bool isToBeReported(TransferCounters& counters)
{
    if (counters.unreportedCalls <= mostUnreportedCalls) {
        ++counters.unreportedCalls;
        return false;
    }
    counters.unreportedCalls = 0;
    return true;
}

int handleProgress(TransferProgress& progress, double received)
{
    CatalogUpdateState& state = CatalogUpdateState::get();
    if (state.cancelled())
        return 1;
    TransferCounters& counters = state.counters;
    if (isStalled(counters, received == progress.lastReceived))
        return 1;
    progress.lastReceived = received;
    counters.currentKilobytes = roundToNearest<int>(received / bytesPerKilobyte);
    if (isToBeReported(counters))
        progress.receiver->sendValue(counters.kilobytesDone + static_cast<std::uint64_t>(counters.currentKilobytes));
    return 0;
}

}  // namespace

int reportProgress(void* data, double, double received, double, double) noexcept
{
    try {
        return handleProgress(*static_cast<TransferProgress*>(data), std::max(received, 0.0));
    } catch (...) {
        return 1;
    }
}

DownloadPhase::DownloadPhase(const LibraryProgressBase& receiver, CatalogRun& run, CatalogTable& catalogs,
                             const std::string& product, const std::string& version)
    : receiver_(receiver), run_(run), catalogs_(catalogs), product_(product), version_(version)
{}

void DownloadPhase::run()
{
    CatalogUpdateState& state = CatalogUpdateState::get();
    state.counters.kilobytesToDownload = kilobytesToDownload(catalogs_);
    announce();
    if (state.endpoint().empty())
        run_.resultCode = EndpointUnknown;
    if (state.counters.kilobytesToDownload == 0)
        return;
    state.counters.stalledCalls = 0;
    for (auto& [name, record] : catalogs_) {
        if (state.cancelled())
            return;
        if (!record.needsDownload())
            continue;
        bool goOn = true;
        doPart(run_, [&, &name = name, &record = record] { goOn = updateCatalog(name, record); });
        if (!goOn)
            return;
    }
}

void DownloadPhase::announce() const
{
    const std::uint64_t kilobytes = CatalogUpdateState::get().counters.kilobytesToDownload;
    if (kilobytes == 0)
        return;
    receiver_.sendRange(kilobytes);
    receiver_.sendUnits(StringUtils::loadString(Velk::textNumbers::downloadUnit));
}

// False when the catalog was downloaded but could not be installed, which ends the phase.
bool DownloadPhase::updateCatalog(const fileString& fileName, CatalogRecord& record)
{
    const fileString stem = fileName.stem();
    receiver_.sendText(Velk::formatText(StringUtils::loadString(Velk::textNumbers::downloading), shownName(stem)));
    const fileString folder = downloadFolder(record.kind);
    const fileString target =
        folder.empty() ? fileString() : folder / (stem + fileString(Library::extensions::download));
    LibraryReport& report = run_.report.libraries[fileName];
    if (!download(fileName, record, target)) {
        report.outcome = LibraryOutcome::NotFetched;
        return true;
    }
    report.download = reportOf(target);
    if (run_.hooks.downloaded)
        doPart(run_, [&] { run_.hooks.downloaded(report); });
    const bool installed = installCatalog(receiver_, run_, target, fileName, record);
    report.outcome = installed ? LibraryOutcome::Taken : LibraryOutcome::NotInstalled;
    if (!installed)
        run_.failed = true;
    if (run_.hooks.done)
        doPart(run_, [&] { run_.hooks.done(report); });
    return installed;
}

bool DownloadPhase::download(const fileString& fileName, const CatalogRecord& record, const fileString& target)
{
    TransferCounters& counters = CatalogUpdateState::get().counters;
    counters.kilobytesDone += static_cast<std::uint64_t>(counters.currentKilobytes);
    counters.currentKilobytes = 0;
    if (target.empty() || !FileUtils::createDirectoriesWithPerm(target.parentPath()))
        return fail(fileName, target, "The download folder cannot be made.");
    const auto [url, headers] = buildCatalogRequest(fileName, record, product_, version_);
    if (url.empty())
        return fail(fileName, target, "No API endpoint found.");
    std::string reason;
    unsigned code = 0;
    TransferProgress progress{0, &receiver_};
    if (Curl::get().download_to_location(url, target, headers, &progress, reportProgress, reason, code))
        return true;
    if (code == abortedByCallback)
        run_.resultCode = TransferAborted;
    run_.report.libraries[fileName].fault.code = code;
    return fail(fileName, target, reason);
}

bool DownloadPhase::fail(const fileString& fileName, const fileString& target, const std::string& reason)
{
    Library::ErrorLog() << "Failed To Download File:  " << fileName.stem() << "   Reason:  " << reason << "\n";
    if (!target.empty() && target.pathExists())
        FileUtils::removePath(target, FileUtils::overrideReadOnly);
    run_.report.libraries[fileName].fault.reason = reason;
    run_.failed = true;
    return false;
}

}  // namespace LibraryCatalogUpdate::detail
