#pragma once

#include <functional>
#include <map>
#include <string>
#include <string_view>

namespace VelkHost {

/// The texts (UTF-8) of a Java properties file by key.
using Properties = std::map<std::string, std::string, std::less<>>;

/// Reads Java properties: bytes are ISO-8859-1, "\uXXXX" is a UTF-16 unit, "\t", "\n", "\r" and "\f" are
/// controls, and a backslash before any other character stands for that character. A key ends at the
/// first "=", ":" or blank that has no backslash before it. A line that ends in an odd number of
/// backslashes goes on in the next one, without that one's leading blanks. Lines that start with "#" or
/// "!" are comments. Of a repeated key the last value counts.
///
/// Nothing is an error: an escape with fewer than four hexadecimal digits stands for its "u", a
/// surrogate without its other half for U+FFFD. Any thread; throws only std::bad_alloc.
Properties parseProperties(std::string_view bytes);

/// The value of `key`, or an empty text.
std::string_view propertyOf(const Properties& properties, std::string_view key);

}  // namespace VelkHost
