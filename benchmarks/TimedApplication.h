#pragma once

/// @file
/// An application that measures how long its user has to wait.

#include <QApplication>

#include <algorithm>
#include <chrono>

namespace bench {

using Clock = std::chrono::steady_clock;

inline double millisecondsSince(Clock::time_point begin)
{
    return std::chrono::duration<double, std::milli>(Clock::now() - begin).count();
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
        const bool result = QApplication::notify(receiver, event);
        --depth_;
        if (outermost)
            longest_ = std::max(longest_, millisecondsSince(begin));
        return result;
    }

    double longestEvent() const { return longest_; }

private:
    int depth_ = 0;
    double longest_ = 0;
};

}  // namespace bench
