#include <VelkCommon/Text/StringConvert.h>

#include <gtest/gtest.h>

#include <algorithm>
#include <string>

namespace {

using namespace std::string_literals;

/// All code points except the surrogates, which are not characters.
std::u32string allCodePoints()
{
    std::u32string all;
    for (char32_t value = 0; value <= 0x10FFFF; ++value) {
        if (value < 0xD800 || value > 0xDFFF)
            all += value;
    }
    return all;
}

TEST(StringConvertRoundTrip, EveryCodePointThroughUtf8)
{
    const std::u32string all = allCodePoints();
    bool ok = false;
    EXPECT_TRUE(StringConvert::toUnicodeFromUtf8(StringConvert::toStdUtf8String(all), &ok) == all);
    EXPECT_TRUE(ok);
    EXPECT_TRUE(StringConvert::toUnicode(StringConvert::toStdString(all, StringConvert::Utf8), StringConvert::Utf8) ==
                all);
}

TEST(StringConvertRoundTrip, EveryCodePointThroughWideText)
{
    const std::u32string all = allCodePoints();
    EXPECT_TRUE(StringConvert::toUnicode(StringConvert::toWide(all)) == all);
}

TEST(StringConvertRoundTrip, EveryCodePointThroughQtText)
{
    const std::u32string all = allCodePoints();
    EXPECT_TRUE(StringConvert::toUnicode(StringConvert::toQString(all)) == all);
}

TEST(StringConvertRoundTrip, EveryCodePointAloneAtTheBeginningOfQtText)
{
    for (const char32_t value : {U'\0', U'\uFEFF', U'\uFFFE', U'\uFFFF', U'\U0010FFFF'}) {
        const std::u32string text(1, value);
        EXPECT_EQ(StringConvert::toUnicode(StringConvert::toQString(text)), text);
    }
}

struct Utf8Form
{
    const char* name;
    std::u32string text;
    std::string bytes;
};

class StringConvertUtf8 : public testing::TestWithParam<Utf8Form>
{};

TEST_P(StringConvertUtf8, HasTheStandardForm)
{
    EXPECT_EQ(StringConvert::toStdUtf8String(GetParam().text), GetParam().bytes);
    bool ok = false;
    EXPECT_EQ(StringConvert::toUnicodeFromUtf8(GetParam().bytes, &ok), GetParam().text);
    EXPECT_TRUE(ok);
    EXPECT_EQ(StringConvert::toUnicodeFromUtf8(GetParam().bytes), GetParam().text);
    EXPECT_TRUE(StringConvert::isUtf8(GetParam().bytes));
}

TEST_P(StringConvertUtf8, IsWhatTheMethodsDefaultAndUtf8Mean)
{
    for (const auto method : {StringConvert::Default, StringConvert::Utf8}) {
        EXPECT_EQ(StringConvert::toStdString(GetParam().text, method), GetParam().bytes);
        EXPECT_EQ(StringConvert::toUnicode(GetParam().bytes, method), GetParam().text);
    }
}

const Utf8Form utf8Forms[] = {
    {"Empty", U"", ""},
    {"Ascii", U"plain", "plain"},
    {"LastOfOneByte", U"\x7F", "\x7F"},
    {"FirstOfTwoBytes", U"\x80", "\xC2\x80"},
    {"LastOfTwoBytes", U"\u07FF", "\xDF\xBF"},
    {"FirstOfThreeBytes", U"\u0800", "\xE0\xA0\x80"},
    {"LastBeforeSurrogates", U"\uD7FF", "\xED\x9F\xBF"},
    {"FirstBehindSurrogates", U"\uE000", "\xEE\x80\x80"},
    {"LastOfThreeBytes", U"\uFFFF", "\xEF\xBF\xBF"},
    {"ReplacementCharacterItself", U"\uFFFD", "\xEF\xBF\xBD"},
    {"ByteOrderMark", U"\uFEFFx", "\xEF\xBB\xBFx"},
    {"FirstOfFourBytes", U"\U00010000", "\xF0\x90\x80\x80"},
    {"LastOfFourBytes", U"\U0010FFFF", "\xF4\x8F\xBF\xBF"},
    {"ZeroBytes", U"a\0b\0"s, "a\0b\0"s},
    {"Mixed", U"K\u00FCche \u2013 \U0001F600",
     "K\xC3\xBC"
     "che \xE2\x80\x93 \xF0\x9F\x98\x80"},
};
INSTANTIATE_TEST_SUITE_P(Forms, StringConvertUtf8, testing::ValuesIn(utf8Forms),
                         [](const auto& row) { return row.param.name; });

struct IllFormed
{
    const char* name;
    std::string bytes;
    std::u32string text;  // with "?" for each replacement character
};

class StringConvertIllFormedUtf8 : public testing::TestWithParam<IllFormed>
{};

TEST_P(StringConvertIllFormedUtf8, BecomesOneReplacementCharacterPerMaximalSubsequence)
{
    std::u32string expected = GetParam().text;
    std::replace(expected.begin(), expected.end(), U'?', U'\uFFFD');
    bool ok = true;
    EXPECT_EQ(StringConvert::toUnicodeFromUtf8(GetParam().bytes, &ok), expected);
    EXPECT_FALSE(ok);
    EXPECT_FALSE(StringConvert::isUtf8(GetParam().bytes));
    EXPECT_EQ(StringConvert::toUnicodeFromUtf8(GetParam().bytes, nullptr), expected);
    EXPECT_EQ(StringConvert::toUnicode(GetParam().bytes, StringConvert::Utf8), expected);
    EXPECT_EQ(StringConvert::toUnicode(StringConvert::toQString(GetParam().bytes, StringConvert::Utf8)), expected);
}

const IllFormed illFormedRows[] = {
    // Bytes that never occur, and continuation bytes without a lead.
    {"LoneContinuation", "\x80", U"?"},
    {"ContinuationsInText",
     "a\x80\xBF"
     "b",
     U"a??b"},
    {"NeverUsedBytes", "\xC0\xC1\xF5\xF8\xFC\xFE\xFF", U"???????"},
    // Overlong forms: each byte gives a replacement character.
    {"OverlongTwo", "\xC0\xAF", U"??"},
    {"OverlongTwoHighest", "\xC1\xBF", U"??"},
    {"OverlongThree", "\xE0\x80\x80", U"???"},
    {"OverlongThreeHighest", "\xE0\x9F\xBF", U"???"},
    {"OverlongFour", "\xF0\x80\x80\x80", U"????"},
    {"OverlongFourHighest", "\xF0\x8F\xBF\xBF", U"????"},
    {"OverlongsInARow", "\xC0\xAF\xE0\x80\xBF\xF0\x81\x82\x41", U"????????A"},
    // Surrogates.
    {"FirstSurrogate", "\xED\xA0\x80", U"???"},
    {"LastSurrogate", "\xED\xBF\xBF", U"???"},
    {"SurrogatePair", "\xED\xA0\xBD\xED\xB8\x80", U"??????"},
    {"SurrogatesInARow", "\xED\xA0\x80\xED\xBF\xBF\xED\xAF\x41", U"????????A"},
    // Beyond the last code point.
    {"FirstBeyond", "\xF4\x90\x80\x80", U"????"},
    {"BeyondAndOthers", "\xF4\x91\x92\x93\xFF\x41\x80\xBF\x42", U"?????A??B"},
    // Truncated forms: the beginning of a character gives one replacement character.
    {"TruncatedTwo", "\xC2", U"?"},
    {"TruncatedThreeByOne", "\xE2\x82", U"?"},
    {"TruncatedThreeByTwo", "\xE2", U"?"},
    {"TruncatedFourByOne", "\xF0\x9F\x98", U"?"},
    {"TruncatedFourByTwo", "\xF0\x9F", U"?"},
    {"TruncatedFourByThree", "\xF0", U"?"},
    {"TruncatedInARow", "\xE1\x80\xE2\xF0\x91\x92\xF1\xBF\x41", U"????A"},
    {"TruncatedBeforeText",
     "\xE2\x82"
     "abc",
     U"?abc"},
    {"TruncatedBeforeZeroByte", "\xE2\x82\0x"s, U"?\0x"s},
    {"TruncatedBeforeWellFormed", "\xF0\x9F\x98\xC3\xA9", U"?\u00E9"},
    // A lead byte whose first continuation is out of its limits.
    {"LeadBeforeLead", "\xC2\xC2\x80", U"?\u0080"},
    {"FourByteLeadTooHigh", "\xF4\xBF\x80\x80", U"????"},
};
INSTANTIATE_TEST_SUITE_P(Rows, StringConvertIllFormedUtf8, testing::ValuesIn(illFormedRows),
                         [](const auto& row) { return row.param.name; });

TEST(StringConvert, ValuesThatAreNoCharactersBecomeReplacementCharacters)
{
    for (const char32_t value : {char32_t{0xD800}, char32_t{0xDBFF}, char32_t{0xDC00}, char32_t{0xDFFF},
                                 char32_t{0x110000}, char32_t{0xFFFFFFFF}}) {
        const std::u32string text = {U'a', value, U'b'};
        EXPECT_EQ(StringConvert::toStdUtf8String(text),
                  "a\xEF\xBF\xBD"
                  "b");
        EXPECT_EQ(StringConvert::toUnicode(StringConvert::toWide(text)), U"a\uFFFDb");
        EXPECT_EQ(StringConvert::toUnicode(StringConvert::toQString(text)), U"a\uFFFDb");
    }
    // Two surrogates in UTF-32 do not form a pair.
    const std::u32string pair = {0xD83D, 0xDE00};
    EXPECT_EQ(StringConvert::toStdUtf8String(pair), "\xEF\xBF\xBD\xEF\xBF\xBD");
    EXPECT_EQ(StringConvert::toUnicode(StringConvert::toQString(pair)), U"\uFFFD\uFFFD");
}

struct Utf16Form
{
    const char* name;
    std::u16string units;
    std::u32string text;
};

class StringConvertUtf16 : public testing::TestWithParam<Utf16Form>
{};

TEST_P(StringConvertUtf16, IsReadFromQtText)
{
    const QString text(reinterpret_cast<const QChar*>(GetParam().units.data()),
                       static_cast<int>(GetParam().units.size()));
    EXPECT_EQ(StringConvert::toUnicode(text), GetParam().text);
}

TEST_P(StringConvertUtf16, IsReadFromWideTextOf16Bits)
{
    if (sizeof(wchar_t) == 2) {
        const std::wstring text(GetParam().units.begin(), GetParam().units.end());
        EXPECT_EQ(StringConvert::toUnicode(text), GetParam().text);
    } else {
        // Where wchar_t has 32 bits, a surrogate is never half of a character.
        const std::wstring pair = {static_cast<wchar_t>(0xD83D), static_cast<wchar_t>(0xDE00)};
        EXPECT_EQ(StringConvert::toUnicode(pair), U"\uFFFD\uFFFD");
    }
}

const Utf16Form utf16Forms[] = {
    {"Empty", u"", U""},
    {"Basic", u"K\u00FCche", U"K\u00FCche"},
    {"Pair", {u'a', 0xD83D, 0xDE00, u'b'}, U"a\U0001F600b"},
    {"FirstPair", {0xD800, 0xDC00}, U"\U00010000"},
    {"LastPair", {0xDBFF, 0xDFFF}, U"\U0010FFFF"},
    {"LoneLead", {u'a', 0xD83D, u'b'}, U"a\uFFFDb"},
    {"LoneLeadAtTheEnd", {u'a', 0xD83D}, U"a\uFFFD"},
    {"LoneTrail", {u'a', 0xDE00, u'b'}, U"a\uFFFDb"},
    {"WrongOrder", {0xDE00, 0xD83D}, U"\uFFFD\uFFFD"},
    {"TwoLeads", {0xD83D, 0xD83D, 0xDE00}, U"\uFFFD\U0001F600"},
    {"ZeroUnits", {u'a', 0, u'b', 0}, U"a\0b\0"s},
};
INSTANTIATE_TEST_SUITE_P(Forms, StringConvertUtf16, testing::ValuesIn(utf16Forms),
                         [](const auto& row) { return row.param.name; });

TEST(StringConvert, WideTextHasTheSystemsUnits)
{
    const std::wstring wide = StringConvert::toWide(U"a\U0001F600\0"s);
    EXPECT_EQ(wide, L"a\U0001F600\0"s);
    EXPECT_EQ(wide.size(), sizeof(wchar_t) == 2 ? 4u : 3u);
}

TEST(StringConvert, QtTextKeepsZeroCharactersAndMarks)
{
    const QString text = StringConvert::toQString(U"\uFEFFa\0b"s);
    ASSERT_EQ(text.size(), 4);
    EXPECT_EQ(text[0], QChar(0xFEFF));
    EXPECT_EQ(text[2], QChar(0));
    EXPECT_EQ(text[3], QChar(u'b'));
}

TEST(StringConvert, TheEncodingOfTheErrorLogLosesNoName)
{
    EXPECT_EQ(StringConvert::toStdString(U"K\u00FCche \u0416", static_cast<StringConvert::Method>(0)),
              "K\xC3\xBC"
              "che \xD0\x96");
}

TEST(StringConvert, NarrowTextOfMethodOneIsUtf8)
{
    const auto one = static_cast<StringConvert::Method>(1);
    EXPECT_EQ(StringConvert::toUnicode("\xC3\xBC", one), U"\u00FC");
    EXPECT_EQ(StringConvert::toQString("\xC3\xBC", one), QString(QChar(0xFC)));
}

TEST(StringConvert, AnUnknownMethodCountsAsTheDefault)
{
    const auto unknown = static_cast<StringConvert::Method>(77);
    EXPECT_EQ(StringConvert::toStdString(U"\u00FC", unknown), "\xC3\xBC");
    EXPECT_EQ(StringConvert::toUnicode("\xC3\xBC", unknown), U"\u00FC");
}

TEST(StringConvert, Windows1252IsTheMethodTwo)
{
    const auto two = static_cast<StringConvert::Method>(2);
    EXPECT_EQ(StringConvert::toStdString(U"\u20AC\u0416", two), "\x80?");
    EXPECT_EQ(StringConvert::toUnicode("\x80\xFC", two), U"\u20AC\u00FC");
    EXPECT_EQ(StringConvert::toQString("\x80", two), QString(QChar(0x20AC)));
}

TEST(StringConvert, ListsAreConvertedByElement)
{
    const std::vector<std::string> texts = {"", "a", "\xC3\xBC", "\xC3", "x\0y"s};
    EXPECT_EQ(StringConvert::toUnicode(texts),
              (std::vector<std::u32string>{U"", U"a", U"\u00FC", U"\uFFFD", U"x\0y"s}));
    EXPECT_EQ(StringConvert::toUnicode(texts, StringConvert::Windows1252),
              (std::vector<std::u32string>{U"", U"a", U"\u00C3\u00BC", U"\u00C3", U"x\0y"s}));
    EXPECT_TRUE(StringConvert::toUnicode(std::vector<std::string>()).empty());
}

TEST(StringConvert, TakesEveryKindOfUtf32Text)
{
    const std::u32string text = U"\u00FC";
    EXPECT_EQ(StringConvert::toStdUtf8String(text), "\xC3\xBC");
    EXPECT_EQ(StringConvert::toStdUtf8String(std::u32string_view(text)), "\xC3\xBC");
    EXPECT_EQ(StringConvert::toStdUtf8String(text.c_str()), "\xC3\xBC");
}

// ASCII is passed over in blocks, so what is none stands at each place of a block here.
TEST(StringConvert, FindsWhatIsNotAsciiWhereverItStands)
{
    for (std::size_t length = 0; length < 40; ++length) {
        const std::string before(length, 'x');
        const std::u32string wide(length, U'x');
        bool ok = false;
        EXPECT_TRUE(StringConvert::toUnicodeFromUtf8(before + "\xC3\xA9y", &ok) == wide + U"\u00E9y");
        EXPECT_TRUE(ok);
        EXPECT_TRUE(StringConvert::isUtf8(before + "\xC3\xA9y"));
        EXPECT_TRUE(StringConvert::toUnicodeFromUtf8(before + "\xE9", &ok) == wide + U"\uFFFD");
        EXPECT_FALSE(ok);
        EXPECT_FALSE(StringConvert::isUtf8(before + "\xE9"));
        EXPECT_TRUE(StringConvert::toUnicodeFromUtf8(before) == wide);
    }
}

}  // namespace
