#include <VelkLibrary/LibraryFilterManager.h>

#include <VelkCommon/Files/FileUtils.h>
#include <VelkCommon/Files/PathUtils.h>
#include <VelkCommon/Json/json_writer.h>
#include <VelkCommon/Reporting/Assertions.h>
#include <VelkCommon/Text/StringConvert.h>
#include <VelkCommon/Text/StringUtils.h>
#include <VelkLibrary/Data/detail/DataFile.h>

#include <algorithm>
#include <map>
#include <set>
#include <string_view>
#include <utility>

using Library::detail::findMember;
using Library::detail::JsonArray;
using Library::detail::JsonObject;
using Library::detail::valueOf;

namespace {

constexpr const char* sourceName = "LibraryFilterManager";
constexpr std::size_t readLine = 183;
constexpr std::size_t unwritableLine = 226;
constexpr std::size_t writeLine = 231;
constexpr std::size_t mergeLine = 292;

constexpr long noFilter = -1;
constexpr unsigned int noFilterText = 8930;

// The keys of the file.
constexpr const char* currentFilterKey = "Current_Filter";
constexpr const char* filterKey = "Filter";
constexpr const char* nameKey = "Filter_Name";
constexpr const char* idKey = "Filter_Id";
constexpr const char* databasesKey = "Database_Ids";

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

// ---- The file ------------------------------------------------------------------------------------

// A filter without its list of databases is as wrong as one whose list is no list.
std::vector<std::string> databaseIdsOf(const JsonObject& filter)
{
    const JsonArray* const array = findMember<JsonArray>(filter, databasesKey);
    if (array == nullptr)
        throw boost::bad_any_cast();
    std::vector<std::string> ids;
    for (const auto& element : *array)
        ids.push_back(valueOf<std::string>(element));
    return ids;
}

void appendFilter(const JsonObject& object, std::vector<LibraryFilter>& filters)
{
    const std::string* const name = findMember<std::string>(object, nameKey);
    const int* const id = findMember<int>(object, idKey);
    LibraryFilter filter(name != nullptr ? *name : std::string(), id != nullptr ? *id : noFilter,
                         databaseIdsOf(object));
    if (!filter.getFilterName().empty() && filter.getFilterId() != noFilter)
        filters.push_back(std::move(filter));
}

// `currentId` is set as soon as it is known, because it counts when a fault comes later.
void readFilters(const fileString& path, std::vector<LibraryFilter>& filters, long& currentId)
{
    const auto root = Library::detail::readJsonFile(path);
    const auto* const object = boost::any_cast<JsonObject>(root.get());
    if (object == nullptr)
        return;
    if (const int* const id = findMember<int>(*object, currentFilterKey))
        currentId = *id;
    const auto [first, last] = object->equal_range(filterKey);
    for (auto member = first; member != last; ++member)
        appendFilter(valueOf<JsonObject>(member->second), filters);
}

json_writer::Object documentOf(const std::vector<LibraryFilter>& filters, long currentId)
{
    json_writer::Object root;
    root.add_element(currentFilterKey, currentId);
    for (const LibraryFilter& filter : filters) {
        json_writer::Object object;
        object.add_element(nameKey, filter.getFilterName());
        object.add_element(idKey, filter.getFilterId());
        json_writer::Array ids;
        for (const std::string& id : filter.getDatabaseIds())
            ids.add_element(id);
        object.add_element(databasesKey, std::move(ids));
        root.add_element(filterKey, std::move(object));
    }
    return root;
}

// ---- Merging -------------------------------------------------------------------------------------

// Adds filters to a list. What is taken is kept in sets, and the search for what is free goes on where
// it ended: nothing becomes free again.
class FilterMerger
{
public:
    explicit FilterMerger(std::vector<LibraryFilter>& merged) : merged_(merged)
    {
        for (const LibraryFilter& filter : merged)
            take(filter);
    }

