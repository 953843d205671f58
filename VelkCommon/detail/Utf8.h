#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

/// @file
/// UTF-8, one code point at a time.

namespace Velk::detail {

inline constexpr char32_t replacementCharacter = 0xFFFD;
inline constexpr char32_t firstSupplementary = 0x10000;
inline constexpr char32_t lastCodePoint = 0x10FFFF;

/// How to treat the three-byte form of a surrogate. It is malformed in text, but the names of files on
/// Windows may hold one.
enum class Surrogates { malformed, allowed };

/// The character at the beginning of a text.
struct DecodedUtf8
{
    /// U+FFFD for a malformed sequence.
    char32_t value = replacementCharacter;
    /// The number of bytes; for a malformed sequence, those of its maximal ill-formed part.
    std::size_t length = 1;
    bool wellFormed = false;
};

/// What a lead byte announces: how many continuation bytes follow, and between which limits the first
/// of them lies. The limits rule out overlong forms, surrogates and values above the last code point.
struct Utf8Lead
{
    std::size_t continuations = 0;
    unsigned char firstLow = 0x80;
    unsigned char firstHigh = 0xBF;
    unsigned char bits = 0;
};

/// Announces no continuation bytes for a byte that cannot begin a sequence of several bytes.
constexpr Utf8Lead utf8Lead(unsigned char byte, Surrogates surrogates) noexcept
{
    const auto low = [byte](unsigned mask) { return static_cast<unsigned char>(byte & mask); };
    if (byte >= 0xC2 && byte <= 0xDF)
        return {1, 0x80, 0xBF, low(0x1F)};
    if (byte >= 0xE0 && byte <= 0xEF) {
        const unsigned char firstLow = byte == 0xE0 ? 0xA0 : 0x80;
        const unsigned char firstHigh = byte == 0xED && surrogates == Surrogates::malformed ? 0x9F : 0xBF;
        return {2, firstLow, firstHigh, low(0x0F)};
    }
    if (byte >= 0xF0 && byte <= 0xF4) {
        const unsigned char firstLow = byte == 0xF0 ? 0x90 : 0x80;
        const unsigned char firstHigh = byte == 0xF4 ? 0x8F : 0xBF;
        return {3, firstLow, firstHigh, low(0x07)};
    }
    return {};
}

/// The character at the beginning of `text`, which is not empty.
constexpr DecodedUtf8 decodeUtf8(std::string_view text, Surrogates surrogates) noexcept
{
    const auto first = static_cast<unsigned char>(text[0]);
    if (first < 0x80)
        return {first, 1, true};
    const Utf8Lead lead = utf8Lead(first, surrogates);
    if (lead.continuations == 0)
        return {};
    char32_t value = lead.bits;
    for (std::size_t i = 1; i <= lead.continuations; ++i) {
        const unsigned char low = i == 1 ? lead.firstLow : 0x80;
        const unsigned char high = i == 1 ? lead.firstHigh : 0xBF;
        const auto byte = static_cast<unsigned char>(i < text.size() ? text[i] : 0);
        if (byte < low || byte > high)
            return {replacementCharacter, i, false};
        value = (value << 6) | (byte & 0x3Fu);
    }
    return {value, lead.continuations + 1, true};
}

/// Calls `put` with each byte of the UTF-8 form of `value`, which must not exceed the last code point. A
/// surrogate is written in its three-byte form.
template <typename Put>
constexpr void forEachUtf8Byte(char32_t value, Put put)
{
    const auto byte = [](char32_t bits) { return static_cast<char>(static_cast<unsigned char>(bits)); };
    const auto continuation = [&](unsigned shift) { return byte(0x80 | (value >> shift & 0x3F)); };
    if (value < 0x80) {
        put(byte(value));
        return;
    }
    if (value < 0x800) {
        put(byte(0xC0 | value >> 6));
    } else {
        if (value < firstSupplementary) {
            put(byte(0xE0 | value >> 12));
        } else {
            put(byte(0xF0 | value >> 18));
            put(continuation(12));
        }
        put(continuation(6));
    }
    put(continuation(0));
}

/// Appends the bytes that forEachUtf8Byte() produces to `out`.
inline void appendUtf8(std::string& out, char32_t value)
{
    forEachUtf8Byte(value, [&out](char byte) { out += byte; });
}

/// The bytes of one character, followed by zeros.
struct EncodedUtf8
{
    char bytes[4] = {};
    std::uint8_t size = 0;
};

/// The bytes that forEachUtf8Byte() produces.
constexpr EncodedUtf8 encodeUtf8(char32_t value) noexcept
{
    EncodedUtf8 encoded;
    forEachUtf8Byte(value, [&encoded](char byte) { encoded.bytes[encoded.size++] = byte; });
    return encoded;
}

}  // namespace Velk::detail
