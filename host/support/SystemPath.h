#pragma once

#include <VelkCommon/Files/fileString.h>

#include <filesystem>
#include <string>

/// @file
/// Paths for the standard library's file operations. By way of UTF-8, which keeps names on Linux that are not
/// valid text, and is exact on Windows.

namespace VelkHost {

inline std::filesystem::path systemPath(const fileString& path)
{
    return std::filesystem::path(std::u8string(path.utf8().begin(), path.utf8().end()));
}

/// The path with "/" between its parts.
inline fileString fromSystemPath(const std::filesystem::path& path)
{
    const std::u8string text = path.generic_u8string();
    return fileString(std::string(text.begin(), text.end()));
}

}  // namespace VelkHost
