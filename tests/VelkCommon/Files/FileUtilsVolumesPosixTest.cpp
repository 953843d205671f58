// Files that are moved from one file system to another.
#include <VelkCommon/Files/FileUtils.h>

#include "PosixFiles.h"
#include "support/Processes.h"

#include <gmock/gmock.h>

namespace {

using testing::ElementsAre;
using testing::IsEmpty;

using OtherVolume = test::OtherVolume;

TEST_F(OtherVolume, MoveFileCopiesAndRemoves)
{
    test::writeFile(other_ / U"from", "new");
    setMode(other_ / U"from", 0640);
    test::writeFile(at(U"to"), "old");
    EXPECT_FALSE(FileUtils::moveFile(other_ / U"from", at(U"to"), false));
    EXPECT_EQ(test::readFile(at(U"to")), "old");
    EXPECT_TRUE(FileUtils::moveFile(other_ / U"from", at(U"to"), true));
    EXPECT_EQ(test::readFile(at(U"to")), "new");
    EXPECT_EQ(modeOf(at(U"to")), mode_t{0640});
    EXPECT_TRUE(FileUtils::moveFile(at(U"to"), other_ / U"back", false));
    EXPECT_THAT(names(), IsEmpty());
    EXPECT_THAT(test::listFolder(other_), ElementsAre("back"));
}

TEST_F(OtherVolume, RenameFileStaysOnItsOwn)
{
    test::writeFile(other_ / U"from", "new");
    EXPECT_FALSE(FileUtils::renameFile(other_ / U"from", at(U"to")));
    EXPECT_THAT(names(), IsEmpty());
}

TEST_F(OtherVolume, ASourceThatMustStayIsNotMoved)
{
    test::writeFile(other_ / U"from", "new");
    test::writeFile(at(U"to"), "old");
    setMode(other_, 0555);
    test::asOrdinaryUser([this] { EXPECT_FALSE(FileUtils::moveFile(other_ / U"from", at(U"to"), true)); });
    setMode(other_, 0755);
    EXPECT_EQ(test::readFile(at(U"to")), "old");
    EXPECT_THAT(test::listFolder(other_), ElementsAre("from"));
}

TEST_F(OtherVolume, AFullDiskLeavesBothEnds)
{
    test::writeFile(other_ / U"from", std::string(2 * smallDisk, 'n'));
    test::writeFile(at(U"to"), "old");
    test::inChild([this] {
        test::limitFileSize(smallDisk);
        EXPECT_FALSE(FileUtils::moveFile(other_ / U"from", at(U"to"), true));
    });
    EXPECT_EQ(test::readFile(at(U"to")), "old");
    EXPECT_THAT(names(), ElementsAre("to"));
    EXPECT_EQ(FileUtils::fileSize(other_ / U"from"), static_cast<long long>(2 * smallDisk));
}

}  // namespace
