#pragma once

#include <VelkCommon/Export.h>
#include <VelkCommon/Files/fileString.h>

#include <cstdint>
#include <optional>
#include <string>

namespace Velk::detail {

/// What files that come from elsewhere leave free on a disk, in bytes: one that was made to fill it does not.
inline constexpr std::uint64_t diskReserve = std::uint64_t{256} << 20;

/// By how many bytes the file at `path` can grow with the reserve left. No limit when nobody knows: then
/// writing will tell. Any thread.
VELKCOMMON_EXPORT std::uint64_t roomOnDisk(const fileString& path);

/// How much the volume of a folder has free.
using FreeSpaceQuery = std::optional<std::uint64_t> (*)(const std::string& folder) noexcept;
/// Asks `query` from now on, and the system again when it is null. For tests: a disk cannot be filled
/// for them.
VELKCOMMON_EXPORT void setFreeSpaceQuery(FreeSpaceQuery query) noexcept;

}  // namespace Velk::detail
