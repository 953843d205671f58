#include "host/support/SystemChannel.h"

#include "support/RuntimeFolder.h"
#include "support/Threads.h"
#include "support/Waiting.h"

#include <array>
#include <future>

namespace {

using VelkHost::Channel;
using VelkHost::ChannelListener;
using VelkHost::connectToChannel;
using VelkHost::Listening;
using VelkHost::listenOnChannel;
using VelkHost::WaitEnd;

WaitEnd patiently()
{
    return std::chrono::steady_clock::now() + test::patience;
}

WaitEnd atOnce()
{
    return std::chrono::steady_clock::now();
}

std::string received(Channel& channel, WaitEnd end = patiently())
{
    std::array<char, 100> bytes{};
    return {bytes.data(), channel.receive(bytes.data(), bytes.size(), end)};
}

class SystemChannel : public testing::Test
{
protected:
    std::string name() const { return runtime_.freshName(); }

private:
    test::RuntimeFolder runtime_;
};

TEST_F(SystemChannel, CarriesWhatBothSidesSay)
{
    const Listening listening = listenOnChannel(name());
    ASSERT_NE(listening.listener, nullptr);
    test::Thread answering([&] {
        const auto channel = listening.listener->next();
        ASSERT_NE(channel, nullptr);
        EXPECT_EQ(received(*channel), "question");
        EXPECT_TRUE(channel->send("answer", patiently()));
        EXPECT_EQ(received(*channel), "") << "the other side has hung up";
    });
    auto channel = connectToChannel(name(), patiently());
    ASSERT_NE(channel, nullptr);
    EXPECT_TRUE(channel->send("question", patiently()));
    EXPECT_EQ(received(*channel), "answer");
    channel.reset();
    answering.join();
}

TEST_F(SystemChannel, TakesOneConnectionAfterTheOther)
{
    const Listening listening = listenOnChannel(name());
    ASSERT_NE(listening.listener, nullptr);
    test::Thread answering([&] {
        for (const char* const word : {"one", "two"}) {
            const auto channel = listening.listener->next();
            ASSERT_NE(channel, nullptr);
            EXPECT_TRUE(channel->send(word, patiently()));
            EXPECT_EQ(received(*channel), "");
        }
    });
    for (const char* const word : {"one", "two"}) {
        const auto channel = connectToChannel(name(), patiently());
        ASSERT_NE(channel, nullptr);
        EXPECT_EQ(received(*channel), word);
    }
}

TEST_F(SystemChannel, BelongsToOneProgramAtATime)
{
    Listening first = listenOnChannel(name());
    ASSERT_NE(first.listener, nullptr);
    const Listening second = listenOnChannel(name());
    EXPECT_EQ(second.listener, nullptr);
    EXPECT_TRUE(second.isTaken);
    const Listening other = listenOnChannel(name() + "-other");
    EXPECT_NE(other.listener, nullptr);
    first.listener.reset();
    EXPECT_NE(listenOnChannel(name()).listener, nullptr);
}

TEST_F(SystemChannel, LeadsNowhereWithoutAListener)
{
    EXPECT_EQ(connectToChannel(name(), atOnce()), nullptr);
    listenOnChannel(name()).listener.reset();
    EXPECT_EQ(connectToChannel(name(), atOnce()), nullptr);
}

TEST_F(SystemChannel, DoesNotWaitForASilentSideForEver)
{
    const Listening listening = listenOnChannel(name());
    ASSERT_NE(listening.listener, nullptr);
    const auto channel = connectToChannel(name(), patiently());
    ASSERT_NE(channel, nullptr);
    const auto other = listening.listener->next();
    ASSERT_NE(other, nullptr);
    EXPECT_EQ(received(*channel, atOnce()), "");
    EXPECT_EQ(received(*other, atOnce()), "");
}

TEST_F(SystemChannel, DoesNotSendToASideThatReadsNothing)
{
    const Listening listening = listenOnChannel(name());
    ASSERT_NE(listening.listener, nullptr);
    const auto channel = connectToChannel(name(), patiently());
    ASSERT_NE(channel, nullptr);
    const auto other = listening.listener->next();
    ASSERT_NE(other, nullptr);
    EXPECT_FALSE(channel->send(std::string(10'000'000, 'x'), atOnce() + std::chrono::milliseconds(50)));
}

TEST_F(SystemChannel, EndsAllWaitsWhenStopped)
{
    const Listening listening = listenOnChannel(name());
    ASSERT_NE(listening.listener, nullptr);
    std::promise<void> waits;
    test::Thread waiting([&] {
        {
            const auto channel = listening.listener->next();
            ASSERT_NE(channel, nullptr);
            waits.set_value();
            EXPECT_EQ(received(*channel), "");
        }
        EXPECT_EQ(listening.listener->next(), nullptr);
    });
    const auto channel = connectToChannel(name(), patiently());
    ASSERT_NE(channel, nullptr);
    ASSERT_EQ(waits.get_future().wait_for(test::patience), std::future_status::ready);
    listening.listener->stop();
    waiting.join();
}

TEST_F(SystemChannel, TellsPathsApartByWhereTheyLead)
{
    const test::TemporaryFolder folder;
    EXPECT_EQ(VelkHost::pathWithoutLinks(folder / U"nothing"), fileString());
    const fileString there = VelkHost::pathWithoutLinks(folder.path());
    EXPECT_FALSE(there.empty());
    EXPECT_EQ(VelkHost::pathWithoutLinks(folder / U"." / U".." / folder.path().stemWithExtension()), there);
}

}  // namespace
