#pragma once

/// UTF-16, one surrogate pair at a time.
namespace Velk::Utf16 {

/// The first code point that needs a pair.
inline constexpr char32_t firstPaired = 0x10000;

/// Whether `unit` is the first half of a pair.
constexpr bool isLead(char32_t unit) noexcept
{
    return unit >= 0xD800 && unit <= 0xDBFF;
}

/// Whether `unit` is the second half of a pair.
constexpr bool isTrail(char32_t unit) noexcept
{
    return unit >= 0xDC00 && unit <= 0xDFFF;
}

/// The code point that two halves stand for.
constexpr char32_t joined(char32_t lead, char32_t trail) noexcept
{
    return firstPaired + ((lead - 0xD800) << 10) + (trail - 0xDC00);
}

/// The first half of the pair for `point`, which must need a pair.
constexpr char32_t leadOf(char32_t point) noexcept
{
    return 0xD800 + ((point - firstPaired) >> 10);
}

/// The second half of the pair for `point`, which must need a pair.
constexpr char32_t trailOf(char32_t point) noexcept
{
    return 0xDC00 + (point & 0x3FF);
}

}  // namespace Velk::Utf16
