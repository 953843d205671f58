#pragma once

#include <cstddef>

/// The numbers of the preferences that the library uses, see PrefSet. Hosts keep values under them, so
/// they never change.
namespace Velk::preferenceNumbers {

/// How progress is described beside the gauge, see ProgressDisplayType: an int; 1 without a host.
inline constexpr std::size_t progressDisplay = 236;
/// Whether the last catalog update that the user asked for had errors: a bool; false without a host.
inline constexpr std::size_t lastManualUpdateFailed = 251;
/// Whether an automatic catalog update leaves the core libraries alone: a bool; false without a host.
inline constexpr std::size_t coreLibrariesStay = 271;

}  // namespace Velk::preferenceNumbers
