#include <VelkCommon/Files/detail/DiskReserve.h>

#include <VelkCommon/Files/detail/Folders.h>
#include <VelkCommon/Platform/FileSystem.h>

#include <algorithm>
#include <atomic>

namespace Velk::detail {
namespace {

std::atomic<FreeSpaceQuery> freeSpaceQuery = nullptr;

}  // namespace

std::uint64_t roomOnDisk(const fileString& path)
{
    const FreeSpaceQuery query = freeSpaceQuery;
    const std::string folder = folderOf(path);
    const auto free = query != nullptr ? query(folder) : Platform::freeSpace(folder);
    return free ? *free - std::min(*free, diskReserve) : UINT64_MAX;
}

void setFreeSpaceQuery(FreeSpaceQuery query) noexcept
{
    freeSpaceQuery = query;
}

}  // namespace Velk::detail
