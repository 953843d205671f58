#include "host/support/LastWords.h"

#include <gtest/gtest.h>

#include <functional>
#include <new>
#include <stdexcept>
#include <thread>

namespace {

class LastWordsDeathTest : public testing::Test
{
protected:
    LastWordsDeathTest() { GTEST_FLAG_SET(death_test_style, "threadsafe"); }

    /// Throws where nobody can catch it.
    static void endBy(const std::function<void()>& thrower)
    {
        VelkHost::endWith({"tool: out of memory\n", "tool: unexpected failure\n", 7});
        std::thread(thrower).join();
    }
};

TEST_F(LastWordsDeathTest, SayThatMemoryRanOut)
{
    EXPECT_EXIT(endBy([] { throw std::bad_alloc(); }), testing::ExitedWithCode(7), "^tool: out of memory\n$");
}

TEST_F(LastWordsDeathTest, SayOfEverythingElseThatItWasUnexpected)
{
    EXPECT_EXIT(endBy([] { throw std::runtime_error("secret"); }), testing::ExitedWithCode(7),
                "^tool: unexpected failure\n$");
    EXPECT_EXIT(endBy([] { throw 1; }), testing::ExitedWithCode(7), "^tool: unexpected failure\n$");
}

TEST_F(LastWordsDeathTest, AreSaidAtOnceWhereNothingMayBeUnwound)
{
    const auto runOut = [] {
        VelkHost::endWith({"tool: out of memory\n", "tool: unexpected failure\n", 7});
        const VelkHost::EndWithoutMemory end;
        std::get_new_handler()();
    };
    EXPECT_EXIT(runOut(), testing::ExitedWithCode(7), "^tool: out of memory\n$");
}

TEST(EndWithoutMemory, LeavesTheHandlerThatWasThere)
{
    const std::new_handler before = std::get_new_handler();
    {
        const VelkHost::EndWithoutMemory end;
        EXPECT_NE(std::get_new_handler(), before);
    }
    EXPECT_EQ(std::get_new_handler(), before);
}

}  // namespace
