#include <VelkCommon/Text/StringConvert.h>

#include <VelkCommon/Platform/Bytes16.h>
#include <VelkCommon/Text/Utf16.h>
#include <VelkCommon/detail/Utf8.h>

#include <cstdint>
#include <limits>
#include <new>

namespace StringConvert {
namespace {

namespace Utf16 = Velk::Utf16;
using Velk::detail::appendUtf8;
using Velk::detail::lastCodePoint;
using Velk::detail::replacementCharacter;

constexpr char32_t validOrReplacement(char32_t value)
{
    return value > lastCodePoint || Utf16::isLead(value) || Utf16::isTrail(value) ? replacementCharacter : value;
}

// How many bytes of ASCII the text begins with. Most texts are ASCII to the end.
std::size_t asciiLength(std::string_view text) noexcept
{
    using Velk::Platform::Bytes16;
    std::size_t place = 0;
    for (; text.size() - place >= Bytes16::size; place += Bytes16::size)
        if (const std::uint32_t others = Bytes16::load(text.data() + place).mask(); others != 0)
            return place + Velk::Platform::lowestBit(others);
    const std::size_t left = text.size() - place;
    const std::uint32_t others = Bytes16::loadPart(text.data() + place, left).mask();
    return place + (others != 0 ? Velk::Platform::lowestBit(others) : left);
}

template <typename Unit>
std::u32string decodeUtf16(const Unit* units, std::size_t size)
{
    std::u32string result;
    result.reserve(size);
    for (std::size_t i = 0; i < size; ++i) {
        const auto unit = static_cast<char32_t>(units[i]);
        const auto next = i + 1 < size ? static_cast<char32_t>(units[i + 1]) : 0;
        if (Utf16::isLead(unit) && Utf16::isTrail(next)) {
            result += Utf16::joined(unit, next);
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
        length += validOrReplacement(value) >= Utf16::firstPaired ? 1 : 0;
    return length;
}

/// Writes utf16Length(text) units.
template <typename Unit>
void encodeUtf16(std::u32string_view text, Unit* out)
{
    for (const char32_t raw : text) {
        const char32_t value = validOrReplacement(raw);
        if (value < Utf16::firstPaired) {
            *out++ = static_cast<Unit>(value);
        } else {
            *out++ = static_cast<Unit>(Utf16::leadOf(value));
            *out++ = static_cast<Unit>(Utf16::trailOf(value));
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
    const std::string_view ascii = text.substr(0, asciiLength(text));
    std::u32string result(ascii.begin(), ascii.end());
    text.remove_prefix(ascii.size());
    result.reserve(result.size() + text.size());
    bool wellFormed = true;
    while (!text.empty()) {
        const auto decoded = Velk::detail::decodeUtf8(text, Velk::detail::Surrogates::malformed);
        result += decoded.value;
        text.remove_prefix(decoded.length);
        wellFormed = wellFormed && decoded.wellFormed;
    }
    if (ok != nullptr)
        *ok = wellFormed;
    return result;
}

bool isUtf8(std::string_view text) noexcept
{
    text.remove_prefix(asciiLength(text));
    while (!text.empty()) {
        const auto decoded = Velk::detail::decodeUtf8(text, Velk::detail::Surrogates::malformed);
        if (!decoded.wellFormed)
            return false;
        text.remove_prefix(decoded.length);
    }
    return true;
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
