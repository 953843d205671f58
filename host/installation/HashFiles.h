#pragma once

#include <VelkCommon/Files/fileString.h>

#include <cstdint>
#include <map>
#include <string>

/// @file
/// The hash files, from which the module's catalog update takes what to tell the service about an installed library.

namespace VelkHost {

/// A hash that no file has. A library with it is fetched anew, whatever its catalog file holds.
extern const std::string noFilesHash;

/// The hashes of the catalog files of a kind that are there.
std::map<fileString, std::string> readHashes(std::uint32_t kind);

/// Sets the hashes of these catalog files and leaves all others as they are. False when they cannot be written, or a
/// catalog file is not there.
bool setHashes(std::uint32_t kind, const std::map<fileString, std::string>& hashes);

}  // namespace VelkHost
