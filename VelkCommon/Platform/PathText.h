#pragma once

/// @file
/// Paths as text, without a look at the disk. Narrow ones are UTF-8 (odd bytes allowed, see fileString.h).
/// Nothing throws but for memory. Any thread.

#include <VelkCommon/Export.h>

#include <cstddef>
#include <string>
#include <string_view>

namespace Velk::Platform {

#ifdef _WIN32
inline constexpr char separator = '\\';
#else
inline constexpr char separator = '/';
#endif

/// `character` separates folders. The separator of the other systems counts only where it does there.
constexpr bool isSeparator(char character) noexcept
{
    return character == '/' || character == separator;
}

/// The length of the path's root with its separators: "/" on POSIX; "C:\", "\\server\share\", "\" and
/// the incomplete "C:" on Windows. 0 without one.
VELKCOMMON_EXPORT std::size_t rootLength(std::string_view path) noexcept;
/// `path` names the same place whatever the current folder or drive is.
VELKCOMMON_EXPORT bool isAbsolute(std::string_view path) noexcept;
/// The form that the system's calls take, see fileString::toNativeString(). Lone surrogates stay.
VELKCOMMON_EXPORT std::wstring toNativePath(std::u32string_view path);
/// UTF-32 from the system's wide path text. Lone surrogates stay; a long-path prefix is taken off.
VELKCOMMON_EXPORT std::u32string fromNativePath(std::wstring_view native);

}  // namespace Velk::Platform
