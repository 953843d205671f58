#include <VelkLibrary/UI/Chooser.h>

#include "support/TestHost.h"
#include "support/Threads.h"

#include <gmock/gmock.h>

#include <set>
#include <vector>

namespace {

using Library::Chooser;

constexpr std::size_t threadCount = 8;

class ChooserThreads : public test::TestHost
{
protected:
    ~ChooserThreads() override { Chooser::cleanup(); }
};

TEST_F(ChooserThreads, AllGetTheSameObject)
{
    for (int round = 0; round < 50; ++round) {
        std::vector<Chooser*> found(threadCount);
        test::onThreads(threadCount, [&found](std::size_t i) { found[i] = &Chooser::get(); });
        EXPECT_THAT(std::set<Chooser*>(found.begin(), found.end()), testing::SizeIs(1));
        Chooser::cleanup();
    }
}

TEST_F(ChooserThreads, MakingAndCleaningUpKeepOutOfEachOthersWay)
{
    test::onThreads(threadCount, [](std::size_t i) {
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
