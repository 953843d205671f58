#include <VelkCommon/Files/fileString.h>
#include <VelkCommon/Text/StringConvert.h>
#include <VelkCommon/Text/StringUtils.h>

#include "Check.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

namespace {

using fuzz::check;

bool isCodePoint(char32_t c)
{
    return c <= 0x10FFFF && (c < 0xD800 || c > 0xDFFF);
}

void checkUtf8(std::string_view bytes)
{
    bool wellFormed = false;
    const std::u32string text = StringConvert::toUnicodeFromUtf8(bytes, &wellFormed);
    check(std::all_of(text.begin(), text.end(), isCodePoint), "UTF-8 gives code points");
    check(StringConvert::toUnicode(bytes, StringConvert::Utf8) == text, "both readers of UTF-8 agree");

    const std::string again = StringConvert::toStdUtf8String(text);
    if (wellFormed)
        check(again == bytes, "well-formed UTF-8 comes back");
    check(StringConvert::toUnicodeFromUtf8(again, &wellFormed) == text && wellFormed, "what is written is well-formed");
    check(StringConvert::toUnicode(StringConvert::toQString(text)) == text, "Qt's text comes back");
    check(StringConvert::toUnicode(StringConvert::toWide(text)) == text, "wide text comes back");
}

void checkLowerCase(std::string_view bytes)
{
    bool wellFormed = false;
    const std::u32string text = StringConvert::toUnicodeFromUtf8(bytes, &wellFormed);
    const std::u32string lower = StringUtils::toLower(text);
    check(lower.size() == text.size(), "lower case keeps the number of code points");
    const std::string narrow = StringConvert::toStdUtf8String(text);
    check(StringUtils::toLowerUtf8(narrow) == StringConvert::toStdUtf8String(lower), "both lower cases agree");
    check(StringUtils::toLowerUtf8(bytes).size() <= StringUtils::lowerUtf8Room(bytes.size()), "there is room");
    check(StringUtils::iStartsWith(bytes, bytes), "every text starts with itself");
}

void checkWindows1252(std::string_view bytes)
{
    const std::u32string text = StringConvert::fromWin1252(bytes);
    check(text.size() == bytes.size(), "a character for every byte");
    check(StringConvert::toWin1252(text) == bytes, "Windows-1252 comes back");
}

void checkPath(std::string_view bytes)
{
    const fileString path{std::string(bytes)};
    const std::u32string text = path.unicodeString();
    check(fileString(text).utf8() == bytes, "a path's bytes come back");
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    const std::string_view bytes(reinterpret_cast<const char*>(data), size);
    checkUtf8(bytes);
    checkLowerCase(bytes);
    checkWindows1252(bytes);
    checkPath(bytes);
    return 0;
}
