#pragma once

/// @file
/// Marks what the library module exports. A static build defines VELK_STATIC.

/// @def VELKLIBRARY_EXPORT
/// Stands in front of a class or function that the module exports.
/// @def VELKLIBRARY_VISIBLE
/// Stands in front of a class whose members are exported one by one, because its base is a class template of the
/// standard library. On Windows an exported class would take the base's code along, and a program that uses the base
/// itself would have it twice. Elsewhere the class as such must be visible, so that all modules agree that it is one
/// type.

#if defined(VELK_STATIC)
#define VELKLIBRARY_EXPORT
#define VELKLIBRARY_VISIBLE
#elif defined(_WIN32)
#define VELKLIBRARY_VISIBLE
#if defined(VELKLIBRARY_BUILD)
#define VELKLIBRARY_EXPORT __declspec(dllexport)
#else
#define VELKLIBRARY_EXPORT __declspec(dllimport)
#endif
#else
#define VELKLIBRARY_EXPORT __attribute__((visibility("default")))
#define VELKLIBRARY_VISIBLE VELKLIBRARY_EXPORT
#endif
