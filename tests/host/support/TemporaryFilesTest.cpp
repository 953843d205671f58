#include "host/support/TemporaryFiles.h"

#include "host/fixtures/Fixtures.h"

#include <VelkCommon/Files/PathUtils.h>

namespace {

using VelkHost::TemporaryFiles;

class TemporaryFilesOfAProcess : public test::TestHost
{
protected:
    static fileString usual() { return PathUtils::getObject().getTempPath(); }

    /// Services whose folder for temporary files cannot be made.
    Velk::HostServices withoutFolder() const
    {
        test::writeFile(folder() / U"file", "not a folder");
        Velk::HostServices services = *Velk::host();
        services.folders.temp = folder() / U"file" / U"temp";
        return services;
    }
};

TEST_F(TemporaryFilesOfAProcess, AreInAFolderThatGoesWithThem)
{
    const fileString before = usual();
    {
        const TemporaryFiles files(*Velk::host());
        EXPECT_EQ(files.path().parentPath().parentPath(), before.parentPath());
        EXPECT_EQ(usual(), files.path());
        test::writeFile(files.path() / U"left", "left");
    }
    EXPECT_EQ(usual(), before);
    EXPECT_THAT(test::listFolder(before), testing::IsEmpty());
}

TEST_F(TemporaryFilesOfAProcess, AreRefusedWhereTheyCannotBeMade)
{
    EXPECT_EQ(test::reasonOf([this] { const TemporaryFiles files(withoutFolder()); }), "cannot be written");
}

TEST_F(TemporaryFilesOfAProcess, AreWhereTheyAlwaysAreIfTheProgramCanDoWithout)
{
    const Velk::HostServices services = withoutFolder();
    const TemporaryFiles files(services, TemporaryFiles::Need::ifPossible);
    EXPECT_EQ(files.path().parentPath(), services.folders.temp);
}

}  // namespace
