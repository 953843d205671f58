#include "host/installation/Filters.h"

#include "host/installation/DataError.h"
#include "host/installation/DataLock.h"
#include "host/support/DisplayText.h"
#include "host/support/FileError.h"
#include "host/support/Folders.h"
#include "host/support/WholeFile.h"

#include <VelkCommon/Files/FileUtils.h>
#include <VelkCommon/Files/PathUtils.h>
#include <VelkCommon/Files/WorkFolder.h>
#include <VelkLibrary/Filter/FilterFile.h>
#include <VelkLibrary/Filter/FreeFilterIds.h>
#include <VelkLibrary/LibraryFilterManager.h>

#include <algorithm>
#include <set>

namespace VelkHost {
namespace {

using Library::DataFileFault;

constexpr std::size_t filterFileBytes = std::size_t{128} << 20;  // the longest file that the module reads

/// The manager treats a file that it cannot read as one with fewer filters, and would write over it: so the file
/// is read as a value first.
FilterFile readFilterFile(const fileString& path, const Reason& ifDamaged)
{
    requireFile(path, filterFileBytes);
    FilterFile file;
    const DataFileFault fault = file.read(path).fault;
    if (fault == DataFileFault::Unreadable)
        throw FileError(path, "cannot be read");
    if (fault == DataFileFault::NotAnObject)
        throw FileError(path, "is not a filter file; repair it, or move it away");
    if (fault == DataFileFault::WrongMember)
        throw FileError(path, ifDamaged);
    return file;
}

fileString installedFile()
{
    return PathUtils::getObject().getCoreLibraryDatabasePath() +
           LibraryFilterManager::getLibraryFilterManager().getFilterFilename();
}

FilterFile readInstalled()
{
    const fileString path = installedFile();
    return path.pathExists() ? readFilterFile(path, "is damaged; repair it, or move it away") : FilterFile();
}

/// Whoever changes the filters holds this from reading to writing.
FileLock lockFilters()
{
    const fileString path = installedFile();
    FileLock lock = lockFile(path, "changing the filters");
    WorkFolder::removeLeftovers(path.parentPath());
    return lock;
}

LibraryFilterManager& adopt(const FilterFile& file)
{
    LibraryFilterManager& manager = LibraryFilterManager::getLibraryFilterManager();
    manager.setLibraryFilters(file.filters);
    manager.setCurrentFilterId(file.currentId);
    return manager;
}

/// Reading a file turns the order of its filters round; they are written in reverse, so the order lasts from one
/// change to the next.
FilterFile asWritten(FilterFile file)
{
    std::reverse(file.filters.begin(), file.filters.end());
    return file;
}

/// The last filter takes the file with it: without filters there is no file.
void removeInstalled()
{
    const fileString path = installedFile();
    if (path.pathExists() && !FileUtils::removePath(path, FileUtils::overrideReadOnly))
        throw FileError(path, "cannot be removed; left there, it would bring the filters back");
}

/// Writes the installation's filters, and only then gives them to the manager.
void save(const FilterFile& file)
{
    if (file.filters.empty()) {
        removeInstalled();
    } else {
        makeFolder(PathUtils::getObject().getCoreLibraryDatabasePath());
        if (!asWritten(file).write(installedFile()))
            throw FileError(installedFile(), "the filters could not be saved");
    }
    adopt(file);
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

bool isSameId(const LibraryFilter& one, const LibraryFilter& other)
{
    return one.getFilterId() == other.getFilterId();
}

bool isSame(const LibraryFilter& one, const LibraryFilter& other)
{
    return isSameId(one, other) && one.getFilterName() == other.getFilterName() &&
           one.getDatabaseIds() == other.getDatabaseIds();
}

const LibraryFilter* findId(const std::vector<LibraryFilter>& filters, long id)
{
    const auto found = std::find_if(filters.begin(), filters.end(),
                                    [&](const LibraryFilter& filter) { return filter.getFilterId() == id; });
    return found == filters.end() ? nullptr : &*found;
}

void changeFilter(FilterFile& file, const LibraryFilter& changed)
{
    for (LibraryFilter& filter : file.filters)
        if (isSameId(filter, changed)) {
            filter = changed;
            return;
        }
    file.filters.push_back(changed);
}

/// Adds a filter, under another id when somebody has used its own meanwhile; `currentId` follows it.
void addFilter(FilterFile& file, LibraryFilter added, long& currentId)
{
    if (findId(file.filters, added.getFilterId()) != nullptr) {
        const long id = FreeFilterIds(file.filters, 1).take();
        if (currentId == added.getFilterId())
            currentId = id;
        added = LibraryFilter(added.getFilterName(), id, added.getDatabaseIds());
    }
    file.filters.push_back(std::move(added));
}

[[noreturn]] void refuseUnlisted(const std::string& name, const std::string& id)
{
    throw DataError("the filter \"" + name + "\" does not have the library \"" + id + "\"");
}

}  // namespace

LibraryFilterManager& installedFilters()
{
    return adopt(readInstalled());
}

LibraryFilter filterNamed(const std::string& name)
{
    FilterFile file = readInstalled();
    return *requireNamed(file.filters, name);
}

FilterChange addToFilter(const std::string& name, const std::vector<std::string>& ids)
{
    const FileLock lock = lockFilters();
    FilterFile file = readInstalled();
    auto filter = findNamed(file.filters, name);
    const bool made = filter == file.filters.end();
    if (made)
        filter = file.filters.insert(filter, LibraryFilter(name, FreeFilterIds(file.filters, 1).take(), {}));
    std::vector<std::string> all = filter->getDatabaseIds();
    const std::size_t before = all.size();
    for (const std::string& id : ids)
        if (std::find(all.begin(), all.end(), id) == all.end())
            all.push_back(id);
    const FilterChange change{made, all.size() - before, all.size()};
    filter->setDatabaseIds(std::move(all));
    if (made || change.added > 0)
        save(file);
    return change;
}

void removeFromFilter(const std::string& name, const std::vector<std::string>& ids)
{
    const FileLock lock = lockFilters();
    FilterFile file = readInstalled();
    const auto filter = requireNamed(file.filters, name);
    for (const std::string& id : ids) {
        std::vector<std::string> left = filter->getDatabaseIds();
        if (std::erase(left, id) == 0)
            refuseUnlisted(name, id);
        filter->setDatabaseIds(std::move(left));
    }
    save(file);
}

bool removeFilter(const std::string& name)
{
    const FileLock lock = lockFilters();
    FilterFile file = readInstalled();
    const auto filter = requireNamed(file.filters, name);
    const bool current = filter->getFilterId() == file.currentId;
    file.filters.erase(filter);
    if (current)
        file.currentId = noFilterId;
    save(file);
    return current;
}

void setCurrentFilter(long id)
{
    const FileLock lock = lockFilters();
    FilterFile file = readInstalled();
    file.currentId = id;
    save(file);
}

void applyFilterChanges(const FilterSet& before, const FilterSet& after)
{
    const FileLock lock = lockFilters();
    FilterFile file = readInstalled();
    long currentId = after.currentId;
    for (const LibraryFilter& old : before.filters)
        if (findId(after.filters, old.getFilterId()) == nullptr)
            std::erase_if(file.filters, [&](const LibraryFilter& filter) { return isSameId(filter, old); });
    for (const LibraryFilter& filter : after.filters) {
        const LibraryFilter* const old = findId(before.filters, filter.getFilterId());
        if (old == nullptr)
            addFilter(file, filter, currentId);
        else if (!isSame(*old, filter))
            changeFilter(file, filter);
    }
    if (currentId != before.currentId)
        file.currentId = currentId;
    save(file);
}

FilterMerge mergeFilterFile(const fileString& path)
{
    const FilterFile offered = readFilterFile(path, "is damaged; nothing was merged");
    const FileLock lock = lockFilters();
    FilterFile file = readInstalled();
    FilterMerge merge;
    const std::size_t added = file.merge(offered.filters);
    for (std::size_t i = file.filters.size() - added; i < file.filters.size(); ++i)
        merge.came.push_back(file.filters[i].getFilterName());
    merge.present = offered.filters.size() - added;
    if (added > 0)
        save(file);
    return merge;
}

}  // namespace VelkHost
