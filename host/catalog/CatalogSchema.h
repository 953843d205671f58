#pragma once

#include "host/catalog/CatalogFormat.h"
#include "host/catalog/Database.h"

#include <cstdint>

/// @file
/// The tables of a catalog file (docs/catalog-file.md), and the checks that a file has them.

namespace VelkHost {

constexpr std::uint32_t catalogApplicationId = 0x56454C4B;  // "VELK"

/// What the beginning of a catalog file tells.
struct CatalogHeader
{
    std::uint64_t fileBytes = 0;  ///< the size of the file
    CatalogFormat format = newestCatalogFormat;
};

/// Makes the tables of that format in an empty database and marks it as a catalog.
void createSchema(Database& database, CatalogFormat format);

/// Looks at the first 100 bytes of the file, before SQLite does. Throws FileError for a file that is not
/// a catalog file, was made by a newer version, or is shorter than it says.
CatalogHeader checkHeader(const fileString& path);

/// Throws FileError unless the database holds exactly the tables of that format: real tables with
/// the expected columns, no views, triggers, virtual tables or computed columns.
void checkSchema(Database& database, CatalogFormat format);

}  // namespace VelkHost
