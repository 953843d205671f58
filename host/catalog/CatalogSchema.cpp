#include "host/catalog/CatalogSchema.h"

#include "host/support/FileError.h"
#include "host/support/WholeFile.h"

#include <map>
#include <string>
#include <string_view>
#include <utility>

namespace VelkHost {
namespace {

constexpr std::uint64_t maximumFileBytes = std::uint64_t{4} << 30;

/// A table with its columns in SQL, and as checkSchema() describes them.
struct Table
{
    std::string_view name;
    std::string_view columns;
    std::string_view described;
    CatalogFormat since = CatalogFormat::Names;
    CatalogFormat until = newestCatalogFormat;

    bool isIn(CatalogFormat format) const { return since <= format && format <= until; }
};

// The integer keys count up in the order in which readers want the rows.
constexpr Table tables[] = {
    {"library",
     "id TEXT NOT NULL, name TEXT NOT NULL, kind INTEGER NOT NULL, language TEXT NOT NULL, "
     "description TEXT NOT NULL, created TEXT NOT NULL",
     "id TEXT, name TEXT, kind INTEGER, language TEXT, description TEXT, created TEXT", CatalogFormat::Names,
     CatalogFormat::Names},
    {"library",
     "id TEXT NOT NULL, name TEXT NOT NULL, kind INTEGER NOT NULL, language TEXT NOT NULL, "
     "description TEXT NOT NULL, created TEXT NOT NULL, licence TEXT NOT NULL, provider TEXT NOT NULL, "
     "version TEXT NOT NULL",
     "id TEXT, name TEXT, kind INTEGER, language TEXT, description TEXT, created TEXT, licence TEXT, provider TEXT, "
     "version TEXT",
     CatalogFormat::Properties},
    {"folder", "id INTEGER PRIMARY KEY, parent INTEGER REFERENCES folder(id), name TEXT NOT NULL",
     "id INTEGER, parent INTEGER, name TEXT"},
    {"item",
     "id INTEGER PRIMARY KEY, unique_id TEXT NOT NULL UNIQUE, folder INTEGER NOT NULL REFERENCES folder(id), "
     "name TEXT NOT NULL, keywords TEXT NOT NULL",
     "id INTEGER, unique_id TEXT, folder INTEGER, name TEXT, keywords TEXT"},
    {"thumbnail", "item INTEGER PRIMARY KEY REFERENCES item(id), png BLOB NOT NULL", "item INTEGER, png BLOB"},
    {"item_file",
     "id INTEGER PRIMARY KEY, item INTEGER NOT NULL REFERENCES item(id), role INTEGER NOT NULL, name TEXT NOT NULL",
     "id INTEGER, item INTEGER, role INTEGER, name TEXT"},
    {"item_property",
     "item INTEGER PRIMARY KEY REFERENCES item(id), width REAL, depth REAL, height REAL, creator TEXT NOT NULL, "
     "licence TEXT NOT NULL, price TEXT NOT NULL, currency TEXT NOT NULL",
     "item INTEGER, width REAL, depth REAL, height REAL, creator TEXT, licence TEXT, price TEXT, currency TEXT",
     CatalogFormat::Properties},
    {"item_detail",
     "id INTEGER PRIMARY KEY, item INTEGER NOT NULL REFERENCES item(id), name TEXT NOT NULL, value TEXT NOT NULL",
     "id INTEGER, item INTEGER, name TEXT, value TEXT", CatalogFormat::Properties},
};

std::string creation(const Table& table)
{
    return "CREATE TABLE " + std::string(table.name) + " (" + std::string(table.columns) + ")";
}

std::uint32_t bigEndian(const std::string& bytes, std::size_t offset, std::size_t size)
{
    std::uint32_t value = 0;
    for (std::size_t i = 0; i < size; ++i)
        value = value << 8 | static_cast<unsigned char>(bytes[offset + i]);
    return value;
}

const Table* findTable(std::string_view name, CatalogFormat format)
{
    for (const Table& table : tables)
        if (table.name == name && table.isIn(format))
            return &table;
    return nullptr;
}

/// "id INTEGER, name TEXT"; a computed or hidden column is marked.
std::string describeColumns(Database& database, std::string_view table)
{
    std::string described;
    Statement columns =
        database.prepare("SELECT name, type, hidden FROM pragma_table_xinfo('" + std::string(table) + "')");
    while (columns.next()) {
        described += described.empty() ? "" : ", ";
        described.append(columns.bytes(0)).append(" ").append(columns.bytes(1));
        described += columns.integer(2) == 0 ? "" : " hidden";
    }
    return described;
}

/// The SQL that makes each table, by its name; throws when anything other than tables is there.
std::map<std::string, std::string> tableTexts(Database& database, CatalogFormat format)
{
    std::map<std::string, std::string> texts;
    Statement objects = database.prepare("SELECT type, name, sql, rootpage FROM sqlite_schema");
    while (objects.next()) {
        std::string name(objects.bytes(1));
        // Indexes of UNIQUE columns have no text; virtual tables have no page of their own.
        const bool uniqueIndex = objects.bytes(0) == "index" && objects.isNull(2);
        const bool table = objects.bytes(0) == "table" && findTable(name, format) != nullptr && objects.integer(3) > 0;
        if (!uniqueIndex && !table)
            throw FileError(database.path(), "is damaged: it holds something other than a catalog's tables");
        if (table)
            texts.emplace(std::move(name), objects.bytes(2));
    }
    return texts;
}

}  // namespace

void createSchema(Database& database, CatalogFormat format)
{
    for (const Table& table : tables)
        if (table.isIn(format))
            database.execute(creation(table));
    database.execute("PRAGMA application_id = " + std::to_string(catalogApplicationId));
    database.execute("PRAGMA user_version = " + std::to_string(static_cast<std::uint32_t>(format)));
}

CatalogHeader checkHeader(const fileString& path)
{
    constexpr std::string_view signature("SQLite format 3\0", 16);
    constexpr std::size_t headerBytes = 100;
    const std::uint64_t fileBytes = requireFile(path, maximumFileBytes);
    const std::string header = readBeginning(path, headerBytes);
    if (header.empty())
        throw FileError(path, "is empty");
    if (!header.starts_with(signature))
        throw FileError(path, "is not a library catalog");
    if (header.size() < headerBytes)
        throw FileError(path, "is damaged: it ends within its header");
    if (bigEndian(header, 68, 4) != catalogApplicationId)
        throw FileError(path, "is a database, but not a library catalog");
    const std::uint32_t version = bigEndian(header, 60, 4);
    constexpr auto newest = static_cast<std::uint32_t>(newestCatalogFormat);
    if (version > newest)
        throw FileError(path, {"was made by a newer version of velk (format %1, this one reads %2)",
                               {std::to_string(version), std::to_string(newest)}});
    if (version == 0)
        throw FileError(path, "is damaged: it has no format number");
    const std::uint32_t pageField = bigEndian(header, 16, 2);
    const std::uint64_t expected = std::uint64_t{bigEndian(header, 28, 4)} * (pageField == 1 ? 65'536 : pageField);
    if (fileBytes < expected)
        throw FileError(path, {"is damaged: it is cut off after %1 of %2 bytes",
                               {Reason::amount(fileBytes), Reason::amount(expected)}});
    return {fileBytes, static_cast<CatalogFormat>(version)};
}

void checkSchema(Database& database, CatalogFormat format)
{
    const std::map<std::string, std::string> texts = tableTexts(database, format);
    for (const Table& table : tables) {
        if (!table.isIn(format))
            continue;
        const auto found = texts.find(std::string(table.name));
        // What another writer says in other words is asked for column by column, which takes its time.
        const bool isAsItShouldBe = found != texts.end() && (found->second == creation(table) ||
                                                             describeColumns(database, table.name) == table.described);
        if (!isAsItShouldBe)
            throw FileError(database.path(),
                            {"is damaged: its table \"%1\" is not as it should be", {std::string(table.name)}});
    }
}

}  // namespace VelkHost
