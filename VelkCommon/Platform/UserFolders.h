#pragma once

/// @file
/// Where the system keeps a user's files. Paths are narrow UTF-8 text. Throws only when memory runs out.
/// Any thread.

#include <VelkCommon/Export.h>

#include <string>

namespace Velk::Platform {

/// The folder below which programs keep this user's data.
VELKCOMMON_EXPORT std::string userDataFolder();
/// The folder for temporary files, which other users may share.
VELKCOMMON_EXPORT std::string temporaryFolder();
/// A name for this user's folder below temporaryFolder(), different for each user that shares it.
VELKCOMMON_EXPORT std::string userFolderName();

}  // namespace Velk::Platform
