#include "host/catalog/CsvText.h"

#include <gtest/gtest.h>

using VelkHost::csvDelimiter;
using VelkHost::CsvError;
using VelkHost::CsvRow;
using VelkHost::parseCsv;

namespace {

struct CsvCase
{
    const char* name;
    std::string text;
    std::string described;  // "line:cell|cell" per record, separated by " / "
};

const CsvCase csvCases[] = {
    {"Nothing", "", ""},
    {"OneCell", "a", "1:a"},
    {"EmptyCells", ",", "1:|"},
    {"Cells", "a,b,c", "1:a|b|c"},
    {"Records", "a,b\nc,d\n", "1:a|b / 2:c|d"},
    {"ThreeKindsOfLineEnds", "a\rb\r\nc\nd", "1:a / 2:b / 3:c / 4:d"},
    {"EmptyLines", "\na\n\n\nb\n\n", "2:a / 5:b"},
    {"Quoted", "\"a,b\",c", "1:a,b|c"},
    {"DoubledQuote", "\"24\"\" cabinet\",x", "1:24\" cabinet|x"},
    {"OnlyDoubledQuote", "\"\"\"\"", "1:\""},
    {"EmptyQuoted", "\"\",b", "1:|b"},
    {"LineBreakInQuotes", "\"a\nb\"\nc", "1:a\nb / 3:c"},
    {"CrLfInQuotes", "\"a\r\nb\"\nc", "1:a\r\nb / 3:c"},
    {"CrInQuotes", "\"a\rb\"\nc", "1:a\rb / 3:c"},
    {"BlanksAroundQuotes", " \"a\" , b", "1:a| b"},
    {"QuoteInsideIsText", "24\" cabinet,6'8\" door", "1:24\" cabinet|6'8\" door"},
};

std::string describe(const std::vector<CsvRow>& rows)
{
    std::string text;
    for (const CsvRow& row : rows) {
        text += (text.empty() ? "" : " / ") + std::to_string(row.line) + ":";
        for (std::size_t i = 0; i < row.cells.size(); ++i)
            text += (i == 0 ? "" : "|") + row.cells[i];
    }
    return text;
}

class ParseCsv : public testing::TestWithParam<CsvCase>
{};

TEST_P(ParseCsv, Gives)
{
    EXPECT_EQ(describe(parseCsv(GetParam().text, ',')), GetParam().described);
}

INSTANTIATE_TEST_SUITE_P(Format, ParseCsv, testing::ValuesIn(csvCases),
                         [](const auto& row) { return std::string(row.param.name); });

const CsvCase badCases[] = {
    {"OpenQuote", "a\n\"b\nc", "line 2: a quote is opened and not closed"},
    {"LoneQuote", "\"", "line 1: a quote is opened and not closed"},
    {"TextAfterQuote", "a\n\"b\"c", "line 2: text after a closing quote; a quote in a quoted cell is written twice"},
    {"ManyCells", std::string(1'000, ','), "line 1: more than 1,000 cells"},
    {"LongCell", std::string((1 << 20) + 1, 'x'), "line 1: a cell of more than 1 MiB"},
    {"LongQuotedCell", "\"" + std::string((1 << 20) + 1, 'x') + "\"", "line 1: a cell of more than 1 MiB"},
};

class RefuseCsv : public testing::TestWithParam<CsvCase>
{};

TEST_P(RefuseCsv, Says)
{
    try {
        parseCsv(GetParam().text, ',');
        FAIL() << "nothing was refused";
    } catch (const CsvError& error) {
        EXPECT_EQ(std::string(error.what()), GetParam().described);
    }
}

INSTANTIATE_TEST_SUITE_P(Format, RefuseCsv, testing::ValuesIn(badCases),
                         [](const auto& row) { return std::string(row.param.name); });

TEST(CsvDelimiter, IsTheOneOfTheFirstLine)
{
    EXPECT_EQ(csvDelimiter("name"), ',');
    EXPECT_EQ(csvDelimiter(""), ',');
    EXPECT_EQ(csvDelimiter("name,id\na;b;c;d"), ',');
    EXPECT_EQ(csvDelimiter("name;id;keywords"), ';');
    EXPECT_EQ(csvDelimiter("name\tid"), '\t');
    EXPECT_EQ(csvDelimiter("\"a;b;c\",id"), ',');
    EXPECT_EQ(csvDelimiter("a,b;c"), ',');
}

TEST(CsvText, TakesTheDelimiterGiven)
{
    EXPECT_EQ(describe(parseCsv("a,b;c\td", ';')), "1:a,b|c\td");
    EXPECT_EQ(describe(parseCsv("a,b;c\td", '\t')), "1:a,b;c|d");
}

}  // namespace
