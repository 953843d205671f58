#pragma once

#include <VelkCommon/Export.h>
#include <VelkCommon/Files/fileString.h>
#include <VelkCommon/Platform/File.h>

#include <chrono>

namespace Velk::detail {

/// The value of lockPatience() unless a test changes it.
inline constexpr std::chrono::milliseconds usualLockPatience{2000};

/// How long LockingFStream tries to open a file that somebody else holds. Any thread.
std::chrono::milliseconds lockPatience() noexcept;

/// Changes lockPatience(). For tests, which must not depend on how busy the machine is. Any thread.
VELKCOMMON_EXPORT void setLockPatience(std::chrono::milliseconds patience) noexcept;

/// Opens and locks the file; while somebody else holds it, tries again until lockPatience() is over.
bool openLockedPatiently(Platform::File& file, const fileString& path, Platform::File::Lock lock);

}  // namespace Velk::detail
