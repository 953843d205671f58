#include <VelkLibrary/LibraryFilterManager.h>

#include "FilterTest.h"
#include "support/Numbers.h"

#include <gmock/gmock.h>

#include <filesystem>

namespace {

using test::filterText;
using testing::ElementsAre;
using testing::IsEmpty;

class SavedFilters : public test::FilterTest
{
protected:
    static void write(const std::string& text) { test::writeFile(filterFile(), text); }
};

// ---- Writing -------------------------------------------------------------------------------------

TEST_F(SavedFilters, HasABareName)
{
    EXPECT_EQ(manager().getFilterFilename(), fileString(std::string("catalog_filters.json")));
}

TEST_F(SavedFilters, IsWrittenInTheOrderOfTheList)
{
    manager().setLibraryFilters({{"Kitchens", 1, {"lib-core-kitchen", "lib-user-7"}}, {"Baths", 2, {}}});
    manager().setCurrentFilterId(2);
    manager().saveFilters();
    EXPECT_EQ(test::readFile(filterFile()), R"({
    "Current_Filter": 2,
    "Filter": {
        "Filter_Name": "Kitchens",
        "Filter_Id": 1,
        "Database_Ids": [
            "lib-core-kitchen",
            "lib-user-7"
        ]
    },
    "Filter": {
        "Filter_Name": "Baths",
        "Filter_Id": 2,
        "Database_Ids": []
    }
}
)");
    EXPECT_TRUE(messages().empty());
    EXPECT_TRUE(assertions().empty());
}

TEST_F(SavedFilters, IsNotWrittenByAnEmptyList)
{
    manager().saveFilters();
    EXPECT_FALSE(filterFile().pathExists());
    write("left as it is");
    manager().saveFilters();
    EXPECT_EQ(test::readFile(filterFile()), "left as it is");
}

TEST_F(SavedFilters, IsOnlyWrittenWhenAskedFor)
{
    manager().setLibraryFilters({{"A", 1, {"x"}}});
    manager().setCurrentFilterId(1);
    manager().removeIdFromLibraryFilters("x");
    EXPECT_FALSE(filterFile().pathExists());
}

TEST_F(SavedFilters, MayBeChangedByEveryone)
{
    manager().setLibraryFilters({{"A", 1, {}}});
    manager().saveFilters();
    using std::filesystem::perms;
    const perms everyone = perms::others_read | perms::others_write;
    EXPECT_EQ(std::filesystem::status(filterFile().utf8()).permissions() & everyone, everyone);
}

TEST_F(SavedFilters, ThatCannotBeMadeIsReported)
{
    std::filesystem::remove_all(PathUtils::getObject().getCoreLibraryDatabasePath().utf8());
    manager().setLibraryFilters({{"A", 1, {}}});
    manager().saveFilters();
    expectReport(test::reportLine::filtersNotWritten, "Error Writing Library Filter Data File");
}

TEST_F(SavedFilters, WithAnIdOfMoreThan32BitsIsReportedAndLeft)
{
    if constexpr (sizeof(long) > 4) {
        write("old");
        manager().setLibraryFilters({{"A", 1L << 40, {}}});
        manager().saveFilters();
        expectReport(test::reportLine::filtersNotWritten, "Error Writing Library Filter Data File");
        EXPECT_EQ(test::readFile(filterFile()), "old");
    }
}

// A folder in the place of the file cannot be replaced with a file.
TEST_F(SavedFilters, ThatMayNotBeWrittenIsAMessage)
{
    std::filesystem::create_directory(filterFile().utf8());
    manager().setLibraryFilters({{"A", 1, {}}});
    manager().saveFilters();
    ASSERT_EQ(messages().size(), 1U);
    const test::Message message = messages().front();
    EXPECT_EQ(message.sourceFile, "LibraryFilterManager");
    EXPECT_EQ(message.line, test::reportLine::filtersUnwritable);
    EXPECT_EQ(message.id, test::messageId::fileUnwritable);
    EXPECT_EQ(message.trait.severity, error::Severity::Error);
    EXPECT_EQ(message.trait.buttons, error::Buttons::Ok);
    EXPECT_EQ(message.text, filterFile().unicodeString());
    EXPECT_EQ(message.detail1, U"");
    EXPECT_EQ(message.detail2, U"");
    EXPECT_TRUE(assertions().empty());
}

