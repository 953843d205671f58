#include <VelkCommon/Platform/Bytes16.h>
#include <VelkCommon/Text/StringUtils.h>

#include <QChar>

#include <array>
#include <cstdint>
#include <cstring>

using Velk::Platform::Bytes16;
using Velk::Platform::lowestBit;

namespace StringUtils {
namespace {

constexpr char32_t lastCodePoint = 0x10FFFF;
constexpr char32_t capitalIWithDot = 0x130;

// Qt leaves U+0130 alone because its full mapping has two characters; the simple one is "i".
char32_t lowerCodePoint(char32_t character)
{
    if (character == capitalIWithDot)
        return U'i';
    return character <= lastCodePoint ? QChar::toLower(character) : character;
}

/// Up to four bytes of UTF-8.
struct Encoded
{
    char bytes[4];
    std::uint8_t size;
};

Encoded encode(char32_t character)
{
    const auto byte = [](char32_t value) { return static_cast<char>(static_cast<unsigned char>(value)); };
    const auto continuation = [&](unsigned shift) { return byte(0x80 | (character >> shift & 0x3F)); };
    if (character < 0x80)
        return {{byte(character)}, 1};
    if (character < 0x800)
        return {{byte(0xC0 | character >> 6), continuation(0)}, 2};
    if (character < 0x10000)
        return {{byte(0xE0 | character >> 12), continuation(6), continuation(0)}, 3};
    return {{byte(0xF0 | character >> 18), continuation(12), continuation(6), continuation(0)}, 4};
}

/// The characters of two bytes, U+0080 to U+07FF, whose case is looked up most: Latin letters with
/// accents, Greek, Cyrillic. Some of them become one byte or three.
class TwoByteTable
{
public:
    static const TwoByteTable& get()
    {
        static const TwoByteTable table;
        return table;
    }

    const Encoded& operator[](char32_t character) const { return entries_[character - first]; }

private:
    static constexpr char32_t first = 0x80;

    TwoByteTable()
    {
        for (char32_t character = first; character < first + entries_.size(); ++character)
            entries_[character - first] = encode(lowerCodePoint(character));
    }

