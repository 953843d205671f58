#include <VelkCommon/Text/StringConvert.h>

#include <cstdint>
#include <limits>
#include <new>

namespace StringConvert {
namespace {

constexpr char32_t replacementCharacter = 0xFFFD;
constexpr char32_t firstSupplementary = 0x10000;
constexpr char32_t lastCodePoint = 0x10FFFF;

constexpr bool isLeadSurrogate(char32_t unit)
{
    return unit >= 0xD800 && unit <= 0xDBFF;
}

constexpr bool isTrailSurrogate(char32_t unit)
{
    return unit >= 0xDC00 && unit <= 0xDFFF;
}

constexpr char32_t validOrReplacement(char32_t value)
{
    return value > lastCodePoint || isLeadSurrogate(value) || isTrailSurrogate(value) ? replacementCharacter : value;
}

void appendUtf8(std::string& out, char32_t value)
{
    const auto continuation = [](char32_t bits) { return static_cast<char>(0x80 | (bits & 0x3F)); };
    if (value < 0x80) {
        out += static_cast<char>(value);
    } else if (value < 0x800) {
        out += static_cast<char>(0xC0 | (value >> 6));
        out += continuation(value);
    } else if (value < firstSupplementary) {
        out += static_cast<char>(0xE0 | (value >> 12));
        out += continuation(value >> 6);
        out += continuation(value);
    } else {
        out += static_cast<char>(0xF0 | (value >> 18));
        out += continuation(value >> 12);
        out += continuation(value >> 6);
        out += continuation(value);
    }
}

/// What a lead byte announces: how many continuation bytes follow, and between which limits the first
/// of them lies. The limits rule out overlong forms, surrogates and values above the last code point.
struct Utf8Lead
{
    std::size_t continuations = 0;
    unsigned char firstLow = 0x80;
    unsigned char firstHigh = 0xBF;
    unsigned char bits = 0;
};

constexpr Utf8Lead utf8Lead(unsigned char byte)
{
    const auto low = [byte](unsigned mask) { return static_cast<unsigned char>(byte & mask); };
    if (byte >= 0xC2 && byte <= 0xDF)
        return {1, 0x80, 0xBF, low(0x1F)};
    if (byte >= 0xE0 && byte <= 0xEF) {
        const unsigned char firstLow = byte == 0xE0 ? 0xA0 : 0x80;
        const unsigned char firstHigh = byte == 0xED ? 0x9F : 0xBF;
        return {2, firstLow, firstHigh, low(0x0F)};
    }
    if (byte >= 0xF0 && byte <= 0xF4) {
        const unsigned char firstLow = byte == 0xF0 ? 0x90 : 0x80;
        const unsigned char firstHigh = byte == 0xF4 ? 0x8F : 0xBF;
        return {3, firstLow, firstHigh, low(0x07)};
    }
    return {};
}

struct DecodedUtf8
{
    char32_t value = replacementCharacter;
    std::size_t length = 1;
    bool wellFormed = false;
};

/// The character at the beginning of `text`, which begins with a byte beyond ASCII; or the maximal
/// ill-formed subsequence there.
DecodedUtf8 decodeUtf8(std::string_view text)
{
    const Utf8Lead lead = utf8Lead(static_cast<unsigned char>(text[0]));
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

template <typename Unit>
std::u32string decodeUtf16(const Unit* units, std::size_t size)
{
    std::u32string result;
    result.reserve(size);
    for (std::size_t i = 0; i < size; ++i) {
        const auto unit = static_cast<char32_t>(units[i]);
        const auto next = i + 1 < size ? static_cast<char32_t>(units[i + 1]) : 0;
        if (isLeadSurrogate(unit) && isTrailSurrogate(next)) {
            result += firstSupplementary + ((unit - 0xD800) << 10) + (next - 0xDC00);
            ++i;
        } else {
            result += validOrReplacement(unit);
        }
    }
    return result;
}

std::size_t utf16Length(std::u32string_view text)
{
    std::size_t length = text.size();
    for (const char32_t value : text)
        length += validOrReplacement(value) >= firstSupplementary ? 1 : 0;
    return length;
}

/// Writes utf16Length(text) units.
template <typename Unit>
void encodeUtf16(std::u32string_view text, Unit* out)
{
    for (const char32_t raw : text) {
        const char32_t value = validOrReplacement(raw);
        if (value < firstSupplementary) {
            *out++ = static_cast<Unit>(value);
        } else {
            *out++ = static_cast<Unit>(0xD800 + ((value - firstSupplementary) >> 10));
            *out++ = static_cast<Unit>(0xDC00 + (value & 0x3FF));
        }
    }
}

}  // namespace

std::string toStdString(std::u32string_view text, Method method)
{
    return method == Windows1252 ? toWin1252(text) : toStdUtf8String(text);
}

std::string toStdUtf8String(std::u32string_view text)
{
    std::string result;
    result.reserve(text.size());
    for (const char32_t value : text)
        appendUtf8(result, validOrReplacement(value));
    return result;
}

std::u32string toUnicode(std::string_view text, Method method)
{
    return method == Windows1252 ? fromWin1252(text) : toUnicodeFromUtf8(text);
}

std::u32string toUnicode(std::wstring_view text)
{
    if constexpr (sizeof(wchar_t) == 2) {
        return decodeUtf16(text.data(), text.size());
    } else {
        std::u32string result;
        result.reserve(text.size());
        for (const wchar_t value : text)
            result += validOrReplacement(static_cast<char32_t>(value));
        return result;
    }
}

std::u32string toUnicode(const QString& text)
{
    return decodeUtf16(reinterpret_cast<const ushort*>(text.constData()), static_cast<std::size_t>(text.size()));
}

std::vector<std::u32string> toUnicode(const std::vector<std::string>& texts, Method method)
{
    std::vector<std::u32string> result;
    result.reserve(texts.size());
    for (const std::string& text : texts)
        result.push_back(toUnicode(text, method));
    return result;
}

std::u32string toUnicodeFromUtf8(std::string_view text, bool* ok)
{
    std::u32string result;
    result.reserve(text.size());
    bool wellFormed = true;
    while (!text.empty()) {
        const auto byte = static_cast<unsigned char>(text[0]);
        if (byte < 0x80) {
            result += byte;
            text.remove_prefix(1);
            continue;
        }
        const DecodedUtf8 decoded = decodeUtf8(text);
        result += decoded.value;
        text.remove_prefix(decoded.length);
        wellFormed = wellFormed && decoded.wellFormed;
    }
    if (ok != nullptr)
        *ok = wellFormed;
    return result;
}

std::wstring toWide(std::u32string_view text)
{
    std::wstring result;
    if constexpr (sizeof(wchar_t) == 2) {
        result.resize(utf16Length(text));
        encodeUtf16(text, result.data());
    } else {
        result.reserve(text.size());
        for (const char32_t value : text)
            result += static_cast<wchar_t>(validOrReplacement(value));
    }
    return result;
}

// Not QString::fromUcs4(): it takes a U+FEFF at the beginning for a byte order mark and drops it.
QString toQString(std::u32string_view text)
{
    const std::size_t length = utf16Length(text);
    if (length > static_cast<std::size_t>(std::numeric_limits<int>::max()))
        throw std::bad_alloc();
    QString result(static_cast<int>(length), Qt::Uninitialized);
    encodeUtf16(text, reinterpret_cast<ushort*>(result.data()));
    return result;
}

QString toQString(std::string_view text, Method method)
{
    return toQString(toUnicode(text, method));
}

}  // namespace StringConvert
