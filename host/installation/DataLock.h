#pragma once

#include <VelkCommon/Files/FileLock.h>
#include <VelkCommon/Files/fileString.h>

#include <stop_token>
#include <string>

/// @file
/// Who may change an installation's shared files. Whoever reads such a file, changes what was read and writes it back
/// holds its lock meanwhile, in every program; readers need none. A lock file has the name of its file with ".lock"
/// behind it, and exists only while somebody holds it.

namespace VelkHost {

/// Takes the lock of a shared file, whose folder is made when missing. Waits up to ten seconds for others. Throws
/// DataError when one of them still has it then. The lock is not held where the system has none.
FileLock lockFile(const fileString& file, const std::string& purpose, const std::stop_token& stop = {});

/// Takes the lock of all updates of the installation, so that they take turns.
FileLock lockUpdates(const std::string& purpose, const std::stop_token& stop = {});

}  // namespace VelkHost
