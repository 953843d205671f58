#pragma once

#include <VelkCommon/Export.h>
#include <VelkCommon/Files/fileString.h>

#include <system_error>
#include <vector>

namespace Velk {

/// A file or folder in a folder.
struct FolderEntry
{
    fileString name;        ///< without the folder
    bool isFolder = false;  ///< a link counts by its target
};

/// What `folder` holds, in the order of the system. On failure the result is empty and `error` says why; otherwise
/// that is clear. Throws nothing but `std::bad_alloc`: the iterators of the standard library may end the program
/// instead. Any thread.
VELKCOMMON_EXPORT std::vector<FolderEntry> folderEntries(const fileString& folder, std::error_code& error);

}  // namespace Velk
