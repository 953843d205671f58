#pragma once

#include <VelkCommon/Export.h>
#include <VelkCommon/Text/Ascii.h>

#include <string>
#include <string_view>

/// Numbers and bytes in hexadecimal digits. Nothing throws but for memory. Any thread.
namespace Velk::Hexadecimal {

/// The digits by their values, as digests, names and JSON have them.
inline constexpr std::string_view smallDigits = "0123456789abcdef";
/// The digits by their values, as addresses have them.
inline constexpr std::string_view capitalDigits = "0123456789ABCDEF";

/// The value of a digit of either kind, -1 for any other character.
constexpr int valueOf(char digit) noexcept
{
    if (Ascii::isDigit(digit))
        return digit - '0';
    const char letter = Ascii::lower(digit);
    return letter >= 'a' && letter <= 'f' ? letter - 'a' + 10 : -1;
}

/// The bytes as two small digits each.
VELKCOMMON_EXPORT std::string textOf(std::string_view bytes);

}  // namespace Velk::Hexadecimal
