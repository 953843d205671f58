#include "host/catalog/Properties.h"

#include <gtest/gtest.h>

using VelkHost::parseProperties;

namespace {

struct PropertiesCase
{
    const char* name;
    std::string text;
    std::string described;  // "key=value|key=value", sorted by key
};

const PropertiesCase propertiesCases[] = {
    {"Nothing", "", ""},
    {"Plain", "a=b", "a=b"},
    // Separators
    {"Colon", "a:b", "a=b"},
    {"Blank", "a b", "a=b"},
    {"Tab", "a\tb", "a=b"},
    {"BlanksAroundSeparator", "  a \t=  b ", "a=b "},
    {"OnlyFirstSeparatorCounts", "a==b", "a==b"},
    {"BlankThenColon", "a : b:c", "a=b:c"},
    {"NoValue", "a", "a="},
    {"NoKey", "=b", "=b"},
    {"EscapedSeparators", "a\\=b\\:c\\ d=e", "a=b:c d=e"},
    // Lines
    {"ThreeKindsOfLineEnds", "a=1\nb=2\rc=3\r\nd=4", "a=1|b=2|c=3|d=4"},
    {"BlankLines", "\n\n a=1\n \t\f\n\nb=2\n", "a=1|b=2"},
    {"Comments", "#a=1\n!b=2\n  # c=3\nd=4 # text", "d=4 # text"},
    {"CommentsDoNotGoOn", "# a \\\nb=1", "b=1"},
    {"Continuation", "a=one \\\n   two", "a=one two"},
    {"ContinuationOfKey", "a\\\n  b=1", "ab=1"},
    {"ContinuationWithCrLf", "a=1\\\r\n2", "a=12"},
    {"EvenBackslashesDoNotGoOn", "a=1\\\\\nb=2", "a=1\\|b=2"},
    {"ContinuationAtEnd", "a=1\\", "a=1"},
    {"CommentSignInContinuation", "a=1\\\n#2", "a=1#2"},
    // Values
    {"LastOneWins", "a=1\na=2", "a=2"},
    {"Latin1", "a=B\xFCro", "a=B\xC3\xBCro"},
    {"Unicode", "a=\\u0421\\u0442\\u043e\\u043B", "a=\xD0\xA1\xD1\x82\xD0\xBE\xD0\xBB"},
    {"UnicodeInKey", "\\u0061=b", "a=b"},
    {"SurrogatePair", "a=\\uD83E\\uDE91", "a=\xF0\x9F\xAA\x91"},
    {"LoneSurrogates", "a=\\uDE91x\\uD83E", "a=\xEF\xBF\xBDx\xEF\xBF\xBD"},
    {"ShortUnicode", "a=\\u12", "a=u12"},
    {"BadUnicode", "a=\\u12g4", "a=u12g4"},
    {"SignIsNoDigit", "a=\\u-123", "a=u-123"},
    {"Controls", "a=\\t\\q\\\\", "a=\tq\\"},
    {"EscapedLineBreakOnlyText", "a=x\\ny", "a=x\ny"},
};

class ParseProperties : public testing::TestWithParam<PropertiesCase>
{};

TEST_P(ParseProperties, Gives)
{
    std::string described;
    for (const auto& [key, value] : parseProperties(GetParam().text))
        described += (described.empty() ? "" : "|") + key + "=" + value;
    EXPECT_EQ(described, GetParam().described);
}

INSTANTIATE_TEST_SUITE_P(Format, ParseProperties, testing::ValuesIn(propertiesCases),
                         [](const auto& row) { return std::string(row.param.name); });

TEST(Properties, PassOverZeroBytes)
{
    EXPECT_EQ(parseProperties(std::string("a=b\0c", 5)).at("a"), std::string("b\0c", 3));
}

TEST(Properties, TakeTimeInProportionToTheText)
{
    const std::size_t lines = 200'000;
    std::string text = "a=";
    for (std::size_t i = 0; i < lines; ++i)
        text += "\\\n";
    EXPECT_EQ(parseProperties(text + "b").at("a"), "b");
    EXPECT_EQ(parseProperties("a=" + std::string(lines, '\\')).at("a"), std::string(lines / 2, '\\'));
}

}  // namespace
