#pragma once

/// @file
/// The module's objects of static storage duration. They depend on each other's order, which C++ leaves
/// open between source files, so one source file defines them all; nothing else runs when the module is
/// loaded.

#include <mutex>
#include <string>

namespace Library::detail {

/// Held while the error log is looked at or written. Nothing that may log runs under it.
extern std::mutex errorLogMutex;

/// The name of the file in each catalog folder that lists the catalogs' hashes.
extern const std::u32string catalogHashFileName;

/// Held while the catalog update's cancel flag and addresses are read or written.
extern std::mutex catalogUpdateMutex;

/// The marker in a manufacturer's card that stands for the manager's default text. It is never translated.
extern const std::u32string defaultMarker;

/// Held while the manufacturer manager is made or destroyed.
extern std::mutex manufacturerManagerMutex;

/// The manufacturer data file, and the file that a new one is downloaded to.
extern const std::u32string manufacturerDataFileName;
extern const std::u32string manufacturerDataTemporaryFileName;

/// Held while the chooser is made or destroyed.
extern std::mutex chooserMutex;

}  // namespace Library::detail
