#include <VelkLibrary/detail/DiskReserve.h>

#include <VelkCommon/Platform/Platform.h>

#include <atomic>

namespace Velk::detail {
namespace {

std::atomic<FreeSpaceQuery> freeSpaceQuery = nullptr;

}  // namespace

bool leavesDiskReserve(const fileString& path, std::uint64_t bytes)
{
    const FreeSpaceQuery query = freeSpaceQuery;
    const fileString parent = path.parentPathWithSeparator();
    const std::string folder = parent.empty() ? "." : parent.utf8();
    const auto available = query != nullptr ? query(folder) : Platform::freeSpace(folder);
    return !available || (*available >= diskReserve && *available - diskReserve >= bytes);
}

void setFreeSpaceQuery(FreeSpaceQuery query) noexcept
{
    freeSpaceQuery = query;
}

}  // namespace Velk::detail
