#pragma once

/// @file
/// The version that is being compiled against. Before 1.0, a new minor version may break programs that were built
/// for an older one, so the names of the shared libraries carry both numbers.

#define VELK_VERSION_MAJOR 0  ///< the first number of the version
#define VELK_VERSION_MINOR 1  ///< the second number
#define VELK_VERSION_PATCH 0  ///< the third number

/// A version as one number, to compare with VELK_VERSION: `#if VELK_VERSION >= VELK_VERSION_CHECK(0, 2, 0)`.
#define VELK_VERSION_CHECK(major, minor, patch) (((major) << 16) | ((minor) << 8) | (patch))
/// This version as one number.
#define VELK_VERSION VELK_VERSION_CHECK(VELK_VERSION_MAJOR, VELK_VERSION_MINOR, VELK_VERSION_PATCH)

/// This version as a text, such as "1.2.3".
#define VELK_VERSION_STRING "0.1.0"
