#include "host/catalog/CleanText.h"

#include "host/catalog/Catalog.h"

#include <gtest/gtest.h>

using VelkHost::cleanText;
using VelkHost::joinKeywords;

namespace {

struct CleanCase
{
    const char* name;
    std::string text;
    std::string clean;
};

const CleanCase cleanCases[] = {
    {"Plain", "Office chair", "Office chair"},
    {"Empty", "", ""},
    {"OnlyBlanks", " \t\n ", ""},
    {"BlanksAtEnds", "  a b  ", "a b"},
    {"RunsOfBlanks", "a  \t b", "a b"},
    {"NoBreakSpace",
     "a\xC2\xA0"
     "b",
     "a b"},
    {"LineBreaks", "a\r\nb\nc", "a b c"},
    {"ZeroByte", std::string("a\0b", 3), "a b"},
    {"Escape", "a\x1B[31mb", "a [31mb"},
    {"Delete",
     "a\x7F"
     "b",
     "a b"},
    {"C1Control",
     "a\xC2\x9B"
     "b",
     "a b"},
    {"LineSeparator",
     "a\xE2\x80\xA8"
     "b",
     "a b"},
    {"DirectionOverride",
     "a\xE2\x80\xAE"
     "b",
     "a b"},
    {"Malformed",
     "a\xFF"
     "b",
     "a\xEF\xBF\xBD"
     "b"},
    {"NonAscii", "\xC3\x89l\xC3\xA9phant \xE6\xA4\x85", "\xC3\x89l\xC3\xA9phant \xE6\xA4\x85"},
    {"Cut", "1234567890123456", "1234567890123"},
    {"CutBehindBlank", "123456789012 3456", "123456789012"},
    {"CutByCodePoint", "123456789012\xC3\xA9\xC3\xA9", "123456789012\xC3\xA9"},
};

class CleanText : public testing::TestWithParam<CleanCase>
{};

TEST_P(CleanText, Gives)
{
    constexpr std::size_t maximum = 13;
    EXPECT_EQ(cleanText(GetParam().text, maximum), GetParam().clean);
}

INSTANTIATE_TEST_SUITE_P(Rules, CleanText, testing::ValuesIn(cleanCases),
                         [](const auto& row) { return std::string(row.param.name); });

TEST(JoinKeywords, DropsEmptyAndRepeatedOnes)
{
    EXPECT_EQ(joinKeywords({"Seat,  Oak ,, seat", "OAK,Desk"}), "Seat, Oak, Desk");
    EXPECT_EQ(joinKeywords({}), "");
    EXPECT_EQ(joinKeywords({" , ,"}), "");
}

TEST(JoinKeywords, StaysWithinItsLimit)
{
    std::string many;
    for (int i = 0; many.size() < 2 * VelkHost::limits::keywordBytes; ++i)
        many += "keyword" + std::to_string(i) + ",";
    const std::string joined = joinKeywords({many, many});
    EXPECT_LE(joined.size(), VelkHost::limits::keywordBytes);
    EXPECT_GT(joined.size(), VelkHost::limits::keywordBytes / 2);
}

}  // namespace
