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
/// The path as UTF-32, which holds the same names: a byte that is not text stands as U+DC80 to U+DCFF, and the
/// three-byte form of a lone surrogate (a name on Windows) as that surrogate. Only the three bytes of a surrogate
/// that stands for an odd byte count as odd ones, or two byte texts would share one UTF-32 text.
VELKCOMMON_EXPORT std::u32string toUnicodePath(std::string_view path);
/// The reverse. A value above Unicode becomes U+FFFD.
VELKCOMMON_EXPORT std::string fromUnicodePath(std::u32string_view points);
/// The form that the system's calls take, see fileString::toNativeString(). Lone surrogates stay, and odd bytes
/// stand as in toUnicodePath().
VELKCOMMON_EXPORT std::wstring toNativePath(std::string_view path);
/// The reverse; a long-path prefix is taken off.
VELKCOMMON_EXPORT std::string fromNativePath(std::wstring_view native);

}  // namespace Velk::Platform
