#pragma once

#include "host/catalog/Database.h"

#include <VelkCommon/Files/fileString.h>

#include <string>
#include <string_view>

namespace VelkHost {

/// The thumbnails of a catalog file, read one by one. Keeps the file open, and reads it as it was when it was
/// opened. The work that one object may do is limited, since anybody may have made the file: it serves for
/// some hundreds of thumbnails, after which a new object must be made. One thread at a time.
class CatalogThumbnails
{
public:
    /// Throws FileError for any other file.
    explicit CatalogThumbnails(const fileString& path);

    /// The PNG file's bytes of the item with that unique id; empty when there is no such item or picture.
    /// Throws FileError for a damaged file.
    std::string png(std::string_view uniqueId);

private:
    static Database open(const fileString& path);

    Database database_;
};

}  // namespace VelkHost
