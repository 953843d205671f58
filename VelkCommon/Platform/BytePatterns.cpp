#include <VelkCommon/Platform/BytePatterns.h>

#include <algorithm>

#if defined(__x86_64__) || defined(_M_X64)
#define VELK_SHUFFLES_BYTES
#include <immintrin.h>
#if defined(_MSC_VER) && !defined(__clang__)
#include <intrin.h>
#define VELK_WITH_AVX
#else
// Only what is marked so may use the instructions, since the rest of the program runs without them.
#define VELK_WITH_AVX __attribute__((target("avx")))
#endif
#endif

namespace Velk::Platform {

void BytePatterns::add(std::string_view pattern) noexcept
{
    const auto bit = static_cast<std::uint8_t>(1U << size_++);
    for (std::size_t i = 0; i < longest; ++i) {
        Halves& halves = halves_[i];
        if (i >= pattern.size()) {  // any byte will do
            for (std::size_t half = 0; half < halves.low.size(); ++half) {
                halves.low[half] |= bit;
                halves.high[half] |= bit;
            }
            continue;
        }
        const auto byte = static_cast<std::uint8_t>(pattern[i]);
        halves.low[byte & 0xF] |= bit;
        halves.high[byte >> 4] |= bit;
    }
}

std::size_t BytePatterns::findByteByByte(const char* bytes, std::size_t blockCount, Block* found) const noexcept
{
    std::size_t count = 0;
    for (std::size_t number = 0; number < blockCount; ++number) {
        Block& block = found[count];
        block.number = static_cast<std::uint32_t>(number);
        block.places = 0;
        for (std::size_t i = 0; i < blockSize; ++i) {
            unsigned beginning = 0xFF;
            for (std::size_t k = 0; k < longest; ++k) {
                const auto byte = static_cast<std::uint8_t>(bytes[number * blockSize + i + k]);
                beginning &= halves_[k].low[byte & 0xF];
                beginning &= halves_[k].high[byte >> 4];
            }
            block.beginning[i] = static_cast<std::uint8_t>(beginning);
            block.places |= std::uint32_t{beginning != 0} << i;
        }
        count += block.places != 0 ? 1 : 0;
    }
    return count;
}

#ifdef VELK_SHUFFLES_BYTES

namespace {

bool hasAvx() noexcept
{
#ifdef _MSC_VER
    constexpr int features = 1;
    constexpr int avx = 1 << 28;
    constexpr int savedBySystem = 1 << 27;
    constexpr unsigned long long registers = 6;  // those that AVX needs, as the system saves them
    int info[4];
    __cpuid(info, features);
    return (info[2] & avx) != 0 && (info[2] & savedBySystem) != 0 && (_xgetbv(0) & registers) == registers;
#else
    return __builtin_cpu_supports("avx") != 0;
#endif
}

/// What is known of a block: for each byte the patterns that have it as their first, second or third.
struct Looked
{
    __m128i first;
    __m128i second;
    __m128i third;
};

/// The tables of one place of the patterns.
struct Tables
{
    __m128i low;
    __m128i high;
};

VELK_WITH_AVX inline __m128i lookedUp(const Tables& tables, __m128i low, __m128i high) noexcept
{
    return _mm_and_si128(_mm_shuffle_epi8(tables.low, low), _mm_shuffle_epi8(tables.high, high));
}

VELK_WITH_AVX inline Looked lookedUp(const Tables (&tables)[3], const char* bytes) noexcept
{
    const __m128i half = _mm_set1_epi8(0xF);
    const __m128i block = _mm_loadu_si128(reinterpret_cast<const __m128i*>(bytes));
    const __m128i low = _mm_and_si128(block, half);
    const __m128i high = _mm_and_si128(_mm_srli_epi16(block, 4), half);
    return {lookedUp(tables[0], low, high), lookedUp(tables[1], low, high), lookedUp(tables[2], low, high)};
}

VELK_WITH_AVX inline __m128i table(const std::array<std::uint8_t, 16>& values) noexcept
{
    return _mm_loadu_si128(reinterpret_cast<const __m128i*>(values.data()));
}

}  // namespace

bool BytePatterns::isQuick() noexcept
{
    static const bool quick = hasAvx();
    return quick;
}

VELK_WITH_AVX std::size_t BytePatterns::findByShuffling(const char* bytes, std::size_t blockCount,
                                                        Block* found) const noexcept
{
    const Tables tables[longest] = {{table(halves_[0].low), table(halves_[0].high)},
                                    {table(halves_[1].low), table(halves_[1].high)},
                                    {table(halves_[2].low), table(halves_[2].high)}};
    constexpr std::uint32_t allPlaces = 0xFFFF;
    std::size_t count = 0;
    Looked here = lookedUp(tables, bytes);
    for (std::size_t number = 0; number < blockCount; ++number) {
        const Looked next = lookedUp(tables, bytes + (number + 1) * blockSize);
        const __m128i beginning = _mm_and_si128(here.first, _mm_and_si128(_mm_alignr_epi8(next.second, here.second, 1),
                                                                          _mm_alignr_epi8(next.third, here.third, 2)));
        const __m128i none = _mm_cmpeq_epi8(beginning, _mm_setzero_si128());
        Block& block = found[count];
        block.number = static_cast<std::uint32_t>(number);
        block.places = static_cast<std::uint32_t>(_mm_movemask_epi8(none)) ^ allPlaces;
        _mm_storeu_si128(reinterpret_cast<__m128i*>(block.beginning.data()), beginning);
        count += block.places != 0 ? 1 : 0;
        here = next;
    }
    return count;
}

#else

bool BytePatterns::isQuick() noexcept
{
    return false;
}

std::size_t BytePatterns::findByShuffling(const char* bytes, std::size_t blockCount, Block* found) const noexcept
{
    return findByteByByte(bytes, blockCount, found);
}

#endif

}  // namespace Velk::Platform
