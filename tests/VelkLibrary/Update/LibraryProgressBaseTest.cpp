#include <VelkLibrary/LibraryProgressBase.h>

#include "VelkLibrary/Update/RecordingReceiver.h"
#include "support/EventLoop.h"
#include "support/MetaTypes.h"
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
        EXPECT_GE(test::metaTypeNamed(name), static_cast<int>(QMetaType::User)) << name;
    EXPECT_EQ(test::metaTypeNamed("size_t"), static_cast<int>(QMetaType::ULongLong));
}

TEST_F(ProgressBase, RegistersThemOnce)
{
    RecordingReceiver receiver;
    const Job first(receiver);
    const int type = test::metaTypeNamed("FileStringPair");
    const Job second(receiver);
    EXPECT_EQ(test::metaTypeNamed("FileStringPair"), type);
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
            worker.rounds().waitFor(1 + round % 7);
            test::deliverEvents();
            receiver.reset();
            worker.rounds().waitFor(worker.rounds().count() + 2);
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

// ---- Moves to other threads ----------------------------------------------------------------------

/// A thread with an event loop, which ends with the object.
class LoopThread
{
public:
    LoopThread() { thread_.start(); }
    ~LoopThread() { end(); }
    LoopThread(const LoopThread&) = delete;
    LoopThread& operator=(const LoopThread&) = delete;

    QThread* get() { return &thread_; }

    /// What the thread has done comes before what follows here.
    void end()
    {
        thread_.quit();
        thread_.loopEnds.waitFor(1);
        if (!thread_.wait(QDeadlineTimer(test::patience)))
            test::giveUp("a thread with an event loop does not end");
    }

private:
    class Loop : public QThread
    {
    public:
        test::Tally loopEnds;

    protected:
        void run() override
        {
            exec();
            loopEnds.add();
        }
    };

    Loop thread_;
};

class MovedReceiver : public ProgressBase
{
protected:
    static constexpr std::size_t calls = 10'000;

    static void sendAll(const Job& job)
    {
        for (std::size_t i = 0; i < calls; ++i)
            job.sendValue(i);
    }

    // What the receiver does with each call: it goes to `next` after `before` calls, and tells when it has got all.
    void moveAfter(std::size_t before, QThread* next)
    {
        receiver_->reaction = [this, before, next](const test::Event& event) {
            calledOn_.push_back(QThread::currentThread());
            if (event.number + 1 == calls)
                ends_.add();
            if (event.number != before)
                return;
            receiver_->moveToThread(next);  // from here on, the receiver may be called on that thread
            moves_.add();
        };
    }

    void expectAllInOrder() const
    {
        ASSERT_THAT(receiver_->events(), SizeIs(calls));
        for (std::size_t i = 0; i < calls; ++i)
            ASSERT_EQ(receiver_->events()[i].number, i);
    }

    std::unique_ptr<RecordingReceiver> receiver_ = std::make_unique<RecordingReceiver>();
    std::vector<QThread*> calledOn_;
    test::Tally moves_;
    test::Tally ends_;
};

// The thread that the receiver leaves, the test's, runs no event loop at all.
TEST_F(MovedReceiver, BeforeTheFirstCallIsCalledOnItsNewThread)
{
    LoopThread next;
    const Job job(*receiver_);
    moveAfter(calls, nullptr);
    receiver_->moveToThread(next.get());
    test::Thread([&] { sendAll(job); }).join();
    ends_.waitFor(1);
    next.end();
    expectAllInOrder();
    EXPECT_THAT(calledOn_, Each(next.get()));
}

TEST_F(MovedReceiver, TakesTheCallsAlongThatAreUnderWay)
{
    LoopThread next;
    const Job job(*receiver_);
    moveAfter(calls, nullptr);
    test::Thread([&] { sendAll(job); }).join();
    receiver_->moveToThread(next.get());
    ends_.waitFor(1);
    next.end();
    expectAllInOrder();
    EXPECT_THAT(calledOn_, Each(next.get()));
}

TEST_F(MovedReceiver, InTheMiddleOfARunGetsAllInOrder)
{
    for (int round = 0; round < 5; ++round) {
        LoopThread next;
        receiver_ = std::make_unique<RecordingReceiver>();
        calledOn_.clear();
        const Job job(*receiver_);
        moveAfter(calls / 3, next.get());
        test::runBesideEventLoop([&] { sendAll(job); });
        ends_.waitFor(static_cast<std::size_t>(round) + 1);
        next.end();
        expectAllInOrder();
        EXPECT_THAT(calledOn_, testing::Contains(next.get()).Times(calls - calls / 3 - 1));
    }
}

TEST_F(MovedReceiver, IsCalledAlthoughTheThreadThatItLeftHasEnded)
{
    LoopThread first;
    LoopThread next;
    receiver_->moveToThread(first.get());
    const Job job(*receiver_);
    moveAfter(0, next.get());
    job.sendValue(0);
    moves_.waitFor(1);
    first.end();
    for (std::size_t i = 1; i < calls; ++i)
        job.sendValue(i);
    ends_.waitFor(1);
    next.end();
    expectAllInOrder();
}

TEST_F(MovedReceiver, MayBeDestroyedOnItsNewThreadWhileAWorkerSends)
{
    LoopThread next;
    for (std::size_t round = 0; round < 100; ++round) {
        auto* const receiver = new RecordingReceiver;
        test::Tally ends;
        QObject::connect(receiver, &QObject::destroyed, [&ends] { ends.add(); });
        receiver->reaction = [receiver, left = 1 + round % 7](const test::Event&) mutable {
            if (left > 0 && --left == 0)
                receiver->deleteLater();
        };
        const Job job(*receiver);
        receiver->moveToThread(next.get());
        const test::Repeatedly worker([&] {
            job.sendText("a text that is longer than a short string");
            job.sendEnd({0, {"name"}, 0});
        });
        ends.waitFor(1);
        worker.rounds().waitFor(worker.rounds().count() + 2);
    }
}

TEST_F(ProgressBase, TheReceiverKeepsNoTraceOfJobsThatAreGone)
{
    class Counting : public QObject
    {
    public:
        int connections() const { return receivers(SIGNAL(destroyed(QObject*))); }
    };
    Counting receiver;
    for (int i = 1; i <= 10; ++i) {
        const Job job(receiver);
        const Job copy(job);
        EXPECT_EQ(receiver.connections(), i) << "until the calls are made";
        test::Thread([another = Job(copy)] { another.sendStep(); }).join();
    }
    test::deliverEvents();
    EXPECT_EQ(receiver.connections(), 0);
}

}  // namespace
