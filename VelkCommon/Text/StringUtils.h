#pragma once

#include <VelkCommon/Export.h>

#include <QString>

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

/// Small operations on text. None throws but for memory; all may be called from any thread.
namespace StringUtils {

/// The host's numbered text in the user's language; narrow text is UTF-8. A number that the host does not
/// know yields the built-in English text; one that nobody knows yields an empty text.
/// @{
VELKCOMMON_EXPORT std::string loadString(unsigned int id);
VELKCOMMON_EXPORT std::u32string loadUnicodeString(unsigned int id);
VELKCOMMON_EXPORT QString loadQString(unsigned int id);
/// @}

/// Lower case by Unicode's simple mapping, code point by code point: independent of locale and of
/// context (a final sigma is an ordinary sigma), and never a change in the number of code points.
/// Values that are no code points stay as they are.
VELKCOMMON_EXPORT std::u32string toLower(std::u32string_view text);

/// The same mapping on UTF-8, so that it agrees with toLower() on every code point. Bytes that are not
/// UTF-8 are copied unchanged.
VELKCOMMON_EXPORT std::string toLowerUtf8(std::string_view text);

/// The room that toLowerUtf8Into() needs for a text of `size` bytes. More than the result can hold:
/// some letters grow from two bytes to three, and whole blocks are written at the end.
constexpr std::size_t lowerUtf8Room(std::size_t size) noexcept
{
    return size + size / 2 + 32;
}

/// Writes the lower-case form of `text` to `out`, which has room for at least
/// `lowerUtf8Room(text.size())` bytes and does not overlap `text`. Returns the length of the result;
/// the bytes behind it are unspecified. Allocates nothing; never throws.
VELKCOMMON_EXPORT std::size_t toLowerUtf8Into(char* out, std::string_view text) noexcept;

/// Replaces every occurrence of `from` in `text`, left to right; the search goes on behind each
/// inserted text, so a `to` that contains `from` is fine. An empty `from` replaces nothing.
/// Returns whether anything was replaced.
VELKCOMMON_EXPORT bool replaceAll(std::u32string& text, std::u32string_view from, std::u32string_view to);

/// The pieces of `text` between `delimiter`s; empty pieces are kept, so there is always one piece more
/// than there are delimiters ("" is one empty piece).
VELKCOMMON_EXPORT std::vector<std::string> tokenizeString(std::string_view text, char delimiter);

/// `text` without any of the bytes in `characters`.
VELKCOMMON_EXPORT std::string removeAllOf(std::string_view text, std::string_view characters);

/// Whether the UTF-8 `text` begins with `prefix`, both lower-cased as by toLowerUtf8().
VELKCOMMON_EXPORT bool iStartsWith(std::string_view text, std::string_view prefix);

}  // namespace StringUtils

/// `value` with the host's thousands separator and at most `precision` decimals (none when negative),
/// without trailing zeros; halves round away from zero. "nan", "inf" and "-inf" for what is no number.
/// Example: (1234567.5, 9) is "1,234,567.5".
VELKCOMMON_EXPORT std::string formatWithThousandsSeparatorPrecision(double value, int precision);

/// The whole number nearest to `value`, halves away from zero; the type's nearest limit for a value
/// outside its range, 0 for what is no number. `T` is int, long or long long.
template <typename T>
T roundToNearest(double value);
template <>
VELKCOMMON_EXPORT int roundToNearest<int>(double value);
template <>
VELKCOMMON_EXPORT long roundToNearest<long>(double value);
template <>
VELKCOMMON_EXPORT long long roundToNearest<long long>(double value);
