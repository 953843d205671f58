#include <VelkLibrary/Search/detail/PlainPart.h>

#include <VelkCommon/Platform/Bytes16.h>
#include <VelkLibrary/Search/detail/ByteFrequency.h>

#include <algorithm>
#include <limits>

using Velk::Platform::Bytes16;
using Velk::Platform::lowestBit;

namespace Library::Search::detail {
namespace {

constexpr char capitalBit = 0x20;  // what a capital lacks, in ASCII and in the last byte of many others

char withCapitalBit(char byte)
{
    return static_cast<char>(byte | capitalBit);
}

// The part is chosen among this many bytes of a term.
constexpr std::size_t mostLookedAt = 64;

/// Which bytes at the beginning of a term are plain: wherever the lowered text has them, the text has them too,
/// apart from the capital bit.
class PlainBytes
{
public:
    explicit PlainBytes(std::string_view term)
    {
        while (size_ < std::min(term.size(), mostLookedAt))
            add(term.substr(size_));
    }

    std::size_t size() const { return std::min(size_, mostLookedAt); }
    bool operator[](std::size_t i) const { return plain_[i]; }

private:
    void add(std::string_view rest)
    {
        const auto byteAt = [&](std::size_t i) {
            return i < rest.size() ? static_cast<unsigned>(static_cast<unsigned char>(rest[i])) : 0;
        };
        const unsigned lead = byteAt(0);
        if (lead < 0x80)
            return append(1, isPlainAscii(rest[0]), true);
        if (lead < 0xE0) {
            const char32_t letter = (lead & 0x1F) << 6 | (byteAt(1) & 0x3F);
            return append(2, keepsLead(letter), keepsLead(letter) || keepsLastByteOnly(letter));
        }
        if (lead < 0xF0) {
            const bool plain = isCaseless((lead & 0x0F) << 12 | (byteAt(1) & 0x3F) << 6 | (byteAt(2) & 0x3F));
            return append(3, plain, plain);
        }
        append(4, false, false);
    }

    void append(std::size_t count, bool leadIsPlain, bool lastIsPlain)
    {
        for (std::size_t i = 0; i < count; ++i, ++size_) {
            if (size_ < mostLookedAt)
                plain_[size_] = i + 1 == count && count > 1 ? lastIsPlain : leadIsPlain;
        }
    }

    // Two characters outside ASCII become ASCII in lower case: U+0130 becomes "i", and U+212A becomes "k".
    static bool isPlainAscii(char byte) { return byte != 'i' && byte != 'k'; }

    // Letters of two bytes whose only capital differs from them in the capital bit of the last byte. Left out
    // are a with ring, which the Angstrom sign becomes, too, and theta, which has a second capital.
    static bool keepsLead(char32_t letter)
    {
        return (letter >= 0xE0 && letter <= 0xFE && letter != 0xE5) ||
               (letter >= 0x3B1 && letter <= 0x3BF && letter != 0x3B8) || (letter >= 0x430 && letter <= 0x43F);
    }

    // Letters whose lead differs from their capital's as well. Left out is omega, which the Ohm sign becomes,
    // too.
    static bool keepsLastByteOnly(char32_t letter)
    {
        return (letter >= 0x3C0 && letter <= 0x3CB && letter != 0x3C9) || (letter >= 0x440 && letter <= 0x44F);
    }

    // Kana, Han and Hangul have no letter case.
    static bool isCaseless(char32_t character)
    {
        return (character >= 0x3041 && character <= 0x30FF) || (character >= 0x4E00 && character <= 0x9FFF) ||
               (character >= 0xAC00 && character <= 0xD7A3);
    }

    bool plain_[mostLookedAt] = {};
    std::size_t size_ = 0;
};

}  // namespace

// Takes the two rarest neighbouring bytes, and the plain bytes around them.
PlainPart::PlainPart(std::string_view term) noexcept
{
    const PlainBytes plain(term);
    unsigned rarest = std::numeric_limits<unsigned>::max();
    std::size_t probe = plain.size();
    for (std::size_t i = 0; i < plain.size(); ++i) {
        const bool alone = i + 1 == plain.size() || !plain[i + 1];
        const unsigned frequency = alone ? 512U : frequencyOf(term[i]) + frequencyOf(term[i + 1]);
        if (plain[i] && frequency < rarest) {
            rarest = frequency;
            probe = i;
        }
    }
    std::size_t begin = probe;
    while (begin > 0 && probe - begin < longest / 2 && plain[begin - 1])
        --begin;
    std::size_t end = probe;
    while (end < plain.size() && end - begin < longest && plain[end])
        ++end;
    std::transform(term.begin() + begin, term.begin() + end, bytes_, withCapitalBit);
    size_ = static_cast<std::uint8_t>(end - begin);
    probe_ = static_cast<std::uint8_t>(probe - begin);
    distance_ = probe + 1 < end ? 1 : 0;
}

bool PlainPart::mayStandIn(std::string_view text) const noexcept
{
    if (text.size() < size_)
        return false;
    if (size_ == 0)
        return true;
    if (text.size() <= Bytes16::size)
        return mayStandInShort(text);
    const Bytes16 capital(static_cast<std::uint8_t>(capitalBit));
    const Bytes16 first(static_cast<std::uint8_t>(bytes_[probe_]));
    const Bytes16 second(static_cast<std::uint8_t>(bytes_[probe_ + distance_]));
    const char* const firstPlace = text.data() + probe_;
    const char* const lastPlace = text.data() + text.size() - (size_ - probe_);
    const char* const lastBlock = text.data() + text.size() - distance_ - Bytes16::size;
    for (const char* place = firstPlace; place <= lastPlace; place += Bytes16::size) {
        const char* const block = std::min(place, lastBlock);  // the last block reaches back, not beyond the end
        std::uint32_t candidates =
            (equal(Bytes16::load(block) | capital, first) & equal(Bytes16::load(block + distance_) | capital, second))
                .mask();
        for (; candidates != 0; candidates &= candidates - 1) {
            const char* const found = block + lowestBit(candidates);
            if (found >= firstPlace && found <= lastPlace && standsAt(found - probe_))
                return true;
        }
    }
    return false;
}

// For a text of at most one block: looks at all places of the probes at once.
bool PlainPart::mayStandInShort(std::string_view text) const noexcept
{
    const Bytes16 block = Bytes16::loadPart(text.data(), text.size()) | Bytes16(static_cast<std::uint8_t>(capitalBit));
    const std::uint32_t firsts = equal(block, Bytes16(static_cast<std::uint8_t>(bytes_[probe_]))).mask();
    const std::uint32_t seconds = equal(block, Bytes16(static_cast<std::uint8_t>(bytes_[probe_ + distance_]))).mask();
    std::uint32_t begins = (firsts & seconds >> distance_) >> probe_;
    begins &= (2U << (text.size() - size_)) - 1;
    for (; begins != 0; begins &= begins - 1) {
        if (standsAt(text.data() + lowestBit(begins)))
            return true;
    }
    return false;
}

bool PlainPart::standsAt(const char* place) const noexcept
{
    for (std::size_t i = 0; i < size_; ++i) {
        if (bytes_[i] != withCapitalBit(place[i]))
            return false;
    }
    return true;
}

}  // namespace Library::Search::detail
