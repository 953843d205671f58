#include <VelkLibrary/LibraryFilterManager.h>

#include <VelkCommon/Files/PathUtils.h>
#include <VelkCommon/Reporting/Assertions.h>
#include <VelkCommon/Text/StringUtils.h>
#include <VelkCommon/Text/TextNumbers.h>
#include <VelkLibrary/Data/detail/DataFile.h>
#include <VelkLibrary/Filter/FilterFile.h>
#include <VelkLibrary/detail/ReportPlaces.h>

#include <algorithm>
#include <utility>

namespace places = Library::detail::places;

namespace {

constexpr long noFilter = -1;

fileString filterFile(const fileString& name)
{
    return PathUtils::getObject().getCoreLibraryDatabasePath() + name;
}

bool lists(const LibraryFilter* filter, const std::string& databaseId)
{
    if (filter == nullptr)
        return false;
    const std::vector<std::string>& ids = filter->getDatabaseIds();
    return std::find(ids.begin(), ids.end(), databaseId) != ids.end();
}

const LibraryFilter* findFilter(long id, const std::vector<LibraryFilter>& filters)
{
    const auto hasId = [id](const LibraryFilter& filter) { return filter.getFilterId() == id; };
    const auto found = std::find_if(filters.begin(), filters.end(), hasId);
    return found == filters.end() ? nullptr : &*found;
}

// ---- Reports ---------------------------------------------------------------------------------------

// A missing file, or one of another kind, holds no filters; there is nothing to report.
bool isReported(const Library::DataFileResult& reading)
{
    using enum Library::DataFileFault;
    return !reading && reading.fault != Missing && reading.fault != NotAnObject;
}

void reportReadFault()
{
    Velk::assertionFailed(places::filterFileDamaged, "Error Parsing Library Filter Data File");
}

void reportWriteFault()
{
    Velk::assertionFailed(places::filterFileNotWritten, "Error Writing Library Filter Data File");
}

// `content` makes the value to write. It is called here because it may run out of memory, like the rest.
template <typename Content>
bool writeOrReport(const fileString& path, Content content)
{
    try {
        const FilterFile& file = content();
        const Library::DataFileResult writing = file.write(path);
        if (writing.fault == Library::DataFileFault::MayNotBeWritten)
            Library::detail::reportUnwritable(path, places::filterFileUnwritable);
        else if (!writing)
            reportWriteFault();
        return static_cast<bool>(writing);
    } catch (...) {  // the file stays as it was
        reportWriteFault();
        return false;
    }
}

}  // namespace

// ---- The instance --------------------------------------------------------------------------------

LibraryFilterManager& LibraryFilterManager::getLibraryFilterManager()
{
    static LibraryFilterManager manager;
    // This waits until the instance is made, because a host that is told may ask for the manager.
    if (manager.hasFaultToReport_.exchange(false))
        reportReadFault();
    return manager;
}

LibraryFilterManager::LibraryFilterManager()
{
    FilterFile file;
    hasFaultToReport_ = isReported(file.read(filterFile(getFilterFilename())));
    libraryFilters_ = std::move(file.filters);
    currentFilterId_ = file.currentId;
}

// ---- The list and what is in force ---------------------------------------------------------------

void LibraryFilterManager::setLibraryFilters(const std::vector<LibraryFilter>& filters)
{
    libraryFilters_ = filters;
}

bool LibraryFilterManager::hasActiveFilter() const noexcept
{
    return currentFilterId_ != noFilter;
}

LibraryFilter LibraryFilterManager::getLibraryFilterFromId(long id, const std::vector<LibraryFilter>& filters)
{
    const LibraryFilter* const filter = findFilter(id, filters);
    return filter != nullptr ? *filter : LibraryFilter({}, noFilter, {});
}

std::string LibraryFilterManager::getCurrentFilterString() const
{
    const LibraryFilter* const filter = currentFilter();
    return filter != nullptr ? filter->getFilterName() : StringUtils::loadString(Velk::textNumbers::noFilter);
}

std::vector<std::string> LibraryFilterManager::getFilterStrings() const
{
    std::vector<std::string> strings{StringUtils::loadString(Velk::textNumbers::noFilter)};
    for (const LibraryFilter& filter : libraryFilters_)
        strings.push_back(filter.getFilterName());
    return strings;
}

std::vector<std::string> LibraryFilterManager::getCurrentFilteredDatabases() const
{
    return getLibraryFilterFromId(currentFilterId_, libraryFilters_).getDatabaseIds();
}

bool LibraryFilterManager::isFilteredDatabase(const std::string& databaseId) const
{
    return lists(currentFilter(), databaseId);
}

bool LibraryFilterManager::isForcedFilteredDatabase(const std::string& databaseId) const
{
    return lists(forcedSystemDatabaseFilter_.get(), databaseId);
}

void LibraryFilterManager::setForcedSystemDBFilter(std::unique_ptr<LibraryFilter> filter) noexcept
{
    forcedSystemDatabaseFilter_ = std::move(filter);
}

void LibraryFilterManager::clearForcedSystemDBFilter() noexcept
{
    forcedSystemDatabaseFilter_.reset();
}

void LibraryFilterManager::removeIdFromLibraryFilters(const std::string& databaseId)
{
    // A copy, because `databaseId` may refer to an entry of one of the filters.
    const std::string removed = databaseId;  // NOLINT(performance-unnecessary-copy-initialization)
    for (LibraryFilter& filter : libraryFilters_)
        filter.removeDatabaseId(removed);
}

// ---- Files ---------------------------------------------------------------------------------------

fileString LibraryFilterManager::getFilterFilename() const
{
    return std::u32string(Library::detail::filterFileName);
}

void LibraryFilterManager::saveFilters() const
{
    if (!libraryFilters_.empty())
        writeOrReport(filterFile(getFilterFilename()), [this] {
            return FilterFile{currentFilterId_, libraryFilters_};
        });
}

bool LibraryFilterManager::mergeFilters(const fileString& path)
{
    try {
        FilterFile merged;
        if (isReported(merged.read(path)))
            reportReadFault();
        merged.merge(libraryFilters_);
        if (!writeOrReport(path, [&]() -> const FilterFile& { return merged; }))
            return false;
        libraryFilters_ = std::move(merged.filters);
        currentFilterId_ = merged.currentId;
        return true;
    } catch (...) {
        Velk::assertionFailed(places::filtersNotMerged, "exception thrown in LibraryFilterManager::mergeFilters");
        return false;
    }
}

const LibraryFilter* LibraryFilterManager::currentFilter() const
{
    return hasActiveFilter() ? findFilter(currentFilterId_, libraryFilters_) : nullptr;
}
