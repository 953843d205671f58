#pragma once

#include "host/catalog/CatalogFormat.h"

#include <VelkCommon/Files/fileString.h>

#include <string>

namespace VelkHost {

/// What a publisher must know about a packed library (".calibz").
struct PackedCatalog
{
    CatalogFormat format = newestCatalogFormat;  ///< of the ".calib" inside
    std::string catalogHash;                     ///< SHA-1 of the ".calib" inside, which is what an installation holds
    std::string companions;                      ///< a digest of the names and contents of all other entries
};

/// Reads every entry to its end, and the catalog file as a browser would. Throws FileError for an archive that
/// is damaged, or that does not hold exactly one readable catalog file.
PackedCatalog inspectPackedCatalog(const fileString& path);

/// Reads every entry of a zip archive to its end. Throws FileError for a damaged one.
void checkArchive(const fileString& path);

}  // namespace VelkHost
