#pragma once

/// @file
/// The module's objects of static storage duration. They depend on each other's order, which C++ leaves
/// open between source files, so one source file defines them all; nothing else runs when the module is
/// loaded.

#include <mutex>

namespace Library::detail {

/// Held while the error log is looked at or written. Nothing that may log runs under it.
extern std::mutex errorLogMutex;

}  // namespace Library::detail
