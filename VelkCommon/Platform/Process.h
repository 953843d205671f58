#pragma once

/// @file
/// The current process and the calling thread. Any thread.

#include <VelkCommon/Export.h>

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

namespace Velk::Platform {

/// The text of the calling thread's last system error, UTF-8, without line break. Ask for it before
/// anything else runs.
VELKCOMMON_EXPORT std::string lastErrorText();
/// Whether that error says that the path names nothing, so that something could be made there or a folder above is
/// missing. Other errors leave open what is there.
VELKCOMMON_EXPORT bool lastErrorIsNotFound() noexcept;
/// Whether that error is lack of memory. A file that cannot be looked at for this reason is neither missing nor
/// damaged.
VELKCOMMON_EXPORT bool lastErrorIsLackOfMemory() noexcept;
/// Whether a debugger is attached to this process.
VELKCOMMON_EXPORT bool debuggerPresent();
/// Stops in the attached debugger. Without one the system may end the process.
VELKCOMMON_EXPORT void debugBreak();
/// Writes UTF-8 text to standard error unchanged; text that cannot be written is lost.
VELKCOMMON_EXPORT void writeToStandardError(std::string_view text) noexcept;
/// The system's number for the calling thread, as the system's tools show it.
VELKCOMMON_EXPORT std::uint32_t currentThreadId() noexcept;
/// Fills `size` bytes with random values from the system, which are good enough for names that nobody may
/// guess. False on failure.
VELKCOMMON_EXPORT bool fillRandom(void* bytes, std::size_t size) noexcept;

}  // namespace Velk::Platform
