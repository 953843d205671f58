#include <VelkCommon/Files/FileUtils.h>
#include <VelkCommon/Files/LockingFStream.h>
#include <VelkCommon/Files/SHA1.h>

#include "support/OpenModes.h"
#include "support/TestHost.h"

#include <sys/stat.h>
#include <unistd.h>

// Links, pipes and devices that others put in a file's place in a folder where everybody may write.

namespace {

class PlantedFiles : public testing::Test
{
protected:
    PlantedFiles()
    {
        test::writeFile(victim_, "private");
        EXPECT_EQ(::chmod(victim_.utf8().c_str(), 0600), 0);
        EXPECT_EQ(::symlink(victim_.utf8().c_str(), link_.utf8().c_str()), 0);
    }

    mode_t victimsMode() const
    {
        struct stat status = {};
        EXPECT_EQ(::stat(victim_.utf8().c_str(), &status), 0);
        return status.st_mode & mode_t{07777};
    }

    test::TemporaryFolder root_;
    fileString victim_ = root_ / U"victim";
    fileString link_ = root_ / U"link";
};

TEST_F(PlantedFiles, ALinkGivesNobodyAccessToItsTarget)
{
    EXPECT_FALSE(FileUtils::setFilePermEveryoneFullAccess(link_));
    EXPECT_EQ(victimsMode(), mode_t{0600});
}

TEST_F(PlantedFiles, NothingIsWrittenThroughALink)
{
    EXPECT_TRUE(LockingFStream(link_, test::writeBytes).fail());
    EXPECT_EQ(test::readFile(victim_), "private");
    const fileString nowhere = root_ / U"nowhere";
    ASSERT_EQ(::symlink((root_ / U"new").utf8().c_str(), nowhere.utf8().c_str()), 0);
    EXPECT_TRUE(LockingFStream(nowhere, test::writeBytes).fail());
    EXPECT_FALSE((root_ / U"new").pathExists());
}

TEST_F(PlantedFiles, ALinkIsRead)
{
    std::string text;
    EXPECT_TRUE(LockingFStream(link_, test::readText) >> text);
    EXPECT_EQ(text, "private");
}

// None of these may be read to its end: it has no end, or nobody writes to it.
class Endless : public PlantedFiles, public testing::WithParamInterface<const char*>
{
protected:
    Endless()
    {
        EXPECT_EQ(::mkfifo((root_ / U"pipe").utf8().c_str(), 0666), 0);
        EXPECT_EQ(::symlink("/dev/zero", (root_ / U"device").utf8().c_str()), 0);
    }

    fileString path_ = root_.path() / fileString(std::string(GetParam()));
};

TEST_P(Endless, IsNotRead)
{
    EXPECT_EQ(SHA1::fileContentsToSHA1Hex(path_), "");
    EXPECT_FALSE(FileUtils::copyFile(path_, root_ / U"copy", true));
    EXPECT_FALSE((root_ / U"copy").pathExists());
    EXPECT_TRUE(LockingFStream(path_, test::readText).fail());
}

TEST_P(Endless, IsRemoved)
{
    EXPECT_FALSE(FileUtils::isPathWriteLocked(path_));
    EXPECT_TRUE(FileUtils::removePath(path_, FileUtils::noFlags));
    EXPECT_FALSE(path_.pathExists());
}

INSTANTIATE_TEST_SUITE_P(Files, Endless, testing::Values("pipe", "device"),
                         [](const auto& test) { return test.param; });

}  // namespace
