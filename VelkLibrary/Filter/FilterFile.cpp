#include <VelkLibrary/Filter/FilterFile.h>

#include <VelkCommon/Json/json_writer.h>
#include <VelkLibrary/Data/detail/DataFile.h>
#include <VelkLibrary/Filter/FreeFilterIds.h>

#include <map>
#include <set>
#include <string>
#include <utility>

using Library::DataFileResult;
using Library::detail::findMember;
using Library::detail::JsonArray;
using Library::detail::JsonObject;
using Library::detail::MemberPlace;
using Library::detail::valueOf;

namespace {

constexpr long noFilterId = -1;

// The keys of the file.
constexpr const char* currentFilterKey = "Current_Filter";
constexpr const char* filterKey = "Filter";
constexpr const char* nameKey = "Filter_Name";
constexpr const char* idKey = "Filter_Id";
constexpr const char* databasesKey = "Database_Ids";

// ---- Reading -------------------------------------------------------------------------------------

// A filter without its list of database ids is as faulty as one whose list is something else.
std::vector<std::string> databaseIdsOf(const JsonObject& filter)
{
    const MemberPlace place{filterKey, databasesKey};
    const JsonArray* const array = findMember<JsonArray>(filter, place);
    if (array == nullptr)
        throw Library::detail::WrongMember{place.text(), Library::DataFileValue::List};
    std::vector<std::string> ids;
    for (const auto& element : *array)
        ids.push_back(valueOf<std::string>(element, place));
    return ids;
}

void appendFilter(const JsonObject& object, std::vector<LibraryFilter>& filters)
{
    const std::string* const name = findMember<std::string>(object, {filterKey, nameKey});
    const int* const id = findMember<int>(object, {filterKey, idKey});
    LibraryFilter filter(name != nullptr ? *name : std::string(), id != nullptr ? *id : noFilterId,
                         databaseIdsOf(object));
    if (!filter.getFilterName().empty() && filter.getFilterId() != noFilterId)
        filters.push_back(std::move(filter));
}

// The current id is set as soon as it is known, because it counts even when a fault follows.
void readRoot(const JsonObject& root, FilterFile& file)
{
    if (const int* const id = findMember<int>(root, {{}, currentFilterKey}))
        file.currentId = *id;
    const auto [first, last] = root.equal_range(filterKey);
    for (auto member = first; member != last; ++member)
        appendFilter(valueOf<JsonObject>(member->second, {{}, filterKey}), file.filters);
}

// ---- Writing -------------------------------------------------------------------------------------

json_writer::Object objectOf(const LibraryFilter& filter)
{
    json_writer::Object object;
    object.add_element(nameKey, filter.getFilterName());
    object.add_element(idKey, filter.getFilterId());
    json_writer::Array ids;
    for (const std::string& id : filter.getDatabaseIds())
        ids.add_element(id);
    object.add_element(databasesKey, std::move(ids));
    return object;
}

json_writer::Object documentOf(const FilterFile& file)
{
    json_writer::Object root;
    root.add_element(currentFilterKey, file.currentId);
    for (const LibraryFilter& filter : file.filters)
        root.add_element(filterKey, objectOf(filter));
    return root;
}

// ---- Merging -------------------------------------------------------------------------------------

// Adds filters to a list. The names and contents in use are kept in sets. The search for a free name goes on
// where it last ended, because no name becomes free again.
class FilterMerger
{
public:
    explicit FilterMerger(std::vector<LibraryFilter>& merged) : merged_(merged), ids_(merged, 0)
    {
        for (const LibraryFilter& filter : merged)
            take(filter);
    }

    void add(const LibraryFilter& filter)
    {
        if (contents_.contains({filter.getFilterName(), filter.getDatabaseIds()}))
            return;
        merged_.emplace_back(freeName(filter.getFilterName()), ids_.take(), filter.getDatabaseIds());
        take(merged_.back());
    }

private:
    void take(const LibraryFilter& filter)
    {
        names_.insert(filter.getFilterName());
        contents_.insert({filter.getFilterName(), filter.getDatabaseIds()});
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
    FreeFilterIds ids_;
    std::set<std::string> names_;
    std::set<std::pair<std::string, std::vector<std::string>>> contents_;
    std::map<std::string, long> lastNumbers_;  // the number that each name was given last
};

}  // namespace

DataFileResult FilterFile::read(const fileString& path)
{
    *this = {};
    return Library::detail::readDataFile(path, [this](const JsonObject& root) { readRoot(root, *this); });
}

DataFileResult FilterFile::write(const fileString& path) const
{
    return Library::detail::writeDataFile(path, [this] { return documentOf(*this); });
}

std::size_t FilterFile::merge(const std::vector<LibraryFilter>& others)
{
    const std::size_t before = filters.size();
    FilterMerger merger(filters);
    for (const LibraryFilter& filter : others)
        merger.add(filter);
    return filters.size() - before;
}
