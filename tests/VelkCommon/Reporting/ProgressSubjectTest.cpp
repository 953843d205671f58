#include <VelkCommon/Reporting/ProgressSubject.h>

#include "support/Threads.h"

#include <gtest/gtest.h>

#include <atomic>
#include <cmath>
#include <limits>
#include <stdexcept>
#include <vector>

namespace {

class Recorder : public ProgressSubject::Observer
{
public:
    void progressChanged(const ProgressSubject::State& state) override { states.push_back(state); }

    std::vector<ProgressSubject::State> states;
};

TEST(ProgressSubjectTest, BeginsWithNothing)
{
    const ProgressSubject subject;
    EXPECT_EQ(subject.state().mainLabel, U"");
    EXPECT_EQ(subject.state().secondaryLabel, U"");
    EXPECT_EQ(subject.state().position, 0);
    EXPECT_FALSE(subject.state().cancelled);
    EXPECT_FALSE(subject.isCancelled());
}

TEST(ProgressSubjectTest, TakesBothLabels)
{
    ProgressSubject subject;
    subject.updateLabels(U"Unpacking", U"K\u00FCche.calib");
    EXPECT_EQ(subject.state().mainLabel, U"Unpacking");
    EXPECT_EQ(subject.state().secondaryLabel, U"K\u00FCche.calib");
    subject.updateLabels(U"", U"");
    EXPECT_EQ(subject.state().mainLabel, U"");
    EXPECT_EQ(subject.state().secondaryLabel, U"");
    EXPECT_EQ(subject.state().position, 0);
}

TEST(ProgressSubjectTest, WithoutSubRangeChangesTheLabelsOnly)
{
    ProgressSubject subject;
    subject.increment(U"a", U"b");
    EXPECT_EQ(subject.state().mainLabel, U"a");
    EXPECT_EQ(subject.state().secondaryLabel, U"b");
    EXPECT_EQ(subject.state().position, 0);
}

TEST(ProgressSubjectTest, CoversASubRangeInEqualSteps)
{
    ProgressSubject subject;
    subject.openSubRange(4, 40);
    EXPECT_EQ(subject.state().position, 0);
    for (const double expected : {10.0, 20.0, 30.0, 40.0}) {
        subject.increment(U"", U"");
        EXPECT_DOUBLE_EQ(subject.state().position, expected);
    }
    subject.increment(U"late", U"");
    EXPECT_EQ(subject.state().position, 40);
    EXPECT_EQ(subject.state().mainLabel, U"late");
}

TEST(ProgressSubjectTest, BeginsTheNextSubRangeWhereItIs)
{
    ProgressSubject subject;
    subject.openSubRange(2, 50);
    subject.increment(U"", U"");
    subject.openSubRange(3, 75);
    for (const double expected : {50.0, 75.0, 100.0, 100.0}) {
        subject.increment(U"", U"");
        EXPECT_DOUBLE_EQ(subject.state().position, expected);
    }
}

TEST(ProgressSubjectTest, EndsExactlyAtTheEnd)
{
    for (const std::uint64_t steps : {3u, 7u, 1000u, 99999u}) {
        ProgressSubject subject;
        subject.openSubRange(steps, 100);
        double last = 0;
        for (std::uint64_t step = 0; step < steps; ++step) {
            subject.increment(U"", U"");
            const double position = subject.state().position;
            ASSERT_GE(position, last);
            ASSERT_LE(position, 100);
            last = position;
        }
        EXPECT_EQ(last, 100) << steps;
    }
}

struct OddRange
{
    const char* name;
    std::uint64_t steps;
    double units;
    double positionAfterOneStep;
};

class ProgressSubjectRanges : public testing::TestWithParam<OddRange>
{};

TEST_P(ProgressSubjectRanges, StayWithinTheHundred)
{
    ProgressSubject subject;
    subject.openSubRange(1, 20);
    subject.increment(U"", U"");
    subject.openSubRange(GetParam().steps, GetParam().units);
    EXPECT_EQ(subject.state().position, 20);
    subject.increment(U"", U"");
    EXPECT_DOUBLE_EQ(subject.state().position, GetParam().positionAfterOneStep);
}

constexpr double infinity = std::numeric_limits<double>::infinity();

const OddRange oddRanges[] = {
    {"ZeroSteps", 0, 50, 20},
    {"ZeroUnits", 2, 0, 20},
    {"NegativeUnits", 2, -10, 20},
    {"NotANumber", 2, std::numeric_limits<double>::quiet_NaN(), 20},
    {"NegativeInfinity", 2, -infinity, 20},
    {"MoreThanIsLeft", 2, 100, 60},
    {"Huge", 2, 1e300, 60},
    {"Infinity", 2, infinity, 60},
    {"ManySteps", std::numeric_limits<std::uint64_t>::max(), 80, 20},
    {"OneStep", 1, 30, 50},
};
INSTANTIATE_TEST_SUITE_P(Rows, ProgressSubjectRanges, testing::ValuesIn(oddRanges),
                         [](const auto& row) { return row.param.name; });

TEST(ProgressSubjectTest, TellsTheObserverOfEveryChange)
{
    Recorder recorder;
    ProgressSubject subject(recorder);
    subject.openSubRange(2, 10);
    subject.updateLabels(U"a", U"b");
    subject.increment(U"c", U"d");
    ASSERT_EQ(recorder.states.size(), 2u);
    EXPECT_EQ(recorder.states[0].mainLabel, U"a");
    EXPECT_EQ(recorder.states[0].secondaryLabel, U"b");
    EXPECT_EQ(recorder.states[0].position, 0);
    EXPECT_EQ(recorder.states[1].mainLabel, U"c");
    EXPECT_EQ(recorder.states[1].secondaryLabel, U"d");
    EXPECT_DOUBLE_EQ(recorder.states[1].position, 5);
}

TEST(ProgressSubjectTest, TellsOnlyTheObserverOfTheMoment)
{
    Recorder first;
    Recorder second;
    ProgressSubject subject(first);
    subject.updateLabels(U"1", U"");
    subject.setObserver(&second);
    subject.updateLabels(U"2", U"");
    subject.setObserver(nullptr);
    subject.updateLabels(U"3", U"");
    ASSERT_EQ(first.states.size(), 1u);
    EXPECT_EQ(first.states[0].mainLabel, U"1");
    ASSERT_EQ(second.states.size(), 1u);
    EXPECT_EQ(second.states[0].mainLabel, U"2");
}

TEST(ProgressSubjectTest, StaysCancelled)
{
    ProgressSubject subject;
    subject.cancel();
    EXPECT_TRUE(subject.isCancelled());
    subject.cancel();
    subject.updateLabels(U"a", U"b");
    EXPECT_TRUE(subject.isCancelled());
    EXPECT_TRUE(subject.state().cancelled);
}

class Throwing : public ProgressSubject::Observer
{
public:
    void progressChanged(const ProgressSubject::State&) override { throw std::runtime_error("no window"); }
};

TEST(ProgressSubjectTest, OutlivesAnObserverThatThrows)
{
    Throwing observer;
    ProgressSubject subject(observer);
    EXPECT_NO_THROW(subject.updateLabels(U"a", U"b"));
    EXPECT_EQ(subject.state().mainLabel, U"a");
    subject.setObserver(nullptr);
    EXPECT_NO_THROW(subject.updateLabels(U"c", U""));
}

/// Reads and changes the subject while it is being told of a change.
class Meddling : public ProgressSubject::Observer
{
public:
    void progressChanged(const ProgressSubject::State& state) override
    {
        EXPECT_EQ(subject->state().mainLabel, state.mainLabel);
        subject->cancel();
        subject->setObserver(nullptr);
        ++calls;
    }

