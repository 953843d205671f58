#include "host/catalog/CatalogThumbnails.h"

#include "host/catalog/Catalog.h"
#include "host/catalog/CatalogSchema.h"

namespace VelkHost {

CatalogThumbnails::CatalogThumbnails(const fileString& path) : database_(open(path))
{
    checkSchema(database_);
}

std::string CatalogThumbnails::png(std::string_view uniqueId)
{
    Statement row =
        database_.prepare("SELECT png FROM thumbnail WHERE item = (SELECT id FROM item WHERE unique_id = ?)");
    row.setText(1, uniqueId);
    return row.next() ? std::string(row.bytes(0)) : std::string();
}

Database CatalogThumbnails::open(const fileString& path)
{
    const std::uint64_t fileBytes = checkHeader(path);
    return Database::openForReading(path, fileBytes, static_cast<int>(limits::thumbnailBytes) + 1'024);
}

}  // namespace VelkHost
