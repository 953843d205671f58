#pragma once

/// @file
/// Marks what the library module exports. A static build defines VELK_STATIC.

/// @def VELKLIBRARY_EXPORT
/// Stands in front of a class or function that the module exports.

#if defined(VELK_STATIC)
#define VELKLIBRARY_EXPORT
#elif defined(_WIN32)
#if defined(VELKLIBRARY_BUILD)
#define VELKLIBRARY_EXPORT __declspec(dllexport)
#else
#define VELKLIBRARY_EXPORT __declspec(dllimport)
#endif
#else
#define VELKLIBRARY_EXPORT __attribute__((visibility("default")))
#endif
