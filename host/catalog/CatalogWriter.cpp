#include "host/catalog/CatalogFile.h"
#include "host/catalog/CatalogSchema.h"
#include "host/support/FileError.h"

#include <VelkCommon/Files/ReplacementFile.h>

#include <algorithm>

namespace VelkHost {
namespace {

// Keys count from 1 in the order of the catalog's lists.

void writeLibrary(Database& database, const Catalog& catalog, CatalogFormat format)
{
    const bool properties = format >= CatalogFormat::Properties;
    Statement insert = database.prepare(std::string("INSERT INTO library VALUES (?, ?, ?, ?, ?, ?") +
                                        (properties ? ", ?, ?, ?)" : ")"));
    insert.setText(1, catalog.id)
        .setText(2, catalog.name)
        .set(3, static_cast<std::int64_t>(catalog.kind))
        .setText(4, catalog.language)
        .setText(5, catalog.description)
        .setText(6, catalog.created);
    if (properties)
        insert.setText(7, catalog.licence).setText(8, catalog.provider).setText(9, catalog.version);
    insert.run();
}

void writeFolders(Database& database, const Catalog& catalog)
{
    Statement insert = database.prepare("INSERT INTO folder VALUES (?, ?, ?)");
    std::int64_t key = 0;
    for (const Folder& folder : catalog.folders) {
        insert.set(1, ++key).setText(3, folder.name);
        if (folder.parent == Folder::noParent)
            insert.setNull(2);
        else
            insert.set(2, static_cast<std::int64_t>(folder.parent) + 1);
        insert.run();
    }
}

void writeItems(Database& database, const Catalog& catalog)
{
    Statement insertItem = database.prepare("INSERT INTO item VALUES (?, ?, ?, ?, ?)");
    Statement insertThumbnail = database.prepare("INSERT INTO thumbnail VALUES (?, ?)");
    Statement insertFile = database.prepare("INSERT INTO item_file VALUES (NULL, ?, ?, ?)");
    std::int64_t key = 0;
    for (const Item& item : catalog.items) {
        insertItem.set(1, ++key).setText(2, item.uniqueId).set(3, static_cast<std::int64_t>(item.folder) + 1);
        insertItem.setText(4, item.name).setText(5, item.keywords).run();
        if (!item.thumbnail.empty())
            insertThumbnail.set(1, key).setBlob(2, item.thumbnail).run();
        for (const ItemFile& file : item.files)
            insertFile.set(1, key).set(2, static_cast<std::int64_t>(file.role)).setText(3, file.name).run();
    }
}

void setMeasure(Statement& insert, int parameter, float millimetres)
{
    if (millimetres > 0)
        insert.setReal(parameter, static_cast<double>(millimetres));
    else
        insert.setNull(parameter);
}

/// Items of which nothing is known have no row.
void writeProperties(Database& database, const Catalog& catalog)
{
    Statement insert = database.prepare("INSERT INTO item_property VALUES (?, ?, ?, ?, ?, ?, ?, ?)");
    Statement insertDetail = database.prepare("INSERT INTO item_detail VALUES (NULL, ?, ?, ?)");
    for (std::size_t item = 0; item < catalog.items.size(); ++item) {
        const ItemSize size = catalog.sizeOf(item);
        const ItemProperties& known = catalog.propertiesOf(item);
        const auto key = static_cast<std::int64_t>(item) + 1;
        if (size.isKnown() || known != ItemProperties()) {
            setMeasure(insert.set(1, key), 2, size.width);
            setMeasure(insert, 3, size.depth);
            setMeasure(insert, 4, size.height);
            insert.setText(5, known.creator).setText(6, known.licence);
            insert.setText(7, known.price).setText(8, known.currency).run();
        }
        for (const ItemDetail& detail : known.details)
            insertDetail.set(1, key).setText(2, detail.name).setText(3, detail.value).run();
    }
}

void writeDatabase(const Catalog& catalog, const fileString& path, CatalogFormat format)
{
    Database database = Database::openForWriting(path);
    createSchema(database, format);
    database.execute("BEGIN");
    writeLibrary(database, catalog, format);
    writeFolders(database, catalog);
    writeItems(database, catalog);
    if (format >= CatalogFormat::Properties)
        writeProperties(database, catalog);
    database.execute("COMMIT");
    database.close();
}

}  // namespace

CatalogFormat neededFormat(const Catalog& catalog)
{
    const bool hasSizes =
        std::any_of(catalog.sizes.begin(), catalog.sizes.end(), [](const ItemSize& size) { return size.isKnown(); });
    const bool hasProperties = std::any_of(catalog.properties.begin(), catalog.properties.end(),
                                           [](const ItemProperties& known) { return known != ItemProperties(); });
    const bool hasOrigin = !catalog.licence.empty() || !catalog.provider.empty() || !catalog.version.empty();
    return hasSizes || hasProperties || hasOrigin ? CatalogFormat::Properties : CatalogFormat::Names;
}

void writeCatalog(const Catalog& catalog, const fileString& path)
{
    writeCatalog(catalog, path, neededFormat(catalog));
}

void writeCatalog(const Catalog& catalog, const fileString& path, CatalogFormat format)
{
    ReplacementFile file(path);
    if (!file.isOpen())
        throw FileError(path, "cannot be written; is its folder there, and may you write to it?");
    try {
        writeDatabase(catalog, file.path(), format);
    } catch (const FileError& error) {
        throw FileError(path, error.why());
    }
    if (!file.commit())
        throw FileError(path, {"cannot be written: %1", {file.failure()}});
}

}  // namespace VelkHost
