#include "host/fixtures/PublishFixtures.h"
#include "support/Names.h"

#include <VelkCommon/Files/FileUtils.h>

using testing::ElementsAre;
using testing::HasSubstr;
using testing::StartsWith;

namespace {

using PublishFolder = test::PublishTest;

TEST_F(PublishFolder, ReportsEverythingAtOnce)
{
    test::writeCatalogFile(input(U"core/a & b.calib"), "A");
    test::writeFileDeep(input(U"core/broken.calib"), "no catalog");
    test::writeCatalogFile(input(U"core/good.calib"), "A");
    test::writeCatalogFile(input(U"bonus/x.calib"), "A");
    test::writeFileDeep(input(U"bonus/y.calibz"), "no archive");
    test::writeFileDeep(input(U"readme.txt"), "hello");
    test::writeFileDeep(input(U".hidden"), "not looked at");
    EXPECT_THAT(problems(), ElementsAre(StartsWith("readme.txt: has no meaning here"),
                                        StartsWith("core/a & b.calib: holds the character \"&\" in its name"),
                                        "core/broken.calib: is not a library catalog",
                                        StartsWith("bonus/x.calib: has another extension; this folder is for packed "),
                                        StartsWith("bonus/y.calibz: is not a sound zip archive")));
    EXPECT_FALSE(site().pathExists());
}

TEST_F(PublishFolder, MustExistAndHoldSomething)
{
    EXPECT_THAT(problems(), ElementsAre(".: is not a folder"));
    FileUtils::createDirectoriesWithPerm(input(U"core"));
    EXPECT_THAT(problems(), ElementsAre(StartsWith(".: holds nothing to publish")));
}

TEST_F(PublishFolder, HasFoldersWhereFoldersBelong)
{
    test::writeFileDeep(input(U"core"), "a file");
    test::writeFileDeep(input(U"logos"), "a file");
    test::writePackedFile(input(U"bonus/sub/x.calibz"), "A", {});
    EXPECT_THAT(problems(), ElementsAre("core: is not a folder", "bonus/sub: is a folder; libraries stand side by side",
                                        "logos: is not a folder"));
}

TEST_F(PublishFolder, HasLogosThatClientsTake)
{
    test::writeCatalogFile(input(U"core/a.calib"), "A");
    test::writeFileDeep(input(U"logos/doors/errors.log"), "logo");
    test::writeFileDeep(input(U"logos/d&r/acme.png"), "logo");
    test::writeFileDeep(input(U"logos/errors.log/acme.png"), "logo");
    test::writeFileDeep(input(U"logos/catalog_hash.txt"), "logo");
    test::writeFileDeep(input(U"logos/Acme.png"), "logo");
    test::writeFileDeep(input(U"logos/acme.png"), "logo");
    std::vector<std::string> found = problems();
    if constexpr (test::letterCaseCounts) {
        ASSERT_FALSE(found.empty());
        EXPECT_THAT(found.front(),
                    StartsWith("logos/acme.png: differs from another logo, or a folder of logos, in letter case"));
        found.erase(found.begin());
    }
    EXPECT_THAT(found, ElementsAre(StartsWith("logos/catalog_hash.txt: has the name of one of a client's own"),
                                   StartsWith("logos/d&r: holds the character \"&\""),
                                   StartsWith("logos/errors.log: has the name of one of a client's own"),
                                   StartsWith("logos/doors/errors.log: has the name of one of a client's own")));
}

TEST_F(PublishFolder, MayHaveLogosInFolders)
{
    test::writeFileDeep(input(U"logos/doors/2026/acme.png"), "deep");
    test::writeFileDeep(input(U"logos/doors/acme.png"), "in a folder");
    test::writeFileDeep(input(U"logos/acme.png"), "beside");
    test::writeFileDeep(input(U"manufacturer_data.json"), test::manufacturerData("doors/2026/acme.png"));
    EXPECT_EQ(publish().logos, 3U);
    EXPECT_EQ(test::readFile(VelkHost::storedFile(site(), table().logos.at("doors/2026/acme.png").stored)), "deep");
}

// One record per installed file name, one archive of referenced files per stem.
TEST_F(PublishFolder, HasEveryInstalledNameOnce)
{
    test::writeCatalogFile(input(U"core/T\u00FCr.calib"), "A");
    test::writeCatalogFile(input(U"core/T\u00DCR.calib"), "A");
    test::writeZipFile(input(U"referenced/Oak.zip"), {{"a", "b"}});
    test::writePackedFile(input(U"bonus/oak.calibz"), "A", {});
    test::writePackedFile(input(U"bonus/elm.calibz"), "A", {});
    test::writePackedFile(input(U"manufacturer/elm.calibz"), "A", {});
    test::writePackedFile(input(U"manufacturer/t\u00FCr.calibz"), "A", {});
    std::vector<std::string> found = problems();
    if constexpr (test::letterCaseCounts) {
        ASSERT_FALSE(found.empty());
        EXPECT_THAT(
            found.front(),
            StartsWith("core/T\u00FCr.calib: would be installed under the same name as \"core/T\u00DCR.calib\""));
        found.erase(found.begin());
    }
    EXPECT_THAT(found,
                ElementsAre(StartsWith("bonus/oak.calibz: would be installed under the same name as \"" +
                                       test::shown("referenced/Oak.zip\"")),
                            StartsWith("manufacturer/elm.calibz: would be installed under the same name as \"" +
                                       test::shown("bonus/elm.calibz\"")),
                            StartsWith("manufacturer/t\u00FCr.calibz: would be installed under the same name as")));
}

TEST_F(PublishFolder, AllowsACoreCatalogWithItsReferencedFiles)
{
    test::writeCatalogFile(input(U"core/a.calib"), "A");
    test::writeZipFile(input(U"referenced/a.zip"), {{"a", "b"}});
    EXPECT_EQ(publish().libraries.size(), 2U);
}

struct PackedCase
{
    const char* name;
    std::function<test::ZipEntries(const std::string& catalog)> entries;
    const char* reason;
};

const PackedCase packedCases[] = {
    {"NoCatalog",
     [](const std::string&) {
         return test::ZipEntries{{"oak.png", "oak"}};
     },
     "holds no .calib file"},
    {"TwoCatalogs",
     [](const std::string& c) {
         return test::ZipEntries{{"a.calib", c}, {"b.calib", c}};
     },
     "holds more than one .calib file"},
    {"BrokenCatalog",
     [](const std::string&) {
         return test::ZipEntries{{"a.calib", "nonsense"}};
     },
     "its entry \"a.calib\" is not a library catalog"},
    {"EmptyCatalog",
     [](const std::string&) {
         return test::ZipEntries{{"a.calib", ""}};
     },
     "its entry \"a.calib\" "},
    {"OtherLetters",
     [](const std::string& c) {
         return test::ZipEntries{{"a.CALIB", c}};
     },
     "holds no .calib file"},
};

class PackedLibrary : public test::PublishTest, public testing::WithParamInterface<PackedCase>
{};

TEST_P(PackedLibrary, IsRefused)
{
    test::writeCatalogFile(folder() / U"a.calib", "A");
    test::writeZipFile(input(U"bonus/p.calibz"), GetParam().entries(test::readFile(folder() / U"a.calib")));
    EXPECT_THAT(problems(), ElementsAre(StartsWith("bonus/p.calibz: " + std::string(GetParam().reason))));
}

INSTANTIATE_TEST_SUITE_P(Archives, PackedLibrary, testing::ValuesIn(packedCases),
                         [](const auto& row) { return std::string(row.param.name); });

TEST_F(PublishFolder, ReadsEveryEntryToItsEnd)
{
    test::writePackedFile(input(U"bonus/p.calibz"), "A", {{"oak.png", std::string(1'000, 'o')}});
    test::writeZipFile(input(U"referenced/r.zip"), {{"oak.png", "oaken"}});
    for (const auto& [path, from, to] :
         {std::tuple(input(U"bonus/p.calibz"), "oak.png", 9), {input(U"referenced/r.zip"), "oaken", 0}}) {
        std::string bytes = test::readFile(path);
        const std::size_t at = bytes.find(from);
        ASSERT_NE(at, std::string::npos);
        bytes[at + static_cast<std::size_t>(to)] ^= 1;
        test::writeFile(path, bytes);
    }
    EXPECT_THAT(problems(), ElementsAre(StartsWith("referenced/r.zip: its entry \"oak.png\" is damaged"),
                                        StartsWith("bonus/p.calibz: its entry \"oak.png\" is damaged")));
}

struct ManufacturerCase
{
    const char* name;
    std::string text;
    const char* reason;
};

const ManufacturerCase manufacturerCases[] = {
    {"NoJson", "hello", "is not a JSON object"},
    {"NoObject", "[]", "is not a JSON object"},
    {"NoVersion", R"({"Last_Modified": "20260301T140559"})", "has no \"Version\""},
    {"NoTime", R"({"Version": "42", "Last_Modified": "yesterday"})", "\"Last_Modified\" is not a time"},
    {"CardIsNoObject", R"({"Version": "42", "Last_Modified": "20260301T140559", "manufacturer_1": 3})",
     "\"manufacturer_1\" is not a card"},
    {"CardWithoutId", R"({"Version": "42", "Last_Modified": "20260301T140559", "Manufacturer_1": {}})",
     "\"Manufacturer_1\" is not a card with an \"Id\""},
    {"WideId", R"({"Version": "42", "Last_Modified": "20260301T140559", "Manufacturer_1": {"Id": 1e300}})",
     "\"Manufacturer_1\" is not a card with an \"Id\" of 32 bits"},
    {"CardWithoutTime", R"({"Version": "42", "Last_Modified": "20260301T140559", "Manufacturer_1": {"Id": 1}})",
     "\"Manufacturer_1\".\"Last_Modified\" is not a time"},
    {"NameIsNoText",
     R"({"Version": "42", "Last_Modified": "20260301T140559",
         "Manufacturer_1": {"Id": 1, "Last_Modified": "20260301T140559", "Name": 5}})",
     "\"Manufacturer_1\".\"Name\" is not a text"},
    {"SameIdTwice",
     R"({"Version": "42", "Last_Modified": "20260301T140559",
         "Manufacturer_1": {"Id": 1, "Last_Modified": "20260301T140559"},
         "Manufacturer_2": {"Id": 1, "Last_Modified": "20260301T140559"}})",
     "\"Manufacturer_2\" has the \"Id\" of another card"},
    {"MissingLogo", test::manufacturerData("none.png"), "names the logo \"none.png\" (Acme), which is not in logos"},
    {"MissingLogoInAFolder", test::manufacturerData("doors/none.png"),
     "names the logo \"doors/none.png\" (Acme), which is not in logos"},
    {"LogoInAFolderOfWindows", test::manufacturerData("doors\\\\acme.png"),
     "names the logo \"doors\\acme.png\" (Acme), which holds the character \"\\\""},
    {"LogoOutside", test::manufacturerData("doors/../acme.png"),
     "names the logo \"doors/../acme.png\" (Acme), which is not a file name"},
    {"LogoOverAClientsFileInAFolder", test::manufacturerData("doors/Manufacturer_Data.json"),
     "names the logo \"doors/Manufacturer_Data.json\" (Acme), which has the name of one of a client's own files"},
    {"LogoOverAClientsFile", test::manufacturerData("Errors.log"),
     "names the logo \"Errors.log\" (Acme), which has the name of one of a client's own files"},
    {"LogoInOtherLetterCase", test::manufacturerData("ACME.png"),
     "names the logo \"ACME.png\" (Acme), but its letter case differs in logos"},
};

class ManufacturerData : public test::PublishTest, public testing::WithParamInterface<ManufacturerCase>
{};

TEST_P(ManufacturerData, IsRefused)
{
    test::writeFileDeep(input(U"logos/acme.png"), "logo");
    test::writeFileDeep(input(U"manufacturer_data.json"), GetParam().text);
    EXPECT_THAT(problems(), ElementsAre(StartsWith("manufacturer_data.json: " + std::string(GetParam().reason))));
}

INSTANTIATE_TEST_SUITE_P(Files, ManufacturerData, testing::ValuesIn(manufacturerCases),
                         [](const auto& row) { return std::string(row.param.name); });

TEST_F(PublishFolder, TakesADeletedCardWithoutItsLogo)
{
    test::writeFileDeep(input(U"manufacturer_data.json"),
                        R"({"Version": "42", "Last_Modified": "20260301T140559", "Manufacturer_1":
                            {"Id": 1, "Last_Modified": "20260301T140559", "Logo": "gone.png", "Deleted": true}})");
    EXPECT_TRUE(publish().manufacturers);
}

TEST_F(PublishFolder, RefusesBadLines)
{
    test::writeCatalogFile(input(U"core/a.calib"), "A");
    test::writeFileDeep(input(U"withdrawn.txt"),
                        "b.calibz: fine\nno colon\nc.calibz: \na+b.calibz: why\nA.calib: still there\nB.calibz: twice\n"
                        "d.calibz: odd \x01\n");
    EXPECT_THAT(problems(), ElementsAre(StartsWith("withdrawn.txt: line 2: is not \"NAME: MESSAGE\""),
                                        StartsWith("withdrawn.txt: line 3: is not \"NAME: MESSAGE\""),
                                        HasSubstr("line 4: \"a+b.calibz\" holds the character \"+\""),
                                        HasSubstr("line 5: \"A.calib\" is in the folder"),
                                        HasSubstr("line 6: \"B.calibz\" occurs twice"), HasSubstr("line 7: is not")));
}

TEST_F(PublishFolder, MayEndWithASeparator)
{
    test::writeCatalogFile(input(U"core/a.calib"), "A");
    EXPECT_EQ(VelkHost::publish(fileString(input().utf8() + "//"), site()).libraries.size(), 1U);
}

}  // namespace
