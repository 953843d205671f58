#include "host/installation/LibraryUpdate.h"

#include "host/installation/CatalogInstaller.h"
#include "host/installation/DataLock.h"
#include "host/installation/HashFiles.h"
#include "host/installation/InstallationCheck.h"
#include "host/support/FileError.h"
#include "host/support/Folders.h"

#include <VelkCommon/Files/PathUtils.h>
#include <VelkCommon/Files/WorkFolder.h>
#include <VelkCommon/Network/Curl.h>
#include <VelkLibrary/CatalogDownloadProtocol.h>
#include <VelkLibrary/Data/FileExtensions.h>
#include <VelkLibrary/LibraryCatalogUpdater.h>

#include <cstdint>
#include <map>
#include <set>
#include <utility>

namespace VelkHost {
namespace {

using namespace LibraryCatalogUpdate;

/// The catalog files of a kind.
struct KindOfLibraries
{
    std::uint32_t kind;
    bool wanted;
    const std::vector<std::string>& added;
};

/// What killed programs have left, of this and of earlier runs.
void removeLeftovers()
{
    const PathUtils& paths = PathUtils::getObject();
    for (const fileString& folder :
         {paths.getCoreLibraryDatabasePath(), paths.getBonusLibraryDatabasePath(), paths.getManufacturerLibraryPath(),
          paths.getProprietaryLibraryReferencedFilesPath(), paths.getUserDatabasePath()})
        WorkFolder::removeLeftovers(folder);
}

/// One update, from the lock to the news.
class Update
{
public:
    Update(QObject& receiver, const UpdateRequest& request, const UpdateCallbacks& callbacks,
           const std::stop_token& stop)
        : receiver_(receiver),
          request_(request),
          callbacks_(callbacks),
          stop_(stop),
          lock_(lockUpdates("an update of the libraries", stop)),
          news_(record_)
    {}

    UpdateResult run()
    {
        removeLeftovers();
        std::map<std::uint32_t, std::set<fileString>> catalogs;
        std::set<fileString> asked;
        for (const KindOfLibraries& kind : kinds()) {
            const std::set<fileString> added = named(kind);
            catalogs[kind.kind] = installed(kind);
            catalogs[kind.kind].insert(added.begin(), added.end());
            asked.insert(added.begin(), added.end());
        }
        news_.setAsked(std::move(asked));
        LibraryCatalogUpdater updater(receiver_, catalogs[CoreCatalogs], catalogs[BonusCatalogs],
                                      catalogs[ManufacturerCatalogs], request_.product, request_.version,
                                      request_.service, request_.manual);
        runModule(updater);
        return result(updater.report());
    }

private:
    std::vector<KindOfLibraries> kinds() const
    {
        static const std::vector<std::string> none;
        return {{CoreCatalogs, request_.core, none},
                {BonusCatalogs, request_.bonus && !request_.manual, request_.addedBonus},
                {ManufacturerCatalogs, request_.manufacturer && !request_.manual, request_.addedManufacturer}};
    }

    /// Libraries that are here, and those that the record says should be.
    std::set<fileString> installed(const KindOfLibraries& kind)
    {
        const fileString folder = catalogFolder(kind.kind);
        makeFolder(folder);
        if (!kind.wanted)
            return {};
        const std::set<InstalledRecord::Key> broken = findBrokenLibraries(record_, kind.kind, request_.verify);
        news_.addBroken(broken);
        const std::vector<fileString> files = filesInFolder(folder, Library::extensions::database);
        std::set<fileString> catalogs(files.begin(), files.end());
        for (const InstalledRecord::Key& key : broken)
            catalogs.insert(catalogPath(key));
        return catalogs;
    }

    static std::set<fileString> named(const KindOfLibraries& kind)
    {
        using Library::extensions::database;
        std::set<fileString> catalogs;
        for (const std::string& text : kind.added) {
            const fileString name(text);
            catalogs.insert(catalogFolder(kind.kind) /
                            (name.hasExtension(database) ? name : name + fileString(database)));
        }
        return catalogs;
    }

    void runModule(LibraryCatalogUpdater& updater)
    {
        CatalogInstaller installer(record_, callbacks_.whileUnused);
        updater.setHooks({[&](const LibraryReport& library) { installer.prepare(library); },
                          [&](const LibraryReport& library) { install(installer, library); }});
        const std::stop_callback cancel(stop_, &LibraryCatalogUpdater::killDownload);
        const Curl::Stoppable stoppable(stop_);
        updater();
        updater.setHooks({});
    }

    void install(CatalogInstaller& installer, const LibraryReport& library)
    {
        try {
            installer.install(library);
        } catch (const FileError& error) {
            const bool isItself = error.path() == library.installedPath;
            news_.failed(library, isItself ? error.why() : Reason("%1: %2", {error.path().utf8(), error.why()}));
            return;
        }
        news_.installed(library);
        if (callbacks_.installed)
            callbacks_.installed(library.installedPath);
    }

    /// The module counts what it has handed over as installed. Libraries that were refused are to be fetched again.
    void askAgainForFailures() const
    {
        std::map<std::uint32_t, std::map<fileString, std::string>> hashes;
        for (const InstalledRecord::Key& key : news_.failures())
            if (catalogPath(key).pathExists())
                hashes[key.first][fileString(key.second)] = noFilesHash;
        for (const auto& [kind, ofKind] : hashes)
            setHashes(kind, ofKind);
    }

    UpdateResult result(const RunReport& report)
    {
        news_.takeReport(report);
        askAgainForFailures();
        UpdateResult result;
        result.failure = news_.failure();
        result.news = news_.list();
        result.module = report.result;
        result.outcome = outcome(report);
        if (result.outcome == UpdateOutcome::Failed && !result.failure && news_.failures().empty())
            result.failure = "something failed; the error log tells what";
        return result;
    }

    UpdateOutcome outcome(const RunReport& report) const
    {
        if (report.cancelled || stop_.stop_requested())
            return UpdateOutcome::Cancelled;
        bool anyInstalled = false;
        bool anyFailure = news_.failure().has_value();
        for (const LibraryNews& news : news_.list()) {
            anyInstalled = anyInstalled || news.what == LibraryNews::What::Installed;
            anyFailure = anyFailure || news.failure;
        }
        const bool moduleFailed = report.result.outcome == ErrorsAutomatic || report.result.outcome == ErrorsManual;
        if (anyFailure || moduleFailed)
            return UpdateOutcome::Failed;
        return anyInstalled ? UpdateOutcome::Installed : UpdateOutcome::UpToDate;
    }

    QObject& receiver_;
    const UpdateRequest& request_;
    const UpdateCallbacks& callbacks_;
    const std::stop_token stop_;
    const FileLock lock_;
    InstalledRecord record_;
    UpdateNews news_;
};

}  // namespace

UpdateResult updateLibraries(QObject& receiver, const UpdateRequest& request, const UpdateCallbacks& callbacks,
                             const std::stop_token& stop)
{
    return Update(receiver, request, callbacks, stop).run();
}

}  // namespace VelkHost
