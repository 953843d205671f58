#include <VelkLibrary/LibraryFilter.h>

#include <algorithm>
#include <utility>

LibraryFilter::LibraryFilter(std::string name, long id, std::vector<std::string> databaseIds)
    : filterName_(std::move(name)), filterId_(id), databaseIds_(std::move(databaseIds))
{}

void LibraryFilter::setFilterName(std::string name)
{
    filterName_ = std::move(name);
}

void LibraryFilter::setDatabaseIds(std::vector<std::string> ids)
{
    databaseIds_ = std::move(ids);
}

void LibraryFilter::removeDatabaseId(std::string_view id)
{
    const auto found = std::find(databaseIds_.begin(), databaseIds_.end(), id);
    if (found != databaseIds_.end())
        databaseIds_.erase(found);
}
