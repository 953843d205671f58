#include "host/installation/Filters.h"

#include "host/installation/DataError.h"
#include "host/support/DisplayText.h"
#include "host/support/FileError.h"
#include "host/support/Folders.h"
#include "host/support/InstallHost.h"
#include "host/support/WholeFile.h"

#include <VelkCommon/Files/FileReaper.h>
#include <VelkCommon/Files/FileUtils.h>
#include <VelkCommon/Files/PathUtils.h>
#include <VelkLibrary/JsonReader.h>
#include <VelkLibrary/LibraryFilterManager.h>

#include <algorithm>
#include <set>

namespace VelkHost {
namespace {

constexpr std::size_t filterFileBytes = std::size_t{128} << 20;  // what the library reads

/// The manager as it was made from its file.
struct OpenedFilters
{
    LibraryFilterManager& manager;
    bool whole;  ///< otherwise filters behind the damage are not in memory, and saving would lose them
};

const OpenedFilters& openedFilters()
{
    static const OpenedFilters opened = [] {
        const std::size_t before = reportedFailures();
        LibraryFilterManager& manager = LibraryFilterManager::getLibraryFilterManager();
        return OpenedFilters{manager, reportedFailures() == before};
    }();
    return opened;
}

fileString filterFile()
{
    return PathUtils::getObject().getCoreLibraryDatabasePath() + openedFilters().manager.getFilterFilename();
}

/// The library takes what is no filter file for one without filters, and would write over it.
void requireFilterFile(const fileString& path)
{
    using Object = json::grammar<char>::object_type;
    if (boost::any_cast<Object>(json::read(readWhole(path, filterFileBytes)).get()) == nullptr)
        throw FileError(path, "is no filter file; mend it, or move it away");
}

std::vector<LibraryFilter>::iterator findNamed(std::vector<LibraryFilter>& filters, const std::string& name)
{
    return std::find_if(filters.begin(), filters.end(),
                        [&](const LibraryFilter& filter) { return filter.getFilterName() == name; });
}

std::vector<LibraryFilter>::iterator requireNamed(std::vector<LibraryFilter>& filters, const std::string& name)
{
    const auto found = findNamed(filters, name);
    if (found != filters.end())
        return found;
    std::set<std::string> names;
    for (const LibraryFilter& filter : filters)
        names.insert(filter.getFilterName());
    std::string advice;
    for (const std::string& known : names)
        advice += "\n  " + printableUtf8(known);
    throw DataError("there is no filter \"" + name + "\"",
                    names.empty() ? "There are none yet; \"velk filter add\" makes one." : "The filters are:" + advice);
}

[[noreturn]] void refuseUnlisted(const std::string& name, const std::string& id)
{
    throw DataError("the filter \"" + name + "\" does not have the library \"" + id + "\"");
}

long freeId(const std::vector<LibraryFilter>& filters)
{
    std::set<long> taken;
    for (const LibraryFilter& filter : filters)
        taken.insert(filter.getFilterId());
    long id = 1;
    while (taken.contains(id))
        ++id;
    return id;
}

void save(LibraryFilterManager& manager)
{
    const fileString path = filterFile();
    // The library never writes an empty list. Without a file there are no filters either.
    if (manager.getLibraryFilters().empty()) {
        if (path.pathExists() && !FileUtils::removePath(path, FileUtils::overrideReadOnly))
            throw FileError(path, "cannot be removed, and would bring the filters back");
        return;
    }
    makeFolder(PathUtils::getObject().getCoreLibraryDatabasePath());
    const std::size_t before = reportedFailures();
    manager.saveFilters();
    if (reportedFailures() != before)
        throw FileError(path, "the filters could not be saved");
}

void save(LibraryFilterManager& manager, const std::vector<LibraryFilter>& filters)
{
    manager.setLibraryFilters(filters);
    save(manager);
}

/// The manager's filters and its current one, put back unless all went well.
class KeptFilters
{
public:
    explicit KeptFilters(LibraryFilterManager& manager)
        : manager_(manager), filters_(manager.getLibraryFilters()), current_(manager.getCurrentFilterId())
    {}
    ~KeptFilters()
    {
        if (keep_)
            return;
        manager_.setLibraryFilters(filters_);
        manager_.setCurrentFilterId(current_);
    }
    KeptFilters(const KeptFilters&) = delete;
    KeptFilters& operator=(const KeptFilters&) = delete;

