#include "host/catalog/CatalogFile.h"

#include "host/fixtures/Fixtures.h"
#include "support/Processes.h"

#include <filesystem>

namespace {

class DatabasePosix : public test::TestHost
{};

// Elsewhere, such a name begins with a drive.
TEST_F(DatabasePosix, MayHaveAColonInItsName)
{
    VelkHost::writeCatalog(test::smallCatalog(), folder() / U"c:a.calib");
    test::inChild([&] {
        std::filesystem::current_path(folder().utf8());
        const fileString relative(std::string("c:a.calib"));
        EXPECT_EQ(readCatalog(relative, VelkHost::CatalogContent::Names).id, "test-library");
    });
}

}  // namespace
