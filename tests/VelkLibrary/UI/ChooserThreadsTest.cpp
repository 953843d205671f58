#include <VelkLibrary/UI/Chooser.h>

#include "support/TestHost.h"

#include <gmock/gmock.h>

#include <latch>
#include <set>
#include <thread>
#include <vector>

namespace {

using Library::Chooser;

constexpr int threadCount = 8;

class ChooserThreads : public test::TestHost
{
protected:
    ~ChooserThreads() override { Chooser::cleanup(); }

    // Everything runs at once, each on its own thread.
    template <typename Work>
    static void runOnThreads(Work work)
    {
        std::latch start(threadCount);
        std::vector<std::thread> threads;
        for (int i = 0; i < threadCount; ++i) {
            threads.emplace_back([&start, &work, i] {
                start.arrive_and_wait();
                work(i);
            });
        }
        for (std::thread& thread : threads)
            thread.join();
    }
};

TEST_F(ChooserThreads, AllGetTheSameObject)
{
    for (int round = 0; round < 50; ++round) {
        std::vector<Chooser*> found(threadCount);
        runOnThreads([&found](int i) { found[static_cast<std::size_t>(i)] = &Chooser::get(); });
        EXPECT_THAT(std::set<Chooser*>(found.begin(), found.end()), testing::SizeIs(1));
        Chooser::cleanup();
    }
}

TEST_F(ChooserThreads, MakingAndCleaningUpKeepOutOfEachOthersWay)
{
    runOnThreads([](int i) {
        for (int round = 0; round < 200; ++round) {
            if (i % 2 == 0)
                static_cast<void>(Chooser::get());
            else
                Chooser::cleanup();
        }
    });
    EXPECT_EQ(Chooser::get().getData().getId(), -1);
}

}  // namespace
