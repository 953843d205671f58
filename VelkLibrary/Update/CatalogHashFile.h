#pragma once

/// @file
/// The file that remembers the hashes of installed catalogs, so that they need not be read to be compared
/// with the service's. It is a cache: a hash that is missing there is computed.

#include <VelkCommon/Files/fileString.h>
#include <VelkLibrary/Export.h>
#include <VelkLibrary/Update/CatalogRecord.h>

#include <cstdint>

namespace LibraryCatalogUpdate {

/// The hash file of a kind's folder; empty for an unknown kind.
VELKLIBRARY_EXPORT fileString catalogHashFile(std::uint32_t kind);

/// Reads a hash file into the table: the hashes of the catalogs that lie beside it. Skips every line that is
/// not a plain file name, ":" and a hash, and the whole file when it cannot be read or exceeds 16 MiB.
VELKLIBRARY_EXPORT void readCatalogHashFile(const fileString& hashFile, CatalogTable& catalogs,
                                            std::uint32_t kind) noexcept;

/// Rewrites the hash file in a kind's folder from the records of that kind. A failure is not reported: it only
/// costs the next run the time to compute the hashes.
VELKLIBRARY_EXPORT void writeCatalogHashFile(const CatalogTable& catalogs, std::uint32_t kind) noexcept;

}  // namespace LibraryCatalogUpdate
