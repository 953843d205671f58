#pragma once

#include <VelkCommon/Platform/Bytes16.h>

#include <array>

namespace Library::Search::detail {

// There are no capitals, because texts are in lower case where words are told apart.
inline constexpr std::array<bool, 256> wordBytes = [] {
    std::array<bool, 256> result{};
    for (unsigned byte = 'a'; byte <= 'z'; ++byte)
        result[byte] = true;
    for (unsigned byte = '0'; byte <= '9'; ++byte)
        result[byte] = true;
    result['_'] = true;
    return result;
}();

/// Whether a byte of a lowered text is a word character.
inline bool isWord(char byte) noexcept
{
    return wordBytes[static_cast<unsigned char>(byte)];
}

/// The same of 16 bytes; the highest bit of each byte of the result tells.
inline Velk::Platform::Bytes16 areWord(const char* bytes) noexcept
{
    using Velk::Platform::Bytes16;
    const Bytes16 block = Bytes16::load(bytes);
    return inRange(block, 'a', 'z') | inRange(block, '0', '9') | equal(block, Bytes16('_'));
}

/// A byte that is part of no UTF-8, so of no term, and not a word character. It stands around lowered texts.
inline constexpr char guard = '\xFF';

}  // namespace Library::Search::detail
