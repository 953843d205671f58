#include <VelkCommon/Files/FileUtils.h>
#include <VelkCommon/Files/LockingFStream.h>
#include <VelkCommon/Files/Overwriting.h>
#include <VelkCommon/Files/detail/LockPatience.h>

#include "support/OpenModes.h"
#include "support/TestHost.h"

#include <gmock/gmock.h>

#include <chrono>
#include <string>

using testing::ElementsAre;

namespace {

class Overwriting : public testing::Test
{
protected:
    Overwriting() { test::writeFile(file_, "the old text"); }
    ~Overwriting() override { Velk::detail::setLockPatience(Velk::detail::usualLockPatience); }

    std::string text() const { return test::readFile(file_); }
    std::vector<std::string> names() const { return test::listFolder(root_.path()); }

    test::TemporaryFolder root_;
    const fileString file_ = root_ / U"data";
    const fileString backup_ = root_ / U"own" / U"backup";
};

TEST_F(Overwriting, GivesAFileItsNewContent)
{
    for (const std::string next : {"new", "a much longer text than the one before", "", "x"}) {
        EXPECT_TRUE(Velk::overwriteFile(file_, next, backup_));
        EXPECT_EQ(text(), next);
        EXPECT_FALSE(backup_.pathExists());
    }
}

TEST_F(Overwriting, WritesIntoTheFileThatIsThere)
{
    const fileString secondName = root_ / U"second name";
    ASSERT_TRUE(FileUtils::linkFile(file_, secondName));
    EXPECT_TRUE(Velk::overwriteFile(file_, "new", backup_));
    EXPECT_EQ(test::readFile(secondName), "new");
}

TEST_F(Overwriting, DoesNothingWithoutABackup)
{
    test::writeFile(root_ / U"own", "a file, where a folder is needed");
    EXPECT_FALSE(Velk::overwriteFile(file_, "new", backup_));
    EXPECT_EQ(text(), "the old text");
}

TEST_F(Overwriting, DoesNothingWhileSomebodyElseWrites)
{
    Velk::detail::setLockPatience(std::chrono::milliseconds(0));
    const LockingFStream writer(file_, test::writeBytes);
    ASSERT_TRUE(writer.isOpen());
    EXPECT_FALSE(Velk::overwriteFile(file_, "new", backup_));
    EXPECT_FALSE(backup_.pathExists());
}

class OverwritingLater : public Overwriting
{
protected:
    OverwritingLater()
    {
        EXPECT_TRUE(FileUtils::createDirectoriesWithPerm(backup_.parentPath()));
        test::writeFile(backup_, "what was there");
    }
};

TEST_F(OverwritingLater, PutsBackWhatWasThereBeforeAWritingThatDidNotEnd)
{
    test::writeFile(file_, std::string("\0he new t", 9));
    Velk::recoverOverwritten(file_, backup_);
    EXPECT_EQ(text(), "what was there");
    EXPECT_FALSE(backup_.pathExists());
}

TEST_F(OverwritingLater, PutsItBackBeforeTheNextWriting)
{
    test::writeFile(file_, std::string("\0", 1));
    EXPECT_TRUE(Velk::overwriteFile(file_, "new", backup_));
    EXPECT_EQ(text(), "new");
    EXPECT_FALSE(backup_.pathExists());
}

TEST_F(OverwritingLater, LeavesWhatHasBeenWrittenCompletely)
{
    Velk::recoverOverwritten(file_, backup_);
    EXPECT_EQ(text(), "the old text");
    EXPECT_FALSE(backup_.pathExists());
}

TEST_F(Overwriting, LeavesAFileWithoutABackup)
{
    const std::string torn("\0he new t", 9);
    test::writeFile(file_, torn);
    Velk::recoverOverwritten(file_, backup_);
    EXPECT_EQ(text(), torn);
    EXPECT_THAT(names(), ElementsAre("data"));
}

}  // namespace
