#pragma once

#include <VelkCommon/Platform/Bytes16.h>

#include <cstddef>
#include <cstdint>

namespace Library::Search::detail {

/// Which of 64 bytes are equal to a byte, or of 64 places have two bytes at two distances: a bit for each.
/// @{
inline std::uint64_t maskOf(Velk::Platform::Bytes16 a, Velk::Platform::Bytes16 b, Velk::Platform::Bytes16 c,
                            Velk::Platform::Bytes16 d) noexcept
{
    return (std::uint64_t{a.mask()} | std::uint64_t{b.mask()} << 16) |
           (std::uint64_t{c.mask()} | std::uint64_t{d.mask()} << 16) << 32;
}

inline std::uint64_t equalTo(const char* bytes, Velk::Platform::Bytes16 byte) noexcept
{
    const auto at = [&](std::size_t place) { return equal(Velk::Platform::Bytes16::load(bytes + place), byte); };
    return maskOf(at(0), at(16), at(32), at(48));
}

inline std::uint64_t pairsAt(const char* firsts, Velk::Platform::Bytes16 first, const char* seconds,
                             Velk::Platform::Bytes16 second) noexcept
{
    using Velk::Platform::Bytes16;
    const auto at = [&](std::size_t place) {
        return equal(Bytes16::load(firsts + place), first) & equal(Bytes16::load(seconds + place), second);
    };
    const Bytes16 a = at(0);
    const Bytes16 b = at(16);
    const Bytes16 c = at(32);
    const Bytes16 d = at(48);
    return (a | b | c | d).mask() == 0 ? 0 : maskOf(a, b, c, d);
}
/// @}

}  // namespace Library::Search::detail
