// Reads any bytes as a filter file. Whatever they are, the filters that were read are written as a file that reads
// back the same, in reverse.
#include <VelkCommon/HostServices.h>
#include <VelkCommon/Text/StringConvert.h>
#include <VelkLibrary/LibraryFilterManager.h>

#include "Check.h"
#include "InputFile.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

namespace {

void installSilentHost()
{
    Velk::HostServices host;
    host.assertionReportsEnabled = [] { return false; };
    Velk::installHost(std::move(host));
}

bool isReverse(const std::vector<LibraryFilter>& left, const std::vector<LibraryFilter>& right)
{
    const auto isEqual = [](const LibraryFilter& one, const LibraryFilter& other) {
        return one.getFilterName() == other.getFilterName() && one.getFilterId() == other.getFilterId() &&
               one.getDatabaseIds() == other.getDatabaseIds();
    };
    return std::equal(left.begin(), left.end(), right.rbegin(), right.rend(), isEqual);
}

bool isText(const LibraryFilter& filter)
{
    const std::vector<std::string>& ids = filter.getDatabaseIds();
    return StringConvert::isUtf8(filter.getFilterName()) &&
           std::all_of(ids.begin(), ids.end(), [](const std::string& id) { return StringConvert::isUtf8(id); });
}

// Merged into an empty manager, the file's filters are all that the manager has.
std::vector<LibraryFilter> load(LibraryFilterManager& manager, const fileString& path)
{
    manager.setLibraryFilters({});
    fuzz::check(manager.mergeFilters(path), "the file is written");
    return manager.getLibraryFilters();
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    static const fuzz::InputFile file(".json");
    static const bool installed = (installSilentHost(), true);
    static_cast<void>(installed);
    LibraryFilterManager& manager = LibraryFilterManager::getLibraryFilterManager();
    const fileString path = file.write(data, size);
    std::vector<LibraryFilter> first = load(manager, path);
    // Bytes that are not text are replaced when the file is first written.
    if (!std::all_of(first.begin(), first.end(), isText))
        first = load(manager, path);
    const long current = manager.getCurrentFilterId();
    for (const LibraryFilter& filter : first)
        fuzz::check(!filter.getFilterName().empty() && filter.getFilterId() != -1, "filters have names and ids");
    const std::vector<LibraryFilter> second = load(manager, path);
    fuzz::check(isReverse(first, second), "the list stands in the file in reverse");
    fuzz::check(manager.getCurrentFilterId() == current, "the current id stays");
    return 0;
}
