#include <VelkLibrary/Base64.h>

#include <array>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <span>
#include <string_view>

namespace Base64 {
namespace {

constexpr std::string_view alphabet = "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+/";

/// The two symbols of each 12-bit value.
constexpr auto symbolPairs = [] {
    std::array<std::array<char, 2>, 4096> pairs{};
    for (std::size_t value = 0; value < pairs.size(); ++value)
        pairs[value] = {alphabet[value >> 6], alphabet[value & 63]};
    return pairs;
}();

constexpr std::uint8_t notAccepted = 0xFF;

/// The value of each accepted character; "=" has that of "/".
constexpr auto values = [] {
    std::array<std::uint8_t, 256> table{};
    table.fill(notAccepted);
    for (std::size_t value = 0; value < alphabet.size(); ++value)
        table[static_cast<unsigned char>(alphabet[value])] = static_cast<std::uint8_t>(value);
    table['='] = 63;
    return table;
}();

constexpr std::uint32_t needsCare = 1U << 24;

/// The bits that a character contributes to its group's three bytes, by its place in the group. The
/// mark `needsCare` is set for a character that is not accepted, and for a "=" that leaves out a byte.
constexpr auto groupBits = [] {
    std::array<std::array<std::uint32_t, 256>, 4> table{};
    for (std::size_t place = 0; place < 4; ++place) {
        for (std::size_t c = 0; c < 256; ++c) {
            const bool special = values[c] == notAccepted || (c == '=' && place >= 2);
            table[place][c] = special ? needsCare : std::uint32_t{values[c]} << (18 - 6 * place);
        }
    }
    return table;
}();

constexpr std::uint32_t bitsAt(std::size_t place, char c)
{
    return groupBits[place][static_cast<unsigned char>(c)];
}

void putPair(char* out, std::size_t value)
{
    std::memcpy(out, symbolPairs[value].data(), 2);
}

void putBytes(unsigned char* out, std::uint32_t group)
{
    out[0] = static_cast<unsigned char>(group >> 16);
    out[1] = static_cast<unsigned char>(group >> 8);
    out[2] = static_cast<unsigned char>(group);
}

/// Decodes a group that is short, holds a "=" or is faulty. Returns the end of what it wrote.
unsigned char* decodeWithCare(unsigned char* out, std::string_view text, std::size_t start)
{
    std::array<char, 4> characters{'A', 'A', 'A', 'A'};
    std::uint32_t group = 0;
    for (std::size_t place = 0; place < 4; ++place) {
        const std::size_t position = start + place;
        if (position < text.size())
            characters[place] = text[position];
        const std::uint8_t value = values[static_cast<unsigned char>(characters[place])];
        if (value == notAccepted)
            throw InvalidCharacterException(std::string("Invalid character '") + characters[place] + "' at position " +
                                            std::to_string(position) + ".");
        group = group << 6 | value;
    }
    *out++ = static_cast<unsigned char>(group >> 16);
    if (characters[2] != '=')
        *out++ = static_cast<unsigned char>(group >> 8);
    if (characters[3] != '=')
        *out++ = static_cast<unsigned char>(group);
    return out;
}

}  // namespace

InvalidCharacterException::InvalidCharacterException(const std::string& message) : message_(message) {}

InvalidCharacterException::~InvalidCharacterException() = default;

const char* InvalidCharacterException::what() const noexcept
{
    return message_.c_str();
}

std::string encode(const std::vector<unsigned char>& data)
{
    const std::span bytes(data);  // a local view: the output's bytes could alias the vector's own pointers
    std::string text((bytes.size() + 2) / 3 * 4, '=');
    char* out = text.data();
    std::size_t i = 0;
    for (; i + 3 <= bytes.size(); i += 3, out += 4) {
        putPair(out, std::size_t{bytes[i]} << 4 | bytes[i + 1] >> 4);
        putPair(out + 2, (bytes[i + 1] & std::size_t{15}) << 8 | bytes[i + 2]);
    }
    if (bytes.size() - i == 1) {
        putPair(out, std::size_t{bytes[i]} << 4);
    } else if (bytes.size() - i == 2) {
        putPair(out, std::size_t{bytes[i]} << 4 | bytes[i + 1] >> 4);
        out[2] = alphabet[(bytes[i + 1] & std::size_t{15}) << 2];
    }
    return text;
}

std::vector<unsigned char> decode(const std::string& text)
{
    const std::string_view characters = text;
    std::vector<unsigned char> data((characters.size() + 3) / 4 * 3);
    unsigned char* out = data.data();
    std::size_t i = 0;
    for (; i + 4 <= characters.size(); i += 4) {
        const std::uint32_t group = bitsAt(0, characters[i]) | bitsAt(1, characters[i + 1]) |
                                    bitsAt(2, characters[i + 2]) | bitsAt(3, characters[i + 3]);
        if (group < needsCare) {
            putBytes(out, group);
            out += 3;
        } else {
            out = decodeWithCare(out, characters, i);
        }
    }
    if (i < characters.size())
        out = decodeWithCare(out, characters, i);
    data.resize(static_cast<std::size_t>(out - data.data()));
    return data;
}

}  // namespace Base64
