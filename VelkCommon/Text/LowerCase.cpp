#include <VelkCommon/Text/LowerCase.h>

#include <VelkCommon/Platform/Bytes16.h>
#include <VelkCommon/Text/Ascii.h>
#include <VelkCommon/detail/Utf8.h>

#include <QChar>

#include <array>
#include <cstdint>
#include <cstring>

using Velk::detail::EncodedUtf8;
using Velk::detail::encodeUtf8;
using Velk::Platform::Bytes16;
using Velk::Platform::lowestBit;

namespace StringUtils {
namespace {

constexpr char32_t capitalIWithDot = 0x130;

// Qt leaves U+0130 alone because its full mapping has two characters; the simple one is "i".
char32_t lowerCodePoint(char32_t character)
{
    if (character < 0x80)
        return Velk::Ascii::lower(character);
    if (character == capitalIWithDot)
        return U'i';
    return character <= Velk::detail::lastCodePoint ? QChar::toLower(character) : character;
}

/// The lower case of characters that are looked up often: all characters of two bytes (Latin letters with
/// accents, Greek, Cyrillic; some become one byte or three) and the Latin and Greek letters of three bytes
/// from U+1E00 on (Vietnamese, for example).
class CaseTables
{
public:
    static constexpr char32_t twoBytesBegin = 0x80;
    static constexpr char32_t twoBytesEnd = 0x800;
    static constexpr char32_t additionsBegin = 0x1E00;
    static constexpr char32_t additionsEnd = 0x2000;

    static const CaseTables& get()
    {
        static const CaseTables tables;
        return tables;
    }

    const EncodedUtf8& ofTwoBytes(char32_t character) const { return twoBytes_[character - twoBytesBegin]; }
    const EncodedUtf8& ofAdditions(char32_t character) const { return additions_[character - additionsBegin]; }

private:
    CaseTables()
    {
        for (char32_t character = twoBytesBegin; character < twoBytesEnd; ++character)
            twoBytes_[character - twoBytesBegin] = encodeUtf8(lowerCodePoint(character));
        for (char32_t character = additionsBegin; character < additionsEnd; ++character)
            additions_[character - additionsBegin] = encodeUtf8(lowerCodePoint(character));
    }

