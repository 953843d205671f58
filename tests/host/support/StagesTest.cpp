#include "host/support/Stages.h"

#include <gmock/gmock.h>

#include <stdexcept>
#include <vector>

using testing::ElementsAre;
using VelkHost::Stages;

namespace {

/// Makes the numbers up to the last one, and keeps what is used.
struct Numbers
{
    int last = 0;
    int made = 0;
    std::vector<int> used;

    bool make(int& number)
    {
        number = ++made;
        return made <= last;
    }

    void run(std::size_t threads)
    {
        Stages<int>([this](int& number) { return make(number); }, [this](int& number) { used.push_back(number); })
            .run(threads);
    }
};

class StagesOnThreads : public testing::TestWithParam<std::size_t>
{};

TEST_P(StagesOnThreads, UseEverythingInItsOrder)
{
    Numbers numbers{10'000, 0, {}};
    numbers.run(GetParam());
    ASSERT_EQ(numbers.used.size(), 10'000U);
    for (int i = 0; i < 10'000; ++i)
        EXPECT_EQ(numbers.used[static_cast<std::size_t>(i)], i + 1);
}

TEST_P(StagesOnThreads, EndWhereNothingIsMade)
{
    Numbers numbers;
    numbers.run(GetParam());
    EXPECT_TRUE(numbers.used.empty());
    EXPECT_EQ(numbers.made, 1);
}

TEST_P(StagesOnThreads, GiveABatchBackToBeFilledAgain)
{
    std::size_t most = 0;
    int made = 0;
    Stages<std::vector<int>> stages(
        [&](std::vector<int>& batch) {
            most = std::max(most, batch.capacity());
            batch.assign(1'000, made);
            return ++made <= 100;
        },
        [](std::vector<int>&) {});
    stages.run(GetParam());
    EXPECT_GE(most, 1'000U);
}

TEST_P(StagesOnThreads, ThrowWhatMakingThrows)
{
    std::vector<int> used;
    int made = 0;
    Stages<int> stages(
        [&](int& number) {
            number = ++made;
            if (made == 50)
                throw std::runtime_error("the source is gone");
            return true;
        },
        [&](int& number) { used.push_back(number); });
    EXPECT_THROW(stages.run(GetParam()), std::runtime_error);
    EXPECT_LT(used.size(), 50U);
}

TEST_P(StagesOnThreads, ThrowWhatUsingThrows)
{
    Numbers numbers{1'000'000'000, 0, {}};
    Stages<int> stages([&](int& number) { return numbers.make(number); },
                       [](int& number) {
                           if (number == 50)
                               throw std::runtime_error("nobody wants it");
                       });
    EXPECT_THROW(stages.run(GetParam()), std::runtime_error);
    EXPECT_LT(numbers.made, 100) << "what nobody uses is not made";
}

INSTANTIATE_TEST_SUITE_P(Stages, StagesOnThreads, testing::Values(1, 2, 3));

}  // namespace
