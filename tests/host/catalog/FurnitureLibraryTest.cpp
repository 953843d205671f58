#include "host/catalog/FurnitureLibrary.h"

#include "host/fixtures/Fixtures.h"

using VelkHost::BuildOptions;
using VelkHost::Catalog;
using VelkHost::FileRole;
using VelkHost::Item;
using VelkHost::ItemFile;
using VelkHost::readFurnitureLibrary;

namespace {

const char* const englishTexts =
    "id=Test#Models\n"
    "name=Test models\n"
    "description=Models for tests\n"
    "name#1=Chair\nid#1=test#chair\ntags#1=Seat, Oak, seat\ndescription#1=Made for a desk\ncategory#1=Living room\n"
    "icon#1=/models/chair.png\nmodel#1=/models/chair/chair.obj\n"
    "name#10=Lamp\ncategory#10=Lights\ntags#10=Oak\ncreator#10=Lamp "
    "works\nicon#10=/models/none.png\nmodel#10=lamp.obj\n"
    "name#2=B\xFCro\\u2122\\\n   desk\ncategory#2=Living room\nicon#2=/models/photo.jpg\n"
    "name#x=no number\nname#=no number\nname#99999999999=no number\nnameless#3=x\n";

const char* const germanTexts = "name#1=Stuhl\ntags#1=Sitz, Eiche\ncategory#1=Wohnzimmer\nname#2=Schreibtisch\n";

class FurnitureLibrary : public test::TestHost
{
protected:
    fileString library(test::ZipEntries further = {}) const
    {
        test::ZipEntries entries{{"PluginFurnitureCatalog.properties", englishTexts},
                                 {"PluginFurnitureCatalog_de.properties", germanTexts},
                                 {"PluginFurnitureCatalog_pt_PT.properties", "name#1=Cadeira (PT)\n"},
                                 {"PluginFurnitureCatalog_pt.properties", "name#1=Cadeira\nname#2=Mesa\n"},
                                 {"models/chair.png", test::png("chair")},
                                 {"models/photo.jpg", "no png"},
                                 {"models/chair/chair.obj", "v"},
                                 {"models/chair/chair.mtl", "m"},
                                 {"models/chair/Oak.JPG", "j"},
                                 {"models/chairs/other.obj", "v"},
                                 {"lamp.obj", "v"}};
        entries.insert(entries.end(), further.begin(), further.end());
        const fileString path = folder() / U"test.sh3f";
        test::writeZip(path, entries);
        return path;
    }

    Catalog read(const std::string& language = "") const
    {
        BuildOptions options;
        options.language = language;
        return readFurnitureLibrary(library(), options);
    }