    std::size_t count() const { return filters_.size(); }
    void letGo() { keep_ = true; }

private:
    LibraryFilterManager& manager_;
    std::vector<LibraryFilter> filters_;
    long current_;
    bool keep_ = false;
};

/// Makes the filters of another file the manager's.
void readInto(LibraryFilterManager& manager, const fileString& path)
{
    // The library reads a file by merging into it, and writes it: so a copy.
    fileString copy;
    copy.generateAsTempName(path.extension());
    const FileReaper reaper(copy);
    if (!FileUtils::copyFile(path, copy, true))
        throw FileError(path, "cannot be read");
    const std::size_t before = reportedFailures();
    manager.setLibraryFilters({});
    if (!manager.mergeFilters(copy) || reportedFailures() != before)
        throw FileError(path, "is damaged; nothing was merged");
}

}  // namespace

LibraryFilterManager& installedFilters()
{
    const fileString path = filterFile();
    if (path.pathExists())
        requireFilterFile(path);
    if (!openedFilters().whole)
        throw FileError(path, "is damaged; mend it, or move it away");
    return openedFilters().manager;
}

LibraryFilter filterNamed(const std::string& name)
{
    std::vector<LibraryFilter> filters = installedFilters().getLibraryFilters();
    return *requireNamed(filters, name);
}

FilterChange addToFilter(const std::string& name, const std::vector<std::string>& ids)
{
    LibraryFilterManager& manager = installedFilters();
    std::vector<LibraryFilter> filters = manager.getLibraryFilters();
    auto filter = findNamed(filters, name);
    const bool made = filter == filters.end();
    if (made)
        filter = filters.insert(filters.end(), LibraryFilter(name, freeId(filters), {}));
    std::vector<std::string> all = filter->getDatabaseIds();
    const std::size_t before = all.size();
    for (const std::string& id : ids)
        if (std::find(all.begin(), all.end(), id) == all.end())
            all.push_back(id);
    const FilterChange change{made, all.size() - before, all.size()};
    filter->setDatabaseIds(std::move(all));
    if (made || change.added > 0)
        save(manager, filters);
    return change;
}

void removeFromFilter(const std::string& name, const std::vector<std::string>& ids)
{
    LibraryFilterManager& manager = installedFilters();
    std::vector<LibraryFilter> filters = manager.getLibraryFilters();
    const auto filter = requireNamed(filters, name);
    for (const std::string& id : ids) {
        const std::size_t before = filter->getDatabaseIds().size();
        // A list may hold an id several times; each call takes one away.
        for (std::size_t i = 0; i < before; ++i)
            filter->removeDatabaseId(id);
        if (filter->getDatabaseIds().size() == before)
            refuseUnlisted(name, id);
    }
    save(manager, filters);
}

bool removeFilter(const std::string& name)
{
    LibraryFilterManager& manager = installedFilters();
    std::vector<LibraryFilter> filters = manager.getLibraryFilters();
    const auto filter = requireNamed(filters, name);
    const bool current = filter->getFilterId() == manager.getCurrentFilterId();
    filters.erase(filter);
    if (current)
        manager.setCurrentFilterId(noFilterId);
    save(manager, filters);
    return current;
}

void setCurrentFilter(long id)
{
    setFilters(std::vector<LibraryFilter>(installedFilters().getLibraryFilters()), id);
}

void setFilters(const std::vector<LibraryFilter>& filters, long currentId)
{
    LibraryFilterManager& manager = installedFilters();
    KeptFilters own(manager);
    manager.setCurrentFilterId(currentId);
    save(manager, filters);
    own.letGo();
}

FilterMerge mergeFilterFile(const fileString& path)
{
    requireFilterFile(path);
    LibraryFilterManager& manager = installedFilters();
    KeptFilters own(manager);
    readInto(manager, path);
    const std::size_t offered = manager.getLibraryFilters().size();
    if (offered == 0)
        return {};
    makeFolder(PathUtils::getObject().getCoreLibraryDatabasePath());
    if (!manager.mergeFilters(filterFile()))
        throw FileError(filterFile(), "the filters could not be saved");
    own.letGo();
    FilterMerge merge;
    const std::vector<LibraryFilter>& all = manager.getLibraryFilters();
    for (std::size_t i = own.count(); i < all.size(); ++i)
        merge.came.push_back(all[i].getFilterName());
    merge.present = offered - merge.came.size();
    return merge;
}

}  // namespace VelkHost
