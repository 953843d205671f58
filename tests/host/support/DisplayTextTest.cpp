#include "host/support/DisplayText.h"

#include <gtest/gtest.h>

using namespace VelkHost;

namespace {

struct WidthCase
{
    const char* name;
    const char32_t* text;
    std::size_t width;
};

const WidthCase widthCases[] = {
    {"Empty", U"", 0},
    {"Ascii", U"chair", 5},
    {"Cyrillic", U"\u0441\u0442\u0443\u043B", 4},
    {"Composed", U"caf\u00E9", 4},
    {"CombiningMark", U"cafe\u0301", 4},
    {"Chinese", U"\u6905\u5B50", 4},
    {"Korean", U"\uC758\uC790", 4},
    {"HiraganaAndKatakana", U"\u3044\u30B9", 4},
    {"FullWidthLatin", U"\uFF21", 2},
    {"HalfWidthKatakana", U"\uFF71", 1},
    {"Pictograph", U"\U0001FA91", 2},
    {"ZeroWidthJoiner", U"a\u200Db", 2},
};

class DisplayWidth : public testing::TestWithParam<WidthCase>
{};

TEST_P(DisplayWidth, Is)
{
    EXPECT_EQ(displayWidth(GetParam().text), GetParam().width);
}

INSTANTIATE_TEST_SUITE_P(Texts, DisplayWidth, testing::ValuesIn(widthCases),
                         [](const auto& row) { return std::string(row.param.name); });

TEST(Printable, LetsNothingSteerTheTerminal)
{
    EXPECT_EQ(printable(std::string("a\0\x1B[2J\r\n\x7F\xC2\x9B\xE2\x80\xAE\xFFz", 16)),
              U"a\uFFFD\uFFFD[2J\uFFFD\uFFFD\uFFFD\uFFFD\uFFFD\uFFFDz");
    EXPECT_EQ(printableUtf8("caf\xC3\xA9 \xE6\xA4\x85"), "caf\xC3\xA9 \xE6\xA4\x85");
}

/// The text with "<" and ">" around what stands out.
std::string marked(std::string_view text, const std::vector<std::u32string>& terms)
{
    std::string result = render(highlighted(text, terms), true);
    for (const auto& [code, mark] : {std::pair<std::string, std::string>{"\x1b[1m", "<"}, {"\x1b[0m", ">"}})
        for (std::size_t at = result.find(code); at != std::string::npos; at = result.find(code))
            result.replace(at, code.size(), mark);
    return result;
}

TEST(Highlighted, MarksEveryOccurrence)
{
    EXPECT_EQ(marked("Office chair", {U"chair"}), "Office <chair>");
    EXPECT_EQ(marked("CHAIR, Armchair", {U"chair"}), "<CHAIR>, Arm<chair>");
    EXPECT_EQ(marked("chair", {U"chair", U"air"}), "<chair>");
    EXPECT_EQ(marked("abcd", {U"ab", U"cd"}), "<abcd>");
    EXPECT_EQ(marked("aaa", {U"aa"}), "<aa>a");
    EXPECT_EQ(marked("chair", {U""}), "chair");
    EXPECT_EQ(marked("", {U"x"}), "");
}

TEST(Highlighted, KeepsPositionsWhereLowerCaseIsLongerInBytes)
{
    // U+023A has two bytes, its lower case U+2C65 three; the dotted capital I stays one code point.
    EXPECT_EQ(marked("\xC8\xBA\xC8\xBA chair", {U"chair"}), "\xC8\xBA\xC8\xBA <chair>");
    EXPECT_EQ(marked("\xC8\xBA"
                     "b",
                     {U"\u2C65"}),
              "<\xC8\xBA>b");
    EXPECT_EQ(marked("\xC4\xB0stanbul koltuk", {U"koltuk"}), "\xC4\xB0stanbul <koltuk>");
    EXPECT_EQ(marked("\xD0\xA1\xD0\xA2\xD0\x9E\xD0\x9B x", {U"\u0441\u0442\u043E\u043B"}),
              "<\xD0\xA1\xD0\xA2\xD0\x9E\xD0\x9B> x");
}

TEST(Render, HasNoEscapesWithoutStyles)
{
    EXPECT_EQ(render(highlighted("Office chair", {U"chair"}), false), "Office chair");
}

TEST(CutToWidth, EndsWithAnEllipsis)
{
    const auto cut = [](std::string_view text, std::size_t width) {
        return render(cutToWidth(highlighted(text, {}), width), false);
    };
    EXPECT_EQ(cut("chair", 5), "chair");
    EXPECT_EQ(cut("chairs", 5), "chai\xE2\x80\xA6");
    EXPECT_EQ(cut("chair", 1), "\xE2\x80\xA6");
    EXPECT_EQ(cut("chair", 0), "");
    EXPECT_EQ(cut("\xE6\xA4\x85\xE6\xA4\x85\xE6\xA4\x85", 6), "\xE6\xA4\x85\xE6\xA4\x85\xE6\xA4\x85");
    EXPECT_EQ(cut("\xE6\xA4\x85\xE6\xA4\x85\xE6\xA4\x85", 5), "\xE6\xA4\x85\xE6\xA4\x85\xE2\x80\xA6");
    EXPECT_EQ(cut("\xE6\xA4\x85\xE6\xA4\x85\xE6\xA4\x85", 4), "\xE6\xA4\x85\xE2\x80\xA6");
}

}  // namespace
