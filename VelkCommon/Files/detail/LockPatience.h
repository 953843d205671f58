#pragma once

#include <VelkCommon/Export.h>

#include <chrono>

namespace Velk::detail {

/// The value of lockPatience() unless a test changes it.
inline constexpr std::chrono::milliseconds usualLockPatience{2000};

/// How long LockingFStream tries to open a file that somebody else holds. Any thread.
std::chrono::milliseconds lockPatience() noexcept;

/// Changes lockPatience(). For tests, which must not depend on how busy the machine is. Any thread.
VELKCOMMON_EXPORT void setLockPatience(std::chrono::milliseconds patience) noexcept;

}  // namespace Velk::detail
