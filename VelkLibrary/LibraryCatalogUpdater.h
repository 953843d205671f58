#pragma once

#include <VelkCommon/Files/fileString.h>
#include <VelkLibrary/Export.h>
#include <VelkLibrary/LibraryProgressBase.h>
#include <VelkLibrary/Update/RunReport.h>

#include <memory>
#include <set>
#include <string>

namespace LibraryCatalogUpdate {

namespace detail {
class CatalogJob;
}

/// Brings the installed catalogs up to date with the content service, once: asks about every catalog,
/// downloads those that have changed, unpacks packed ones, puts texture archives in place and hands each new
/// catalog file to the receiver, which replaces the installed one with it.
///
///     LibraryCatalogUpdater updater(receiver, core, bonus, manufacturer, "planner", "12", address, false);
///     std::thread worker([&updater] { updater(); });
///
/// Construct it on the receiver's thread, run it on a worker. The receiver learns of everything by queued
/// calls of its slots (LibraryProgressBase.h); exactly one of "closeCatalogUpdateEvent" and "onClose" comes,
/// and it comes last. Failures go to the error log. Only one updater may exist or run at a time: the service's
/// address, the cancel flag and the counters belong to the process.
class VELKLIBRARY_EXPORT LibraryCatalogUpdater : public LibraryProgressBase
{
public:
    /// The sets hold paths of catalog files. `product` and `version` are sent with every request. A manual
    /// run, which the user asked for, updates the core catalogs only and records in preference 251 whether
    /// anything failed; an automatic run leaves the core catalogs out when preference 271 is set. A new updater
    /// takes back an earlier killDownload().
    LibraryCatalogUpdater(QObject& receiver, const std::set<fileString>& coreCatalogs,
                          const std::set<fileString>& bonusCatalogs, const std::set<fileString>& manufacturerCatalogs,
                          const std::string& product, const std::string& version, const std::string& serviceAddress,
                          bool manual);
    ~LibraryCatalogUpdater() override;
    LibraryCatalogUpdater(const LibraryCatalogUpdater&);                 ///< shares the job
    LibraryCatalogUpdater(LibraryCatalogUpdater&&) noexcept;             ///< takes the job over
    LibraryCatalogUpdater& operator=(const LibraryCatalogUpdater&);      ///< shares the job
    LibraryCatalogUpdater& operator=(LibraryCatalogUpdater&&) noexcept;  ///< takes the job over

    /// Runs the job. Throws nothing but EnforcerException, when there is no application object; the final event
    /// has been sent even then. A run first removes what earlier runs left in the download folders, so the
    /// receiver must be done with those files.
    void operator()();

    /// Lets the next run call these functions. Not while a run is under way; copies share them.
    void setHooks(RunHooks hooks);

    /// What the last run did. To be read on the worker thread, or by others after the run has ended, which they may
    /// take from its final event. It is what the events tell and more, so it needs no receiver.
    const RunReport& report() const noexcept;

    /// Cancels the run, from any thread at any time: a transfer ends within moments, the checks and downloads
    /// end before the next catalog, and the run ends with "onClose". The cancellation holds until the next
    /// updater is constructed.
    static void killDownload();

private:
    std::shared_ptr<detail::CatalogJob> job_;  // copies share it
};

}  // namespace LibraryCatalogUpdate
