#pragma once

#include <VelkCommon/HostServices.h>

#include <any>
#include <cstddef>

namespace VelkHost {

/// A preference of the library (PreferenceNumbers.h) with the value that it is to have at start-up, under the
/// library's own description.
Velk::HostPreference libraryPreference(std::size_t number, std::any value);

}  // namespace VelkHost
