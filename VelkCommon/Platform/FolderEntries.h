#pragma once

#include <VelkCommon/Export.h>

#include <string>
#include <system_error>
#include <vector>

namespace Velk::Platform {

struct FolderEntry
{
    std::string name;
    bool folder = false;  ///< a link counts by its target
};

/// What the folder at `path` holds but for "." and "..", in the system's order. On failure `error` says why, and the
/// result is empty. A path that is empty or has a zero byte names nothing. Throws nothing but `std::bad_alloc`. Any
/// thread.
VELKCOMMON_EXPORT std::vector<FolderEntry> folderEntries(const std::string& path, std::error_code& error);

}  // namespace Velk::Platform
