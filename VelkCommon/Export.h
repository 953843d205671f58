#pragma once

/// @file
/// Marks what the common services export. A static build defines VELK_STATIC.

/// @def VELKCOMMON_EXPORT
/// In front of a class or function that the module exports.

#if defined(VELK_STATIC)
#define VELKCOMMON_EXPORT
#elif defined(_WIN32)
#if defined(VELKCOMMON_BUILD)
#define VELKCOMMON_EXPORT __declspec(dllexport)
#else
#define VELKCOMMON_EXPORT __declspec(dllimport)
#endif
#else
#define VELKCOMMON_EXPORT __attribute__((visibility("default")))
#endif
