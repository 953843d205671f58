#pragma once

#include <VelkCommon/Files/fileString.h>
#include <VelkLibrary/Export.h>
#include <VelkLibrary/LibraryFilter.h>

#include <atomic>
#include <memory>
#include <string>
#include <vector>

/// The user's library filters, the one in force, and the filter that the host may impose on system
/// databases. One instance, made at the first use from the filter file; nothing is written but by
/// saveFilters() and mergeFilters(). The file's content as a value is a FilterFile.
///
/// The filter file, "catalog_filters.json" in the core library database folder, is UTF-8 JSON:
///
///     {"Current_Filter": 2,
///      "Filter": {"Filter_Name": "Kitchens", "Filter_Id": 1, "Database_Ids": ["lib-core-kitchen", "lib-user-7"]},
///      "Filter": {"Filter_Name": "Baths", "Filter_Id": 2, "Database_Ids": ["lib-core-bath"]}}
///
/// The repeated key comes out of the reader last first, so a list that is loaded and saved stands in the
/// file in reverse order afterwards; other programs rely on that. A filter without a name or with the id
/// -1 is dropped when read.
///
/// Nothing throws but for memory. A file that is not as it should be is reported as an assertion, one that
/// cannot be written as a message to the user. Only the making of the instance is synchronised: call the
/// rest from one thread at a time.
class VELKLIBRARY_EXPORT LibraryFilterManager
{
public:
    /// The instance; lives until the process ends.
    static LibraryFilterManager& getLibraryFilterManager();
    LibraryFilterManager(const LibraryFilterManager&) = delete;
    LibraryFilterManager& operator=(const LibraryFilterManager&) = delete;

    /// The live list; do not keep the reference across setLibraryFilters() and mergeFilters().
    const std::vector<LibraryFilter>& getLibraryFilters() const noexcept { return libraryFilters_; }
    /// Replaces the list. Nothing is saved.
    void setLibraryFilters(const std::vector<LibraryFilter>& filters);

    /// -1 when no filter is in force.
    long getCurrentFilterId() const noexcept { return currentFilterId_; }
    /// Takes any id, also one that no filter has. Nothing is saved.
    void setCurrentFilterId(long id) noexcept { currentFilterId_ = id; }
    /// The current id is not -1, whether or not a filter has it.
    bool hasActiveFilter() const noexcept;

    /// A copy of the first filter of `filters` that has the id; one without name and databases and with the
    /// id -1 when none has.
    static LibraryFilter getLibraryFilterFromId(long id, const std::vector<LibraryFilter>& filters);

    /// The name of the current filter; the host's text 8930 when there is none. UTF-8.
    std::string getCurrentFilterString() const;
    /// The entries of a menu: the host's text 8930 for no filter, then the names in list order.
    std::vector<std::string> getFilterStrings() const;

    /// The database ids of the current filter; none when there is none.
    std::vector<std::string> getCurrentFilteredDatabases() const;
    /// The current filter lists the database.
    bool isFilteredDatabase(const std::string& databaseId) const;

    /// The forced filter lists the database.
    bool isForcedFilteredDatabase(const std::string& databaseId) const;
    /// Takes a filter that is neither listed nor saved, in place of the one held; null clears it.
    void setForcedSystemDBFilter(std::unique_ptr<LibraryFilter> filter) noexcept;
    /// No filter is forced any more.
    void clearForcedSystemDBFilter() noexcept;

    /// Takes the first entry of this id out of every filter of the list. Nothing is saved.
    void removeIdFromLibraryFilters(const std::string& databaseId);

    /// The bare name of the filter file.
    fileString getFilterFilename() const;

    /// Writes the list to the filter file. An empty list is not written: the file stays as it is.
    void saveFilters() const;

    /// Adds the list to the filters of the file at `path`, writes that file and takes over what it then
    /// holds: its filters and its current filter (-1 when there was no file). Filters that the file has
    /// already (same name, same databases) are not added again; the others get the lowest free ids, and
    /// a name that is taken gets a number ("Baths 1"). True when the file was written; otherwise
    /// nothing changes here.
    bool mergeFilters(const fileString& path);

private:
    LibraryFilterManager();

    const LibraryFilter* currentFilter() const;

    long currentFilterId_ = -1;
    std::vector<LibraryFilter> libraryFilters_;
    std::unique_ptr<LibraryFilter> forcedSystemDatabaseFilter_;
    std::atomic<bool> hasFaultToReport_ = false;
};
