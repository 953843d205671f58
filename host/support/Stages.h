#pragma once

#include "host/support/Parallel.h"

#include <queue>
#include <condition_variable>
#include <cstddef>
#include <functional>
#include <mutex>
#include <utility>

namespace VelkHost {

/// Work in two stages: what the first one makes, the second one uses. On two threads, the next batch is made while the
/// one before is used; each stage is run by one thread at a time, and takes its batches in their order.
template <typename Batch>
class Stages
{
public:
    /// `make` fills a batch, which may be one that was used; false when there is no further one. `use` takes it.
    Stages(std::function<bool(Batch&)> make, std::function<void(Batch&)> use)
        : make_(std::move(make)), use_(std::move(use))
    {}

    /// Runs both until everything is used. Throws what one of them threw; then the other may not have had everything.
    void run(std::size_t threads)
    {
        onThreads(threads, [this] { work(); });
    }

private:
    static constexpr std::size_t mostWaiting = 8;

    /// Leaves the lock for the time of a stage, and tells the other thread what has changed.
    template <typename Stage>
    void outside(std::unique_lock<std::mutex>& lock, Stage stage)
    {
        lock.unlock();
        try {
            stage();
        } catch (...) {
            lock.lock();
            isEnded_ = hasFailed_ = true;
            changed_.notify_all();
            throw;
        }
        lock.lock();
        changed_.notify_all();
    }

    void work()
    {
        std::unique_lock lock(mutex_);
        while (!hasFailed_) {
            if (!isUsing_ && !made_.empty())
                useOne(lock);
            else if (!isMaking_ && !isEnded_ && made_.size() < mostWaiting)
                makeOne(lock);
            else if (isEnded_ && made_.empty())
                return;
            else
                changed_.wait(lock);
        }
    }

    void makeOne(std::unique_lock<std::mutex>& lock)
    {
        Batch batch = std::exchange(spare_, Batch());
        bool isThere = false;
        isMaking_ = true;
        outside(lock, [&] { isThere = make_(batch); });
        isMaking_ = false;
        if (isThere)
            made_.push(std::move(batch));
        else
            isEnded_ = true;
    }

    void useOne(std::unique_lock<std::mutex>& lock)
    {
        Batch batch = std::move(made_.front());
        made_.pop();
        isUsing_ = true;
        outside(lock, [&] { use_(batch); });
        isUsing_ = false;
        spare_ = std::move(batch);
    }

    const std::function<bool(Batch&)> make_;
    const std::function<void(Batch&)> use_;
    std::mutex mutex_;
    std::condition_variable changed_;
    std::queue<Batch> made_;
    Batch spare_;
    bool isMaking_ = false;
    bool isUsing_ = false;
    bool isEnded_ = false;
    bool hasFailed_ = false;
};

}  // namespace VelkHost
