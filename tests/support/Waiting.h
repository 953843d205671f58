#pragma once

/// @file
/// Waits that always end. When the awaited thing does not happen, the place and the reason are reported. Does not
/// need googletest, so that benchmarks can use it too.

#include <chrono>
#include <condition_variable>
#include <cstddef>
#include <cstdio>
#include <cstdlib>
#include <mutex>
#include <string>

namespace test {

/// How long to wait for something that must happen: far longer than a busy machine takes.
inline constexpr std::chrono::milliseconds patience = std::chrono::minutes(2);

/// Returns the name of the running test; set in programs that use googletest.
inline std::string (*runningTest)() = nullptr;

/// Ends the program with a message, for a wait that cannot simply be left because a thread would go on to use objects
/// that the test destroys.
[[noreturn]] inline void giveUp(const std::string& what)
{
    const std::string test = runningTest == nullptr ? std::string() : runningTest() + ": ";
    std::fprintf(stderr, "%sgave up after %lld s: %s\n", test.c_str(),
                 static_cast<long long>(std::chrono::duration_cast<std::chrono::seconds>(patience).count()),
                 what.c_str());
    std::fflush(nullptr);
    std::abort();
}

/// Waits until `condition` holds, which is checked under the lock whenever `changed` is notified. False when that
/// does not happen in time.
template <typename Condition>
[[nodiscard]] bool comesAbout(std::condition_variable& changed, std::unique_lock<std::mutex>& lock, Condition condition)
{
    return changed.wait_for(lock, patience, condition);
}

/// Does `step` again and again until `condition` holds, and gives up when that does not happen in time.
template <typename Condition, typename Step>
void repeatUntil(Condition condition, Step step)
{
    const auto end = std::chrono::steady_clock::now() + patience;
    while (!condition()) {
        if (std::chrono::steady_clock::now() > end)
            giveUp("what is waited for does not come about");
        step();
    }
}

/// Counts what some threads do, for others that wait for it.
class Tally
{
public:
    void add(std::size_t count = 1)
    {
        const std::lock_guard lock(mutex_);
        count_ += count;
        changed_.notify_all();
    }

    std::size_t count() const
    {
        const std::lock_guard lock(mutex_);
        return count_;
    }

    /// Waits until at least `count` are counted; false when that does not happen in time.
    [[nodiscard]] bool reaches(std::size_t count) const
    {
        std::unique_lock lock(mutex_);
        return comesAbout(changed_, lock, [&] { return count_ >= count; });
    }

    /// The same, but gives up.
    void waitFor(std::size_t count) const
    {
        if (!reaches(count))
            giveUp(std::to_string(this->count()) + " of " + std::to_string(count) + " were counted");
    }

private:
    mutable std::mutex mutex_;
    mutable std::condition_variable changed_;
    std::size_t count_ = 0;
};

}  // namespace test
