#pragma once

#include <VelkCommon/Files/FileState.h>
#include <VelkCommon/Files/fileString.h>

#include <filesystem>
#include <string>

/// @file
/// Paths for the standard library's streams.

namespace VelkHost {

/// The path for a stream, and for nothing else: on Windows the standard library's other operations do not know the form
/// that long paths have there. Elsewhere it is made of bytes, which keeps names that are not valid text.
inline std::filesystem::path streamPath(const fileString& path)
{
#ifdef _WIN32
    return Velk::absolutePath(path).toNativeString();
#else
    return path.utf8();
#endif
}

}  // namespace VelkHost
