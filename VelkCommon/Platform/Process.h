#pragma once

/// @file
/// The current process and the calling thread. Any thread.

#include <VelkCommon/Export.h>

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <system_error>

namespace Velk::Platform {

/// The text of the calling thread's last system error, UTF-8, without line break. Ask for it before
/// anything else runs.
VELKCOMMON_EXPORT std::string lastErrorText();
/// The text of `error`, UTF-8, without line break. The standard library's own, std::error_code::message(), comes in the
/// system's code page on Windows.
VELKCOMMON_EXPORT std::string errorText(const std::error_code& error);
/// A text that the system, or another library on its behalf, has made for people: as UTF-8. On Windows a text that is
/// not UTF-8 is taken for one in the system's code page; elsewhere it stays as it is.
VELKCOMMON_EXPORT std::string utf8OfSystemText(std::string text);
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
