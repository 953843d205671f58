#pragma once

#include "host/catalog/Database.h"

#include <cstdint>

/// @file
/// The tables of a catalog file (docs/catalog-file.md), and the checks that a file has them.

namespace VelkHost {

constexpr std::uint32_t catalogApplicationId = 0x56454C4B;  // "VELK"
constexpr std::uint32_t catalogSchemaVersion = 1;

/// Makes the tables in an empty database and marks it as a catalog.
void createSchema(Database& database);

/// Looks at the first 100 bytes of the file, before SQLite does. Throws FileError for a file that is not
/// a catalog file, was made by a newer version, or is shorter than it says. Returns its size.
std::uint64_t checkHeader(const fileString& path);

/// Throws FileError unless the database holds exactly the tables of this version: real tables with
/// the expected columns, no views, triggers, virtual tables or computed columns.
void checkSchema(Database& database);

}  // namespace VelkHost