    ProgressSubject* subject = nullptr;
    int calls = 0;
};

TEST(ProgressSubjectTest, MayBeUsedByItsObserver)
{
    Meddling observer;
    ProgressSubject subject(observer);
    observer.subject = &subject;
    subject.updateLabels(U"a", U"b");
    subject.updateLabels(U"c", U"d");
    EXPECT_EQ(observer.calls, 1);
    EXPECT_TRUE(subject.isCancelled());
}

TEST(ProgressSubjectTest, IsReadAndCancelledWhileAnotherThreadWorks)
{
    Recorder recorder;
    ProgressSubject subject(recorder);
    test::Thread worker([&subject] {
        subject.openSubRange(1000, 100);
        for (std::uint64_t step = 0; !subject.isCancelled(); ++step) {
            const std::u32string label(step % 50, U'x');
            subject.increment(label, label);
        }
    });
    double last = 0;
    test::repeatUntil([&last] { return last >= 50; },
                      [&] {
                          const ProgressSubject::State state = subject.state();
                          EXPECT_EQ(state.mainLabel, state.secondaryLabel) << "a torn state";
                          EXPECT_GE(state.position, last);
                          last = state.position;
                      });
    subject.cancel();
    worker.join();
    EXPECT_TRUE(subject.state().cancelled);
    EXPECT_FALSE(recorder.states.empty());
}

/// Stays in its first call until it is released.
class Slow : public ProgressSubject::Observer
{
public:
    explicit Slow(std::atomic<bool>& returned) : returned_(returned) {}

    void progressChanged(const ProgressSubject::State&) override
    {
        entered.add();
        go.waitFor(1);
        returned_ = true;
    }

    test::Tally entered;
    test::Tally go;

private:
    std::atomic<bool>& returned_;
};

TEST(ProgressSubjectTest, LetsGoOfAnObserverOnlyWhenItsCallHasReturned)
{
    std::atomic<bool> returned{false};
    Slow observer(returned);
    ProgressSubject subject(observer);
    const test::Thread worker([&subject] { subject.updateLabels(U"a", U"b"); });
    observer.entered.waitFor(1);
    const test::Thread release([&observer] { observer.go.add(); });
    subject.setObserver(nullptr);
    EXPECT_TRUE(returned);
}

/// Counts the steps of code that knows only the base class.
class Counting : public ProgressSubject
{
public:
    void increment(std::u32string, std::u32string) override { ++steps; }
    bool isCancelled() const override { return steps >= 3; }

    int steps = 0;
};

TEST(ProgressSubjectTest, CanBeReplacedByTheCaller)
{
    Counting counting;
    ProgressSubject& subject = counting;
    while (!subject.isCancelled())
        subject.increment(U"", U"");
    EXPECT_EQ(counting.steps, 3);
}

}  // namespace
