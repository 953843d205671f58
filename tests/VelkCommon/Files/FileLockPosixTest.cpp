#include <VelkCommon/Files/FileLock.h>

#include "PosixFiles.h"
#include "support/Processes.h"

#include <gtest/gtest.h>

#include <chrono>
#include <string>

namespace {

constexpr std::chrono::milliseconds atOnce{0};

/// A file that everybody may write, in a folder that only its owner may change.
class FileLockInAClosedFolder : public test::PosixFiles
{
protected:
    FileLockInAClosedFolder()
    {
        test::writeFile(file_, "data");
        setMode(file_, 0666);
        setMode(root_.path(), 0555);
    }
    ~FileLockInAClosedFolder() override { setMode(root_.path(), 0777); }

    const fileString file_ = at(U"data");
};

TEST_F(FileLockInAClosedFolder, ExcludesOthers)
{
    test::asOrdinaryUser([this] {
        {
            const FileLock lock = FileLock::ofFile(file_, atOnce, "the first");
            EXPECT_TRUE(lock);
            const FileLock other = FileLock::ofFile(file_, atOnce, "the second");
            EXPECT_FALSE(other);
            EXPECT_TRUE(other.isBusy());
        }
        EXPECT_TRUE(FileLock::ofFile(file_, atOnce, "the third"));
        EXPECT_EQ(names().size(), 1U);
    });
}

// The first of them may make a lock file, if the tests run with special rights, and the second may not.
TEST_F(FileLockInAClosedFolder, ExcludesThoseWhoMayChangeIt)
{
    setMode(root_.path(), 0755);
    test::Signal locked;
    test::Signal tried;
    test::Child user([&] {
        test::becomeOrdinaryUser();
        const FileLock lock = FileLock::ofFile(file_, atOnce, "the user");
        EXPECT_TRUE(lock);
        locked.send();
        tried.wait();
    });
    locked.wait();
    EXPECT_TRUE(FileLock::ofFile(file_, atOnce, "the owner").isBusy());
    tried.send();
    user.wait();
    const FileLock lock = FileLock::ofFile(file_, atOnce, "the owner");
    EXPECT_TRUE(lock);
    test::asOrdinaryUser([this] { EXPECT_TRUE(FileLock::ofFile(file_, atOnce, "the user").isBusy()); });
}

TEST_F(FileLockInAClosedFolder, IsHandedOver)
{
    test::asOrdinaryUser([this] {
        FileLock lock = FileLock::ofFile(file_, atOnce, "the first");
        const FileLock taken = std::move(lock);
        EXPECT_TRUE(taken);
        EXPECT_TRUE(FileLock::ofFile(file_, atOnce, "the second").isBusy());
    });
}

TEST_F(FileLockInAClosedFolder, IsNotThereWithoutItsFolder)
{
    const FileLock lock = FileLock::ofFile(at(U"none") / U"data", atOnce, "nothing");
    EXPECT_FALSE(lock);
    EXPECT_FALSE(lock.isBusy());
}

}  // namespace