    void add(const LibraryFilter& filter)
    {
        if (contents_.contains({filter.getFilterName(), filter.getDatabaseIds()}))
            return;
        merged_.emplace_back(freeName(filter.getFilterName()), freeId(), filter.getDatabaseIds());
        take(merged_.back());
    }

private:
    void take(const LibraryFilter& filter)
    {
        ids_.insert(filter.getFilterId());
        names_.insert(filter.getFilterName());
        contents_.insert({filter.getFilterName(), filter.getDatabaseIds()});
    }

    long freeId()
    {
        while (ids_.contains(nextId_))
            ++nextId_;
        return nextId_;
    }

    std::string freeName(const std::string& name)
    {
        if (!names_.contains(name))
            return name;
        for (long& number = lastNumbers_[name];;) {
            std::string candidate = name + " " + std::to_string(++number);
            if (!names_.contains(candidate))
                return candidate;
        }
    }

    std::vector<LibraryFilter>& merged_;
    std::set<long> ids_;
    std::set<std::string> names_;
    std::set<std::pair<std::string, std::vector<std::string>>> contents_;
    std::map<std::string, long> lastNumbers_;  // the number that was last given to a name
    long nextId_ = 0;
};

}  // namespace

// ---- The instance --------------------------------------------------------------------------------

LibraryFilterManager& LibraryFilterManager::getLibraryFilterManager()
{
    static LibraryFilterManager manager;
    // Not while it is made: a host that is told may ask for it.
    if (manager.hasFaultToReport_.exchange(false))
        reportReadFault();
    return manager;
}

LibraryFilterManager::LibraryFilterManager()
{
    hasFaultToReport_ = !readFilterFile(filterFile(getFilterFilename()), libraryFilters_, currentFilterId_);
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
    return filter != nullptr ? filter->getFilterName() : StringUtils::loadString(noFilterText);
}

std::vector<std::string> LibraryFilterManager::getFilterStrings() const
{
    std::vector<std::string> strings{StringUtils::loadString(noFilterText)};
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
    // The id may stand in one of the filters.
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
        writeFilterFile(filterFile(getFilterFilename()), libraryFilters_, currentFilterId_);
}

bool LibraryFilterManager::mergeFilters(const fileString& path)
{
    try {
        std::vector<LibraryFilter> merged;
        long fileCurrentId = noFilter;
        if (!readFilterFile(path, merged, fileCurrentId))
            reportReadFault();
        FilterMerger merger(merged);
        for (const LibraryFilter& filter : libraryFilters_)
            merger.add(filter);
        if (!writeFilterFile(path, merged, fileCurrentId))
            return false;
        libraryFilters_ = std::move(merged);
        currentFilterId_ = fileCurrentId;
        return true;
    } catch (...) {
        Velk::assertionFailed(sourceName, mergeLine, "exception thrown in LibraryFilterManager::mergeFilters");
        return false;
    }
}

// What stands before a fault counts; false when there is one.
bool LibraryFilterManager::readFilterFile(const fileString& path, std::vector<LibraryFilter>& filters, long& currentId)
{
    if (!path.pathExists())
        return true;
    try {
        readFilters(path, filters, currentId);
        return true;
    } catch (...) {
        return false;
    }
}

void LibraryFilterManager::reportReadFault()
{
    Velk::assertionFailed(sourceName, readLine, "Error Parsing Library Filter Data File");
}

bool LibraryFilterManager::writeFilterFile(const fileString& path, const std::vector<LibraryFilter>& filters,
                                           long currentId)
{
    try {
        const json_writer::Object root = documentOf(filters, currentId);
        if (!Library::detail::isWritableOrReport(path, sourceName, unwritableLine))
            return false;
        json_writer::write_file(StringConvert::toStdUtf8String(path), root);
        FileUtils::setFilePermEveryoneFullAccess(path);
        return true;
    } catch (...) {
        Velk::assertionFailed(sourceName, writeLine, "Error Writing Library Filter Data File");
        return false;
    }
}

const LibraryFilter* LibraryFilterManager::currentFilter() const
{
    return hasActiveFilter() ? findFilter(currentFilterId_, libraryFilters_) : nullptr;
}
