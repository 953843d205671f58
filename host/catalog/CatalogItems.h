#pragma once

#include "host/catalog/Catalog.h"
#include "host/catalog/CatalogSchema.h"

#include <VelkCommon/Files/fileString.h>

#include <string>
#include <string_view>

namespace VelkHost {

/// What a search does not read of a catalog file: the thumbnails and properties of its items, read one by one. Keeps
/// the file open, and reads it as it was when it was opened. The work that one object may do is limited, since anybody
/// may have made the file: it serves for some hundreds of items, after which a new object must be made. One thread at
/// a time.
class CatalogItems
{
public:
    /// Throws FileError for any other file.
    explicit CatalogItems(const fileString& path);

    /// The PNG file's bytes of the item with that unique id; empty when there is no such item or picture.
    /// Throws FileError for a damaged file.
    std::string png(std::string_view uniqueId);

    /// What is known about the item with that unique id; empty when there is no such item, and in files of a format
    /// without properties. Throws FileError for a damaged file.
    ItemProperties properties(std::string_view uniqueId);

private:
    CatalogItems(const fileString& path, const CatalogHeader& header);

    Database database_;
    CatalogFormat format_;
};

}  // namespace VelkHost
