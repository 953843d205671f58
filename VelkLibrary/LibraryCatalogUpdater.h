#pragma once

#include <VelkCommon/Files/fileString.h>
#include <VelkLibrary/Export.h>
#include <VelkLibrary/LibraryProgressBase.h>

#include <memory>
#include <set>
#include <string>

namespace LibraryCatalogUpdate {

namespace detail {
class CatalogJob;
}

/// Brings the installed catalogs up to date with the content service, once: asks about every catalog,
/// downloads those that have changed, unpacks packed ones, puts archives of referenced files in place and
/// hands each new database to the receiver, which replaces the installed one.
///
///     LibraryCatalogUpdater updater(receiver, core, bonus, manufacturer, "planner", "12", address, false);
///     std::thread worker([&updater] { updater(); });
///
/// Construct it on the receiver's thread, run it on a worker. The receiver learns of everything by queued
/// calls of its slots (LibraryProgressBase.h); of "closeCatalogUpdateEvent" and "onClose" exactly one
/// comes, as the last. Failures go to the error log. Only one updater may exist or run at a time: the
/// service's address, the cancel flag and the counters belong to the process.
class VELKLIBRARY_EXPORT LibraryCatalogUpdater : public LibraryProgressBase
{
public:
    /// The sets hold paths of catalog files. `product` and `version` are sent with every request. A manual
    /// run, which the user asked for, is about the core catalogs only, and it keeps in preference 251
    /// whether anything failed; an automatic one leaves them out when preference 271 is set. Takes back
    /// an earlier killDownload().
    LibraryCatalogUpdater(QObject& receiver, const std::set<fileString>& coreCatalogs,
                          const std::set<fileString>& bonusCatalogs, const std::set<fileString>& manufacturerCatalogs,
                          const std::string& product, const std::string& version, const std::string& serviceAddress,
                          bool manual);
    ~LibraryCatalogUpdater() override;
    LibraryCatalogUpdater(const LibraryCatalogUpdater&);                 ///< the same job
    LibraryCatalogUpdater(LibraryCatalogUpdater&&) noexcept;             ///< takes the job over
    LibraryCatalogUpdater& operator=(const LibraryCatalogUpdater&);      ///< the same job
    LibraryCatalogUpdater& operator=(LibraryCatalogUpdater&&) noexcept;  ///< takes the job over

    /// Runs the job. Nothing leaves it but an EnforcerException, when there is no application object;
    /// the final event was sent even then. Leftovers of earlier runs in the download folders are removed
    /// at the beginning, so the receiver has to be done with them.
    void operator()();

    /// Cancels the run, from any thread at any time: a transfer ends within some moments, the checks and
    /// downloads before the next catalog; the run ends with "onClose". Holds until the next updater is
    /// constructed.
    static void killDownload();

private:
    std::shared_ptr<detail::CatalogJob> job_;  // copies share it
};

}  // namespace LibraryCatalogUpdate
