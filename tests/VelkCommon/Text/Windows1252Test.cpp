#include <VelkCommon/Text/StringConvert.h>

#include <gtest/gtest.h>

#include <algorithm>
#include <set>
#include <string>

namespace {

/// All bytes in ascending order.
std::string allBytes()
{
    std::string bytes;
    for (int byte = 0; byte < 256; ++byte)
        bytes += static_cast<char>(byte);
    return bytes;
}

TEST(Windows1252, EveryByteSurvivesTheRoundTrip)
{
    const std::u32string text = StringConvert::fromWin1252(allBytes());
    ASSERT_EQ(text.size(), 256u);
    EXPECT_EQ(std::set<char32_t>(text.begin(), text.end()).size(), 256u);
    EXPECT_EQ(StringConvert::toWin1252(text), allBytes());
}

TEST(Windows1252, BytesOutsideTheUpperControlsAreTheirOwnNumber)
{
    for (int byte = 0; byte < 256; ++byte) {
        if (byte >= 0x80 && byte <= 0x9F)
            continue;
        EXPECT_EQ(StringConvert::fromWin1252(std::string(1, static_cast<char>(byte))),
                  std::u32string(1, static_cast<char32_t>(byte)));
    }
}

TEST(Windows1252, TheUpperControlsAreTypographicCharacters)
{
    std::string bytes;
    for (int byte = 0x80; byte <= 0x9F; ++byte)
        bytes += static_cast<char>(byte);
    EXPECT_EQ(StringConvert::fromWin1252(bytes),
              U"\u20AC\u0081\u201A\u0192\u201E\u2026\u2020\u2021\u02C6\u2030\u0160\u2039\u0152\u008D\u017D\u008F"
              U"\u0090\u2018\u2019\u201C\u201D\u2022\u2013\u2014\u02DC\u2122\u0161\u203A\u0153\u009D\u017E\u0178");
}

TEST(Windows1252, OnlyTheFiveHolesAreControls)
{
    for (char32_t control = 0x80; control <= 0x9F; ++control) {
        const bool hole = control == 0x81 || control == 0x8D || control == 0x8F || control == 0x90 || control == 0x9D;
        const std::string expected(1, hole ? static_cast<char>(control) : '?');
        EXPECT_EQ(StringConvert::toWin1252(std::u32string(1, control)), expected) << std::hex << unsigned(control);
    }
}

TEST(Windows1252, CharactersThatItLacksBecomeQuestionMarks)
{
    EXPECT_EQ(StringConvert::toWin1252(U"K\u00FCche \u0416\u0100\U0001F600."),
              "K\xFC"
              "che ???.");
    const std::u32string noCharacters = {0xD800, 0xDFFF, 0x110000, 0xFFFFFFFF, 0x10080, 0x100FF};
    EXPECT_EQ(StringConvert::toWin1252(noCharacters), "??????");
}

TEST(Windows1252, MapsExactly256CodePoints)
{
    std::size_t mapped = 0;
    for (char32_t value = 0; value <= 0x10FFFF; ++value) {
        const std::string byte = StringConvert::toWin1252(std::u32string_view(&value, 1));
        ASSERT_EQ(byte.size(), 1u);
        mapped += byte != "?" || value == U'?' ? 1 : 0;
    }
    EXPECT_EQ(mapped, 256u);
}

TEST(Windows1252, ZeroCharactersAreOrdinary)
{
    using namespace std::string_literals;
    EXPECT_EQ(StringConvert::toWin1252(U"a\0b"s), "a\0b"s);
    EXPECT_EQ(StringConvert::fromWin1252("a\0b"s), U"a\0b"s);
    EXPECT_EQ(StringConvert::toWin1252(U""), "");
    EXPECT_EQ(StringConvert::fromWin1252(""), U"");
}

}  // namespace
