#pragma once

#include <VelkCommon/Export.h>
#include <VelkCommon/Text/LowerCase.h>

#include <QString>

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

/// Small operations on text. They throw only when memory runs out. Any thread.
namespace StringUtils {

/// The host's numbered text in the user's language; narrow text is UTF-8. A number that the host does not
/// know yields the built-in English text; a number without one yields an empty text.
/// @{
VELKCOMMON_EXPORT std::string loadString(unsigned int id);
VELKCOMMON_EXPORT std::u32string loadUnicodeString(unsigned int id);
VELKCOMMON_EXPORT QString loadQString(unsigned int id);
/// @}

/// Replaces every occurrence of `from` in `text`, left to right; the search continues after each
/// inserted text, so a `to` that contains `from` is fine. An empty `from` replaces nothing.
/// Returns whether anything was replaced.
VELKCOMMON_EXPORT bool replaceAll(std::u32string& text, std::u32string_view from, std::u32string_view to);

/// The pieces of `text` between the delimiters. Empty pieces are kept, so there is always one more piece
/// than there are delimiters ("" is one empty piece).
VELKCOMMON_EXPORT std::vector<std::string> tokenizeString(std::string_view text, char delimiter);

/// `text` without any of the bytes in `characters`.
VELKCOMMON_EXPORT std::string removeAllOf(std::string_view text, std::string_view characters);

/// `text` without any of `characters` at its beginning and its end.
VELKCOMMON_EXPORT std::string_view trimmed(std::string_view text, std::string_view characters = " \t") noexcept;

/// Whether the UTF-8 `text` begins with `prefix`, both lower-cased as by toLowerUtf8().
VELKCOMMON_EXPORT bool iStartsWith(std::string_view text, std::string_view prefix);

}  // namespace StringUtils

/// `value` with the host's thousands separator and at most `precision` decimals (none when negative),
/// without trailing zeros; halves round away from zero. "nan", "inf" or "-inf" for a value that
/// is not finite.
/// Example: (1234567.5, 9) is "1,234,567.5".
VELKCOMMON_EXPORT std::string formatWithThousandsSeparatorPrecision(double value, int precision);

/// The whole number nearest to `value`; halves round away from zero. A value outside the range of `T` gives
/// the nearest limit of `T`, and NaN gives 0. `T` is int, long or long long.
template <typename T>
T roundToNearest(double value);
template <>
VELKCOMMON_EXPORT int roundToNearest<int>(double value);
template <>
VELKCOMMON_EXPORT long roundToNearest<long>(double value);
template <>
VELKCOMMON_EXPORT long long roundToNearest<long long>(double value);
