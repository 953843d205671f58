#pragma once

#include "host/catalog/Languages.h"

namespace VelkHost {

/// Reads a furniture library (".sh3f"): a zip archive with "PluginFurnitureCatalog.properties", its
/// translations ("..._de.properties"), and the icons and models that they name.
///
/// Each category becomes a category of the catalog, each "name#N" an item. Its keywords are the tags and
/// the description; its files are the model and what lies in the model's folder. A text that a
/// translation lacks is taken from the default. An icon that is missing or no PNG file is left out.
/// Throws CatalogError.
Catalog readFurnitureLibrary(const fileString& path, const BuildOptions& options);

}  // namespace VelkHost