    std::array<Encoded, 0x800 - first> entries_;
};

unsigned byteAt(const char* text)
{
    return static_cast<unsigned char>(*text);
}

bool isContinuation(const char* text)
{
    return (byteAt(text) & 0xC0) == 0x80;
}

// What can begin a character that has another lower case lies in C3 to D5, E1, E2, EA, EF and F0. A
// byte outside these is copied by itself, whether it is part of a character or of nothing.
bool mayBeginCapital(unsigned byte)
{
    return (byte >= 0xC3 && byte <= 0xD5) || byte == 0xE1 || byte == 0xE2 || byte == 0xEA || byte == 0xEF ||
           byte == 0xF0;
}

Bytes16 mayBeginCapital(Bytes16 block)
{
    return inRange(block, 0xC3, 0xD5) | inRange(block, 0xE1, 0xE2) | equal(block, Bytes16(0xEA)) |
           inRange(block, 0xEF, 0xF0);
}

Bytes16 lowerAscii(Bytes16 block)
{
    return block | (inRange(block, 'A', 'Z') & Bytes16(0x20));
}

char lowerAscii(char byte)
{
    return byte >= 'A' && byte <= 'Z' ? static_cast<char>(byte | 0x20) : byte;
}

char* append(char* out, const Encoded& encoded)
{
    std::memcpy(out, encoded.bytes, sizeof encoded.bytes);
    return out + encoded.size;
}

// A character of three or four bytes. What begins with F0 may be an overlong form, which is no character.
char* lowerLongCharacter(char* out, const char*& in, unsigned size)
{
    char32_t character = byteAt(in) & (0x7Fu >> size);
    for (unsigned i = 1; i < size; ++i)
        character = character << 6 | (byteAt(in + i) & 0x3F);
    const bool overlong = size == 4 && character < 0x10000;
    const char32_t lower = overlong ? character : lowerCodePoint(character);
    if (lower == character) {
        std::memcpy(out, in, size);
        out += size;
    } else {
        out = append(out, encode(lower));
    }
    in += size;
    return out;
}

// One character at `in`, or one byte where there is none.
char* lowerCharacter(char* out, const char*& in, const char* end)
{
    const unsigned lead = byteAt(in);
    const auto left = static_cast<std::size_t>(end - in);
    if (mayBeginCapital(lead)) {
        if (lead < 0xE0) {
            if (left >= 2 && isContinuation(in + 1)) {
                const char32_t character = (lead & 0x1F) << 6 | (byteAt(in + 1) & 0x3F);
                in += 2;
                return append(out, TwoByteTable::get()[character]);
            }
        } else if (lead < 0xF0) {
            if (left >= 3 && isContinuation(in + 1) && isContinuation(in + 2))
                return lowerLongCharacter(out, in, 3);
        } else if (left >= 4 && isContinuation(in + 1) && isContinuation(in + 2) && isContinuation(in + 3)) {
            return lowerLongCharacter(out, in, 4);
        }
    }
    *out = lowerAscii(*in++);
    return out + 1;
}

// ASCII only: eight bytes in a word, none of which carries into the next.
std::uint64_t lowerAscii(std::uint64_t word)
{
    constexpr std::uint64_t each = 0x0101010101010101;
    const std::uint64_t fromA = word + each * (0x80 - 'A');
    const std::uint64_t aboveZ = word + each * (0x7F - 'Z');
    return word | (fromA & ~aboveZ & each * 0x80) >> 2;
}

// Lowers an ASCII text of `sizeof(Word)` to twice that many bytes as two words that may overlap.
template <typename Word>
bool lowerAsTwoWords(char* out, std::string_view text)
{
    const std::size_t second = text.size() - sizeof(Word);
    Word low = 0;
    Word high = 0;
    std::memcpy(&low, text.data(), sizeof low);
    std::memcpy(&high, text.data() + second, sizeof high);
    if (((low | high) & static_cast<Word>(0x8080808080808080)) != 0)
        return false;
    low = static_cast<Word>(lowerAscii(std::uint64_t{low}));
    high = static_cast<Word>(lowerAscii(std::uint64_t{high}));
    std::memcpy(out, &low, sizeof low);
    std::memcpy(out + second, &high, sizeof high);
    return true;
}

// Names are short, so the bytes that fill no block count. Succeeds where the rest of `text` from `in`
// on, and as much before it as is needed to fill a block or word, is ASCII.
bool lowerAsciiRest(char* to, std::string_view text, const char* in)
{
    const char* const end = text.data() + text.size();
    if (text.size() >= Bytes16::size) {
        const Bytes16 last = Bytes16::load(end - Bytes16::size);
        if (last.mask() != 0)
            return false;
        lowerAscii(last).store(to + (end - in) - Bytes16::size);
        return true;
    }
    if (text.size() >= sizeof(std::uint64_t))
        return lowerAsTwoWords<std::uint64_t>(to, text);
    if (text.size() >= sizeof(std::uint32_t))
        return lowerAsTwoWords<std::uint32_t>(to, text);
    return false;
}

}  // namespace

std::u32string toLower(std::u32string_view text)
{
    std::u32string result(text);
    for (char32_t& character : result)
        character = lowerCodePoint(character);
    return result;
}

std::string toLowerUtf8(std::string_view text)
{
    std::string result(lowerUtf8Room(text.size()), '\0');
    result.resize(toLowerUtf8Into(result.data(), text));
    return result;
}

std::size_t toLowerUtf8Into(char* const out, std::string_view text) noexcept
{
    const char* in = text.data();
    const char* const end = in + text.size();
    char* to = out;
    while (static_cast<std::size_t>(end - in) >= Bytes16::size) {
        const Bytes16 block = Bytes16::load(in);
        lowerAscii(block).store(to);
        if (block.mask() == 0) {
            in += Bytes16::size;
            to += Bytes16::size;
            continue;
        }
        const std::uint32_t special = mayBeginCapital(block).mask();
        const unsigned plain = special == 0 ? Bytes16::size : lowestBit(special);
        in += plain;
        to += plain;
        // Characters of one script come in rows.
        while (in < end && mayBeginCapital(byteAt(in)))
            to = lowerCharacter(to, in, end);
    }
    if (in < end && lowerAsciiRest(to, text, in))
        return static_cast<std::size_t>(to - out) + static_cast<std::size_t>(end - in);
    while (in < end)
        to = lowerCharacter(to, in, end);
    return static_cast<std::size_t>(to - out);
}

}  // namespace StringUtils
