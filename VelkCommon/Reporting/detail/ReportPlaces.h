#pragma once

/// @file
/// The places that reports come from. Hosts recognise reports by them, so they are part of what the library
/// promises: the names and numbers stay the same even when the code moves.

#include <VelkCommon/Reporting/ReportPlace.h>

namespace Velk::detail::places {

inline constexpr ReportPlace preferenceRead{"PreferenceEngine", 93};      ///< as a type other than its own
inline constexpr ReportPlace preferenceWritten{"PreferenceEngine", 113};  ///< likewise
inline constexpr ReportPlace pixmapWithoutApplication{"ImageUtils", 43};

}  // namespace Velk::detail::places
