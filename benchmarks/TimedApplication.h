#pragma once

/// @file
/// An application that measures how long its user has to wait.

#include <QApplication>

#include <time.h>

#include <algorithm>
#include <chrono>

namespace bench {

using Clock = std::chrono::steady_clock;

inline double millisecondsSince(Clock::time_point begin)
{
    return std::chrono::duration<double, std::milli>(Clock::now() - begin).count();
}

/// The processor time that this thread has used. On a busy machine it tells more than the time that has gone by.
inline double processorMilliseconds()
{
    timespec time = {};
    ::clock_gettime(CLOCK_THREAD_CPUTIME_ID, &time);
    return static_cast<double>(time.tv_sec) * 1e3 + static_cast<double>(time.tv_nsec) / 1e6;
}

/// A program's arguments in the form that Qt keeps.
struct Arguments
{
    int count = 1;
    char name[16] = "benchmark";
    char* texts[2] = {name, nullptr};
};

/// An application that knows how long its longest event took.
class TimedApplication : public QApplication
{
public:
    using QApplication::QApplication;

    bool notify(QObject* receiver, QEvent* event) override
    {
        const bool outermost = depth_++ == 0;
        const auto begin = Clock::now();
        const double processorBegin = processorMilliseconds();
        const bool result = QApplication::notify(receiver, event);
        --depth_;
        if (outermost) {
            longest_ = std::max(longest_, millisecondsSince(begin));
            mostWork_ = std::max(mostWork_, processorMilliseconds() - processorBegin);
        }
        return result;
    }

    double longestEvent() const { return longest_; }
    /// The most processor time that one event took.
    double mostWork() const { return mostWork_; }

private:
    int depth_ = 0;
    double longest_ = 0;
    double mostWork_ = 0;
};

}  // namespace bench
