#include "host/service/SiteAnswer.h"

#include <gmock/gmock.h>

namespace VelkHost {
namespace {

struct RangeCase
{
    const char* name;
    const char* header;
    std::uint64_t size;
    const char* expected;  // "whole", "none", or "offset+length"
};

const RangeCase rangeCases[] = {
    {"NoHeader", "", 100, "whole"},
    {"OtherUnit", "items=0-1", 100, "whole"},
    {"UnitInCapitals", "Bytes=0-1", 100, "0+2"},
    {"Several", "bytes=0-1,5-6", 100, "whole"},
    {"First", "bytes=0-0", 100, "0+1"},
    {"Last", "bytes=99-99", 100, "99+1"},
    {"Open", "bytes=40-", 100, "40+60"},
    {"Suffix", "bytes=-40", 100, "60+40"},
    {"LongSuffix", "bytes=-400", 100, "0+100"},
    {"LongEnd", "bytes=40-99999999999999999999999", 100, "40+60"},
    {"LongStart", "bytes=99999999999999999999999-", 100, "none"},
    {"JustBehind", "bytes=100-", 100, "none"},
    {"Backwards", "bytes=5-2", 100, "none"},
    {"EmptySuffix", "bytes=-0", 100, "none"},
    {"OnlyADash", "bytes=-", 100, "none"},
    {"NoDash", "bytes=5", 100, "none"},
    {"Letters", "bytes=a-b", 100, "none"},
    {"Negative", "bytes=--5", 100, "none"},
    {"EmptyFile", "bytes=0-", 0, "none"},
    {"SuffixOfAnEmptyFile", "bytes=-5", 0, "none"},
};

class ByteRanges : public testing::TestWithParam<RangeCase>
{};

TEST_P(ByteRanges, AreRead)
{
    const ByteRange range = byteRange(GetParam().header, GetParam().size);
    const std::string text = range.kind == ByteRange::Kind::Whole ? "whole"
                             : range.kind == ByteRange::Kind::Unsatisfiable
                                 ? "none"
                                 : std::to_string(range.offset) + "+" + std::to_string(range.length);
    EXPECT_EQ(text, GetParam().expected);
}

INSTANTIATE_TEST_SUITE_P(Headers, ByteRanges, testing::ValuesIn(rangeCases),
                         [](const auto& row) { return std::string(row.param.name); });

TEST(NamesTag, ReadsListsOfTags)
{
    for (const char* list : {"\"a\"", " \"a\" ", "W/\"a\"", "\"x\",\"a\"", "\"a\", \"x\"", "*", " * "})
        EXPECT_TRUE(namesTag(list, "a")) << list;
    for (const char* list : {"", "\"\"", "a", "\"a", "a\"", "\"aa\"", "\"A\"", "w/\"a\"", ",", "\"x\" \"a\"", "**"})
        EXPECT_FALSE(namesTag(list, "a")) << list;
}

TEST(QueryArgument, TakesTheFirstOfAName)
{
    EXPECT_EQ(queryArgument("v=1&library=a%20b&product=p", "library"), "a%20b");
    EXPECT_EQ(queryArgument("LIBRARY=a", "library"), "a");
    EXPECT_EQ(queryArgument("library=a&library=b", "library"), "a");
    EXPECT_EQ(queryArgument("library=a=b", "library"), "a=b");
    for (const char* query : {"", "&", "&&", "library", "library=", "xlibrary=a", "librar=a", "v=library=a"})
        EXPECT_EQ(queryArgument(query, "library"), "") << query;
}

TEST(SiteEdition, AnswersFromItsTableAlone)
{
    SiteTable table;
    table.edition = 7;
    const std::string tag(40, 'a');
    table.libraries.emplace("A b.calib", SiteFile{tag + ".calib", tag, 10});
    const SiteEdition edition(table);
    EXPECT_EQ(edition.number(), 7U);
    const SiteAnswer found = edition.answer({"GET", "/catalog?library=a%20B.calib", "", "", ""});
    EXPECT_EQ(found.status, 200);
    EXPECT_EQ(found.file, tag + ".calib");
    EXPECT_EQ(found.length, 10U);
    EXPECT_EQ(edition.answer({"GET", "/catalog?library=none", "", "", ""}).status, 404);
    EXPECT_EQ(edition.answer({"GET", "/manufacturers", "", "", ""}).status, 404);
    EXPECT_EQ(edition.answer({"PUT", "/", "", "", ""}).status, 405);
    EXPECT_EQ(edition.answer({"GET", "", "", "", ""}).status, 404);
}

TEST(StoredName, IsADigestWithAnExtension)
{
    const std::string digest(40, '0');
    EXPECT_TRUE(isStoredName(digest + ".calib"));
    for (const std::string& name : {std::string(), digest, digest + ".", digest + ".c/d", digest + ".c.d",
                                    "../" + digest + ".calib", std::string(40, 'A') + ".calib", digest + "x.calib"})
        EXPECT_FALSE(isStoredName(name)) << name;
}

}  // namespace
}  // namespace VelkHost
