#include <VelkCommon/Files/FileReaper.h>

#include "support/TestHost.h"

#include <gmock/gmock.h>

#include <stdexcept>
#include <type_traits>

namespace {

static_assert(std::is_convertible_v<fileString, FileReaper>, "a path is handed over as it is");
static_assert(!std::is_copy_constructible_v<FileReaper>, "or the file would be deleted twice");

class FileReaperTest : public testing::Test
{
protected:
    FileReaperTest() { test::writeFile(file_, "x"); }

    test::TemporaryFolder root_;
    fileString file_ = root_ / U"file";
};

TEST_F(FileReaperTest, DeletesTheFileOnEveryWayOut)
{
    try {
        const FileReaper reaper(file_);
        EXPECT_TRUE(file_.pathExists());
        throw std::runtime_error("any");
    } catch (const std::runtime_error&) {
        EXPECT_FALSE(file_.pathExists());
    }
}

TEST_F(FileReaperTest, KeepsTheFileWhenCancelled)
{
    {
        FileReaper reaper(file_);
        reaper.cancel();
        reaper.cancel();
    }
    EXPECT_EQ(test::readFile(file_), "x");
}

TEST_F(FileReaperTest, TakesAPathAsItIs)
{
    const auto guarded = [this](const FileReaper&) { EXPECT_TRUE(file_.pathExists()); };
    guarded(file_);
    EXPECT_FALSE(file_.pathExists());
}

TEST_F(FileReaperTest, MindsNoMissingFile)
{
    {
        const FileReaper missing(root_ / U"missing");
        const FileReaper empty{fileString()};
    }
    EXPECT_THAT(test::listFolder(root_.path()), testing::ElementsAre("file"));
}

TEST_F(FileReaperTest, LeavesFoldersAlone)
{
    {
        const FileReaper reaper(root_.path());
    }
    EXPECT_TRUE(file_.pathExists());
}

}  // namespace
