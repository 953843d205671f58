#pragma once

#include <VelkCommon/Export.h>

#include <cstddef>
#include <string>
#include <string_view>

/// Lower case of texts. Throws only when memory runs out. Any thread.
namespace StringUtils {

/// Lower case by Unicode's simple mapping, code point by code point. It depends on neither locale nor
/// context (a final sigma is an ordinary sigma) and never changes the number of code points. Values that
/// are not code points stay as they are.
VELKCOMMON_EXPORT std::u32string toLower(std::u32string_view text);

/// The same mapping on UTF-8, so that it agrees with toLower() on every code point. Bytes that are not
/// UTF-8 are copied unchanged.
VELKCOMMON_EXPORT std::string toLowerUtf8(std::string_view text);

/// The room that toLowerUtf8Into() needs for a text of `size` bytes. It is more than any result takes up:
/// some letters grow from two bytes to three, and the end is written in whole blocks.
constexpr std::size_t lowerUtf8Room(std::size_t size) noexcept
{
    return size + size / 2 + 32;
}

/// Writes the lower-case form of `text` to `out`, which must have room for at least
/// `lowerUtf8Room(text.size())` bytes and must not overlap `text`. Returns the length of the result;
/// the bytes behind it are unspecified. Allocates nothing; never throws.
VELKCOMMON_EXPORT std::size_t toLowerUtf8Into(char* out, std::string_view text) noexcept;

}  // namespace StringUtils
