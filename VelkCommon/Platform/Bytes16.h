#pragma once

#include <array>
#include <bit>
#include <cstddef>
#include <cstdint>
#include <cstring>

#if defined(__SSE2__) || defined(_M_X64)
#define VELK_BYTES16_SSE2
#include <emmintrin.h>
#endif

/// @file
/// Sixteen bytes at once, for the loops that look at every byte of a text. There are two forms that behave
/// alike: one for processors with SSE2 (which every x86-64 has), one for all others. `Bytes16` is the
/// form to use.
namespace Velk::Platform {

/// The form for every processor.
class Bytes16Portable
{
public:
    /// Sixteen times `byte`.
    explicit Bytes16Portable(std::uint8_t byte) noexcept { bytes_.fill(byte); }
    /// The bytes at `from` to `from` + 15; no alignment needed.
    static Bytes16Portable load(const char* from) noexcept
    {
        Bytes16Portable result(0);
        std::memcpy(result.bytes_.data(), from, size);
        return result;
    }
    /// The `count` bytes at `from`, at most 16, followed by zeros. Reads nothing else.
    static Bytes16Portable loadPart(const char* from, std::size_t count) noexcept
    {
        Bytes16Portable result(0);
        std::memcpy(result.bytes_.data(), from, count);
        return result;
    }
    void store(char* to) const noexcept { std::memcpy(to, bytes_.data(), size); }

    /// For each byte, 0xFF where both are equal and 0 elsewhere.
    friend Bytes16Portable equal(const Bytes16Portable& a, const Bytes16Portable& b) noexcept
    {
        return eachPair(a, b, [](std::uint8_t x, std::uint8_t y) { return x == y ? 0xFF : 0; });
    }
    /// For each byte, 0xFF where `low` <= byte <= `high` (unsigned) and 0 elsewhere.
    friend Bytes16Portable inRange(const Bytes16Portable& a, std::uint8_t low, std::uint8_t high) noexcept
    {
        return eachPair(a, a, [=](std::uint8_t x, std::uint8_t) { return x >= low && x <= high ? 0xFF : 0; });
    }
    friend Bytes16Portable operator&(const Bytes16Portable& a, const Bytes16Portable& b) noexcept
    {
        return eachPair(a, b, [](std::uint8_t x, std::uint8_t y) { return x & y; });
    }
    friend Bytes16Portable operator|(const Bytes16Portable& a, const Bytes16Portable& b) noexcept
    {
        return eachPair(a, b, [](std::uint8_t x, std::uint8_t y) { return x | y; });
    }

    /// For each byte, the sum modulo 256.
    friend Bytes16Portable operator+(const Bytes16Portable& a, const Bytes16Portable& b) noexcept
    {
        return eachPair(a, b, [](std::uint8_t x, std::uint8_t y) { return x + y; });
    }

    /// Each byte one place further on; the first is 0.
    Bytes16Portable movedOn() const noexcept
    {
        Bytes16Portable result(0);
        std::memcpy(result.bytes_.data() + 1, bytes_.data(), size - 1);
        return result;
    }

    /// Bit i is the highest bit of byte i.
    std::uint32_t mask() const noexcept
    {
        std::uint32_t result = 0;
        for (unsigned i = 0; i < size; ++i)
            result |= static_cast<std::uint32_t>(bytes_[i] >> 7) << i;
        return result;
    }

    static constexpr unsigned size = 16;

private:
    template <typename Operation>
    static Bytes16Portable eachPair(const Bytes16Portable& a, const Bytes16Portable& b, Operation operation) noexcept
    {
        Bytes16Portable result(0);
        for (unsigned i = 0; i < size; ++i)
            result.bytes_[i] = static_cast<std::uint8_t>(operation(a.bytes_[i], b.bytes_[i]));
        return result;
    }

