#pragma once

#include <VelkCommon/Export.h>

#include <string>

namespace Velk::Platform {

/// Deletes the folder and all below it without following links, not even one that is put in place
/// while it runs; a link at `path` itself is only unlinked. Goes on after a failure; false when
/// anything is left. Needs a fixed number of descriptors and no stack, however deep the tree is. Paths,
/// threads and failures as in FileSystem.h.
VELKCOMMON_EXPORT bool removeTree(const std::string& path, bool overrideReadOnly);

}  // namespace Velk::Platform
