#include "host/browser/opening/OpenRequests.h"

#include "host/browser/opening/OneWindow.h"
#include "host/browser/opening/OpenMessage.h"
#include "support/Eventually.h"
#include "support/RuntimeFolder.h"
#include "support/Threads.h"

#include <gmock/gmock.h>

#include <VelkCommon/Files/FileState.h>

#include <atomic>
#include <random>

using testing::ElementsAre;
using testing::IsEmpty;
using VelkHost::Channel;
using VelkHost::connectToChannel;
using VelkHost::OpenRequests;
using VelkHost::ProgramStart;
using VelkHost::WaitEnd;

namespace {

constexpr std::chrono::milliseconds noPatience{0};

WaitEnd patiently()
{
    return std::chrono::steady_clock::now() + test::patience;
}

/// A window that is open, and others that are to be.
class OneWindow : public testing::Test
{
protected:
    /// `patience` is the window's.
    void openWindow(std::chrono::milliseconds patience = test::patience)
    {
        ProgramStart first = VelkHost::startOf(name(), {}, noPatience);
        ASSERT_NE(first.listener, nullptr);
        requests_ = std::make_unique<OpenRequests>(
            std::move(first.listener), [this](std::size_t) { return isOpen_; }, patience);
        QObject::connect(requests_.get(), &OpenRequests::started, requests_.get(),
                         [this](const QStringList& files) { started_.push_back(files); });
    }

    /// Another start, while this thread does what the window's does.
    bool handsOver(const QStringList& files)
    {
        std::atomic<bool> isHandedOver = false;
        besideWindow([&] { isHandedOver = VelkHost::startOf(name(), files, test::patience).isHandedOver; });
        return isHandedOver;
    }

    template <typename Work>
    static void besideWindow(const Work& work)
    {
        std::atomic<bool> isDone = false;
        QObject awakening;
        test::Thread other([&] {
            work();
            isDone = true;
            QMetaObject::invokeMethod(
                &awakening, [] {}, Qt::QueuedConnection);
        });
        test::eventually([&] { return isDone.load(); });
    }

    /// What comes back to somebody who sends that.
    std::string answerTo(const std::string& bytes)
    {
        std::string answer;
        besideWindow([&] {
            const std::unique_ptr<Channel> channel = connectToChannel(name(), patiently());
            ASSERT_NE(channel, nullptr);
            channel->send(bytes, patiently());  // it may be hung up on meanwhile
            char sign = 0;
            while (!answer.ends_with(VelkHost::doneAnswer) && channel->receive(&sign, 1, patiently()) == 1)
                answer += sign;
        });
        return answer;
    }

    static QString file(const char* name)
    {
        return QString::fromStdString(Velk::absolutePath(fileString(std::string(name))).utf8());
    }
    std::string name() const { return runtime_.freshName(); }