    std::array<EncodedUtf8, twoBytesEnd - twoBytesBegin> twoBytes_;
    std::array<EncodedUtf8, additionsEnd - additionsBegin> additions_;
};

unsigned byteAt(const char* text)
{
    return static_cast<unsigned char>(*text);
}

bool isContinuation(const char* text)
{
    return (byteAt(text) & 0xC0) == 0x80;
}

// Every character that lower case changes begins with a byte in C3 to D5, or with E1, E2, EA, EF or F0. Any
// other byte is simply copied, whether it belongs to a character or is malformed.
bool mayBeginCapital(unsigned byte)
{
    return (byte >= 0xC3 && byte <= 0xD5) || byte == 0xE1 || byte == 0xE2 || byte == 0xEA || byte == 0xEF ||
           byte == 0xF0;
}

Bytes16 lowerAscii(Bytes16 block)
{
    return block | (inRange(block, 'A', 'Z') & Bytes16(0x20));
}

char* append(char* out, const EncodedUtf8& encoded)
{
    std::memcpy(out, encoded.bytes, sizeof encoded.bytes);
    return out + encoded.size;
}

// Lowers a character of three or four bytes. A sequence that begins with F0 may be an overlong form, which is
// malformed.
char* lowerLongCharacter(char* out, const char*& in, unsigned size)
{
    char32_t character = byteAt(in) & (0x7Fu >> size);
    for (unsigned i = 1; i < size; ++i)
        character = character << 6 | (byteAt(in + i) & 0x3F);
    const bool overlong = size == 4 && character < Velk::detail::firstSupplementary;
    const bool isAddition = character >= CaseTables::additionsBegin && character < CaseTables::additionsEnd;
    if (isAddition && size == 3) {
        in += size;
        return append(out, CaseTables::get().ofAdditions(character));
    }
    const char32_t lower = overlong ? character : lowerCodePoint(character);
    if (lower == character) {
        std::memcpy(out, in, size);
        out += size;
    } else {
        out = append(out, encodeUtf8(lower));
    }
    in += size;
    return out;
}

// Lowers the character at `in`, or copies one byte where there is none.
char* lowerCharacter(char* out, const char*& in, const char* end)
{
    const unsigned lead = byteAt(in);
    const auto left = static_cast<std::size_t>(end - in);
    if (mayBeginCapital(lead)) {
        if (lead < 0xE0) {
            if (left >= 2 && isContinuation(in + 1)) {
                const char32_t character = (lead & 0x1F) << 6 | (byteAt(in + 1) & 0x3F);
                in += 2;
                return append(out, CaseTables::get().ofTwoBytes(character));
            }
        } else if (lead < 0xF0) {
            if (left >= 3 && isContinuation(in + 1) && isContinuation(in + 2))
                return lowerLongCharacter(out, in, 3);
        } else if (left >= 4 && isContinuation(in + 1) && isContinuation(in + 2) && isContinuation(in + 3)) {
            return lowerLongCharacter(out, in, 4);
        }
    }
    *out = Velk::Ascii::lower(*in++);
    return out + 1;
}

/// The result of lowering a block of text that is not pure ASCII.
struct LoweredBlock
{
    Bytes16 bytes;          // lowered, except for the characters in `special`
    std::uint32_t special;  // where characters begin that must be lowered one by one
    std::uint32_t begun;    // where characters of two bytes begin
};

// Most Latin, Greek and Cyrillic letters of two bytes become other letters of two bytes by a few rules, and are
// lowered here without a branch. `next` holds the bytes one place further on. When in doubt, a character is
// marked as special.
LoweredBlock lowerBlock(Bytes16 block, Bytes16 next)
{
    const Bytes16 c3 = equal(block, Bytes16(0xC3));
    const Bytes16 c4 = equal(block, Bytes16(0xC4));
    const Bytes16 c5 = equal(block, Bytes16(0xC5));
    const Bytes16 ce = equal(block, Bytes16(0xCE));
    const Bytes16 d0 = equal(block, Bytes16(0xD0));
    const Bytes16 from90 = inRange(next, 0x90, 0x9F);
    const Bytes16 fromA0 = inRange(next, 0xA0, 0xAF);
    const Bytes16 odd = next & Bytes16(1);
    const Bytes16 even = equal(odd, Bytes16(0)) & Bytes16(1);

    // U+00C0-U+00DE without the multiplication sign, U+0391-U+039F, U+0410-U+041F: 32 more
    const Bytes16 up = (c3 & (inRange(next, 0x80, 0x96) | inRange(next, 0x98, 0x9E))) |
                       (ce & inRange(next, 0x91, 0x9F)) | (d0 & from90);
    // U+03A0-U+03AB (U+03A2 is unassigned), U+0420-U+042F: 32 more, which needs the next lead byte
    const Bytes16 over = (ce & (inRange(next, 0xA0, 0xA1) | inRange(next, 0xA3, 0xAB))) | (d0 & fromA0);
    // U+0400-U+040F: 80 more
    const Bytes16 distant = d0 & inRange(next, 0x80, 0x8F);
    // U+0100-U+0137, U+014A-U+0177: pairs that begin with an even number; U+0130 is not part of one
    const Bytes16 evenPair =
        (c4 & (inRange(next, 0x80, 0xAF) | inRange(next, 0xB1, 0xB7))) | (c5 & inRange(next, 0x8A, 0xB7));
    // U+0139-U+013E, U+0141-U+0148, U+0179-U+017E: pairs that begin with an odd number
    const Bytes16 oddPair = ((c4 | c5) & inRange(next, 0xB9, 0xBE)) | (c5 & inRange(next, 0x81, 0x88));

    const Bytes16 leads = (over | distant) & Bytes16(1);
    const Bytes16 seconds =
        (up & Bytes16(0x20)) | (over & Bytes16(0xE0)) | (distant & Bytes16(0x10)) | (evenPair & even) | (oddPair & odd);
    const Bytes16 special = (c4 & (equal(next, Bytes16(0xB0)) | equal(next, Bytes16(0xBF)))) |
                            (c5 & equal(next, Bytes16(0xB8))) | (ce & inRange(next, 0x80, 0x8F)) |
                            (equal(block, Bytes16(0xCF)) & inRange(next, 0x8F, 0xBF)) |
                            (equal(block, Bytes16(0xD1)) & inRange(next, 0xA0, 0xBF)) |
                            (equal(block, Bytes16(0xE2)) & inRange(next, 0x84, 0xBF)) | inRange(block, 0xC6, 0xCD) |
                            inRange(block, 0xD2, 0xD5) | equal(block, Bytes16(0xE1)) | equal(block, Bytes16(0xEA)) |
                            inRange(block, 0xEF, 0xF0);
    return {lowerAscii(block) + leads + seconds.movedOn(), special.mask(), inRange(block, 0xC3, 0xDF).mask()};
}

// Lowers all characters that begin before `limit`; from any place before it, 17 bytes can be read. It may run
// past `end`, but only by bytes that do not belong to a longer character; `in` then tells by how many.
void lowerBlocks(char*& to, const char*& in, const char* limit, const char* end)
{
    while (in < limit) {
        const Bytes16 block = Bytes16::load(in);
        if (block.mask() == 0) {
            lowerAscii(block).store(to);
            in += Bytes16::size;
            to += Bytes16::size;
            continue;
        }
        const LoweredBlock lowered = lowerBlock(block, Bytes16::load(in + 1));
        lowered.bytes.store(to);
        // A character that continues beyond the block is left to the next one.
        const std::uint32_t cut = lowered.begun & 1u << (Bytes16::size - 1);
        const unsigned plain = lowestBit(lowered.special | cut | 1u << Bytes16::size);
        in += plain;
        to += plain;
        if ((lowered.special >> plain & 1) != 0)
            to = lowerCharacter(to, in, end);
    }
}

// Lowers the rest, which is less than a block, from a copy with readable room behind it.
std::size_t lowerRest(char* const out, const char* from, std::size_t size)
{
    char rest[2 * Bytes16::size + 1] = {};
    std::memcpy(rest, from, size);
    const char* in = rest;
    char* to = out;
    lowerBlocks(to, in, rest + size, rest + size);
    return static_cast<std::size_t>(to - out) - static_cast<std::size_t>(in - (rest + size));
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
    if (text.size() < Bytes16::size) {  // true of most names
        const Bytes16 block = Bytes16::loadPart(text.data(), text.size());
        if (block.mask() != 0)
            return lowerRest(out, text.data(), text.size());
        lowerAscii(block).store(out);
        return text.size();
    }
    const char* in = text.data();
    const char* const end = in + text.size();
    char* to = out;
    lowerBlocks(to, in, end - Bytes16::size, end);
    const auto done = static_cast<std::size_t>(to - out);
    const auto left = static_cast<std::size_t>(end - in);
    const Bytes16 last = Bytes16::load(end - Bytes16::size);
    if (last.mask() != 0)
        return done + lowerRest(to, in, left);
    lowerAscii(last).store(out + done + left - Bytes16::size);
    return done + left;
}

}  // namespace StringUtils
