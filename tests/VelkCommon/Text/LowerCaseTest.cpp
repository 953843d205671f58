#include <VelkCommon/Text/StringUtils.h>

#include <VelkCommon/Platform/Bytes16.h>

#include <gtest/gtest.h>

#include <QtGlobal>

#include <clocale>
#include <cstddef>
#include <cstdint>
#include <locale>
#include <random>
#include <string>
#include <vector>

using namespace std::string_literals;

namespace {

constexpr char32_t lastCodePoint = 0x10FFFF;

bool isSurrogate(char32_t character)
{
    return character >= 0xD800 && character <= 0xDFFF;
}

std::string encoded(char32_t character)
{
    const auto byte = [](char32_t value) { return static_cast<char>(static_cast<unsigned char>(value)); };
    if (character < 0x80)
        return {byte(character)};
    if (character < 0x800)
        return {byte(0xC0 | character >> 6), byte(0x80 | (character & 0x3F))};
    if (character < 0x10000)
        return {byte(0xE0 | character >> 12), byte(0x80 | (character >> 6 & 0x3F)), byte(0x80 | (character & 0x3F))};
    return {byte(0xF0 | character >> 18), byte(0x80 | (character >> 12 & 0x3F)), byte(0x80 | (character >> 6 & 0x3F)),
            byte(0x80 | (character & 0x3F))};
}

std::string encoded(const std::u32string& text)
{
    std::string result;
    for (const char32_t character : text)
        result += encoded(character);
    return result;
}

struct LowerCase
{
    const char* name;
    std::u32string text;
    std::u32string lower;
};

void PrintTo(const LowerCase& row, std::ostream* os)
{
    *os << row.name;
}

const LowerCase lowerCases[] = {
    {"Nothing", U"", U""},
    {"Ascii", U"The Quick BROWN fox @[`{ 09_AZaz", U"the quick brown fox @[`{ 09_azaz"},
    {"ZeroAndControls", std::u32string(U"A\0B\nC\x7F", 6), std::u32string(U"a\0b\nc\x7F", 6)},
    {"LatinOne", U"ÀÉÎÕÜßÞ×÷ÿ", U"àéîõüßþ×÷ÿ"},
    {"CapitalIWithDotIsI", U"\u0130", U"i"},
    {"DotlessI", U"I\u0131", U"i\u0131"},
    {"YWithDiaeresis", U"\u0178", U"ÿ"},
    {"CapitalSharpS", U"\u1E9E", U"ß"},
    {"KelvinSign", U"\u212A", U"k"},
    {"AngstromSign", U"\u212B", U"å"},
    {"OhmSign", U"\u2126", U"ω"},
    {"MicroSignStays", U"\u00B5", U"\u00B5"},
    {"SigmaWhereverItStands", U"ΟΔΟΣ ΣΑΣ ς", U"οδοσ σασ ς"},
    {"LunateSigma", U"\u03F9", U"\u03F2"},
    {"LunateEpsilon", U"\u03F5", U"\u03F5"},
    {"ThetaSymbol", U"\u03F4", U"θ"},
    {"Cyrillic", U"ЁЖЯ Ѣ Ӏ Ԥ", U"ёжя ѣ ӏ ԥ"},
    {"Armenian", U"\u0531\u0556", U"\u0561\u0586"},
    {"Georgian", U"\u10A0\u1C90", U"\u2D00\u10D0"},
    {"Cherokee", U"\u13A0\u13F0\uAB70", U"\uAB70\u13F8\uAB70"},
    {"TitlecaseDigraphs", U"\u01C4\u01C5\u01C6 \u01C8 \u01CB \u01F2", U"\u01C6\u01C6\u01C6 \u01C9 \u01CC \u01F3"},
    {"GreekWithTitlecase", U"\u1F88\u1FBC", U"\u1F80\u1FB3"},
    {"GrowsFromTwoToThree", U"\u023A\u023E", U"\u2C65\u2C66"},
    {"ShrinksFromThreeToTwo", U"\u2C62\u2C64\u2C6F", U"\u026B\u027D\u0250"},
    {"ShrinksFromThreeToTwoMore", U"\uA78D\uA7AA", U"\u0265\u0266"},
    {"Glagolitic", U"\u2C00", U"\u2C30"},
    {"Coptic", U"\u2C80", U"\u2C81"},
    {"Numerals", U"\u2160\u24B6", U"\u2170\u24D0"},
    {"FullWidth", U"\uFF21\uFF3A", U"\uFF41\uFF5A"},
    {"Deseret", U"\U00010400", U"\U00010428"},
    {"Osage", U"\U000104B0", U"\U000104D8"},
    {"WarangCiti", U"\U000118A0", U"\U000118C0"},
    {"Medefaidrin", U"\U00016E40", U"\U00016E60"},
    {"Adlam", U"\U0001E900", U"\U0001E922"},
    {"WithoutCase", U"椅子 의자 كرسي כיסא เก้าอี้ \U0001FA91", U"椅子 의자 كرسي כיסא เก้าอี้ \U0001FA91"},
    {"EndOfUnicode", U"\uFFFF\U0010FFFF", U"\uFFFF\U0010FFFF"},
};

class ToLower : public testing::TestWithParam<LowerCase>
{};

TEST_P(ToLower, Utf32)
{
    EXPECT_EQ(StringUtils::toLower(GetParam().text), GetParam().lower);
}

TEST_P(ToLower, Utf8)
{
    EXPECT_EQ(StringUtils::toLowerUtf8(encoded(GetParam().text)), encoded(GetParam().lower));
}

TEST_P(ToLower, Utf8WhereverItStands)
{
    const std::string text = encoded(GetParam().text);
    const std::string lower = encoded(GetParam().lower);
    for (std::size_t before = 0; before < 40; ++before) {
        for (const std::size_t behind : std::initializer_list<std::size_t>{0, 1, 5, 15, 16, 17}) {
            const std::string front(before, 'x');
            const std::string back(behind, 'y');
            ASSERT_EQ(StringUtils::toLowerUtf8(std::string(before, 'X') + text + std::string(behind, 'Y')),
                      front + lower + back)
                << before << " before, " << behind << " behind";
        }
    }
}

INSTANTIATE_TEST_SUITE_P(LowerCase, ToLower, testing::ValuesIn(lowerCases),
                         [](const auto& row) { return std::string(row.param.name); });

TEST(LowerCase, BothFormsAgreeOnEveryCodePoint)
{
    for (char32_t character = 0; character <= lastCodePoint; ++character) {
        const std::u32string lower = StringUtils::toLower(std::u32string(1, character));
        ASSERT_EQ(lower.size(), 1U);
        ASSERT_EQ(StringUtils::toLowerUtf8(encoded(character)), encoded(lower)) << std::hex << std::uint32_t{character};
    }
}

TEST(LowerCase, BothFormsAgreeInBlocks)
{
    // Runs of neighbouring code points, so that whole blocks belong to one script, at each offset within a block.
    std::u32string text;
    for (char32_t character = 0; character <= 0x1FFFF; ++character) {
        if (!isSurrogate(character))
            text += character;
    }
    const std::string lower = encoded(StringUtils::toLower(text));
    for (std::size_t before = 0; before < 16; ++before) {
        const std::string front(before, 'a');
        ASSERT_TRUE(StringUtils::toLowerUtf8(front + encoded(text)) == front + lower) << before;
    }
}

TEST(LowerCase, ChangesTheLettersOfUnicode)
{
    // The number of all code points that change, and a checksum of them and their lower case, computed from the
    // Unicode character database: version 13, which Qt 5.15 has, and version 14, which Qt 6.4 has.
    if (QT_VERSION >= QT_VERSION_CHECK(6, 5, 0))
        GTEST_SKIP() << "this Qt has a newer version of the database";
    constexpr bool is13 = QT_VERSION < QT_VERSION_CHECK(6, 0, 0);
    constexpr std::size_t changing = is13 ? 1393 : 1433;
    constexpr std::uint64_t checksum = is13 ? 17914267007133108257U : 6247935627308866983U;
    std::size_t changed = 0;
    std::uint64_t sum = 0;
    for (char32_t character = 0; character <= lastCodePoint; ++character) {
        const char32_t lower = StringUtils::toLower(std::u32string(1, character)).front();
        if (lower != character) {
            ++changed;
            sum = sum * 31 + character * std::uint64_t{0x110000} + lower;
        }
    }
    EXPECT_EQ(changed, changing);
    EXPECT_EQ(sum, checksum);
}

TEST(LowerCase, ChangesNothingTwice)
{
    for (char32_t character = 0; character <= lastCodePoint; ++character) {
        const std::u32string lower = StringUtils::toLower(std::u32string(1, character));
        ASSERT_EQ(StringUtils::toLower(lower), lower) << std::hex << std::uint32_t{character};
    }
}

TEST(LowerCase, WhatIsNoCodePointStays)
{
    const std::u32string odd = {0xD800, 0xDC00, 0xDFFF, 0x110000, 0x7FFFFFFF, 0x80000041, 0xFFFFFFFF};
    EXPECT_EQ(StringUtils::toLower(odd), odd);
}

TEST(LowerCase, BytesThatAreNoUtf8Stay)
{
    const std::string odd[] = {
        "\x80",                  // a continuation byte without a lead byte
        "\xC3",                  // a lead byte without a continuation byte
        "\xC1\x81",              // overlong "A"
        "\xE0\x81\x81",          // the same in three bytes
        "\xF0\x80\x81\x81",      // and in four
        "\xF0\x80\xC3\xA9",      // a truncated sequence before a whole character
        "\xE1\xB8",              // cut off
        "\xE1\xB8z",             // cut off by a letter
        "\xED\xA0\x80",          // a surrogate
        "\xF0\x90\x90",          // cut off
        "\xF4\x90\x80\x80",      // above the last code point
        "\xF8\x88\x80\x80\x80",  // five bytes
        "\xFE\xFF",              // never used
    };
    for (const std::string& bytes : odd) {
        for (std::size_t before = 0; before < 20; ++before) {
            EXPECT_EQ(StringUtils::toLowerUtf8(std::string(before, 'X') + bytes), std::string(before, 'x') + bytes);
            EXPECT_EQ(StringUtils::toLowerUtf8(bytes + std::string(before, 'X')), bytes + std::string(before, 'x'));
        }
    }
    EXPECT_EQ(StringUtils::toLowerUtf8("\xC3\xC3\x89"), "\xC3\xC3\xA9") << "what follows is a letter of its own";
    EXPECT_EQ(StringUtils::toLowerUtf8("\xE1\xC3\x89"), "\xE1\xC3\xA9");
    EXPECT_EQ(StringUtils::toLowerUtf8("\xF0\x90"
                                       "A"),
              "\xF0\x90"
              "a");
    EXPECT_EQ(StringUtils::toLowerUtf8("\xE6\xC3\x89"), "\xE6\xC3\xA9");
}

TEST(LowerCase, AnyBytesAreLoweredPieceByPiece)
{
    // A text of arbitrary bytes gives the same result as its parts lowered one by one, if each part begins with an
    // ASCII character.
    std::mt19937 random(7);
    const std::string bytes = "AZaz09 \x80\x89\xBF\xC3\xC4\xC8\xBA\xD0\x90\xE1\xB8\xE2\x84\xEF\xBC\xF0\x90\xFF";
    for (int i = 0; i < 20000; ++i) {
        std::string whole;
        std::string expected;
        for (std::size_t parts = random() % 8; parts > 0; --parts) {
            std::string part = ".";
            for (std::size_t size = random() % 8; size > 0; --size)
                part += bytes[random() % bytes.size()];
            whole += part;
            expected += StringUtils::toLowerUtf8(part);
        }
        ASSERT_EQ(StringUtils::toLowerUtf8(whole), expected) << testing::PrintToString(whole);
    }
}

TEST(LowerCase, KeepsWithinItsRoom)
{
    for (const std::string& piece : {"\u023A"s, "A"s, "\u0130"s, "\xC8"s, "\U00010400"s, "A\u023E"s, "\u1E9E"s}) {
        std::string text;
        for (int i = 0; i < 100; ++i, text += piece) {
            const std::string expected = StringUtils::toLowerUtf8(text);
            std::string room(StringUtils::lowerUtf8Room(text.size()) + 1, '#');
            const std::size_t size = StringUtils::toLowerUtf8Into(room.data(), text);
            ASSERT_EQ(room.substr(0, size), expected);
            ASSERT_EQ(room.back(), '#') << text.size();
        }
    }
}

TEST(LowerCase, DoesNotDependOnTheLocale)
{
    for (const char* const name : {"de_DE.ISO-8859-1", "tr_TR.UTF-8", "C.UTF-8", "C"}) {
        std::setlocale(LC_ALL, name);
        EXPECT_EQ(StringUtils::toLowerUtf8("I \xC9 É"), "i \xC9 é") << name;
        EXPECT_EQ(StringUtils::toLower(U"IÉ"), U"ié") << name;
    }
    std::setlocale(LC_ALL, "C");
}

template <typename Bytes>
class SixteenBytes : public testing::Test
{};

#ifdef VELK_BYTES16_SSE2
using Forms = testing::Types<Velk::Platform::Bytes16Portable, Velk::Platform::Bytes16Sse2>;
#else
using Forms = testing::Types<Velk::Platform::Bytes16Portable>;
#endif
TYPED_TEST_SUITE(SixteenBytes, Forms);

TYPED_TEST(SixteenBytes, LoadPartReadsSoManyBytesAndNoMore)
{
    const std::string bytes = "\x01\x82\x03\x84\x05\x86\x07\x88\x09\x8A\x0B\x8C\x0D\x8E\x0F\x90";
    for (std::size_t count = 0; count <= bytes.size(); ++count) {
        const std::vector<char> given(bytes.begin(), bytes.begin() + static_cast<std::ptrdiff_t>(count));
        std::string expected = bytes.substr(0, count);
        expected.resize(16);
        std::string result(16, 'x');
        TypeParam::loadPart(given.data(), count).store(result.data());
        EXPECT_EQ(result, expected) << count;
    }
}

// Checks each byte of the result against the expected one, for all pairs of bytes at all places.
template <typename Bytes, typename Operation, typename Expected>
void expectForAllBytes(Operation operation, Expected expected)
{
    for (unsigned a = 0; a < 256; ++a) {
        for (unsigned b = 0; b < 256; ++b) {
            char left[16];
            char right[16];
            char result[16];
            for (unsigned i = 0; i < 16; ++i) {
                left[i] = static_cast<char>(a + i);
                right[i] = static_cast<char>(b + 3 * i);
            }
            operation(Bytes::load(left), Bytes::load(right)).store(result);
            for (unsigned i = 0; i < 16; ++i) {
                const unsigned wanted = expected((a + i) & 0xFF, (b + 3 * i) & 0xFF);
                ASSERT_EQ(static_cast<unsigned char>(result[i]), wanted) << a << " " << b << " at " << i;
            }
        }
    }
}

TYPED_TEST(SixteenBytes, Combine)
{
    using Bytes = TypeParam;
    expectForAllBytes<Bytes>([](Bytes a, Bytes b) { return equal(a, b); },
                             [](unsigned a, unsigned b) { return a == b ? 0xFFU : 0U; });
    expectForAllBytes<Bytes>([](Bytes a, Bytes b) { return a & b; }, [](unsigned a, unsigned b) { return a & b; });
    expectForAllBytes<Bytes>([](Bytes a, Bytes b) { return a | b; }, [](unsigned a, unsigned b) { return a | b; });
    expectForAllBytes<Bytes>([](Bytes a, Bytes b) { return a + b; },
                             [](unsigned a, unsigned b) { return (a + b) & 0xFF; });
}

TYPED_TEST(SixteenBytes, AreInRange)
{
    using Bytes = TypeParam;
    constexpr std::uint8_t ranges[][2] = {{'A', 'Z'}, {0, 0}, {0, 255}, {0x80, 0xFF}, {0xC3, 0xD5}, {0x70, 0x90}};
    for (const auto& range : ranges) {
        const std::uint8_t low = range[0];
        const std::uint8_t high = range[1];
        expectForAllBytes<Bytes>([=](Bytes a, Bytes) { return inRange(a, low, high); },
                                 [=](unsigned a, unsigned) { return a >= low && a <= high ? 0xFFU : 0U; });
    }
}

TYPED_TEST(SixteenBytes, MoveOn)
{
    const char* const text = "0123456789abcdef";
    char moved[16];
    TypeParam::load(text).movedOn().store(moved);
    EXPECT_EQ(std::string(moved, 16), "\0"s + "0123456789abcde");
}

TYPED_TEST(SixteenBytes, GiveAMask)
{
    char bytes[16] = {};
    EXPECT_EQ(TypeParam::load(bytes).mask(), 0U);
    for (unsigned i = 0; i < 16; ++i) {
        bytes[i] = '\x80';
        EXPECT_EQ(TypeParam::load(bytes).mask(), 1U << i);
        EXPECT_EQ(Velk::Platform::lowestBit(TypeParam::load(bytes).mask()), i);
        bytes[i] = '\x7F';
    }
    EXPECT_EQ(TypeParam(0xFF).mask(), 0xFFFFU);
    EXPECT_EQ(TypeParam(0x7F).mask(), 0U);
}

}  // namespace