// ---- Reading -------------------------------------------------------------------------------------

TEST_F(SavedFilters, LoadsInReverseAndIsSavedSo)
{
    write("{\"Current_Filter\": 2, " + filterText("A", 1, "\"x\"") + ", " + filterText("B", 2, "") + ", " +
          filterText("C", 3, "\"y\", \"z\"") + "}");
    load(filterFile());
    EXPECT_THAT(filters(), ElementsAre("3 C [y, z]", "2 B []", "1 A [x]"));
    EXPECT_EQ(manager().getCurrentFilterId(), 2);
    load(filterFile());
    EXPECT_THAT(filters(), ElementsAre("1 A [x]", "2 B []", "3 C [y, z]"));
    EXPECT_TRUE(assertions().empty());
}

struct FileCase
{
    const char* name;
    std::string text;
    std::vector<std::string> filters;
    long current;
    bool reported;
};

void PrintTo(const FileCase& row, std::ostream* out)
{
    *out << row.text;
}

class LoadedFilters : public SavedFilters, public testing::WithParamInterface<FileCase>
{};

TEST_P(LoadedFilters, AreReadAs)
{
    write(GetParam().text);
    load(filterFile());
    EXPECT_EQ(filters(), GetParam().filters);
    EXPECT_EQ(manager().getCurrentFilterId(), GetParam().current);
    if (GetParam().reported)
        expectReport(test::reportLine::filtersUnreadable, "Error Parsing Library Filter Data File");
    EXPECT_EQ(assertions().size(), GetParam().reported ? 1U : 0U);
    EXPECT_TRUE(messages().empty());
}

const std::string a = filterText("A", 1, "\"x\"");
const std::string b = filterText("B", 2, "\"y\"");

// A faulty filter between A and B: B is read before it, A after it.
std::string between(const std::string& filter)
{
    return "{\"Current_Filter\": 7, " + a + ", \"Filter\": " + filter + ", " + b + "}";
}

