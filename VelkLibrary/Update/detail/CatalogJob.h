#pragma once

#include <VelkCommon/Network/Curl.h>
#include <VelkLibrary/CatalogDownloadProtocol.h>
#include <VelkLibrary/LibraryProgressBase.h>
#include <VelkLibrary/Update/detail/CatalogRun.h>

#include <set>
#include <string>
#include <utility>

namespace LibraryCatalogUpdate::detail {

/// What an updater was constructed with.
struct CatalogJobSettings
{
    std::set<fileString> coreCatalogs;
    std::set<fileString> bonusCatalogs;
    std::set<fileString> manufacturerCatalogs;
    std::string product;
    std::string version;
    bool manual = false;
};

/// The job of an updater: its phases, one after the other, and their results. A second run goes on with the
/// table and the results of the first.
class CatalogJob
{
public:
    explicit CatalogJob(CatalogJobSettings settings);

    /// See LibraryCatalogUpdater::operator().
    void run(const LibraryProgressBase& receiver);

    void setHooks(RunHooks hooks) { run_.hooks = std::move(hooks); }
    const RunReport& report() const noexcept { return run_.report; }

private:
    void runPhases(const LibraryProgressBase& receiver);
    bool leavesCoreAlone() const;
    void fetchCoreIndex();
    void checkKind(const LibraryProgressBase& receiver, std::uint32_t kind, const std::set<fileString>& catalogs);
    void checkCatalog(std::uint32_t kind, const fileString& catalog);
    LibraryReport& reportOn(const fileString& fileName, std::uint32_t kind);
    void askService(const LibraryProgressBase& receiver);
    void takeAnswer(const fileString& fileName, CatalogRecord& record, const Curl::HeaderAnswer& answer);
    void noteEndpoint();
    void writeHashFiles() const;
    void sendFinalEvent(const LibraryProgressBase& receiver);

    CatalogRun run_;
    CatalogJobSettings settings_;
    CatalogTable catalogs_;
};

}  // namespace LibraryCatalogUpdate::detail
