#include <VelkCommon/Files/detail/LockPatience.h>

#include <atomic>

namespace Velk::detail {
namespace {

std::atomic<std::chrono::milliseconds> currentPatience = usualLockPatience;

}  // namespace

std::chrono::milliseconds lockPatience() noexcept
{
    return currentPatience;
}

void setLockPatience(std::chrono::milliseconds patience) noexcept
{
    currentPatience = patience;
}

}  // namespace Velk::detail
