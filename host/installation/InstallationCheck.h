#pragma once

#include "host/installation/InstalledRecord.h"

#include <cstdint>
#include <set>

namespace VelkHost {

/// The path of a recorded library's catalog file.
fileString catalogPath(const InstalledRecord::Key& key);

/// Compares the recorded libraries of a kind with the disk: their sizes and times, and their contents where those
/// differ, or all contents with `verify`. Prepares the kind's hash file, so that the next run of the catalog update
/// fetches those that are missing, changed or not what their tag says, and trusts the tags of the others. Returns the
/// former.
std::set<InstalledRecord::Key> findBrokenLibraries(InstalledRecord& record, std::uint32_t kind, bool verify);

}  // namespace VelkHost
