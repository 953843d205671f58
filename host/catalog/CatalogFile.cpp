#include "host/catalog/CatalogFile.h"

#include "host/catalog/CatalogSchema.h"
#include "host/catalog/ItemRows.h"
#include "host/support/FileError.h"
#include "host/support/Stages.h"

#include <algorithm>
#include <limits>
#include <optional>
#include <unordered_map>
#include <utility>

namespace VelkHost {
namespace {

/// Reads the tables of a database that anybody may have made.
class CatalogReader
{
public:
    CatalogReader(Database& database, const CatalogHeader& header, CatalogContent content)
        : database_(database), fileBytes_(header.fileBytes), format_(header.format), content_(content)
    {}

    Catalog read()
    {
        readLibrary();
        readFolders();
        if (content_ != CatalogContent::Outline)
            readItems();
        if (content_ != CatalogContent::Outline && hasProperties())
            readProperties();
        if (content_ == CatalogContent::Everything) {
            readThumbnails();
            readFiles();
        }
        if (content_ >= CatalogContent::Properties && hasProperties())
            readDetails();
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

    bool hasProperties() const { return format_ >= CatalogFormat::Properties; }

    /// The index of the item with the key in that column. Rows most often come in the order of the items.
    std::size_t itemOf(const Statement& row, int column)
    {
        const std::int64_t key = row.integer(column);
        if (nextItem_ + 1 < itemKeys_.size() && itemKeys_[nextItem_ + 1] == key)
            ++nextItem_;
        else if (nextItem_ >= itemKeys_.size() || itemKeys_[nextItem_] != key)
            nextItem_ =
                static_cast<std::size_t>(std::lower_bound(itemKeys_.begin(), itemKeys_.end(), key) - itemKeys_.begin());
        if (!row.isInteger(column) || nextItem_ == itemKeys_.size() || itemKeys_[nextItem_] != key)
            fail("an entry belongs to nothing");
        return nextItem_;
    }

    void readLibrary()
    {
        Statement row = database_.prepare(std::string("SELECT id, name, kind, language, description, created") +
                                          (hasProperties() ? ", licence, provider, version" : "") + " FROM library");
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
        if (hasProperties()) {
            catalog_.licence = text(row, 6);
            catalog_.provider = text(row, 7);
            catalog_.version = text(row, 8);
        }
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
            if (hasProperties() || content_ == CatalogContent::Everything)
                itemKeys_.push_back(key);
            rows.add(folderOf(row, 2), text(row, 1), text(row, 3), text(row, 4));
            ++itemCount_;
        }
        return rows.size() > 0;
    }

    /// A measure in millimetres; 0 where the file does not know it.
    float measure(const Statement& row, int column) const
    {
        if (row.isNull(column))
            return 0;
        const double millimetres = row.real(column);
        if (!row.isNumber(column) || !(millimetres > 0 && millimetres <= limits::itemMillimetres))
            fail("an item's size is none");
        return static_cast<float>(millimetres);
    }

    /// The sizes, and with everything the texts, too.
    void readProperties()
    {
        const bool texts = content_ >= CatalogContent::Properties;
        Statement row = database_.prepare(std::string("SELECT item, width, depth, height") +
                                          (texts ? ", creator, licence, price, currency" : "") +
                                          " FROM item_property NOT INDEXED ORDER BY item");
        for (std::int64_t key = beforeAllKeys; row.next();) {
            key = nextKey(row, key);
            const std::size_t item = itemOf(row, 0);
            const ItemSize size{measure(row, 1), measure(row, 2), measure(row, 3)};
            if (size.isKnown()) {
                catalog_.sizes.resize(catalog_.items.size());
                catalog_.sizes[item] = size;
            }
            if (texts)
                propertiesOf(item) = {std::string(text(row, 4)),
                                      std::string(text(row, 5)),
                                      std::string(text(row, 6)),
                                      std::string(text(row, 7)),
                                      {}};
        }
    }

    ItemProperties& propertiesOf(std::size_t item)
    {
        catalog_.properties.resize(catalog_.items.size());
        return catalog_.properties[item];
    }

    void readDetails()
    {
        std::size_t count = 0;
        Statement row = database_.prepare("SELECT id, item, name, value FROM item_detail NOT INDEXED ORDER BY id");
        for (std::int64_t key = beforeAllKeys; row.next();) {
            key = nextKey(row, key);
            if (++count > limits::itemDetails)
                fail("it has too many details");
            propertiesOf(itemOf(row, 1)).details.push_back({std::string(text(row, 2)), std::string(text(row, 3))});
        }
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
            catalog_.items[itemOf(row, 0)].thumbnail = bytes;
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
            catalog_.items[itemOf(row, 1)].files.push_back({static_cast<FileRole>(role), std::string(text(row, 3))});
        }
    }

    static constexpr std::int64_t beforeAllKeys = std::numeric_limits<std::int64_t>::min();
    static constexpr std::size_t rowsAtOnce = 1'000;
    static constexpr std::uint64_t largeFile = 1'000'000;  // bytes; less is read before another thread has begun

    Database& database_;
    std::uint64_t fileBytes_;
    CatalogFormat format_;
    CatalogContent content_;
    Catalog catalog_;
    std::unordered_map<std::int64_t, std::size_t> folderIndexes_;     // by key
    std::vector<std::int64_t> itemKeys_;                              // ascending, as the items are
    std::size_t nextItem_ = 0;                                        // that itemOf() looks at first
    std::optional<std::pair<std::int64_t, std::size_t>> lastFolder_;  // key and index
    std::size_t itemCount_ = 0;
    std::size_t textBytes_ = 0;
};

}  // namespace

CatalogFormat catalogFormat(const fileString& path)
{
    return checkHeader(path).format;
}

Catalog readCatalog(const fileString& path, CatalogContent content)
{
    const CatalogHeader header = checkHeader(path);
    Database database =
        Database::openForReading(path, header.fileBytes, static_cast<int>(limits::thumbnailBytes) + 1'024);
    checkSchema(database, header.format);
    return CatalogReader(database, header, content).read();
}

}  // namespace VelkHost
