#include "host/browser/ExitLimit.h"

#include <cstdlib>
#include <new>
#include <system_error>

namespace VelkHost {

ExitLimit::~ExitLimit()
{
    {
        const std::lock_guard lock(mutex_);
        hasEnded_ = true;
    }
    changed_.notify_one();
    if (watch_.joinable())
        watch_.join();
}

void ExitLimit::start(int exitCode, std::chrono::milliseconds limit) noexcept
{
    try {
        watch_ = std::thread([this, exitCode, limit] { watch(exitCode, limit); });
    } catch (const std::system_error&) {  // no thread
    } catch (const std::bad_alloc&) {
    }
}

void ExitLimit::watch(int exitCode, std::chrono::milliseconds limit)
{
    std::unique_lock lock(mutex_);
    if (!changed_.wait_for(lock, limit, [this] { return hasEnded_; }))
        std::_Exit(exitCode);
}

}  // namespace VelkHost
