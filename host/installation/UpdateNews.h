#pragma once

#include "host/installation/InstalledRecord.h"
#include "host/support/Reason.h"

#include <VelkCommon/Files/fileString.h>
#include <VelkLibrary/Update/RunReport.h>

#include <optional>
#include <set>
#include <vector>

namespace VelkHost {

/// What there is to tell about a library after an update.
struct LibraryNews
{
    enum class What {
        Installed,  ///< it was added or replaced
        Failed,     ///< it is as it was; `why` says what went wrong
        Withdrawn,  ///< the service no longer gives it away; `why` is the service's message
        NotServed   ///< the service does not have it
    };

    What what = What::Installed;
    fileString catalog;    ///< the path of its catalog file, or of an archive
    Reason why = "";       ///< a sentence without its subject
    bool failure = false;  ///< it is not as the user wanted it
};

/// Gathers the news of an update: from its installations as they happen, and then from the report of the module's run.
class UpdateNews
{
public:
    /// `record` keeps what the user has been told once and for all.
    explicit UpdateNews(InstalledRecord& record) : record_(record) {}

    /// Libraries that the user named, by the paths of their catalog files.
    void setAsked(std::set<fileString> catalogs) { asked_ = std::move(catalogs); }
    /// Recorded libraries that are not as they should be.
    void addBroken(const std::set<InstalledRecord::Key>& libraries)
    {
        broken_.insert(libraries.begin(), libraries.end());
    }

    void installed(const LibraryCatalogUpdate::LibraryReport& library);
    void failed(const LibraryCatalogUpdate::LibraryReport& library, Reason why);
    /// What the run did with the other libraries.
    void takeReport(const LibraryCatalogUpdate::RunReport& report);

    const std::vector<LibraryNews>& list() const noexcept { return news_; }
    /// What went wrong with the update as a whole.
    const std::optional<Reason>& failure() const noexcept { return failure_; }
    /// Libraries whose installation failed.
    const std::set<InstalledRecord::Key>& failures() const noexcept { return failures_; }

private:
    void add(const LibraryCatalogUpdate::LibraryReport& library, LibraryNews::What what, Reason why, bool failure);
    void takeService(const LibraryCatalogUpdate::RunReport& report);
    void takeLibrary(const LibraryCatalogUpdate::LibraryReport& library);
    void takeRefusal(const LibraryCatalogUpdate::LibraryReport& library);
    void takeBroken(const LibraryCatalogUpdate::RunReport& report);
    void adopt(const LibraryCatalogUpdate::LibraryReport& library);

    InstalledRecord& record_;
    std::set<fileString> asked_;
    std::set<InstalledRecord::Key> broken_;
    std::set<InstalledRecord::Key> told_;
    std::set<InstalledRecord::Key> failures_;
    std::vector<LibraryNews> news_;
    std::optional<Reason> failure_;
};

}  // namespace VelkHost
