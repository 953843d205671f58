#pragma once

/// @file
/// Paths as text; nothing here looks at the disk. Narrow paths are UTF-8 (odd bytes allowed, see
/// fileString.h). Throws only when memory runs out. Any thread.

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

/// Whether `character` separates folders on this system: "/" everywhere, and "\" only on Windows.
constexpr bool isSeparator(char character) noexcept
{
    return character == '/' || character == separator;
}

/// The length of the path's root with its separators: "/" on POSIX; "C:\", "\\server\share\", "\" and
/// the incomplete "C:" on Windows. 0 without one.
VELKCOMMON_EXPORT std::size_t rootLength(std::string_view path) noexcept;
/// Whether `path` names the same place whatever the current folder or drive is.
VELKCOMMON_EXPORT bool isAbsolute(std::string_view path) noexcept;
/// The path as UTF-32, without loss: a byte that is not text becomes U+DC80 to U+DCFF, and the three-byte form of a
/// lone surrogate (in a name on Windows) becomes that surrogate. The three-byte forms of U+DC80 to U+DCFF are an
/// exception: their bytes count as odd bytes, because otherwise two different paths would share one UTF-32 text.
VELKCOMMON_EXPORT std::u32string toUnicodePath(std::string_view path);
/// The reverse of toUnicodePath(). A value above U+10FFFF becomes U+FFFD.
VELKCOMMON_EXPORT std::string fromUnicodePath(std::u32string_view points);
/// The path as people on this system write it: on Windows with "\" between its parts throughout.
VELKCOMMON_EXPORT std::string shownPath(std::string_view path);
/// The form that the system's calls take, see fileString::toNativeString(). Lone surrogates stay, and odd bytes
/// are represented as in toUnicodePath().
VELKCOMMON_EXPORT std::wstring toNativePath(std::string_view path);
/// The reverse of toNativePath(); a long-path prefix is removed.
VELKCOMMON_EXPORT std::string fromNativePath(std::wstring_view native);

}  // namespace Velk::Platform
