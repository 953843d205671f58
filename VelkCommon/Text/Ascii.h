#pragma once

#include <type_traits>

/// Questions about single ASCII characters, answered independently of any locale. They can be asked about
/// any byte of UTF-8 and any code point: a value beyond ASCII belongs to none of the classes, and lower()
/// returns it unchanged.
namespace Velk::Ascii {

/// "0" to "9".
template <typename Character>
constexpr bool isDigit(Character c) noexcept
{
    return c >= Character{'0'} && c <= Character{'9'};
}

/// "A" to "Z".
template <typename Character>
constexpr bool isCapital(Character c) noexcept
{
    return c >= Character{'A'} && c <= Character{'Z'};
}

/// The lower-case form of "A" to "Z"; any other character unchanged.
template <typename Character>
constexpr Character lower(Character c) noexcept
{
    return isCapital(c) ? static_cast<Character>(c | 0x20) : c;
}

/// "A" to "Z" and "a" to "z".
template <typename Character>
constexpr bool isLetter(Character c) noexcept
{
    return isCapital(c) || (c >= Character{'a'} && c <= Character{'z'});
}

/// A character below the blank, or DEL: one that moves a cursor, ends a line, or is not shown at all.
template <typename Character>
constexpr bool isControl(Character c) noexcept
{
    const auto code = static_cast<std::make_unsigned_t<Character>>(c);
    return code < 0x20 || code == 0x7F;
}

}  // namespace Velk::Ascii
