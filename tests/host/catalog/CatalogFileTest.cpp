#include "host/catalog/CatalogFile.h"
#include "host/catalog/CatalogItems.h"

#include "host/fixtures/Fixtures.h"
#include "support/Names.h"
#include "support/ZipFormat.h"

#include <VelkCommon/Files/FileUtils.h>

#include <random>

using VelkHost::Catalog;
using VelkHost::CatalogContent;
using VelkHost::FileError;
using VelkHost::readCatalog;
using VelkHost::writeCatalog;

namespace {

class CatalogFile : public test::TestHost
{
protected:
    fileString path(const std::u32string& name = U"test.calib") const { return folder() / name; }

    /// A catalog file with that content.
    fileString written(const Catalog& catalog = test::smallCatalog()) const
    {
        writeCatalog(catalog, path());
        return path();
    }

    std::string refusal(CatalogContent content = CatalogContent::Everything) const
    {
        return test::reasonOf([&] { readCatalog(path(), content); });
    }
};

TEST_F(CatalogFile, GivesBackWhatWasWritten)
{
    EXPECT_EQ(readCatalog(written(), CatalogContent::Everything), test::smallCatalog());
}

TEST_F(CatalogFile, ReadsNamesAlone)
{
    Catalog expected = test::smallCatalog();
    for (VelkHost::Item& item : expected.items) {
        item.thumbnail.clear();
        item.files.clear();
    }
    EXPECT_EQ(readCatalog(written(), CatalogContent::Names), expected);
}

TEST_F(CatalogFile, HoldsAnEmptyLibrary)
{
    Catalog catalog;
    catalog.id = "empty";
    EXPECT_EQ(readCatalog(written(catalog), CatalogContent::Everything), catalog);
}

TEST_F(CatalogFile, KnowsItsKindAndVersion)
{
    const std::string bytes = test::readFile(written());
    EXPECT_EQ(bytes.substr(68, 4), "VELK");
    EXPECT_EQ(bytes.substr(60, 4), std::string("\0\0\0\1", 4));
}

TEST_F(CatalogFile, FindsOddPaths)
{
    std::vector<const char32_t*> names = {U"a b.calib", U"100%#.calib", U"caf\u00E9 \u6905.calib", U"a;b&c=d.calib",
                                          U"%41.calib"};
    if constexpr (test::namesMayHoldAnything)
        names.push_back(U"100%?#.calib");
    for (const char32_t* name : names) {
        writeCatalog(test::smallCatalog(), path(name));
        EXPECT_EQ(readCatalog(path(name), CatalogContent::Names).id, "test-library") << path(name);
        EXPECT_TRUE(FileUtils::pathExists(path(name))) << path(name);
    }
    if constexpr (test::separator == '/') {
        EXPECT_EQ(readCatalog(fileString(std::string("/")) + path(U"a b.calib"), CatalogContent::Names).id,
                  "test-library");
    }
}

TEST_F(CatalogFile, LeavesNothingBesideIt)
{
    readCatalog(written(), CatalogContent::Everything);
    writeCatalog(test::smallCatalog(), path());
    EXPECT_THAT(test::listFolder(folder()), testing::Contains("test.calib"));
    EXPECT_THAT(test::listFolder(folder()), testing::Not(testing::Contains(testing::HasSubstr("journal"))));
    EXPECT_THAT(test::listFolder(folder()), testing::SizeIs(9)) << "the host's eight folders, and the file";
}

TEST_F(CatalogFile, IgnoresAPlantedJournal)
{
    test::writeFile(path(U"test.calib-journal"), std::string(4'096, 'x'));
    test::writeFile(path(U"test.calib-wal"), std::string(4'096, 'x'));
    EXPECT_EQ(readCatalog(written(), CatalogContent::Everything), test::smallCatalog());
}

TEST_F(CatalogFile, ReadsOneInWriteAheadMode)
{
    test::runSql(written(), "PRAGMA journal_mode = WAL");
    EXPECT_EQ(readCatalog(path(), CatalogContent::Everything), test::smallCatalog());
}

TEST_F(CatalogFile, KeepsTheOldOneWhenWritingFails)
{
    written();
    Catalog repeated = test::smallCatalog();
    repeated.items[1].uniqueId = repeated.items[0].uniqueId;
    EXPECT_THAT(test::reasonOf([&] { writeCatalog(repeated, path()); }), testing::HasSubstr("UNIQUE"));
    EXPECT_EQ(readCatalog(path(), CatalogContent::Everything), test::smallCatalog());
    EXPECT_THAT(test::listFolder(folder()), testing::SizeIs(9)) << "the host's eight folders, and the file";
}

TEST_F(CatalogFile, IsNotWrittenIntoAMissingFolder)
{
    EXPECT_THAT(test::reasonOf([&] { writeCatalog(test::smallCatalog(), folder() / U"none" / U"a.calib"); }),
                testing::StartsWith("cannot be written"));
}

// Files that are not catalog files

TEST_F(CatalogFile, RefusesPathsThatAreNotFiles)
{
    EXPECT_EQ(refusal(), "does not exist");
    EXPECT_EQ(test::reasonOf([&] { readCatalog(folder(), CatalogContent::Names); }), "is a folder, not a file");
    EXPECT_EQ(test::reasonOf([&] { readCatalog(fileString(), CatalogContent::Names); }), "is not a path");
    const fileString zero(path().utf8() + std::string("\0x", 2));
    EXPECT_EQ(test::reasonOf([&] { readCatalog(zero, CatalogContent::Names); }), "is not a path");
}

struct ForeignCase
{
    const char* name;
    std::string bytes;
    std::string reason;
};

const ForeignCase foreignCases[] = {
    {"Empty", "", "is empty"},
    {"Text", "hello", "is not a library catalog"},
    {"Zip", std::string(test::zip::signature::local) + std::string(1'000, 'x'), "is not a library catalog"},
    {"SignatureAlone", std::string("SQLite format 3\0", 16), "is damaged: it ends within its header"},
    {"OtherDatabase", std::string("SQLite format 3\0", 16) + std::string(4'096, '\0'),
     "is a database, but not a library catalog"},
};

class ForeignFile : public CatalogFile, public testing::WithParamInterface<ForeignCase>
{};

TEST_P(ForeignFile, IsRefused)
{
    test::writeFile(path(), GetParam().bytes);
    EXPECT_EQ(refusal(), GetParam().reason);
}

INSTANTIATE_TEST_SUITE_P(Files, ForeignFile, testing::ValuesIn(foreignCases),
                         [](const auto& row) { return std::string(row.param.name); });

TEST_F(CatalogFile, RefusesANewerVersion)
{
    test::runSql(written(), "PRAGMA user_version = 3");
    EXPECT_EQ(refusal(), "was made by a newer version of velk (format 3, this one reads 2)");
}

// Sizes and properties

Catalog catalogWithProperties()
{
    Catalog catalog = test::smallCatalog();
    catalog.licence = "CC0";
    catalog.provider = "Nordhus";
    catalog.version = "1.8";
    catalog.sizes.resize(catalog.items.size());
    catalog.sizes[1] = {505, 584.5F, 0};
    catalog.properties.resize(catalog.items.size());
    catalog.properties[0] = {"Absfrm", "CC-BY", "129.90", "EUR", {{"elevation", "120 mm"}, {"movable", "yes"}}};
    return catalog;
}

TEST_F(CatalogFile, GivesBackSizesAndProperties)
{
    EXPECT_EQ(readCatalog(written(catalogWithProperties()), CatalogContent::Everything), catalogWithProperties());
}

TEST_F(CatalogFile, ReadsSizesWithTheNames)
{
    const Catalog catalog = readCatalog(written(catalogWithProperties()), CatalogContent::Names);
    EXPECT_EQ(catalog.sizes, catalogWithProperties().sizes);
    EXPECT_TRUE(catalog.properties.empty());
    EXPECT_EQ(readCatalog(path(), CatalogContent::Properties).properties, catalogWithProperties().properties);
}

TEST_F(CatalogFile, IsOfTheOldestFormatThatHoldsAll)
{
    EXPECT_EQ(VelkHost::catalogFormat(written()), VelkHost::CatalogFormat::Names);
    EXPECT_EQ(VelkHost::catalogFormat(written(catalogWithProperties())), VelkHost::CatalogFormat::Properties);
    for (std::string Catalog::*const text : {&Catalog::licence, &Catalog::provider, &Catalog::version}) {
        Catalog catalog = test::smallCatalog();
        catalog.*text = "told";
        EXPECT_EQ(VelkHost::neededFormat(catalog), VelkHost::CatalogFormat::Properties);
    }
}

TEST_F(CatalogFile, LeavesOutWhatAnOlderFormatHasNoPlaceFor)
{
    writeCatalog(catalogWithProperties(), path(), VelkHost::CatalogFormat::Names);
    EXPECT_EQ(VelkHost::catalogFormat(path()), VelkHost::CatalogFormat::Names);
    EXPECT_EQ(readCatalog(path(), CatalogContent::Everything), test::smallCatalog());
}

TEST_F(CatalogFile, GivesThePropertiesOfOneItem)
{
    const Catalog catalog = catalogWithProperties();
    VelkHost::CatalogItems items(written(catalog));
    EXPECT_EQ(items.properties(catalog.items[0].uniqueId), catalog.properties[0]);
    EXPECT_EQ(items.properties(catalog.items[1].uniqueId), VelkHost::ItemProperties());
    EXPECT_EQ(items.properties("no such item"), VelkHost::ItemProperties());
    EXPECT_EQ(VelkHost::CatalogItems(written()).properties(catalog.items[0].uniqueId), VelkHost::ItemProperties());
}

TEST_F(CatalogFile, RefusesSizesThatAreNone)
{
    for (const char* const size : {"0", "-1", "1e9", "'wide'", "x'00'"}) {
        test::runSql(written(catalogWithProperties()), std::string("UPDATE item_property SET width = ") + size);
        EXPECT_EQ(refusal(), "is damaged: an item's size is none") << size;
    }
}

TEST_F(CatalogFile, RefusesPropertiesOfNothing)
{
    test::runSql(written(catalogWithProperties()), "INSERT INTO item_property VALUES (99, 1, 1, 1, '', '', '', '')");
    EXPECT_EQ(refusal(CatalogContent::Names), "is damaged: an entry belongs to nothing");
    test::runSql(written(catalogWithProperties()), "INSERT INTO item_detail VALUES (99, 99, 'a', 'b')");
    EXPECT_EQ(refusal(), "is damaged: an entry belongs to nothing");
}

TEST_F(CatalogFile, RefusesTheTablesOfAnotherFormat)
{
    test::runSql(written(catalogWithProperties()), "PRAGMA user_version = 1");
    EXPECT_THAT(refusal(), testing::StartsWith("is damaged: "));
    test::runSql(written(), "PRAGMA user_version = 2");
    EXPECT_THAT(refusal(), testing::StartsWith("is damaged: "));
}

// Catalog files that somebody has changed

struct ChangeCase
{
    const char* name;
    const char* sql;
    const char* reason;
};

const ChangeCase changeCases[] = {
    // The schema
    {"MissingTable", "DROP TABLE thumbnail", "is damaged: its table \"thumbnail\" is not as it should be"},
    {"MissingColumn", "ALTER TABLE item DROP COLUMN keywords", "is damaged: its table \"item\" is not as it should be"},
    {"FurtherColumn", "ALTER TABLE item ADD COLUMN x", "is damaged: its table \"item\" is not as it should be"},
    {"FurtherTable", "CREATE TABLE x (y)", "is damaged: it holds something other than a catalog's tables"},
    {"View", "CREATE VIEW x AS SELECT 1", "is damaged: it holds something other than a catalog's tables"},
    {"Trigger", "CREATE TRIGGER x AFTER INSERT ON item BEGIN DELETE FROM item; END",
     "is damaged: it holds something other than a catalog's tables"},
    {"Index", "CREATE INDEX x ON item(name)", "is damaged: it holds something other than a catalog's tables"},
    {"ViewAsTable",
     "DROP TABLE item_file; CREATE VIEW item_file AS WITH RECURSIVE n(id) AS (SELECT 1 UNION ALL SELECT id + 1 FROM n) "
     "SELECT id, 1 AS item, 1 AS role, 'x' AS name FROM n",
     "is damaged: it holds something other than a catalog's tables"},
    {"ComputedColumn",
     "DROP TABLE thumbnail; CREATE TABLE thumbnail (item INTEGER PRIMARY KEY, png BLOB AS (zeroblob(1000000000)))",
     "is damaged: its table \"thumbnail\" is not as it should be"},
    {"OtherColumnType", "DROP TABLE thumbnail; CREATE TABLE thumbnail (item TEXT PRIMARY KEY, png BLOB)",
     "is damaged: its table \"thumbnail\" is not as it should be"},
    {"NoVersion", "PRAGMA user_version = 0", "is damaged: it has no format number"},
    // The library's row
    {"NoLibrary", "DELETE FROM library", "is damaged: it does not say which library it is"},
    {"TwoLibraries", "INSERT INTO library SELECT * FROM library", "is damaged: it does not say which library it is"},
    {"NoId", "UPDATE library SET id = ''", "is damaged: it does not say which library it is"},
    {"UnknownKind", "UPDATE library SET kind = 3", "is damaged: its kind of library is unknown"},
    {"KindAsText", "UPDATE library SET kind = 'core'", "is damaged: its kind of library is unknown"},
    // Rows
    {"FolderWithoutParent", "UPDATE folder SET parent = 77 WHERE id = 2", "is damaged: an entry belongs to nothing"},
    {"FolderBelowItself", "UPDATE folder SET parent = 2 WHERE id = 2", "is damaged: an entry belongs to nothing"},
    {"FoldersInACircle", "UPDATE folder SET parent = 3 WHERE id = 2", "is damaged: an entry belongs to nothing"},
    {"ParentAsText", "UPDATE folder SET parent = 'x' WHERE id = 2", "is damaged: an entry belongs to nothing"},
    {"DeepFolders",
     "WITH RECURSIVE n(id) AS (SELECT 5 UNION ALL SELECT id + 1 FROM n WHERE id < 60) "
     "INSERT INTO folder SELECT id, id - 1, 'x' FROM n",
     "is damaged: it has too many folders"},
    {"ItemWithoutFolder", "UPDATE item SET folder = 77 WHERE id = 2", "is damaged: an entry belongs to nothing"},
    {"NameAsNumber",
     "DROP TABLE item; CREATE TABLE item (id INTEGER PRIMARY KEY, unique_id TEXT, folder INTEGER, name TEXT, keywords "
     "TEXT); "
     "INSERT INTO item VALUES (1, 'a', 1, x'00', 'b')",
     "is damaged: a text is missing"},
    {"FileOfNothing", "UPDATE item_file SET item = 77", "is damaged: an entry belongs to nothing"},
    {"FileWithoutRole", "UPDATE item_file SET role = 9", "is damaged: a file has an unknown role"},
    {"ThumbnailOfNothing", "UPDATE thumbnail SET item = 77 WHERE item = 1", "is damaged: an entry belongs to nothing"},
    {"HugeThumbnail", "UPDATE thumbnail SET png = zeroblob(20000000)", "is damaged (string or blob too big)"},
    {"HugeName", "UPDATE item SET name = hex(zeroblob(10000000))", "is damaged (string or blob too big)"},
};

void PrintTo(const ChangeCase& row, std::ostream* out)
{
    *out << row.sql;
}

class ChangedFile : public CatalogFile, public testing::WithParamInterface<ChangeCase>
{};

TEST_P(ChangedFile, IsRefused)
{
    test::runSql(written(), GetParam().sql);
    EXPECT_EQ(refusal(), GetParam().reason);
}

INSTANTIATE_TEST_SUITE_P(Changes, ChangedFile, testing::ValuesIn(changeCases),
                         [](const auto& row) { return std::string(row.param.name); });

/// So large that two threads read it.
Catalog largeCatalog()
{
    Catalog catalog = test::smallCatalog();
    for (int i = 0; i < 20'000; ++i)
        catalog.items.push_back({"more#" + std::to_string(i),
                                 static_cast<std::size_t>(i) % catalog.folders.size(),
                                 "Chair number " + std::to_string(i),
                                 "oak, and some other words",
                                 "",
                                 {}});
    return catalog;
}

TEST_F(CatalogFile, GivesBackAllOfALargeLibrary)
{
    const fileString file = written(largeCatalog());
    ASSERT_GT(FileUtils::fileSize(file), 1'000'000);
    EXPECT_EQ(readCatalog(file, CatalogContent::Everything), largeCatalog());
}

TEST_F(CatalogFile, RefusesALargeLibraryWithADamagedItem)
{
    test::runSql(written(largeCatalog()), "UPDATE item SET name = x'61' WHERE id = 15000");
    EXPECT_EQ(refusal(CatalogContent::Names), "is damaged: a text is missing");
    test::runSql(written(largeCatalog()), "UPDATE item SET folder = 0 WHERE id = 15000");
    EXPECT_EQ(refusal(CatalogContent::Names), "is damaged: an entry belongs to nothing");
    // No item before it tells that there is no such folder.
    test::runSql(written(), "UPDATE item SET folder = -9223372036854775807 - 1 WHERE id = 1");
    EXPECT_EQ(refusal(CatalogContent::Names), "is damaged: an entry belongs to nothing");
}

TEST_F(CatalogFile, NeedsNoMoreMemoryForItemsThatOnlyTheirKeysPromise)
{
    test::runSql(written(largeCatalog()),
                 "UPDATE item SET id = 9223372036854775807 WHERE id = (SELECT max(id) FROM item)");
    const std::vector<VelkHost::Item> items = readCatalog(path(), CatalogContent::Names).items;
    EXPECT_EQ(items.size(), largeCatalog().items.size());
    EXPECT_LT(items.capacity(), 20 * items.size());
}

TEST_F(CatalogFile, TakesTextsAsTheyStand)
{
    test::runSql(written(), "UPDATE item SET name = CAST(x'61ff001b62' AS TEXT) WHERE id = 1");
    EXPECT_EQ(readCatalog(path(), CatalogContent::Names).items[0].name, std::string("a\xFF\0\x1B"
                                                                                    "b",
                                                                                    5));
}

TEST_F(CatalogFile, ReadsOtherTextEncodings)
{
    // The encoding of a database is fixed by its first table.
    const fileString other = path(U"utf16.calib");
    test::runSql(
        other,
        "PRAGMA encoding = 'UTF-16le'; PRAGMA application_id = 1447382091; PRAGMA user_version = 1;"
        "CREATE TABLE library (id TEXT NOT NULL, name TEXT NOT NULL, kind INTEGER NOT NULL, language TEXT NOT NULL,"
        " description TEXT NOT NULL, created TEXT NOT NULL);"
        "CREATE TABLE folder (id INTEGER PRIMARY KEY, parent INTEGER, name TEXT);"
        "CREATE TABLE item (id INTEGER PRIMARY KEY, unique_id TEXT, folder INTEGER, name TEXT, keywords TEXT);"
        "CREATE TABLE thumbnail (item INTEGER PRIMARY KEY, png BLOB);"
        "CREATE TABLE item_file (id INTEGER PRIMARY KEY, item INTEGER, role INTEGER, name TEXT);"
        "INSERT INTO library VALUES ('a', 'K\u00FCche', 1, '', '', '');");
    EXPECT_EQ(readCatalog(other, CatalogContent::Everything).name, "K\u00FCche");
}

TEST_F(CatalogFile, RefusesEveryTruncation)
{
    const std::string bytes = test::readFile(written());
    for (std::size_t size = 0; size < bytes.size(); size += size < 200 ? 1 : 997) {
        test::writeFile(path(), bytes.substr(0, size));
        EXPECT_FALSE(refusal().empty()) << size;
    }
}

TEST_F(CatalogFile, NeverCrashesOnFlippedBytes)
{
    const std::string bytes = test::readFile(written());
    std::mt19937 random(1);
    std::size_t refused = 0;
    // Every byte of the headers and of the first page's schema, then at random.
    for (std::size_t run = 0; run < 4'000; ++run) {
        std::string damaged = bytes;
        const std::size_t flips = run < 1'500 ? 1 : 1 + random() % 8;
        for (std::size_t flip = 0; flip < flips; ++flip) {
            const std::size_t position = run < 1'500 ? run : random() % bytes.size();
            damaged[position] = static_cast<char>(random());
        }
        test::writeFile(path(), damaged);
        try {
            readCatalog(path(), CatalogContent::Everything);
        } catch (const FileError&) {
            ++refused;
        }
    }
    EXPECT_GT(refused, 100U);
}

TEST_F(CatalogFile, EndsWhenPagesLeadInCircles)
{
    // Enough items that the table has inner pages; then every inner page's children become one page.
    Catalog catalog = test::smallCatalog();
    for (int i = 0; i < 20'000; ++i)
        catalog.items.push_back({"more#" + std::to_string(i), 0, "Name", "", "", {}});
    std::string bytes = test::readFile(written(catalog));
    const std::size_t pageSize = 4'096;
    std::size_t innerPages = 0;
    for (std::size_t page = pageSize; page + pageSize <= bytes.size(); page += pageSize) {
        if (bytes[page] != 5)
            continue;
        ++innerPages;
        const std::size_t cells =
            static_cast<unsigned char>(bytes[page + 3]) * 256U + static_cast<unsigned char>(bytes[page + 4]);
        const auto cellAt = [&](std::size_t i) {
            return static_cast<unsigned char>(bytes[page + 12 + 2 * i]) * 256U +
                   static_cast<unsigned char>(bytes[page + 13 + 2 * i]);
        };
        for (std::size_t i = 1; i < cells; ++i)
            bytes.replace(page + cellAt(i), 4, bytes, page + cellAt(0), 4);
    }
    ASSERT_GT(innerPages, 0U);
    test::writeFile(path(), bytes);
    EXPECT_EQ(refusal(), "is damaged: its rows are out of order");
}

}  // namespace
