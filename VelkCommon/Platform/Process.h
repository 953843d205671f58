#pragma once

/// @file
/// The process and the thread that runs. Any thread.

#include <VelkCommon/Export.h>

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

namespace Velk::Platform {

/// The text of the calling thread's last system error, UTF-8, without line break. Ask for it before
/// anything else runs.
VELKCOMMON_EXPORT std::string lastErrorText();
/// A debugger is attached to this process.
VELKCOMMON_EXPORT bool debuggerPresent();
/// Stops in the attached debugger. Without one the system may end the process.
VELKCOMMON_EXPORT void debugBreak();
/// Writes UTF-8 text to standard error as it is; what cannot be written is lost.
VELKCOMMON_EXPORT void writeToStandardError(std::string_view text) noexcept;
/// The system's number of the calling thread, as its tools show it.
VELKCOMMON_EXPORT std::uint32_t currentThreadId() noexcept;
/// Fills `size` bytes with the system's randomness, good enough for names that nobody may guess.
VELKCOMMON_EXPORT bool fillRandom(void* bytes, std::size_t size) noexcept;

}  // namespace Velk::Platform