    std::string refusal(const test::ZipEntries& entries) const
    {
        const fileString path = folder() / U"bad.sh3f";
        test::writeZip(path, entries);
        return test::reasonOf([&] { readFurnitureLibrary(path, {}); });
    }
};

TEST_F(FurnitureLibrary, HasItsHeader)
{
    const Catalog catalog = read();
    EXPECT_EQ(catalog.id, "Test#Models");
    EXPECT_EQ(catalog.name, "Test models");
    EXPECT_EQ(catalog.description, "Models for tests");
    EXPECT_EQ(catalog.language, "");
    EXPECT_EQ(catalog.kind, VelkHost::LibraryKind::User);
}

TEST_F(FurnitureLibrary, TakesHeaderFromOptions)
{
    const Catalog catalog = readFurnitureLibrary(library(), {VelkHost::LibraryKind::Bonus, "", "my-id", "My name"});
    EXPECT_EQ(catalog.id, "my-id");
    EXPECT_EQ(catalog.name, "My name");
    EXPECT_EQ(catalog.kind, VelkHost::LibraryKind::Bonus);
}

TEST_F(FurnitureLibrary, HasItsItemsInOrderOfNumbers)
{
    const Catalog catalog = read();
    ASSERT_EQ(catalog.items.size(), 3U);
    EXPECT_EQ(catalog.items[0], (Item{"test#chair",
                                      0,
                                      "Chair",
                                      "Seat, Oak, Made for a desk",
                                      test::png("chair"),
                                      {{FileRole::Model, "models/chair/chair.obj"},
                                       {FileRole::Texture, "models/chair/Oak.JPG"},
                                       {FileRole::Other, "models/chair/chair.mtl"}}}));
    EXPECT_EQ(catalog.items[1], (Item{"Test#Models#2",
                                      0,
                                      "B\xC3\xBCro\xE2\x84\xA2"
                                      "desk",
                                      "",
                                      "",
                                      {}}));
    EXPECT_EQ(catalog.items[2],
              (Item{"Test#Models#10", 1, "Lamp", "Oak, Lamp works", "", {{FileRole::Model, "lamp.obj"}}}));
}

TEST_F(FurnitureLibrary, HasSizesAndProperties)
{
    const fileString path = folder() / U"sizes.sh3f";
    test::writeZip(path,
                   {{"PluginFurnitureCatalog.properties",
                     "id=Sizes\nlicense=CC0\nprovider=Nordhus\nversion=1.8\n"
                     "name#1=Chair\ncategory#1=Seats\nwidth#1=50.5\ndepth#1=58.4\nheight#1=105\n"
                     "elevation#1=12\ncreator#1=Absfrm\nlicense#1=CC-BY\nprice#1=129.90\ncurrency#1=EUR\n"
                     "creationDate#1=2013-09-05\ndoorOrWindow#1=false\nmovable#1=true\n"
                     "name#2=Lamp\ncategory#2=Lights\nwidth#2=wide\nheight#2=-3\nprice#2=much\ncurrency#2=EUR\n"}});
    const Catalog catalog = readFurnitureLibrary(path, {});
    EXPECT_EQ(catalog.licence, "CC0");
    EXPECT_EQ(catalog.provider, "Nordhus");
    EXPECT_EQ(catalog.version, "1.8");
    EXPECT_EQ(catalog.sizeOf(0), (VelkHost::ItemSize{505, 584, 1'050}));
    EXPECT_FALSE(catalog.sizeOf(1).isKnown());
    const VelkHost::ItemProperties chair{
        "Absfrm",
        "CC-BY",
        "129.90",
        "EUR",
        {{"elevation", "120 mm"}, {"date", "2013-09-05"}, {"door or window", "no"}, {"movable", "yes"}}};
    EXPECT_EQ(catalog.propertiesOf(0), chair);
    EXPECT_EQ(catalog.propertiesOf(1), VelkHost::ItemProperties());
}

TEST_F(FurnitureLibrary, MakesACategoryOfEachCategory)
{
    const Catalog catalog = read();
    const std::vector<VelkHost::Folder> expected{{VelkHost::Folder::noParent, "Living room"},
                                                 {VelkHost::Folder::noParent, "Lights"}};
    EXPECT_EQ(catalog.folders, expected);
}

TEST_F(FurnitureLibrary, TakesTranslations)
{
    const Catalog catalog = read("de");
    EXPECT_EQ(catalog.language, "de");
    EXPECT_EQ(catalog.items[0].name, "Stuhl");
    EXPECT_EQ(catalog.items[0].keywords, "Sitz, Eiche, Made for a desk");
    EXPECT_EQ(catalog.items[1].name, "Schreibtisch");
    EXPECT_EQ(catalog.items[2].name, "Lamp");
    EXPECT_EQ(catalog.folderPath(catalog.items[0].folder), std::vector<std::string>{"Wohnzimmer"});
    EXPECT_EQ(catalog.folderPath(catalog.items[1].folder), std::vector<std::string>{"Living room"});
}

TEST_F(FurnitureLibrary, FallsBackFromCountryToLanguage)
{
    for (const char* language : {"pt_PT", "pt-pt", "PT_pt"}) {
        const Catalog catalog = read(language);
        EXPECT_EQ(catalog.language, "pt_PT");
        EXPECT_EQ(catalog.items[0].name, "Cadeira (PT)");
        EXPECT_EQ(catalog.items[1].name, "Mesa");
        EXPECT_EQ(catalog.items[2].name, "Lamp");
    }
    EXPECT_EQ(read("pt_BR").language, "pt");
    EXPECT_EQ(read("de_AT").items[0].name, "Stuhl");
}

TEST_F(FurnitureLibrary, ListsItsLanguages)
{
    EXPECT_EQ(test::reasonOf([&] { read("fr"); }),
              "has no names in \"fr\"; it has de, pt, pt_PT (without --language you get the library's own names)");
}

TEST_F(FurnitureLibrary, RefusesOtherArchives)
{
    EXPECT_EQ(refusal({{"a.txt", "x"}}),
              "is not a furniture library: it holds no \"PluginFurnitureCatalog.properties\"");
    const fileString path = folder() / U"text.sh3f";
    test::writeFile(path, "PK is no zip");
    EXPECT_THAT(test::reasonOf([&] { readFurnitureLibrary(path, {}); }),
                testing::StartsWith("is not a sound zip archive"));
}

TEST_F(FurnitureLibrary, RefusesRepeatedIds)
{
    EXPECT_EQ(refusal({{"PluginFurnitureCatalog.properties", "id=x\nname#1=a\nid#1=y\nname#2=b\nid#2=y\n"}}),
              "the id \"y\" occurs twice; ids must differ");
}

TEST_F(FurnitureLibrary, BoundsWhatItUnpacks)
{
    EXPECT_EQ(refusal({{"PluginFurnitureCatalog.properties", std::string((16 << 20) + 1, '#')}}),
              "its entry \"PluginFurnitureCatalog.properties\" is larger than 16 MiB");
    EXPECT_EQ(refusal({{"PluginFurnitureCatalog.properties", "name#1=a\nicon#1=/i.png\n"},
                       {"i.png", test::png(std::string(8 << 20, 'x'))}}),
              "its entry \"i.png\" is larger than 8 MiB");
}

TEST_F(FurnitureLibrary, RefusesDamagedEntries)
{
    const fileString path = library();
    std::string bytes = test::readFile(path);
    const std::size_t body = bytes.find("chair\x50\x4B");
    ASSERT_NE(body, std::string::npos);
    bytes[body] = 'X';
    test::writeFile(path, bytes);
    EXPECT_THAT(test::reasonOf([&] { readFurnitureLibrary(path, {}); }),
                testing::StartsWith("its entry \"models/chair.png\" is damaged"));
}

TEST_F(FurnitureLibrary, NeverCrashesOnDamage)
{
    const std::string bytes = test::readFile(library());
    const fileString path = folder() / U"damaged.sh3f";
    std::size_t refused = 0;
    for (std::size_t position = 0; position < bytes.size(); ++position) {
        std::string damaged = bytes;
        damaged[position] = static_cast<char>(damaged[position] ^ (1 << position % 8));
        test::writeFile(path, position % 3 == 0 ? damaged.substr(0, position) : damaged);
        try {
            readFurnitureLibrary(path, {});
        } catch (const VelkHost::FileError&) {
            ++refused;
        }
    }
    EXPECT_GT(refused, bytes.size() / 3);
}

TEST_F(FurnitureLibrary, NeverUsesEntryNamesAsPaths)
{
    const fileString path = folder() / U"evil.sh3f";
    test::writeZip(path, {{"PluginFurnitureCatalog.properties",
                           "name#1=a\\u001b[31m\nicon#1=/../../evil.png\nmodel#1=/../x/m.obj\n"},
                          {"../../evil.png", test::png("evil")},
                          {"../x/m.obj", "v"},
                          {"../x/a\nb.jpg", "j"}});
    const Catalog catalog = readFurnitureLibrary(path, {});
    EXPECT_EQ(catalog.items[0].name, "a [31m");
    EXPECT_EQ(catalog.items[0].thumbnail, test::png("evil"));
    const std::vector<ItemFile> files{{FileRole::Model, "../x/m.obj"}, {FileRole::Texture, "../x/a b.jpg"}};
    EXPECT_EQ(catalog.items[0].files, files);
    EXPECT_FALSE((folder().parentPath().parentPath() / U"evil.png").pathExists());
}

TEST_F(FurnitureLibrary, NamesItsManufacturers)
{
    const fileString path = folder() / U"manufacturers.sh3f";
    test::writeZip(path, {{"PluginFurnitureCatalog.properties",
                           "provider=www.example.org\n"
                           "name#1=A\ncreator#1=Bob\nicon#1=/none.png\nname#2=B\ncreator#2=Bob\nicon#2=/2.png\n"
                           "name#3=C\ncreator#3=Ann\tLee\nicon#3=/2.png\nname#4=D\ncreator#4=Bob\nicon#4=/4.png\n"
                           "name#5=E\nname#6=F\ncreator#6=Bob\n"},
                          {"2.png", test::png("2")},
                          {"4.png", test::png("4")}});
    const std::vector<VelkHost::FurnitureManufacturer> manufacturers = VelkHost::readFurnitureManufacturers(path);
    ASSERT_EQ(manufacturers.size(), 3U);
    EXPECT_EQ(manufacturers[0].name, "Ann Lee");
    EXPECT_EQ(manufacturers[0].items, 1U);
    EXPECT_EQ(manufacturers[0].otherIcon, test::png("2"));
    EXPECT_EQ(manufacturers[1].name, "Bob");
    EXPECT_EQ(manufacturers[1].url, "");
    EXPECT_EQ(manufacturers[1].items, 4U);
    EXPECT_EQ(manufacturers[1].icon, test::png("2"));
    EXPECT_EQ(manufacturers[1].otherIcon, test::png("4"));
    EXPECT_EQ(manufacturers[2].name, "www.example.org");
    EXPECT_EQ(manufacturers[2].url, "https://www.example.org");
    EXPECT_EQ(manufacturers[2].items, 0U);
    const fileString nobodys = folder() / U"nobodys.sh3f";
    test::writeZip(nobodys, {{"PluginFurnitureCatalog.properties", "name#1=A\n"}});
    EXPECT_TRUE(VelkHost::readFurnitureManufacturers(nobodys).empty());
}

}  // namespace
