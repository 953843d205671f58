#include "host/support/Parallel.h"

#include <algorithm>
#include <atomic>
#include <exception>
#include <mutex>
#include <new>
#include <system_error>
#include <thread>
#include <vector>

namespace VelkHost {
namespace {

constexpr std::size_t mostThreads = 16;

/// Keeps the first exception of several threads.
class FirstFailure
{
public:
    void run(const std::function<void()>& work) noexcept
    {
        try {
            work();
        } catch (...) {
            const std::lock_guard lock(mutex_);
            if (!failure_)
                failure_ = std::current_exception();
        }
    }

    void rethrow() const
    {
        if (failure_)
            std::rethrow_exception(failure_);
    }

private:
    std::mutex mutex_;
    std::exception_ptr failure_;
};

}  // namespace

std::size_t threadCount()
{
    return std::clamp<std::size_t>(std::thread::hardware_concurrency(), 1, mostThreads);
}

void onThreads(std::size_t threads, const std::function<void()>& work)
{
    FirstFailure failure;
    std::vector<std::thread> helpers;
    helpers.reserve(threads);
    try {
        while (helpers.size() + 1 < threads)
            helpers.emplace_back([&] { failure.run(work); });
    } catch (const std::system_error&) {  // fewer will do
    } catch (const std::bad_alloc&) {
    }
    failure.run(work);
    for (std::thread& helper : helpers)
        helper.join();
    failure.rethrow();
}

void forEachInParallel(std::size_t count, const std::function<void(std::size_t number)>& work)
{
    std::atomic<std::size_t> next = 0;
    onThreads(std::min(count, threadCount()), [&] {
        for (std::size_t number = next++; number < count; number = next++)
            work(number);
    });
}

}  // namespace VelkHost
