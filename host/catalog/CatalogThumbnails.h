#pragma once

#include "host/catalog/Database.h"

#include <VelkCommon/Files/fileString.h>

#include <string>
#include <string_view>

namespace VelkHost {

/// The pictures of a ".calib" file, read one by one. Holds the file open, as it was when opened; as the work
/// on a file that anybody may have made is limited, for some hundreds of pictures and not for ever. One
/// thread at a time.
class CatalogThumbnails
{
public:
    /// Throws FileError for a file that is no catalog.
    explicit CatalogThumbnails(const fileString& path);

    /// The PNG file's bytes of the item with that unique id; empty when there is no such item or picture.
    /// Throws FileError for a damaged file.
    std::string png(std::string_view uniqueId);

private:
    static Database open(const fileString& path);

    Database database_;
};

}  // namespace VelkHost
