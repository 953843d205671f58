#include <VelkCommon/Files/detail/LockPatience.h>

#include <atomic>
#include <thread>

namespace Velk::detail {
namespace {

std::atomic<std::chrono::milliseconds> currentPatience = usualLockPatience;
constexpr std::chrono::milliseconds lockPause{5};

}  // namespace

std::chrono::milliseconds lockPatience() noexcept
{
    return currentPatience;
}

void setLockPatience(std::chrono::milliseconds patience) noexcept
{
    currentPatience = patience;
}

bool openLockedPatiently(Platform::File& file, const fileString& path, Platform::File::Lock lock)
{
    using Clock = std::chrono::steady_clock;
    const auto end = Clock::now() + lockPatience();
    for (;;) {
        const auto result = file.openLocked(path.utf8(), lock);
        if (result != Platform::File::LockResult::held)
            return result == Platform::File::LockResult::locked;
        if (Clock::now() >= end)
            return false;
        std::this_thread::sleep_for(lockPause);
    }
}

}  // namespace Velk::detail
