#pragma once

#include <VelkCommon/Export.h>
#include <VelkCommon/Text/Ascii.h>

#include <string>
#include <string_view>

/// Numbers and bytes in hexadecimal digits. Throws only when memory runs out. Any thread.
namespace Velk::Hexadecimal {

/// The digits in the order of their values, as used in digests, names and JSON.
inline constexpr std::string_view smallDigits = "0123456789abcdef";
/// The digits in the order of their values, as used in addresses.
inline constexpr std::string_view capitalDigits = "0123456789ABCDEF";

/// The value of a digit, whether its letter is small or capital; -1 for any other character.
constexpr int valueOf(char digit) noexcept
{
    if (Ascii::isDigit(digit))
        return digit - '0';
    const char letter = Ascii::lower(digit);
    return letter >= 'a' && letter <= 'f' ? letter - 'a' + 10 : -1;
}

/// The bytes, each written as two digits with small letters.
VELKCOMMON_EXPORT std::string textOf(std::string_view bytes);

}  // namespace Velk::Hexadecimal
