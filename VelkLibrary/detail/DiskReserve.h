#pragma once

#include <VelkLibrary/Export.h>

#include <VelkCommon/Files/fileString.h>

#include <cstdint>
#include <optional>
#include <string>

namespace Velk::detail {

/// What unpacking leaves free on a disk, in bytes: an archive that was made to fill it does not.
inline constexpr std::uint64_t diskReserve = std::uint64_t{256} << 20;

/// The file at `path` can grow by `bytes` with the reserve left. True as well when nobody knows.
bool leavesDiskReserve(const fileString& path, std::uint64_t bytes);

/// How much the volume of a folder has free.
using FreeSpaceQuery = std::optional<std::uint64_t> (*)(const std::string& folder) noexcept;
/// Asks `query` from now on, and the system again when it is null. For tests: a disk cannot be filled
/// for them.
VELKLIBRARY_EXPORT void setFreeSpaceQuery(FreeSpaceQuery query) noexcept;

}  // namespace Velk::detail
