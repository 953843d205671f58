#pragma once

#include <VelkCommon/Export.h>

#include <string>
#include <string_view>

namespace Velk::Platform {

/// The text of the operating system's last error on this thread, as UTF-8.
VELKCOMMON_EXPORT std::string lastErrorText();

/// Whether a debugger is attached to the process.
VELKCOMMON_EXPORT bool debuggerPresent();

/// Stops in the attached debugger.
VELKCOMMON_EXPORT void debugBreak();

/// Writes to standard error in one write.
VELKCOMMON_EXPORT void writeToStandardError(std::string_view text);

}  // namespace Velk::Platform
