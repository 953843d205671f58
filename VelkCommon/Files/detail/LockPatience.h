#pragma once

#include <VelkCommon/Export.h>

#include <chrono>

namespace Velk::detail {

/// What lockPatience() is in every program.
inline constexpr std::chrono::milliseconds usualLockPatience{2000};

/// How long LockingFStream tries to open a file that somebody else holds. Any thread.
std::chrono::milliseconds lockPatience() noexcept;

/// Changes that. For tests, which must not depend on how busy the machine is. Any thread.
VELKCOMMON_EXPORT void setLockPatience(std::chrono::milliseconds patience) noexcept;

}  // namespace Velk::detail
