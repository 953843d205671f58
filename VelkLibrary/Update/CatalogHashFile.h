#pragma once

/// @file
/// The file that remembers the hashes of installed catalogs, so that they need not be read to be compared
/// with the service's. A cache: what is missing in it is computed.

#include <VelkCommon/Files/fileString.h>
#include <VelkLibrary/Export.h>
#include <VelkLibrary/Update/CatalogRecord.h>

#include <cstdint>

namespace LibraryCatalogUpdate {

/// The hash file of a kind's folder; empty for an unknown kind.
VELKLIBRARY_EXPORT fileString catalogHashFile(std::uint32_t kind);

/// Takes the hashes of catalogs that lie beside the hash file into the table. Lines that are not a plain
/// file name, ":" and a hash are left out; so is a whole file that cannot be read or exceeds 16 MiB.
/// Nothing throws.
VELKLIBRARY_EXPORT void readCatalogHashFile(const fileString& hashFile, CatalogTable& catalogs,
                                            std::uint32_t kind) noexcept;

/// Writes the hash file of a kind's folder anew from the records of that kind. Failures are swallowed.
VELKLIBRARY_EXPORT void writeCatalogHashFile(const CatalogTable& catalogs, std::uint32_t kind) noexcept;

}  // namespace LibraryCatalogUpdate
