#pragma once

#include <VelkCommon/Export.h>
#include <VelkCommon/Reporting/ReportPlace.h>

#include <cstddef>

/// Whether assertion reports are enabled, as the host answers; true without a host. Any thread.
VELKCOMMON_EXPORT bool showQAVerify();

/// Reports a failed assertion to the host, or to standard error without one. True asks the caller to
/// break into an attached debugger. Never throws. Any thread.
VELKCOMMON_EXPORT bool notifyAssert(const char* sourceFile, std::size_t line, long kind, const char* expression);

namespace Velk {

/// The kind of every assertion that the library reports.
inline constexpr long softAssertion = -4;

/// What an assertion does when its condition is false: reports it where reports are enabled, breaks
/// into an attached debugger when the host asks for it, and returns in any case. Never throws.
VELKCOMMON_EXPORT void assertionFailed(const char* sourceFile, std::size_t line, const char* expression);
/// The same.
inline void assertionFailed(const ReportPlace& place, const char* expression)
{
    assertionFailed(place.source, place.line, expression);
}

}  // namespace Velk
