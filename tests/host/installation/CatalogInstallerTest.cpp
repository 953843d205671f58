#include "host/installation/CatalogInstaller.h"

#include "host/fixtures/Fixtures.h"

#include <VelkLibrary/CatalogDownloadProtocol.h>

using test::smallCatalogBytes;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;

namespace {

class CatalogInstaller : public test::TestHost
{
protected:
    fileString core() const { return folder() / U"core"; }
};

TEST_F(CatalogInstaller, ReplacesAndAdds)
{
    test::writeFile(core() / U"a.calib", "old");
    const std::string first = smallCatalogBytes("A");
    const std::string second = smallCatalogBytes("B");
    test::writeFile(folder() / U"1.calib", first);
    test::writeFile(folder() / U"2.calib", second);
    VelkHost::CatalogInstaller installer;
    EXPECT_TRUE(installer.install({core() / U"a.calib", folder() / U"1.calib"}));
    EXPECT_TRUE(installer.install({folder() / U"new" / U"folder" / U"b.calib", folder() / U"2.calib"}));
    EXPECT_EQ(test::readFile(core() / U"a.calib"), first);
    EXPECT_EQ(test::readFile(folder() / U"new" / U"folder" / U"b.calib"), second);
    EXPECT_FALSE((folder() / U"1.calib").pathExists());
    EXPECT_THAT(installer.installed(), ElementsAre(core() / U"a.calib", folder() / U"new" / U"folder" / U"b.calib"));
    EXPECT_THAT(installer.failures(), IsEmpty());
}

TEST_F(CatalogInstaller, KeepsTheOldOneOnFailure)
{
    test::writeFile(core() / U"a.calib", "old");
    test::writeFile(folder() / U"1.calib", smallCatalogBytes("A").substr(0, 5'000));
    VelkHost::CatalogInstaller installer;
    EXPECT_FALSE(installer.install({core() / U"a.calib", folder() / U"1.calib"}));
    EXPECT_FALSE(installer.install({core() / U"a.calib", folder() / U"missing.calib"}));
    EXPECT_EQ(test::readFile(core() / U"a.calib"), "old");
    ASSERT_EQ(installer.failures().size(), 2u);
    EXPECT_EQ(installer.failures()[0].catalog, core() / U"a.calib");
    EXPECT_THAT(installer.failures()[0].reason, HasSubstr("what the service sent is damaged: it is cut off after"));
}

TEST_F(CatalogInstaller, TakesFailuresOutOfTheHashFile)
{
    using namespace LibraryCatalogUpdate;
    test::writeFile(core() / U"a.calib", "old");
    test::writeFile(core() / U"b.calib", "old");
    test::writeFile(core() / U"catalog_hash.txt", "a.calib:new\nb.calib:1\n");
    VelkHost::CatalogInstaller installer;
    installer.install({core() / U"a.calib", folder() / U"missing.calib"});
    installer.finish();
    CatalogTable catalogs;
    readCatalogHashFile(core() / U"catalog_hash.txt", catalogs, CoreCatalogs);
    ASSERT_EQ(catalogs.size(), 1u);
    EXPECT_EQ(catalogs.begin()->first, fileString(std::u32string(U"b.calib")));
}

}  // namespace
