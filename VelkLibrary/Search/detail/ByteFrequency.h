#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <string_view>

namespace Library::Search::detail {

/// How frequent a byte is in lower-case names and keywords of many languages. The numbers give an order, not a
/// measure; all rare bytes have 0.
inline std::uint8_t frequencyOf(char byte) noexcept
{
    static constexpr std::string_view frequentBytes =  // most frequent first
        " eaiorntslcudpm,hg\xD0\xD1"
        "bkfv-y01w2\xC3\x80\xE3\xB0\xB5\xB8\xBE"
        "3_x\x81\x82\xBD\x83.z4j5(8)6\xD7/q79\xBB\x8C\x86\xE4\xE5\xE6\xCE\xCF\xA9";
    static constexpr std::array<std::uint8_t, 256> frequencies = [] {
        std::array<std::uint8_t, 256> result{};
        for (std::size_t i = 0; i < frequentBytes.size(); ++i)
            result[static_cast<unsigned char>(frequentBytes[i])] = static_cast<std::uint8_t>(frequentBytes.size() - i);
        return result;
    }();
    return frequencies[static_cast<unsigned char>(byte)];
}

}  // namespace Library::Search::detail
