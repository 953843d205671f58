#include <VelkLibrary/Filter/FilterFile.h>

#include "FilterTest.h"

#include <gmock/gmock.h>

#include <filesystem>
#include <thread>

namespace {

using Library::DataFileFault;
using Library::DataFileValue;
using test::describe;
using test::filterText;
using testing::ElementsAre;
using testing::IsEmpty;

/// A value and its file, which is not the manager's.
class FilterFileValue : public test::FilterTest
{
protected:
    ~FilterFileValue() override
    {
        EXPECT_THAT(messages(), IsEmpty()) << "a value reports to its caller only";
        EXPECT_THAT(assertions(), IsEmpty());
        EXPECT_THAT(filters(), IsEmpty()) << "the manager is not involved";
    }

    fileString path() const { return folder() / U"filters.json"; }
    void write(const std::string& text) const { test::writeFile(path(), text); }
};

const std::string first = filterText("A", 1, "\"x\"");
const std::string last = filterText("B", 2, "\"y\", \"z\"");

// ---- Reading -------------------------------------------------------------------------------------

TEST_F(FilterFileValue, IsReadInTheReverseOfTheFile)
{
    write("{\"Current_Filter\": 2, " + first + ", " + last + "}");
    FilterFile file;
    file.filters = {{"before", 9, {}}};
    EXPECT_TRUE(file.read(path()));
    EXPECT_EQ(file.currentId, 2);
    EXPECT_THAT(describe(file.filters), ElementsAre("2 B [y, z]", "1 A [x]"));
}

TEST_F(FilterFileValue, IsEmptyWithoutAFile)
{
    FilterFile file{7, {{"before", 9, {}}}};
    const Library::DataFileResult result = file.read(path());
    EXPECT_FALSE(result);
    EXPECT_EQ(result.fault, DataFileFault::Missing);
    EXPECT_EQ(file.currentId, -1);
    EXPECT_THAT(file.filters, IsEmpty());
}

TEST_F(FilterFileValue, IsNotReadFromAFolder)
{
    std::filesystem::create_directory(path().utf8());
    EXPECT_EQ(FilterFile().read(path()).fault, DataFileFault::Unreadable);
}

struct FaultCase
{
    const char* name;
    std::string text;
    DataFileFault fault;
    const char* member;
    DataFileValue expected;
    std::vector<std::string> filters;  ///< those that were read before the fault
    long current;
};

void PrintTo(const FaultCase& row, std::ostream* out)
{
    *out << row.text;
}

// A faulty filter between A and B: B is read before it, A after it.
std::string withMiddle(const std::string& filter)
{
    return "{\"Current_Filter\": 7, " + first + ", \"Filter\": " + filter + ", " + last + "}";
}

constexpr auto wrong = DataFileFault::WrongMember;
constexpr auto none = DataFileFault::NotAnObject;

// clang-format off
const FaultCase faultCases[] = {
    {"Empty",      "",         none, "", DataFileValue::Object, {}, -1},
    {"Torn",       "{" + first,    none, "", DataFileValue::Object, {}, -1},
    {"List",       "[]",       none, "", DataFileValue::Object, {}, -1},
    {"Current",    "{\"Current_Filter\": \"5\", " + first + "}",
                   wrong, "\"Current_Filter\"", DataFileValue::Integer, {}, -1},
    {"Filter",     withMiddle("5"),
                   wrong, "\"Filter\"", DataFileValue::Object, {"2 B [y, z]"}, 7},
    {"Name",       withMiddle(R"({"Filter_Name": 1, "Filter_Id": 3, "Database_Ids": []})"),
                   wrong, "\"Filter\".\"Filter_Name\"", DataFileValue::Text, {"2 B [y, z]"}, 7},
    {"Id",         withMiddle(R"({"Filter_Name": "C", "Filter_Id": 3.0, "Database_Ids": []})"),
                   wrong, "\"Filter\".\"Filter_Id\"", DataFileValue::Integer, {"2 B [y, z]"}, 7},
    {"Databases",  withMiddle(R"({"Filter_Name": "C", "Filter_Id": 3, "Database_Ids": "x"})"),
                   wrong, "\"Filter\".\"Database_Ids\"", DataFileValue::List, {"2 B [y, z]"}, 7},
    {"NoDatabases", withMiddle(R"({"Filter_Name": "C", "Filter_Id": 3})"),
                   wrong, "\"Filter\".\"Database_Ids\"", DataFileValue::List, {"2 B [y, z]"}, 7},
    {"Database",   withMiddle(R"({"Filter_Name": "C", "Filter_Id": 3, "Database_Ids": ["x", 5]})"),
                   wrong, "\"Filter\".\"Database_Ids\"", DataFileValue::Text, {"2 B [y, z]"}, 7},
};
// clang-format on

class DamagedFilterFile : public FilterFileValue, public testing::WithParamInterface<FaultCase>
{};

TEST_P(DamagedFilterFile, SaysWhatIsWrongAndKeepsWhatStoodBefore)
{
    write(GetParam().text);
    FilterFile file;
    const Library::DataFileResult result = file.read(path());
    EXPECT_FALSE(result);
    EXPECT_EQ(result.fault, GetParam().fault);
    EXPECT_EQ(result.member, GetParam().member);
    EXPECT_EQ(result.expected, GetParam().expected);
    EXPECT_EQ(describe(file.filters), GetParam().filters);
    EXPECT_EQ(file.currentId, GetParam().current);
}

INSTANTIATE_TEST_SUITE_P(Texts, DamagedFilterFile, testing::ValuesIn(faultCases),
                         [](const auto& row) { return std::string(row.param.name); });

// ---- Writing -------------------------------------------------------------------------------------

TEST_F(FilterFileValue, IsWrittenInItsOrder)
{
    EXPECT_TRUE((FilterFile{2, {{"A", 1, {"x"}}, {"B", 2, {}}}}.write(path())));
    FilterFile file;
    EXPECT_TRUE(file.read(path()));
    EXPECT_EQ(file.currentId, 2);
    EXPECT_THAT(describe(file.filters), ElementsAre("2 B []", "1 A [x]")) << "read in reverse";
}

TEST_F(FilterFileValue, IsWrittenWithoutFilters)
{
    EXPECT_TRUE((FilterFile{5, {}}.write(path())));
    FilterFile file;
    EXPECT_TRUE(file.read(path()));
    EXPECT_EQ(file.currentId, 5);
    EXPECT_THAT(file.filters, IsEmpty());
}

TEST_F(FilterFileValue, MayBeChangedByEveryoneOnceWritten)
{
    EXPECT_TRUE(FilterFile().write(path()));
    using std::filesystem::perms;
    const perms everyone = perms::others_read | perms::others_write;
    EXPECT_EQ(std::filesystem::status(path().utf8()).permissions() & everyone, everyone);
}

TEST_F(FilterFileValue, SaysThatItMayNotReplaceWhatIsThere)
{
    std::filesystem::create_directory(path().utf8());
    EXPECT_EQ(FilterFile().write(path()).fault, DataFileFault::MayNotBeWritten);
}

TEST_F(FilterFileValue, SaysThatItCouldNotBeWritten)
{
    EXPECT_EQ(FilterFile().write(folder() / U"none" / U"filters.json").fault, DataFileFault::NotWritten);
}

TEST_F(FilterFileValue, WithAnIdThatNoReaderAcceptsIsNotWritten)
{
    if constexpr (sizeof(long) > 4) {
        write("old");
        EXPECT_EQ((FilterFile{-1, {{"A", 1L << 40, {}}}}.write(path()).fault), DataFileFault::NotRepresentable);
        EXPECT_EQ(test::readFile(path()), "old");
    }
}

// ---- Merging -------------------------------------------------------------------------------------

TEST_F(FilterFileValue, TakesOverWhatItDoesNotHave)
{
    FilterFile file{2, {{"Baths", 0, {"x"}}, {"Halls", 2, {"y"}}}};
    EXPECT_EQ(file.merge({{"Halls", 7, {"y"}}, {"Baths", 0, {"z"}}, {"Doors", 2, {}}, {"Doors", 5, {}}}), 2U);
    EXPECT_EQ(file.currentId, 2);
    EXPECT_THAT(describe(file.filters), ElementsAre("0 Baths [x]", "2 Halls [y]", "1 Baths 1 [z]", "3 Doors []"));
    const std::vector<LibraryFilter> own = file.filters;
    EXPECT_EQ(file.merge(own), 0U);
}

// ---- Threads -------------------------------------------------------------------------------------

TEST_F(FilterFileValue, NeedsNothingThatThreadsShare)
{
    constexpr int rounds = 50;
    const auto use = [&](const std::u32string& name) {
        const fileString own = folder() / name;
        for (long id = 0; id < rounds; ++id) {
            FilterFile file;
            EXPECT_TRUE((FilterFile{id, {{"A", id, {"x"}}}}.write(own)));
            EXPECT_TRUE(file.read(own));
            EXPECT_EQ(file.currentId, id);
        }
    };
    std::jthread one(use, U"first.json");
    std::jthread other(use, U"second.json");
}

}  // namespace
