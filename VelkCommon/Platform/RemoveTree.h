#pragma once

#include <VelkCommon/Export.h>

#include <string>

namespace Velk::Platform {

/// Deletes the folder and everything below it. Never follows a link, not even one that is put in place
/// meanwhile; a link at `path` itself is only unlinked. Continues after a failure; false when anything is
/// left. Uses a fixed number of descriptors and does not recurse, however deep the tree is. Paths, threads
/// and failures as in FileSystem.h.
VELKCOMMON_EXPORT bool removeTree(const std::string& path, bool overrideReadOnly);

}  // namespace Velk::Platform
