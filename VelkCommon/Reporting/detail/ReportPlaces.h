#pragma once

/// @file
/// The places that reports come from. Hosts recognise reports by them, so they are part of what the library
/// promises: names and numbers that stay as they are, wherever the code moves in the source text.

#include <VelkCommon/Reporting/ReportPlace.h>

namespace Velk::detail::places {

inline constexpr ReportPlace preferenceRead{"PreferenceEngine", 93};      ///< as another type than it has
inline constexpr ReportPlace preferenceWritten{"PreferenceEngine", 113};  ///< likewise
inline constexpr ReportPlace pixmapWithoutApplication{"ImageUtils", 43};

}  // namespace Velk::detail::places
