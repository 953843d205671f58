#include "host/catalog/CatalogFile.h"

#include "host/catalog/CatalogSchema.h"
#include "host/catalog/ItemRows.h"
#include "host/support/FileError.h"
#include "host/support/Stages.h"

#include <VelkCommon/Files/ReplacementFile.h>

#include <algorithm>
#include <limits>
#include <optional>
#include <unordered_map>
#include <utility>

namespace VelkHost {
namespace {

// Writing. Keys count from 1 in the order of the catalog's lists.

void writeLibrary(Database& database, const Catalog& catalog)
{
    database.prepare("INSERT INTO library VALUES (?, ?, ?, ?, ?, ?)")
        .setText(1, catalog.id)
        .setText(2, catalog.name)
        .set(3, static_cast<std::int64_t>(catalog.kind))
        .setText(4, catalog.language)
        .setText(5, catalog.description)
        .setText(6, catalog.created)
        .run();
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

void writeDatabase(const Catalog& catalog, const fileString& path)
{
    Database database = Database::openForWriting(path);
    createSchema(database);
    database.execute("BEGIN");
    writeLibrary(database, catalog);
    writeFolders(database, catalog);
    writeItems(database, catalog);
    database.execute("COMMIT");
    database.close();
}

// Reading

/// Reads the tables of a database that anybody may have made.
class CatalogReader
{
public:
    CatalogReader(Database& database, std::uint64_t fileBytes, CatalogContent content)
        : database_(database), fileBytes_(fileBytes), content_(content)
    {}

    Catalog read()
    {
        readLibrary();
        readFolders();
        if (content_ != CatalogContent::Outline)
            readItems();
        if (content_ == CatalogContent::Everything) {
            readThumbnails();
            readFiles();
        }
        return std::move(catalog_);
    }

private:
    [[noreturn]] void fail(const char* reason) const
    {
        throw FileError(database_.path(), {"is damaged: %1", {reason}});
    }

    std::string_view text(const Statement& row, int column)
    {
        const std::optional<std::string_view> bytes = row.text(column);
        if (!bytes)
            fail("a text is missing");
        textBytes_ += bytes->size();
        if (textBytes_ > limits::textBytes)
            fail("it holds more text than a catalog can");
        return *bytes;
    }

    /// The row's key. Keys that do not count up come from tables whose pages lead in circles.
    std::int64_t nextKey(const Statement& row, std::int64_t previous) const
    {
        const std::int64_t key = row.integer(0);
        if (!row.isInteger(0) || key <= previous)
            fail("its rows are out of order");
        return key;
    }

    /// The index of the entry with the key in that column.
    std::size_t lookUp(const std::unordered_map<std::int64_t, std::size_t>& indexes, const Statement& row,
                       int column) const
    {
        const auto found = indexes.find(row.integer(column));
        if (!row.isInteger(column) || found == indexes.end())
            fail("an entry belongs to nothing");
        return found->second;
    }

    void readLibrary()
    {
        Statement row = database_.prepare("SELECT id, name, kind, language, description, created FROM library");
        if (!row.next())
            fail("it does not say which library it is");
        const std::optional<LibraryKind> kind = kindFromNumber(row.integer(2));
        if (!row.isInteger(2) || !kind)
            fail("its kind of library is unknown");
        catalog_.kind = *kind;
        catalog_.id = text(row, 0);
        catalog_.name = text(row, 1);
        catalog_.language = text(row, 3);
        catalog_.description = text(row, 4);
        catalog_.created = text(row, 5);
        if (catalog_.id.empty() || row.next())
            fail("it does not say which library it is");
    }

    void readFolders()
    {
        std::vector<std::size_t> depths;
        Statement row = database_.prepare("SELECT id, parent, name FROM folder NOT INDEXED ORDER BY id");
        for (std::int64_t key = beforeAllKeys; row.next();) {
            key = nextKey(row, key);
            const std::size_t parent = row.isNull(1) ? Folder::noParent : lookUp(folderIndexes_, row, 1);
            depths.push_back(parent == Folder::noParent ? 1 : depths[parent] + 1);
            if (depths.back() > limits::folderDepth || depths.size() > limits::folders)
                fail("it has too many folders");
            folderIndexes_.emplace(key, catalog_.folders.size());
            catalog_.folders.push_back({parent, std::string(text(row, 2))});
        }
    }

    /// Room for all items, as far as their keys tell how many there are and the file can hold so many.
    void makeRoom()
    {
        constexpr std::uint64_t leastBytes = 10;  // of a row
        Statement row = database_.prepare("SELECT max(id) FROM item");
        if (row.next() && row.integer(0) > 0)
            catalog_.items.reserve(static_cast<std::size_t>(std::min<std::uint64_t>(
                {static_cast<std::uint64_t>(row.integer(0)), fileBytes_ / leastBytes, limits::items})));
    }

    /// The folder of an item, which is most often that of the item before it.
    std::size_t folderOf(const Statement& row, int column)
    {
        if (!lastFolder_ || lastFolder_->first != row.integer(column) || !row.isInteger(column))
            lastFolder_ = {row.integer(column), lookUp(folderIndexes_, row, column)};
        return lastFolder_->second;
    }

    /// One thread goes through the rows, and another one makes items of them, which takes as long.
    void readItems()
    {
        const bool isLarge = fileBytes_ > largeFile;
        if (isLarge)
            makeRoom();
        Statement row =
            database_.prepare("SELECT id, unique_id, folder, name, keywords FROM item NOT INDEXED ORDER BY id");
        std::int64_t key = beforeAllKeys;
        Stages<ItemRows> stages([&](ItemRows& rows) { return readRows(row, key, rows); },
                                [&](const ItemRows& rows) { rows.appendTo(catalog_.items); });
        stages.run(isLarge ? 2 : 1);
    }

    /// Some rows from the one behind `key` on; false when there are no more.
    bool readRows(Statement& row, std::int64_t& key, ItemRows& rows)
    {
        rows.clear();
        while (rows.size() < rowsAtOnce && row.next()) {
            key = nextKey(row, key);
            if (itemCount_ == limits::items)
                fail("it has too many items");
            if (content_ == CatalogContent::Everything)
                itemIndexes_.emplace(key, itemCount_);
            rows.add(folderOf(row, 2), text(row, 1), text(row, 3), text(row, 4));
            ++itemCount_;
        }
        return rows.size() > 0;
    }

    void readThumbnails()
    {
        std::size_t total = 0;
        Statement row = database_.prepare("SELECT item, png FROM thumbnail NOT INDEXED ORDER BY item");
        for (std::int64_t key = beforeAllKeys; row.next();) {
            key = nextKey(row, key);
            const std::string_view bytes = row.bytes(1);
            total += bytes.size();
            if (total > limits::allThumbnailBytes)
                fail("its thumbnails are too large");
            catalog_.items[lookUp(itemIndexes_, row, 0)].thumbnail = bytes;
        }
    }

    void readFiles()
    {
        std::size_t count = 0;
        Statement row = database_.prepare("SELECT id, item, role, name FROM item_file NOT INDEXED ORDER BY id");
        for (std::int64_t key = beforeAllKeys; row.next();) {
            key = nextKey(row, key);
            if (++count > limits::itemFiles)
                fail("it names too many files");
            const std::int64_t role = row.integer(2);
            if (role < 1 || role > 3)
                fail("a file has an unknown role");
            catalog_.items[lookUp(itemIndexes_, row, 1)].files.push_back(
                {static_cast<FileRole>(role), std::string(text(row, 3))});
        }
    }

    static constexpr std::int64_t beforeAllKeys = std::numeric_limits<std::int64_t>::min();
    static constexpr std::size_t rowsAtOnce = 1'000;
    static constexpr std::uint64_t largeFile = 1'000'000;  // bytes; less is read before another thread has begun

    Database& database_;
    std::uint64_t fileBytes_;
    CatalogContent content_;
    Catalog catalog_;
    std::unordered_map<std::int64_t, std::size_t> folderIndexes_;     // by key
    std::unordered_map<std::int64_t, std::size_t> itemIndexes_;       // by key
    std::optional<std::pair<std::int64_t, std::size_t>> lastFolder_;  // key and index
    std::size_t itemCount_ = 0;
    std::size_t textBytes_ = 0;
};

}  // namespace

void writeCatalog(const Catalog& catalog, const fileString& path)
{
    ReplacementFile file(path);
    if (!file.isOpen())
        throw FileError(path, "cannot be written; is its folder there, and may you write to it?");
    try {
        writeDatabase(catalog, file.path());
    } catch (const FileError& error) {
        throw FileError(path, error.why());
    }
    if (!file.commit())
        throw FileError(path, {"cannot be written: %1", {file.failure()}});
}

Catalog readCatalog(const fileString& path, CatalogContent content)
{
    const std::uint64_t fileBytes = checkHeader(path);
    Database database = Database::openForReading(path, fileBytes, static_cast<int>(limits::thumbnailBytes) + 1'024);
    checkSchema(database);
    return CatalogReader(database, fileBytes, content).read();
}

}  // namespace VelkHost
