#include <VelkCommon/Files/FileLock.h>

#include "support/TestHost.h"
#include "support/Threads.h"

#include <gmock/gmock.h>

#include <list>
#include <optional>
#include <stop_token>
#include <string>
#include <utility>

namespace {

using testing::ElementsAre;
using testing::IsEmpty;

constexpr std::chrono::milliseconds atOnce{0};
constexpr std::chrono::minutes longEnough{2};

class FileLockTest : public testing::Test
{
protected:
    std::vector<std::string> names() const { return test::listFolder(root_.path()); }

    test::TemporaryFolder root_;
    const fileString path_ = root_ / U"data.lock";
};

TEST_F(FileLockTest, ExcludesOthersUntilItIsGivenBack)
{
    {
        const FileLock lock(path_, atOnce, "the first");
        EXPECT_TRUE(lock);
        EXPECT_FALSE(lock.isBusy());
        const FileLock other(path_, atOnce, "the second");
        EXPECT_FALSE(other);
        EXPECT_TRUE(other.isBusy());
    }
    EXPECT_TRUE(FileLock(path_, atOnce, "the third"));
}

TEST_F(FileLockTest, LeavesNoFile)
{
    {
        const FileLock lock(path_, atOnce, "work");
        EXPECT_THAT(names(), ElementsAre("data.lock"));
    }
    EXPECT_THAT(names(), IsEmpty());
}

TEST_F(FileLockTest, TellsWhatItsHolderDoes)
{
    const FileLock lock(path_, atOnce, "saving the filters");
    const FileLock other(path_, atOnce, "something else");
    EXPECT_EQ(FileLock::holder(path_), "saving the filters");
    EXPECT_EQ(FileLock::holder(root_ / U"none.lock"), "");
}

TEST_F(FileLockTest, WaitsUntilTheOtherOneHasIt)
{
    std::optional<FileLock> first(std::in_place, path_, atOnce, "the first");
    test::Thread second([&] { EXPECT_TRUE(FileLock(path_, longEnough, "the second")); });
    first.reset();
    second.join();
}

TEST_F(FileLockTest, GivesUpWaitingWhenItIsToStop)
{
    const FileLock first(path_, atOnce, "the first");
    std::stop_source stop;
    stop.request_stop();
    EXPECT_TRUE(FileLock(path_, longEnough, "the second", stop.get_token()).isBusy());
}

TEST_F(FileLockTest, MovesToItsNewOwner)
{
    FileLock lock(path_, atOnce, "work");
    const FileLock owner = std::move(lock);
    EXPECT_TRUE(owner);
    EXPECT_TRUE(FileLock(path_, atOnce, "other work").isBusy());
}

TEST_F(FileLockTest, CannotBeTakenWithoutItsFolder)
{
    const FileLock lock(root_ / U"none" / U"data.lock", atOnce, "work");
    EXPECT_FALSE(lock);
    EXPECT_FALSE(lock.isBusy());
}

TEST_F(FileLockTest, LetsManyThreadsCountWithoutALostStep)
{
    constexpr int threads = 8;
    constexpr int steps = 25;
    const fileString counter = root_ / U"counter";
    test::writeFile(counter, "0");
    {
        std::list<test::Thread> running;
        for (int thread = 0; thread < threads; ++thread)
            running.emplace_back([&] {
                for (int i = 0; i < steps; ++i) {
                    const FileLock lock(path_, longEnough, "counting");
                    EXPECT_TRUE(lock);
                    test::writeFile(counter, std::to_string(std::stoi(test::readFile(counter)) + 1));
                }
            });
    }
    EXPECT_EQ(test::readFile(counter), std::to_string(threads * steps));
}

}  // namespace
