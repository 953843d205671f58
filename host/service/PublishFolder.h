#pragma once

#include "host/catalog/CatalogFormat.h"
#include "host/service/PublishError.h"

#include <cstdint>
#include <map>
#include <optional>
#include <string>
#include <vector>

/// @file
/// A publisher's folder, read and checked:
///
///     core/*.calib               catalogs that every client learns of from the core index
///     referenced/*.zip           archives of files that core catalogs refer to, in the index too
///     bonus/*.calibz             packed libraries
///     manufacturer/*.calibz      packed libraries of manufacturers
///     manufacturer_data.json     the manufacturers' cards
///     logos/*                    the logos that they name
///     withdrawn.txt              lines "NAME: MESSAGE" of libraries that clients must no longer get

namespace VelkHost {

/// A file to publish.
struct PublishSource
{
    fileString path;
    std::string contentHash;  ///< SHA-1 of its bytes
    std::string tag;          ///< the entity tag: SHA-1 of what an installation holds of it
    std::string companions;   ///< see PackedCatalog; empty for a file that is not packed
    std::uint64_t size = 0;
    std::optional<CatalogFormat> format;  ///< of its catalog, when it has one
};

/// Everything that a folder publishes, by the names under which clients ask for it.
struct PublishContent
{
    std::map<std::string, PublishSource> libraries;
    std::vector<std::string> coreNames;  ///< the lines of the core index, sorted
    std::map<std::string, PublishSource> logos;
    std::optional<PublishSource> manufacturers;
    std::map<std::string, std::string> withdrawn;
};

/// Reads the folder; each catalog and archive is read to its end. Entries whose names begin with a dot are
/// left out. Throws PublishError with everything that is wrong.
PublishContent readPublishFolder(const fileString& folder);

}  // namespace VelkHost
