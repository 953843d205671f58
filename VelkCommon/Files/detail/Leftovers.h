#pragma once

#include <VelkCommon/Files/fileString.h>

#include <string>

/// @file
/// The names of files and folders that exist only while something is written. What a killed process leaves behind
/// is known by them.

namespace Velk::detail {

/// A fresh name for a file or folder that will be renamed or removed. It has the same length for every purpose, so that
/// it never becomes too long, and no search by extension takes it for a document. Throws std::runtime_error when the
/// system gives no random numbers.
fileString temporaryName();

/// Whether a name has the form of temporaryName().
bool isTemporaryName(const std::string& name);

/// The lock file of a temporary folder, which lies beside it.
fileString lockOfFolder(const fileString& temporaryFolder);

/// Whether a name has the form of such a lock file's name.
bool isLockOfFolder(const std::string& name);

/// The temporary folder whose lock file this is.
fileString folderOfLock(const fileString& lockFile);

}  // namespace Velk::detail
