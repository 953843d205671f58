#pragma once

/// The extensions that the files of libraries have.
namespace Library::extensions {

/// The catalog file, a library's database.
inline constexpr const char* database = ".calib";
/// A packed library: a zip archive of its catalog file and of the files that it refers to.
inline constexpr const char* packed = ".calibz";
/// An archive of the files that a library refers to.
inline constexpr const char* referencedFiles = ".zip";
/// Stands in place of any of these while the file is downloaded.
inline constexpr const char* download = ".download";

}  // namespace Library::extensions
