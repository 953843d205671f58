#pragma once

/// @file
/// What names of files may hold, and how paths look, on the system that the tests run on.

#include <algorithm>
#include <string>

namespace test {

#ifdef _WIN32
inline constexpr bool namesMayHoldAnything = false;
inline constexpr bool letterCaseCounts = false;
inline constexpr bool anybodyMayLink = false;
inline constexpr char separator = '\\';
#else
/// Whether they may hold every character but "/". On Windows some mean something else.
inline constexpr bool namesMayHoldAnything = true;
/// Whether names that differ in letter case alone are those of different files.
inline constexpr bool letterCaseCounts = true;
/// Whether every user may make links.
inline constexpr bool anybodyMayLink = true;
/// What stands between the parts of a path that people are shown.
inline constexpr char separator = '/';
#endif

/// A path, or a text with paths, as people see it here: with the system's separator in the place of "/".
inline std::string shown(std::string text)
{
    std::replace(text.begin(), text.end(), '/', separator);
    return text;
}

/// The reverse: the text as tests have it, whichever system it was made for.
inline std::string withSlashes(std::string text)
{
    std::replace(text.begin(), text.end(), separator, '/');
    return text;
}

}  // namespace test
