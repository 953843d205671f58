#include <VelkLibrary/LibraryProgressBase.h>

#include "VelkLibrary/Update/RecordingReceiver.h"
#include "support/EventLoop.h"
#include "support/Threads.h"

#include <gmock/gmock.h>

#include <QCoreApplication>
#include <QDeadlineTimer>
#include <QMetaType>
#include <QThread>

#include <memory>
#include <thread>
#include <vector>

namespace {

using LibraryCatalogUpdate::UpdateData;
using test::RecordingReceiver;
using testing::Each;
using testing::ElementsAre;
using testing::Field;
using testing::IsEmpty;
using testing::SizeIs;

class Job : public LibraryProgressBase
{
public:
    explicit Job(QObject& receiver) : LibraryProgressBase(receiver) {}
};

class ProgressBase : public testing::Test
{
protected:
    ProgressBase() { test::ensureApplication(); }
};

TEST_F(ProgressBase, RegistersTheArgumentTypes)
{
    RecordingReceiver receiver;
    const Job job(receiver);
    for (const char* const name : {"std::string", "fileString", "LibraryCatalogUpdate::UpdateData", "FileStringPair"})
        EXPECT_GE(QMetaType::type(name), static_cast<int>(QMetaType::User)) << name;
    EXPECT_EQ(QMetaType::type("size_t"), static_cast<int>(QMetaType::ULongLong));
}

TEST_F(ProgressBase, RegistersThemOnce)
{
    RecordingReceiver receiver;
    const Job first(receiver);
    const int type = QMetaType::type("FileStringPair");
    const Job second(receiver);
    EXPECT_EQ(QMetaType::type("FileStringPair"), type);
}

TEST_F(ProgressBase, TheRegisteredTypesTravelThroughQtsOwnQueue)
{
    RecordingReceiver receiver;
    const Job job(receiver);
    const FileStringPair paths{fileString(std::u32string(U"a")), fileString(std::u32string(U"b"))};
    EXPECT_TRUE(QMetaObject::invokeMethod(&receiver, "onSetRangeInGauge", Qt::QueuedConnection, Q_ARG(size_t, 7)));
    EXPECT_TRUE(QMetaObject::invokeMethod(&receiver, "onCatalogUpdatedEvent", Qt::QueuedConnection,
                                          Q_ARG(FileStringPair, paths)));
    EXPECT_TRUE(QMetaObject::invokeMethod(&receiver, "onSetText", Qt::QueuedConnection, Q_ARG(std::string, "x")));
    test::deliverEvents();
    EXPECT_THAT(receiver.summaries(), ElementsAre("onSetRangeInGauge 7", "onCatalogUpdatedEvent a", "onSetText x"));
}

TEST_F(ProgressBase, CallsEverySlotWithItsArguments)
{
    RecordingReceiver receiver;
    const Job job(receiver);
    job.sendText("text with a \xE4");
    job.sendRange(18'446'744'073'709'551'615u);
    job.sendStep();
    job.sendValue(5'000'000'000);
    job.sendUnits("KB");
    job.sendCatalogUpdated({fileString(std::u32string(U"old.calib")), fileString(std::u32string(U"new.calib"))});
    job.sendEnd({LibraryCatalogUpdate::Installed, {"one", "two"}, LibraryCatalogUpdate::TransferAborted});
    job.sendCancelled();
    test::deliverEvents();
    EXPECT_THAT(receiver.summaries(),
                ElementsAre("onSetText text with a \xE4", "onSetRangeInGauge 18446744073709551615", "onUpdateInGauge",
                            "onSetValueInGauge 5000000000", "onSetUnits KB", "onCatalogUpdatedEvent old.calib",
                            "closeCatalogUpdateEvent", "onClose"));
    EXPECT_EQ(receiver.events()[5].paths.second, fileString(std::u32string(U"new.calib")));
    const UpdateData& data = receiver.events()[6].data;
    EXPECT_EQ(data.outcome, LibraryCatalogUpdate::Installed);
    EXPECT_THAT(data.updatedNames, ElementsAre("one", "two"));
    EXPECT_EQ(data.resultCode, LibraryCatalogUpdate::TransferAborted);
}

TEST_F(ProgressBase, NothingIsCalledBeforeTheReceiversThreadGetsToIt)
{
    RecordingReceiver receiver;
    const Job job(receiver);
    job.sendStep();
    EXPECT_THAT(receiver.events(), IsEmpty());
    test::deliverEvents();
    EXPECT_THAT(receiver.events(), SizeIs(1));
}

TEST_F(ProgressBase, TheWorkerDoesNotWait)
{
    RecordingReceiver receiver;
    const Job job(receiver);
    // No event loop runs: a worker that waited would never end.
    test::Thread([&] {
        for (int i = 0; i < 1000; ++i)
            job.sendStep();
    }).join();
    EXPECT_THAT(receiver.events(), IsEmpty());
    test::deliverEvents();
    EXPECT_THAT(receiver.events(), SizeIs(1000));
}

TEST_F(ProgressBase, ArgumentsAreCopied)
{
    RecordingReceiver receiver;
    const Job job(receiver);
    std::string text = "before";
    job.sendText(text);
    text.assign(100, 'x');
    test::deliverEvents();
    EXPECT_EQ(receiver.events().at(0).text, "before");
}

TEST_F(ProgressBase, KeepsTheOrderOfAWorkerOnTheReceiversThread)
{
    RecordingReceiver receiver;
    const Job job(receiver);
    test::runBesideEventLoop([&] {
        for (std::size_t i = 0; i < 2000; ++i)
            i % 2 == 0 ? job.sendValue(i) : job.sendRange(i);
    });
    ASSERT_THAT(receiver.events(), SizeIs(2000));
    for (std::size_t i = 0; i < 2000; ++i)
        ASSERT_EQ(receiver.events()[i].number, i);
    EXPECT_THAT(receiver.events(), Each(Field(&test::Event::thread, std::this_thread::get_id())));
}

TEST_F(ProgressBase, WhatWasSentArrivesAfterTheJobIsGone)
{
    RecordingReceiver receiver;
    {
        const Job job(receiver);
        job.sendText("still here");
        job.sendCancelled();
    }
    test::deliverEvents();
    EXPECT_THAT(receiver.summaries(), ElementsAre("onSetText still here", "onClose"));
}

TEST_F(ProgressBase, CopiesShareTheReceiver)
{
    RecordingReceiver receiver;
    const Job job(receiver);
    const Job copy(job);
    copy.sendText("from the copy");
    job.sendText("from the first");
    test::deliverEvents();
    EXPECT_THAT(receiver.summaries(), ElementsAre("onSetText from the copy", "onSetText from the first"));
}

TEST_F(ProgressBase, AReceiverThatIsGoneGetsNothing)
{
    auto receiver = std::make_unique<RecordingReceiver>();
    const Job job(*receiver);
    int calls = 0;
    receiver->reaction = [&](const test::Event&) { ++calls; };
    job.sendStep();
    receiver.reset();
    job.sendStep();
    job.sendCancelled();
    test::deliverEvents();
    EXPECT_EQ(calls, 0);
}

TEST_F(ProgressBase, AReceiverMayBeDestroyedByWhatItIsTold)
{
    auto* receiver = new RecordingReceiver;
    const Job job(*receiver);
    int calls = 0;
    receiver->reaction = [&](const test::Event&) {
        ++calls;
        receiver->deleteLater();
    };
    test::runBesideEventLoop([&] {
        for (int i = 0; i < 100; ++i)
            job.sendStep();
    });
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    EXPECT_GE(calls, 1);
    job.sendStep();
    const int before = calls;
    test::deliverEvents();
    EXPECT_EQ(calls, before);
}

// In each round the receiver is destroyed on its own thread while the worker sends.
TEST_F(ProgressBase, AReceiverMayBeDestroyedWhileAWorkerSends)
{
    constexpr std::size_t rounds = 300;
    for (std::size_t round = 0; round < rounds; ++round) {
        auto receiver = std::make_unique<RecordingReceiver>();
        const Job job(*receiver);
        {
            const test::Repeatedly worker([&] {
                job.sendText("a text that is longer than a short string");
                job.sendEnd({0, {"name"}, 0});
            });
            const auto deliverUntilSent = [&](std::size_t count) {
                test::repeatUntil([&] { return worker.rounds().count() >= count; }, &test::deliverEvents);
            };
            deliverUntilSent(5 + round % 7);
            receiver.reset();
            deliverUntilSent(worker.rounds().count() + 5);
        }
        test::deliverEvents();
    }
}

TEST_F(ProgressBase, AReceiverThatLacksASlotGetsTheOthers)
{
    QObject plain;
    const Job job(plain);
    job.sendStep();
    job.sendCancelled();
    test::deliverEvents();
    RecordingReceiver receiver;
    const Job other(receiver);
    other.sendStep();
    test::deliverEvents();
    EXPECT_THAT(receiver.summaries(), ElementsAre("onUpdateInGauge"));
}

TEST_F(ProgressBase, AReceiverOnAThreadOfItsOwnIsCalledThere)
{
    QThread thread;
    auto* const receiver = new RecordingReceiver;
    receiver->moveToThread(&thread);
    const Job job(*receiver);
    std::vector<QThread*> calledOn;
    test::Tally ends;
    receiver->reaction = [&](const test::Event& event) {
        calledOn.push_back(QThread::currentThread());
        if (event.slot != "onClose")
            return;
        receiver->deleteLater();
        thread.quit();
        ends.add();
    };
    job.sendStep();
    job.sendCancelled();
    EXPECT_THAT(calledOn, IsEmpty());
    thread.start();
    ends.waitFor(1);
    EXPECT_THAT(calledOn, ElementsAre(&thread, &thread));
    if (!thread.wait(QDeadlineTimer(test::patience)))
        test::giveUp("the thread of the receiver does not end");
}

}  // namespace
