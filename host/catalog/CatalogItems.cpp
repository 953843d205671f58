#include "host/catalog/CatalogItems.h"

#include "host/support/FileError.h"

namespace VelkHost {

CatalogItems::CatalogItems(const fileString& path) : CatalogItems(path, checkHeader(path)) {}

CatalogItems::CatalogItems(const fileString& path, const CatalogHeader& header)
    : database_(Database::openForReading(path, header.fileBytes, static_cast<int>(limits::thumbnailBytes) + 1'024)),
      format_(header.format)
{
    checkSchema(database_, format_);
}

std::string CatalogItems::png(std::string_view uniqueId)
{
    Statement row =
        database_.prepare("SELECT png FROM thumbnail WHERE item = (SELECT id FROM item WHERE unique_id = ?)");
    row.setText(1, uniqueId);
    return row.next() ? std::string(row.bytes(0)) : std::string();
}

ItemProperties CatalogItems::properties(std::string_view uniqueId)
{
    constexpr std::size_t mostDetails = 1'000;
    ItemProperties properties;
    if (format_ < CatalogFormat::Properties)
        return properties;
    Statement row = database_.prepare(
        "SELECT creator, licence, price, currency FROM item_property "
        "WHERE item = (SELECT id FROM item WHERE unique_id = ?)");
    row.setText(1, uniqueId);
    if (row.next())
        properties = {std::string(row.bytes(0)),
                      std::string(row.bytes(1)),
                      std::string(row.bytes(2)),
                      std::string(row.bytes(3)),
                      {}};
    Statement detail = database_.prepare(
        "SELECT name, value FROM item_detail "
        "WHERE item = (SELECT id FROM item WHERE unique_id = ?) ORDER BY id");
    detail.setText(1, uniqueId);
    while (properties.details.size() < mostDetails && detail.next())
        properties.details.push_back({std::string(detail.bytes(0)), std::string(detail.bytes(1))});
    return properties;
}

}  // namespace VelkHost