    void setOpen(bool isOpen) { isOpen_ = isOpen; }
    void closeWindow() { requests_.reset(); }
    const std::vector<QStringList>& started() const { return started_; }

private:
    test::RuntimeFolder runtime_;
    bool isOpen_ = true;
    std::vector<QStringList> started_;
    std::unique_ptr<OpenRequests> requests_;
};

TEST_F(OneWindow, GetsTheFilesOfLaterStarts)
{
    openWindow();
    const QStringList files{file("a.calibz"), file("K\u00FCche \u6905.calib")};
    EXPECT_TRUE(handsOver(files));
    EXPECT_TRUE(handsOver({}));
    EXPECT_THAT(started(), ElementsAre(files, QStringList()));
}

TEST_F(OneWindow, GetsManyFiles)
{
    openWindow();
    QStringList files;
    for (int i = 0; i < 9'000; ++i)
        files.append(file("library.calibz") + QString::number(i));
    EXPECT_TRUE(handsOver(files));
    EXPECT_THAT(started(), ElementsAre(files));
}

TEST_F(OneWindow, LeavesMoreFilesToAWindowOfTheirOwn)
{
    openWindow();
    QStringList files;
    for (int i = 0; i < 10'001; ++i)
        files.append(file("x"));
    const ProgramStart start = VelkHost::startOf(name(), files, test::patience);
    EXPECT_FALSE(start.isHandedOver);
    EXPECT_EQ(start.listener, nullptr);
}

TEST_F(OneWindow, HearsStartsAtTheSameTime)
{
    openWindow();
    std::atomic<int> handed = 0;
    besideWindow([&] {
        test::onThreads(8, [&](std::size_t) {
            if (VelkHost::startOf(name(), {file("a.calib")}, test::patience).isHandedOver)
                ++handed;
        });
    });
    EXPECT_EQ(handed, 8);
    EXPECT_EQ(started().size(), 8U);
}

// Nothing is done here on behalf of the window, as in one that hangs.
TEST_F(OneWindow, IsNotWaitedForWhereItHangs)
{
    openWindow();
    const ProgramStart start = VelkHost::startOf(name(), {file("a.calib")}, std::chrono::milliseconds(50));
    EXPECT_FALSE(start.isHandedOver);
    EXPECT_EQ(start.listener, nullptr);
    EXPECT_TRUE(handsOver({file("b.calib")})) << "it is alive again";
    EXPECT_THAT(started(), ElementsAre(QStringList{file("b.calib")})) << "the other start has opened its file itself";
}

TEST_F(OneWindow, MayBeUnableToTakeThem)
{
    openWindow();
    setOpen(false);
    besideWindow([&] {
        EXPECT_FALSE(VelkHost::startOf(name(), {file("a.calib")}, std::chrono::milliseconds(50)).isHandedOver);
    });
    EXPECT_THAT(started(), IsEmpty());
}

TEST_F(OneWindow, IsFollowedByTheNext)
{
    openWindow();
    closeWindow();
    openWindow();
    EXPECT_TRUE(handsOver({file("a.calib")}));
}

TEST_F(OneWindow, IsFollowedByAStartThatCameWhileItClosed)
{
    openWindow();
    setOpen(false);
    std::atomic<bool> isFirst = false;
    test::Thread other(
        [&] { isFirst = VelkHost::startOf(name(), {file("a.calib")}, test::patience).listener != nullptr; });
    closeWindow();
    other.join();
    EXPECT_TRUE(isFirst);
}

// ---- What is hung up on --------------------------------------------------------------------------

TEST_F(OneWindow, AnswersNoOtherLanguage)
{
    openWindow();
    const std::string message = *VelkHost::openMessage({file("a.calib")});
    const std::vector<std::string> texts{"GET / HTTP/1.1\r\n\r\n",
                                         std::string(15, '\0'),
                                         "velk1 ffffffff\n" + std::string(100'000, 'x'),
                                         "velk1 00000008\na.calib" + std::string(1, '\0'),
                                         "velk1 00000003\n/\xFF" + std::string(1, '\0'),
                                         "velk2" + message.substr(5)};
    for (const std::string& text : texts)
        EXPECT_EQ(answerTo(text), "") << text.substr(0, 20);
    EXPECT_THAT(answerTo(message + "no\n"), testing::AnyOf("ready\n", "")) << "not every system keeps what was sent";
    EXPECT_THAT(started(), IsEmpty());
    EXPECT_EQ(answerTo(message + "go\n"), "ready\ndone\n");
    EXPECT_THAT(started(), ElementsAre(QStringList{file("a.calib")}));
}

TEST_F(OneWindow, SurvivesAnyBytes)
{
    openWindow();
    std::mt19937 random(1);
    const std::string message = *VelkHost::openMessage({file("a.calib"), file("b.calib")}) + "go\n";
    for (int i = 0; i < 50; ++i) {
        std::string bytes = message;
        for (int change = 0; change < 3; ++change)
            bytes[random() % bytes.size()] = static_cast<char>(random());
        const std::unique_ptr<Channel> channel = connectToChannel(name(), patiently());
        if (channel != nullptr)
            channel->send(bytes.substr(0, random() % (bytes.size() + 1)), patiently());
    }
    EXPECT_TRUE(handsOver({file("c.calib")}));
    EXPECT_EQ(started().back(), QStringList{file("c.calib")});
}

TEST_F(OneWindow, DoesNotWaitForTheSilent)
{
    openWindow(std::chrono::milliseconds(50));
    std::vector<std::unique_ptr<Channel>> silent;
    const std::string message = *VelkHost::openMessage({file("a.calib")});
    for (const std::size_t said : {std::size_t{0}, std::size_t{3}, VelkHost::headSize, message.size() - 1})
        besideWindow([&] {
            silent.push_back(connectToChannel(name(), patiently()));
            ASSERT_NE(silent.back(), nullptr);
            silent.back()->send(message.substr(0, said), patiently());  // on a busy machine it comes too late
        });
    EXPECT_TRUE(handsOver({file("b.calib")}));
    EXPECT_THAT(started(), ElementsAre(QStringList{file("b.calib")}));
}

TEST_F(OneWindow, EndsWhileSomebodyTalks)
{
    openWindow();
    const std::unique_ptr<Channel> channel = connectToChannel(name(), patiently());
    ASSERT_NE(channel, nullptr);
    EXPECT_TRUE(channel->send("velk1 ", patiently()));
    closeWindow();  // in less than the patience of this test
    char sign = 0;
    EXPECT_EQ(channel->receive(&sign, 1, patiently()), 0U);
}

TEST_F(OneWindow, EndsWhileSomebodyWaitsForIt)
{
    openWindow();
    const std::unique_ptr<Channel> channel = connectToChannel(name(), patiently());
    ASSERT_NE(channel, nullptr);
    EXPECT_TRUE(channel->send(*VelkHost::openMessage({}), patiently()));
    closeWindow();
    char sign = 0;
    EXPECT_EQ(channel->receive(&sign, 1, patiently()), 0U);
}

// ---- Which windows are the same ------------------------------------------------------------------

TEST(WindowName, IsTheFoldersHoweverItIsWritten)
{
    const test::TemporaryFolder folder;
    const fileString up = fileString(std::string("..")) / folder.path().stemWithExtension();
    EXPECT_EQ(VelkHost::windowName(folder.path()), VelkHost::windowName(folder.path() / up));
    EXPECT_NE(VelkHost::windowName(folder.path()), VelkHost::windowName(folder / U"user"));
}

TEST(WindowName, StaysWhenTheFolderIsMade)
{
    const test::TemporaryFolder folder;
    const std::string before = VelkHost::windowName(folder / U"home" / U"user");
    ASSERT_FALSE(Velk::makeFolders(folder / U"home" / U"user"));
    EXPECT_EQ(VelkHost::windowName(folder / U"home" / U"user"), before);
    EXPECT_EQ(before.find_first_not_of("0123456789abcdef"), std::string::npos);
}

}  // namespace