    std::array<std::uint8_t, 16> bytes_;
};

#ifdef VELK_BYTES16_SSE2
/// The form for SSE2; see Bytes16Portable for the meaning of the operations.
class Bytes16Sse2
{
public:
    explicit Bytes16Sse2(std::uint8_t byte) noexcept : bytes_(_mm_set1_epi8(static_cast<char>(byte))) {}
    static Bytes16Sse2 load(const char* from) noexcept
    {
        return Bytes16Sse2(_mm_loadu_si128(reinterpret_cast<const __m128i*>(from)));
    }
    static Bytes16Sse2 loadPart(const char* from, std::size_t count) noexcept
    {
        std::uint64_t low = 0;
        std::uint64_t high = 0;
        if (count >= 8) {
            low = word<std::uint64_t>(from);
            high = count == 8 ? 0 : word<std::uint64_t>(from + count - 8) >> 8 * (16 - count);
        } else if (count >= 4) {
            low = word<std::uint32_t>(from) | word<std::uint32_t>(from + count - 4) << 8 * (count - 4);
        } else if (count > 0) {
            low = word<std::uint8_t>(from) | word<std::uint8_t>(from + count / 2) << 8 * (count / 2) |
                  word<std::uint8_t>(from + count - 1) << 8 * (count - 1);
        }
        return Bytes16Sse2(_mm_set_epi64x(static_cast<std::int64_t>(high), static_cast<std::int64_t>(low)));
    }
    void store(char* to) const noexcept { _mm_storeu_si128(reinterpret_cast<__m128i*>(to), bytes_); }

    friend Bytes16Sse2 equal(Bytes16Sse2 a, Bytes16Sse2 b) noexcept
    {
        return Bytes16Sse2(_mm_cmpeq_epi8(a.bytes_, b.bytes_));
    }
    friend Bytes16Sse2 inRange(Bytes16Sse2 a, std::uint8_t low, std::uint8_t high) noexcept
    {
        // SSE2 compares only signed bytes, but can take the minimum of unsigned ones.
        const __m128i moved = _mm_sub_epi8(a.bytes_, Bytes16Sse2(low).bytes_);
        const Bytes16Sse2 width(static_cast<std::uint8_t>(high - low));
        return Bytes16Sse2(_mm_cmpeq_epi8(_mm_min_epu8(moved, width.bytes_), moved));
    }
    friend Bytes16Sse2 operator&(Bytes16Sse2 a, Bytes16Sse2 b) noexcept
    {
        return Bytes16Sse2(_mm_and_si128(a.bytes_, b.bytes_));
    }
    friend Bytes16Sse2 operator|(Bytes16Sse2 a, Bytes16Sse2 b) noexcept
    {
        return Bytes16Sse2(_mm_or_si128(a.bytes_, b.bytes_));
    }

    friend Bytes16Sse2 operator+(Bytes16Sse2 a, Bytes16Sse2 b) noexcept
    {
        return Bytes16Sse2(_mm_add_epi8(a.bytes_, b.bytes_));
    }

    Bytes16Sse2 movedOn() const noexcept { return Bytes16Sse2(_mm_slli_si128(bytes_, 1)); }
    std::uint32_t mask() const noexcept { return static_cast<std::uint32_t>(_mm_movemask_epi8(bytes_)); }

    static constexpr unsigned size = 16;

private:
    explicit Bytes16Sse2(__m128i bytes) noexcept : bytes_(bytes) {}

    template <typename Word>
    static std::uint64_t word(const char* from) noexcept
    {
        Word result;
        std::memcpy(&result, from, sizeof result);
        return result;
    }

    __m128i bytes_;
};

using Bytes16 = Bytes16Sse2;
#else
using Bytes16 = Bytes16Portable;
#endif

/// The number of the lowest set bit of a mask that is not 0.
inline unsigned lowestBit(std::uint32_t mask) noexcept
{
    return static_cast<unsigned>(std::countr_zero(mask));
}

}  // namespace Velk::Platform
