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
                                         "errors.png", "manufacturer_data.png", "odd \xFF.png"));
INSTANTIATE_TEST_SUITE_P(NotPlain, UnsafeLogoName,
                         testing::Values("", "..", "a/b.png", "a\\b.png", "nul.png", "a.png ", "a\x01.png"));
INSTANTIATE_TEST_SUITE_P(OwnFiles, UnsafeLogoName,
                         testing::Values("manufacturer_data.json", "Manufacturer_Data.JSON",
                                         "manufacturer_data_temp.json", "catalog_hash.txt", "Catalog_Filters.json",
                                         "errors.log", "ERRORS.LOG"));

}  // namespace
