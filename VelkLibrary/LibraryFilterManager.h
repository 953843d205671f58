#pragma once

#include <VelkCommon/Files/fileString.h>
#include <VelkLibrary/Export.h>
#include <VelkLibrary/LibraryFilter.h>

#include <atomic>
#include <memory>
#include <string>
#include <vector>

/// The user's filters, the current one, and a forced filter, which the host may impose on system libraries.
/// There is one instance, made from the filter file at the first use; only saveFilters() and mergeFilters()
/// write files. A FilterFile holds the content of such a file as a plain value.
///
/// The filter file, "catalog_filters.json" in the core library database folder, is UTF-8 JSON:
///
///     {"Current_Filter": 2,
///      "Filter": {"Filter_Name": "Kitchens", "Filter_Id": 1, "Database_Ids": ["lib-core-kitchen", "lib-user-7"]},
///      "Filter": {"Filter_Name": "Baths", "Filter_Id": 2, "Database_Ids": ["lib-core-bath"]}}
///
/// The reader returns the filters last first, so a list that is loaded and saved stands in the file in reverse
/// order afterwards; other programs rely on that. A filter without a name or with the id -1 is dropped when the
/// file is read.
///
/// Nothing throws except `std::bad_alloc`. A missing file, and one that is not a JSON object, counts as empty.
/// Any other file that cannot be read, and one that cannot be written, is reported as an assertion; one that
/// the user may not replace is reported to the user. Only the making of the instance is synchronised: call
/// everything else from one thread at a time.
class VELKLIBRARY_EXPORT LibraryFilterManager
{
public:
    /// The instance, which lives until the process ends.
    static LibraryFilterManager& getLibraryFilterManager();
    LibraryFilterManager(const LibraryFilterManager&) = delete;
    LibraryFilterManager& operator=(const LibraryFilterManager&) = delete;

    /// The live list; do not keep the reference across setLibraryFilters() and mergeFilters().
    const std::vector<LibraryFilter>& getLibraryFilters() const noexcept { return libraryFilters_; }
    /// Replaces the list. Nothing is saved.
    void setLibraryFilters(const std::vector<LibraryFilter>& filters);

    /// -1 when no filter is in force.
    long getCurrentFilterId() const noexcept { return currentFilterId_; }
    /// Takes any id, even one that no filter has. Nothing is saved.
    void setCurrentFilterId(long id) noexcept { currentFilterId_ = id; }
    /// Whether the current id is not -1, even if no filter has that id.
    bool hasActiveFilter() const noexcept;

    /// A copy of the first filter of `filters` that has the id; when none has, a filter with the id -1 and
    /// without name and libraries.
    static LibraryFilter getLibraryFilterFromId(long id, const std::vector<LibraryFilter>& filters);

    /// The name of the current filter; the host's text 8930 when there is none. UTF-8.
    std::string getCurrentFilterString() const;
    /// The entries of a menu: the host's text 8930 for no filter, then the names in list order.
    std::vector<std::string> getFilterStrings() const;

    /// The database ids that the current filter lists; empty when there is no such filter.
    std::vector<std::string> getCurrentFilteredDatabases() const;
    /// Whether the current filter lists the library with this id.
    bool isFilteredDatabase(const std::string& databaseId) const;

    /// Whether the forced filter lists the library with this id.
    bool isForcedFilteredDatabase(const std::string& databaseId) const;
    /// Makes `filter` the forced filter, in place of an earlier one; null removes that. A forced filter is
    /// neither listed nor saved.
    void setForcedSystemDBFilter(std::unique_ptr<LibraryFilter> filter) noexcept;
    /// Removes the forced filter.
    void clearForcedSystemDBFilter() noexcept;

    /// Removes the first entry with this id from every filter in the list. Nothing is saved.
    void removeIdFromLibraryFilters(const std::string& databaseId);

    /// The bare name of the filter file.
    fileString getFilterFilename() const;

    /// Writes the list to the filter file. An empty list is not written: the file stays as it is.
    void saveFilters() const;

    /// Adds the list to the filters in the file at `path`, writes that file and takes over what it then holds:
    /// its filters and its current filter (-1 when there was no file). Filters that the file has already (same
    /// name, same libraries) are not added again; the others get the lowest free ids, and a name that is taken
    /// gets a number ("Baths 1"). True when the file was written; otherwise the list and the current filter
    /// stay as they are.
    bool mergeFilters(const fileString& path);

private:
    LibraryFilterManager();

    const LibraryFilter* currentFilter() const;

    long currentFilterId_ = -1;
    std::vector<LibraryFilter> libraryFilters_;
    std::unique_ptr<LibraryFilter> forcedSystemDatabaseFilter_;
    std::atomic<bool> hasFaultToReport_ = false;
};
