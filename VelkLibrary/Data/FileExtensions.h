#pragma once

#include <VelkCommon/Archive/ZipUtils.h>

/// The extensions that the files of libraries have.
namespace Library::extensions {

/// A library's database, its catalog.
inline constexpr const char* database = ".calib";
/// A library packed for its way: a zip archive of its database and of the files that it refers to.
inline constexpr const char* packed = ".calibz";
/// An archive of the files that a library refers to.
inline constexpr const char* referencedFiles = ZipUtils::extension;
/// Any of these while it is downloaded, in place of its own.
inline constexpr const char* download = ".download";

}  // namespace Library::extensions
