#pragma once

#include <VelkCommon/Export.h>
#include <VelkCommon/Files/fileString.h>

#include <cstdint>
#include <optional>
#include <string>

namespace Velk::detail {

/// How many bytes files from elsewhere must leave free on a disk, so that a file made to fill the disk cannot.
inline constexpr std::uint64_t diskReserve = std::uint64_t{256} << 20;

/// By how many bytes the file at `path` can grow without using the reserve. Unlimited when the free space is
/// unknown: then the write itself fails when the disk is full. Any thread.
VELKCOMMON_EXPORT std::uint64_t roomOnDisk(const fileString& path);

/// Returns how many bytes are free on the volume of a folder.
using FreeSpaceQuery = std::optional<std::uint64_t> (*)(const std::string& folder) noexcept;
/// Makes roomOnDisk() ask `query` from now on, or the system again when it is null. For tests, which cannot
/// fill a disk.
VELKCOMMON_EXPORT void setFreeSpaceQuery(FreeSpaceQuery query) noexcept;

}  // namespace Velk::detail
