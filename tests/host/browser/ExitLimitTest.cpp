#include "host/browser/ExitLimit.h"

#include <gtest/gtest.h>

#include <chrono>
#include <condition_variable>
#include <cstdlib>
#include <mutex>

using namespace std::chrono_literals;

namespace {

void waitForEver()
{
    std::mutex mutex;
    std::unique_lock lock(mutex);
    std::condition_variable never;
    never.wait(lock, [] { return false; });
}

class ExitLimitDeathTest : public testing::Test
{
protected:
    ExitLimitDeathTest() { GTEST_FLAG_SET(death_test_style, "threadsafe"); }
};

TEST_F(ExitLimitDeathTest, EndsAProgramWhoseWorkersGoOn)
{
    const auto run = [] {
        VelkHost::ExitLimit limit;
        limit.start(3, 1ms);
        waitForEver();
    };
    EXPECT_EXIT(run(), testing::ExitedWithCode(3), "");
}

TEST_F(ExitLimitDeathTest, LetsAProgramEndByItselfInTime)
{
    const auto run = [] {
        {
            VelkHost::ExitLimit limit;
            limit.start(3, 1h);
        }
        std::_Exit(4);
    };
    EXPECT_EXIT(run(), testing::ExitedWithCode(4), "");
}

}  // namespace
