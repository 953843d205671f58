#include <VelkCommon/Files/PathUtils.h>
#include <VelkCommon/Platform/PathText.h>

#include "support/TestHost.h"

namespace {

using Folder = fileString Velk::HostFolders::*;
using Getter = fileString (PathUtils::*)() const;

struct WellKnown
{
    const char* name;
    Folder folder;
    Getter getter;
};

class WellKnownFolder : public test::TestHost, public testing::WithParamInterface<WellKnown>
{
protected:
    std::string ask() const { return (PathUtils::getObject().*GetParam().getter)().utf8(); }

    void give(const std::string& path)
    {
        auto services = this->services();
        services.folders.*GetParam().folder = path;
        Velk::installHost(services);
    }
};

TEST_P(WellKnownFolder, IsTheHostsWithOneSeparatorAtTheEnd)
{
    const std::string path = (folder() / U"own").utf8();
    give(path);
    EXPECT_EQ(ask(), path + Velk::Platform::separator);
    give(path + "/");
    EXPECT_EQ(ask(), path + "/");
}

TEST_P(WellKnownFolder, IsAskedForAnewAtEveryCall)
{
    give((folder() / U"one").utf8());
    const std::string first = ask();
    give((folder() / U"two").utf8());
    EXPECT_NE(ask(), first);
}

TEST_P(WellKnownFolder, HasADefaultOfItsOwn)
{
    give("");
    const std::string path = ask();
    EXPECT_TRUE(Velk::Platform::isAbsolute(path)) << path;
    EXPECT_TRUE(Velk::Platform::isSeparator(path.back())) << path;
    EXPECT_NE(path.find("velk"), std::string::npos) << path;
}

INSTANTIATE_TEST_SUITE_P(
    Paths, WellKnownFolder,
    testing::Values(WellKnown{"UserDatabase", &Velk::HostFolders::userDatabase, &PathUtils::getUserDatabasePath},
                    WellKnown{"CoreLibraryDatabase", &Velk::HostFolders::coreLibraryDatabase,
                              &PathUtils::getCoreLibraryDatabasePath},
                    WellKnown{"BonusLibraryDatabase", &Velk::HostFolders::bonusLibraryDatabase,
                              &PathUtils::getBonusLibraryDatabasePath},
                    WellKnown{"ManufacturerLibrary", &Velk::HostFolders::manufacturerLibrary,
                              &PathUtils::getManufacturerLibraryPath},
                    WellKnown{"ManufacturerData", &Velk::HostFolders::manufacturerData,
                              &PathUtils::getManufacturerDataPath},
                    WellKnown{"ReferencedFiles", &Velk::HostFolders::proprietaryLibraryReferencedFiles,
                              &PathUtils::getProprietaryLibraryReferencedFilesPath},
                    WellKnown{"UserTexture", &Velk::HostFolders::userTexture, &PathUtils::getUserTexturePath},
                    WellKnown{"Temp", &Velk::HostFolders::temp, &PathUtils::getTempPath}),
    [](const auto& info) { return std::string(info.param.name); });

using PathUtilsFolders = test::TestHost;

TEST_F(PathUtilsFolders, OnlyTheTemporaryOneIsCreated)
{
    auto services = this->services();
    services.folders.userDatabase = folder() / U"missing";
    services.folders.temp = folder() / U"deep/temp";
    Velk::installHost(services);
    EXPECT_FALSE(PathUtils::getObject().getUserDatabasePath().pathExists());
    EXPECT_TRUE(PathUtils::getObject().getTempPath().pathExists());
}

}  // namespace
