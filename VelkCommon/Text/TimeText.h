#pragma once

#include <VelkCommon/Export.h>

#include <boost/date_time/posix_time/posix_time_types.hpp>

#include <string>

/// Times and their texts. All times are UTC, so that those from different machines can be compared.
/// Throws only when memory runs out. Any thread.
namespace Library {

/// The current time (UTC, microseconds).
VELKCOMMON_EXPORT boost::posix_time::ptime getTimeNow();

/// The current time in the form that the log shows: "2026-03-01T14:05:59.012345Z".
VELKCOMMON_EXPORT std::string getTimeNowString();

/// The form in which data files hold a value; fromString() gives back exactly the same value.
template <typename T>
std::string toString(const T& value);

/// The value of a text that toString() returned.
template <typename T>
T fromString(const std::string& text);

/// "20260301T140559.012345" (the fraction only when there is one), "not-a-date-time", "-infinity" or
/// "+infinity".
template <>
VELKCOMMON_EXPORT std::string toString<boost::posix_time::ptime>(const boost::posix_time::ptime& value);

/// Reads that form; not-a-date-time for any other text and for fields out of range.
template <>
VELKCOMMON_EXPORT boost::posix_time::ptime fromString<boost::posix_time::ptime>(const std::string& text);

}  // namespace Library
