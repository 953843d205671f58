#pragma once

/// @file
/// Threads whose end is waited for, but not for ever.

#include "support/Waiting.h"

#include <atomic>
#include <cstddef>
#include <list>
#include <memory>
#include <thread>
#include <utility>

namespace test {

/// A thread that runs `work`. It is joined when the object dies, if not before; if the work does not end in time,
/// the program is ended.
class Thread
{
public:
    template <typename Work>
    explicit Thread(Work work)
        : ends_(std::make_shared<Tally>()), thread_([ends = ends_, work = std::move(work)]() mutable {
              work();
              ends->add();
          })
    {}
    ~Thread() { join(); }
    Thread(const Thread&) = delete;
    Thread& operator=(const Thread&) = delete;

    void join()
    {
        if (!thread_.joinable())
            return;
        if (!ends_->reaches(1))
            giveUp("a thread does not end");
        thread_.join();
    }

    /// True when the work is done, so that join() returns at once.
    bool hasEnded() const { return ends_->count() > 0; }

private:
    std::shared_ptr<Tally> ends_;
    std::thread thread_;
};

/// Does `work` again and again on a separate thread while the object lives. It has been done once when the
/// constructor returns, so the code that follows really runs beside it.
class Repeatedly
{
public:
    template <typename Work>
    explicit Repeatedly(Work work)
        : thread_([this, work = std::move(work)]() mutable {
              for (; !ends_; rounds_.add())
                  work();
          })
    {
        rounds_.waitFor(1);
    }
    ~Repeatedly() { ends_ = true; }
    Repeatedly(const Repeatedly&) = delete;
    Repeatedly& operator=(const Repeatedly&) = delete;

    /// How often the work has been done so far.
    const Tally& rounds() const noexcept { return rounds_; }

private:
    std::atomic<bool> ends_ = false;
    Tally rounds_;
    Thread thread_;  // last, as it uses the others
};

/// Runs `work(0)` to `work(count - 1)`, each on a thread of its own. All begin together, and all have ended when it
/// returns.
template <typename Work>
void onThreads(std::size_t count, const Work& work)
{
    Tally ready;
    std::list<Thread> threads;
    for (std::size_t i = 0; i < count; ++i)
        threads.emplace_back([&ready, &work, count, i] {
            ready.add();
            ready.waitFor(count);
            work(i);
        });
}

}  // namespace test
