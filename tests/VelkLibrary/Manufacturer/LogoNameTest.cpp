#include <VelkLibrary/Manufacturer/LogoName.h>

#include "support/TestHost.h"

namespace {

// The error log's name comes from a host.
class SafeLogoName : public test::TestHost, public testing::WithParamInterface<const char*>
{};
class UnsafeLogoName : public test::TestHost, public testing::WithParamInterface<const char*>
{};

TEST_P(SafeLogoName, IsTaken)
{
    EXPECT_TRUE(Library::isSafeLogoName(fileString(std::string(GetParam()))));
}

TEST_P(UnsafeLogoName, IsRefused)
{
    EXPECT_FALSE(Library::isSafeLogoName(fileString(std::string(GetParam()))));
}

INSTANTIATE_TEST_SUITE_P(Names, SafeLogoName,
                         testing::Values("acme.png",
                                         "K\xC3\xBC"
                                         "che 2.png",
                                         "errors.png", "manufacturer_data.png", "odd \xFF.png", "a/b.png", "a\\b.png",
                                         "acme doors/2026/logo.png", "a/.hidden", "errors/log"));
INSTANTIATE_TEST_SUITE_P(NotPlain, UnsafeLogoName,
                         testing::Values("", "..", "nul.png", "a.png ", "a\x01.png", "/a.png", "\\a.png", "a/", "a\\",
                                         "a//b.png", "a/\\b.png", "../a.png", "a/../b.png", "a\\..\\b.png", "./a.png",
                                         "a/./b.png", "a/..", "c:a.png", "c:/a.png", "c:\\a.png", "\\\\host\\a.png",
                                         "//host/a.png", "\\\\?\\c:\\a.png", "con/a.png", "a/nul", "a/Lpt1.png/b.png",
                                         "a./b.png", "a /b.png", "a/b.png ", "a:b/c.png", "a/b.png:stream"));
INSTANTIATE_TEST_SUITE_P(OwnFiles, UnsafeLogoName,
                         testing::Values("manufacturer_data.json", "Manufacturer_Data.JSON",
                                         "manufacturer_data_temp.json", "catalog_hash.txt", "Catalog_Filters.json",
                                         "errors.log", "ERRORS.LOG", "acme/manufacturer_data.json",
                                         "acme\\Manufacturer_Data.JSON", "manufacturer_data.json/acme.png",
                                         "Manufacturer_Data_Temp.json/a.png", "a/ERRORS.log/b.png",
                                         "a/b/catalog_hash.txt"));

TEST(LongLogoName, IsRefused)
{
    const std::string folders = std::string(200, 'a') + "/" + std::string(200, 'b') + "/" + std::string(200, 'c') +
                                "/" + std::string(200, 'd') + "/";
    const std::string name(Library::longestLogoName - folders.size(), 'e');
    EXPECT_TRUE(Library::isSafeLogoName(fileString(folders + name)));
    EXPECT_FALSE(Library::isSafeLogoName(fileString(folders + name + "e")));
    EXPECT_FALSE(Library::isSafeLogoName(fileString(std::string(256, 'a') + "/b.png")));
}

}  // namespace
