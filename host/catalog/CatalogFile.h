#pragma once

#include "host/catalog/Catalog.h"
#include "host/catalog/CatalogFormat.h"

#include <VelkCommon/Files/fileString.h>

namespace VelkHost {

/// How much of a catalog to read; each holds what those before it do.
enum class CatalogContent {
    Outline,     ///< the library's name and folders, without items
    Names,       ///< what a search needs: names and sizes
    Properties,  ///< and the properties of items
    Everything   ///< all of it
};

/// The oldest format that holds all of the catalog.
CatalogFormat neededFormat(const Catalog& catalog);

/// Writes `catalog` to a catalog file of that format; what the format has no place for is left out. An older file is
/// replaced only when the new one is complete, so a failure leaves it as it was, and nothing beside it. Throws
/// FileError.
void writeCatalog(const Catalog& catalog, const fileString& path, CatalogFormat format);
/// The same in neededFormat().
void writeCatalog(const Catalog& catalog, const fileString& path);

/// The format of a catalog file. Throws FileError.
CatalogFormat catalogFormat(const fileString& path);

/// Reads a catalog file, whoever made it: a file that is damaged, cut off, foreign or newer is refused, and
/// work and memory stay within the limits of Catalog.h. Texts are returned as the file holds them and may hold
/// any bytes. The file is not locked; it may be replaced meanwhile, but must not be changed in place.
/// Throws FileError. Any thread.
Catalog readCatalog(const fileString& path, CatalogContent content);

}  // namespace VelkHost
