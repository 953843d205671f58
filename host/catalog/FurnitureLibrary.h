#pragma once

#include "host/catalog/Languages.h"

#include <cstddef>
#include <string>
#include <vector>

namespace VelkHost {

/// The extension of a furniture library.
inline constexpr const char* furnitureExtension = ".sh3f";

/// Reads a furniture library: a zip archive with "PluginFurnitureCatalog.properties", its
/// translations ("..._de.properties"), and the icons and models that they name.
///
/// Each category becomes a category of the catalog, each "name#N" an item. Its keywords are the tags,
/// the description and, last, who made it; its files are the model and the files in the model's folder. A
/// text that a translation lacks is taken from the default. An icon that is missing or is not a PNG file is
/// left out. Sizes come in centimetres; elevation, date, whether it is a door or window and whether it can be moved
/// become details. A size or price that is no number is left out. Throws FileError.
Catalog readFurnitureLibrary(const fileString& path, const BuildOptions& options);

/// Someone who made things in a furniture library, or who provides it.
struct FurnitureManufacturer
{
    std::string name;
    std::string url;        ///< may be empty
    std::size_t items = 0;  ///< that they made
    std::string icon;       ///< of one of their items (PNG); empty when no item has one
    std::string otherIcon;  ///< of another of their items; the same when there is no other
};

/// The manufacturers and providers that a furniture library names, by name. Throws FileError.
std::vector<FurnitureManufacturer> readFurnitureManufacturers(const fileString& path);

}  // namespace VelkHost