// clang-format off
const FileCase files[] = {
    // Not a document, or not one of filters
    {"Empty",             "",                             {}, -1, false},
    {"Blank",             " \n",                          {}, -1, false},
    {"NoJson",            "{\"Current_Filter\": 1",       {}, -1, false},
    {"Garbage",           "{} x",                         {}, -1, false},
    {"WideInteger",       "{\"Current_Filter\": 4294967296}", {}, -1, false},
    {"Array",             "[" + a.substr(10) + "]",       {}, -1, false},
    {"Number",            "12",                           {}, -1, false},
    {"Null",              "null",                         {}, -1, false},
    {"EmptyObject",       "{}",                           {}, -1, false},
    {"TooDeep",           "{\"a\":" + std::string(600, '[') + std::string(600, ']') + "}", {}, -1, false},
    // The current filter
    {"NoCurrent",         "{" + a + "}",                  {"1 A [x]"}, -1, false},
    {"OnlyCurrent",       "{\"Current_Filter\": 5}",      {}, 5, false},
    {"CurrentLast",       "{" + a + ", \"Current_Filter\": -3}", {"1 A [x]"}, -3, false},
    {"CurrentReal",       "{\"Current_Filter\": 5.0, " + a + "}",   {}, -1, true},
    {"CurrentText",       "{\"Current_Filter\": \"5\", " + a + "}", {}, -1, true},
    {"CurrentNull",       "{\"Current_Filter\": null, " + a + "}",  {}, -1, true},
    // Filters that are dropped
    {"EmptyName",         between(R"({"Filter_Name": "", "Filter_Id": 3, "Database_Ids": []})"),
                          {"2 B [y]", "1 A [x]"}, 7, false},
    {"NoName",            between(R"({"Filter_Id": 3, "Database_Ids": []})"), {"2 B [y]", "1 A [x]"}, 7, false},
    {"NoId",              between(R"({"Filter_Name": "C", "Database_Ids": []})"), {"2 B [y]", "1 A [x]"}, 7, false},
    {"IdMinusOne",        between(R"({"Filter_Name": "C", "Filter_Id": -1, "Database_Ids": []})"),
                          {"2 B [y]", "1 A [x]"}, 7, false},
    // Filters that are odd and kept
    {"SameIdAndName",     "{" + a + ", " + a + "}",       {"1 A [x]", "1 A [x]"}, -1, false},
    {"NegativeId",        "{" + filterText("A", -2, "") + "}", {"-2 A []"}, -1, false},
    {"EqualAndEmptyIds",  "{" + filterText("A", 1, "\"x\", \"\", \"x\"") + "}", {"1 A [x, , x]"}, -1, false},
    {"EscapedTexts",      "{" + filterText("\\u00e9", 1, "\"\\\"\"") + "}", {"1 \xC3\xA9 [\"]"}, -1, false},
    {"FurtherMembers",    "{\"More\": [1], " + filterText("A", 1, "").substr(0, 11) + "\"More\": 1, " +
                          filterText("A", 1, "").substr(11) + "}", {"1 A []"}, -1, false},
    // Filters that end the reading
    {"IdReal",            between(R"({"Filter_Name": "C", "Filter_Id": 3.0, "Database_Ids": []})"), {"2 B [y]"}, 7, true},
    {"IdText",            between(R"({"Filter_Name": "C", "Filter_Id": "3", "Database_Ids": []})"), {"2 B [y]"}, 7, true},
    {"NameNumber",        between(R"({"Filter_Name": 3, "Filter_Id": 3, "Database_Ids": []})"), {"2 B [y]"}, 7, true},
    {"NameNull",          between(R"({"Filter_Name": null, "Filter_Id": 3, "Database_Ids": []})"), {"2 B [y]"}, 7, true},
    {"NoDatabases",       between(R"({"Filter_Name": "C", "Filter_Id": 3})"), {"2 B [y]"}, 7, true},
    {"DatabasesNoArray",  between(R"({"Filter_Name": "C", "Filter_Id": 3, "Database_Ids": "x"})"), {"2 B [y]"}, 7, true},
    {"DatabaseNumber",    between(R"({"Filter_Name": "C", "Filter_Id": 3, "Database_Ids": ["x", 3]})"), {"2 B [y]"}, 7, true},
    {"FilterNumber",      between("3"),                   {"2 B [y]"}, 7, true},
    {"FilterArray",       between("[]"),                  {"2 B [y]"}, 7, true},
    {"DroppedAndWrong",   between(R"({"Filter_Name": "", "Filter_Id": 3})"), {"2 B [y]"}, 7, true},
};
// clang-format on

INSTANTIATE_TEST_SUITE_P(Texts, LoadedFilters, testing::ValuesIn(files),
                         [](const auto& row) { return std::string(row.param.name); });

// A file that cannot be read must not count as empty without a report.
TEST_F(SavedFilters, ThatIsAFolderCountsAsUnreadable)
{
    std::filesystem::create_directory(filterFile().utf8());
    EXPECT_FALSE(manager().mergeFilters(filterFile()));
    ASSERT_EQ(assertions().size(), 1U);
    EXPECT_EQ(assertions().front().line, test::reportLine::filtersUnreadable);
}

TEST_F(SavedFilters, ReportsOnlyWhereReportsAreEnabled)
{
    Velk::HostServices host = services();
    host.assertionReportsEnabled = [] { return false; };
    Velk::installHost(std::move(host));
    write(R"({"Current_Filter": "5"})");
    load(filterFile());
    EXPECT_THAT(assertions(), IsEmpty());
}

TEST_F(SavedFilters, KeepsWhatIsWritten)
{
    const std::string odd("\0\"\\\n\xC3\xA9 \x7F", 9);
    manager().setLibraryFilters({{odd, -7, {odd, "", "b"}}, {"Z", 2147483647, {}}});
    manager().setCurrentFilterId(-2147483647 - 1);
    manager().saveFilters();
    const std::vector<std::string> written = filters();
    load(filterFile());
    EXPECT_THAT(filters(), ElementsAre(written[1], written[0]));
    EXPECT_EQ(manager().getCurrentFilterId(), -2147483647 - 1);
}

}  // namespace
