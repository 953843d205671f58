#include <VelkCommon/Text/StringUtils.h>

#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace {

using namespace std::string_literals;

struct Replacement
{
    const char* name;
    std::u32string text;
    std::u32string from;
    std::u32string to;
    std::u32string result;
    bool replaced;
};

class ReplaceAll : public testing::TestWithParam<Replacement>
{};

TEST_P(ReplaceAll, ReplacesFromLeftToRight)
{
    std::u32string text = GetParam().text;
    EXPECT_EQ(StringUtils::replaceAll(text, GetParam().from, GetParam().to), GetParam().replaced);
    EXPECT_EQ(text, GetParam().result);
}

const Replacement replacements[] = {
    {"Once", U"Set %1%", U"%1%", U"7", U"Set 7", true},
    {"Several", U"a-b-c", U"-", U"::", U"a::b::c", true},
    {"AtBothEnds", U"xax", U"x", U"", U"a", true},
    {"WholeText", U"aaaa", U"a", U"b", U"bbbb", true},
    {"ToNothing", U"aXbX", U"X", U"", U"ab", true},
    {"NotThere", U"abc", U"x", U"y", U"abc", false},
    {"LongerThanText", U"ab", U"abc", U"y", U"ab", false},
    {"EmptyText", U"", U"a", U"b", U"", false},
    {"EmptyFrom", U"abc", U"", U"x", U"abc", false},
    {"EmptyFromAndText", U"", U"", U"x", U"", false},
    {"ToContainsFrom", U"a.a", U"a", U"aa", U"aa.aa", true},
    {"ToEqualsFrom", U"abc", U"b", U"b", U"abc", true},
    {"Overlapping", U"aaa", U"aa", U"b", U"ba", true},
    {"MadeByReplacing", U"aab", U"ab", U"b", U"ab", true},
    {"BeyondTheBasicPlane", U"\U0001F600x", U"\U0001F600", U"\u00FC", U"\u00FCx", true},
    {"ZeroCharacters", U"a\0b"s, U"\0"s, U"-", U"a-b", true},
};
INSTANTIATE_TEST_SUITE_P(Rows, ReplaceAll, testing::ValuesIn(replacements),
                         [](const auto& row) { return row.param.name; });

TEST(ReplaceAllTest, TakesPartsOfTheTextItself)
{
    std::u32string text = U"abab";
    EXPECT_TRUE(
        StringUtils::replaceAll(text, std::u32string_view(text).substr(0, 1), std::u32string_view(text).substr(1, 1)));
    EXPECT_EQ(text, U"bbbb");
}

TEST(ReplaceAllTest, CopesWithAMillionOccurrences)
{
    std::u32string text(1000000, U'a');
    EXPECT_TRUE(StringUtils::replaceAll(text, U"a", U"bc"));
    EXPECT_EQ(text.size(), 2000000u);
}

struct Pieces
{
    const char* name;
    std::string text;
    char delimiter;
    std::vector<std::string> pieces;
};

class TokenizeString : public testing::TestWithParam<Pieces>
{};

TEST_P(TokenizeString, KeepsEmptyPieces)
{
    EXPECT_EQ(StringUtils::tokenizeString(GetParam().text, GetParam().delimiter), GetParam().pieces);
}

const Pieces pieces[] = {
    {"Empty", "", ';', {""}},
    {"NoDelimiter", "abc", ';', {"abc"}},
    {"Two", "a;b", ';', {"a", "b"}},
    {"OnlyDelimiter", ";", ';', {"", ""}},
    {"AtTheBeginning", ";a", ';', {"", "a"}},
    {"AtTheEnd", "a;", ';', {"a", ""}},
    {"InARow", "a;;b", ';', {"a", "", "b"}},
    {"Blanks", " a ; b ", ';', {" a ", " b "}},
    {"Quotes", "W/\"abc\"", '"', {"W/", "abc", ""}},
    {"ZeroByte", "a\0b"s, '\0', {"a", "b"}},
    {"ZeroByteInPiece", "a\0b;c"s, ';', {"a\0b"s, "c"}},
    {"HighByte",
     "a\xFF"
     "b",
     '\xFF',
     {"a", "b"}},
};
INSTANTIATE_TEST_SUITE_P(Rows, TokenizeString, testing::ValuesIn(pieces),
                         [](const auto& row) { return row.param.name; });

TEST(RemoveAllOf, DropsTheListedBytes)
{
    EXPECT_EQ(StringUtils::removeAllOf("{1-2-3}", "{}-"), "123");
    EXPECT_EQ(StringUtils::removeAllOf("abc", ""), "abc");
    EXPECT_EQ(StringUtils::removeAllOf("", "abc"), "");
    EXPECT_EQ(StringUtils::removeAllOf("aaa", "a"), "");
    EXPECT_EQ(StringUtils::removeAllOf("abc", "xyz"), "abc");
    EXPECT_EQ(StringUtils::removeAllOf("a\0b\xFF"s, "\0\xFF"s), "ab");
}

TEST(Trimmed, DropsTheListedBytesAtBothEnds)
{
    EXPECT_EQ(StringUtils::trimmed(" \ta b\t "), "a b");
    EXPECT_EQ(StringUtils::trimmed("a\n"), "a\n");
    EXPECT_EQ(StringUtils::trimmed("\r\na b\n", "\r\n"), "a b");
    EXPECT_EQ(StringUtils::trimmed(" a ", ""), " a ");
    EXPECT_EQ(StringUtils::trimmed(" \t "), "");
    EXPECT_EQ(StringUtils::trimmed(""), "");
}

struct Prefix
{
    const char* name;
    std::string text;
    std::string prefix;
    bool starts;
};

class IStartsWith : public testing::TestWithParam<Prefix>
{};

TEST_P(IStartsWith, IgnoresLetterCase)
{
    EXPECT_EQ(StringUtils::iStartsWith(GetParam().text, GetParam().prefix), GetParam().starts);
}

const Prefix prefixes[] = {
    {"Same", "abc", "abc", true},
    {"OtherCase", "HTTP://x", "http://", true},
    {"OtherCaseInPrefix", "http://x", "HTTP://", true},
    {"EmptyPrefix", "abc", "", true},
    {"BothEmpty", "", "", true},
    {"EmptyText", "", "a", false},
    {"Longer", "ab", "abc", false},
    {"Inside", "xabc", "abc", false},
    {"Umlaut",
     "\xC3\x9C"
     "BER",
     "\xC3\xBC"
     "b",
     true},
    {"FinalSigma", "\xCE\xA3\xCE\x9F\xCE\xA3", "\xCF\x83\xCE\xBF\xCF\x83", true},
    {"LettersThatGrow",
     "\xC8\xBA"
     "x",
     "\xE2\xB1\xA5", true},
    {"BytesThatAreNotUtf8",
     "\xFF"
     "A",
     "\xFF"
     "a",
     true},
    {"ZeroByte", "A\0B"s, "a\0b"s, true},
    {"ZeroByteDiffers", "A\0B"s, "a\0c"s, false},
};
INSTANTIATE_TEST_SUITE_P(Rows, IStartsWith, testing::ValuesIn(prefixes),
                         [](const auto& row) { return row.param.name; });

}  // namespace
