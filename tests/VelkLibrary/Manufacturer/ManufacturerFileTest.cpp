#include <VelkLibrary/Manufacturer/ManufacturerFile.h>

#include "ManufacturerTest.h"

#include <gmock/gmock.h>

#include <filesystem>
#include <thread>

namespace {

using Library::DataFileFault;
using Library::DataFileValue;
using test::describe;
using test::makeCard;
using test::timeOf;
using testing::IsEmpty;

/// A value and its file, which is not the manager's.
class ManufacturerFileValue : public test::ManufacturerTest
{
protected:
    ~ManufacturerFileValue() override
    {
        EXPECT_THAT(messages(), IsEmpty()) << "a value reports to its caller only";
        EXPECT_THAT(assertions(), IsEmpty());
        EXPECT_THAT(manager().getManufacturers(), IsEmpty()) << "the manager is not involved";
    }

    fileString path() const { return folder() / U"cards.json"; }
    void write(const std::string& text) const { test::writeFile(path(), text); }

    static void expectEmpty(const ManufacturerFile& file)
    {
        EXPECT_THAT(file.cards, IsEmpty());
        EXPECT_EQ(file.defaultText, U"");
        EXPECT_EQ(file.lastModified, timeOf("14000101T000000"));
    }
};

/// Holds cards that no file in these tests has.
ManufacturerFile usedFile()
{
    return {{{99, makeCard(U"before")}}, U"before", timeOf("20200101T000000")};
}

// ---- Reading -------------------------------------------------------------------------------------

TEST_F(ManufacturerFileValue, IsReadWhole)
{
    write(R"({"Version": "42", "Last_Modified": "20260301T140559", "Default_Text": "See the site",
              "Manufacturer_7": {"Id": 7, "Last_Modified": "20260101T000000", "Name": "Acme", "Url": "https://Acme",
                                 "Phone": "phone", "Fax": "fax", "Email": "e-mail", "Logo": "acme.png"}})");
    ManufacturerFile file = usedFile();
    EXPECT_TRUE(file.read(path()));
    EXPECT_EQ(file.defaultText, U"See the site");
    EXPECT_EQ(file.lastModified, timeOf("20260301T140559"));
    ASSERT_EQ(file.cards.size(), 1U);
    EXPECT_EQ(describe(file.cards.at(7)), describe(makeCard(U"Acme", U"acme.png")));
}

TEST_F(ManufacturerFileValue, IsEmptyWithoutAFile)
{
    ManufacturerFile file = usedFile();
    EXPECT_EQ(file.read(path()).fault, DataFileFault::Missing);
    expectEmpty(file);
}

TEST_F(ManufacturerFileValue, IsNotReadFromAFolder)
{
    std::filesystem::create_directory(path().utf8());
    ManufacturerFile file = usedFile();
    EXPECT_EQ(file.read(path()).fault, DataFileFault::Unreadable);
    expectEmpty(file);
}

struct FaultCase
{
    const char* name;
    std::string text;
    DataFileFault fault;
    const char* member;
    DataFileValue expected;
};

void PrintTo(const FaultCase& row, std::ostream* out)
{
    *out << row.text;
}

// A good card before one with this member.
std::string cardWith(const std::string& member)
{
    return R"({"Version": "42", "Default_Text": "text", "Manufacturer_1": {"Id": 1, "Name": "A"},
               "manufacturer_2": {"Id": 2, )" +
           member + "}}";
}

constexpr auto wrong = DataFileFault::WrongMember;
constexpr auto none = DataFileFault::NotAnObject;

// clang-format off
const FaultCase faultCases[] = {
    {"Empty",       "",      none,  "", DataFileValue::Object},
    {"Page",        "<html>", none, "", DataFileValue::Object},
    {"List",        "[]",    none,  "", DataFileValue::Object},
    {"FileTime",    R"({"Last_Modified": "yesterday"})",   wrong, "\"Last_Modified\"", DataFileValue::Time},
    {"FileTimeNumber", R"({"Last_Modified": 5})",          wrong, "\"Last_Modified\"", DataFileValue::Text},
    {"DefaultText", R"({"Default_Text": false})",          wrong, "\"Default_Text\"", DataFileValue::Text},
    {"Card",        R"({"Manufacturer_1": 5})",            wrong, "\"Manufacturer_1\"", DataFileValue::Object},
    {"Id",          R"({"Manufacturer_1": {"Id": "1"}})",  wrong, "\"Manufacturer_1\".\"Id\"", DataFileValue::Integer},
    {"Name",        cardWith(R"("Name": 5)"),              wrong, "\"manufacturer_2\".\"Name\"", DataFileValue::Text},
    {"Logo",        cardWith(R"("Logo": null)"),           wrong, "\"manufacturer_2\".\"Logo\"", DataFileValue::Text},
    {"Deleted",     cardWith(R"("Deleted": "no")"),        wrong, "\"manufacturer_2\".\"Deleted\"", DataFileValue::Boolean},
    {"Time",        cardWith(R"("Last_Modified": "x")"),   wrong, "\"manufacturer_2\".\"Last_Modified\"", DataFileValue::Time},
};
// clang-format on

class DamagedManufacturerFile : public ManufacturerFileValue, public testing::WithParamInterface<FaultCase>
{};

TEST_P(DamagedManufacturerFile, SaysWhatIsWrongAndIsEmpty)
{
    write(GetParam().text);
    ManufacturerFile file = usedFile();
    const Library::DataFileResult result = file.read(path());
    EXPECT_FALSE(result);
    EXPECT_EQ(result.fault, GetParam().fault);
    EXPECT_EQ(result.member, GetParam().member);
    EXPECT_EQ(result.expected, GetParam().expected);
    expectEmpty(file);
}

INSTANTIATE_TEST_SUITE_P(Texts, DamagedManufacturerFile, testing::ValuesIn(faultCases),
                         [](const auto& row) { return std::string(row.param.name); });

// ---- Writing -------------------------------------------------------------------------------------

TEST_F(ManufacturerFileValue, IsReadAsItWasWrittenExceptForTheTime)
{
    const ManufacturerFile written{{{-3, makeCard(U"A")}, {7, makeCard(U"B", U"b.png")}}, U"text", {}};
    const auto before = Library::getTimeNow();
    EXPECT_TRUE(written.write(path()));
    ManufacturerFile file;
    EXPECT_TRUE(file.read(path()));
    EXPECT_EQ(file.defaultText, U"text");
    EXPECT_GE(file.lastModified, before);
    ASSERT_EQ(file.cards.size(), 2U);
    EXPECT_EQ(describe(file.cards.at(-3)), describe(makeCard(U"A")));
    EXPECT_EQ(describe(file.cards.at(7)), describe(makeCard(U"B", U"b.png")));
}

TEST_F(ManufacturerFileValue, SaysWhyItWasNotWritten)
{
    EXPECT_EQ(ManufacturerFile().write(folder() / U"none" / U"cards.json").fault, DataFileFault::NotWritten);
    std::filesystem::create_directory(path().utf8());
    EXPECT_EQ(ManufacturerFile().write(path()).fault, DataFileFault::MayNotBeWritten);
}

TEST_F(ManufacturerFileValue, WithAnIdThatNoReaderAcceptsIsNotWritten)
{
    if constexpr (sizeof(long) > 4) {
        write("old");
        const ManufacturerFile file{{{1L << 40, makeCard(U"A")}}, {}, {}};
        EXPECT_EQ(file.write(path()).fault, DataFileFault::NotRepresentable);
        EXPECT_EQ(test::readFile(path()), "old");
    }
}

// ---- Changes -------------------------------------------------------------------------------------

TEST_F(ManufacturerFileValue, StampsWhatChanged)
{
    const ManufacturerFile::Cards before{{1, makeCard(U"A")}, {2, makeCard(U"B")}};
    ManufacturerFile::Cards cards{{1, makeCard(U"A")}, {2, makeCard(U"Other")}, {3, makeCard(U"New")}};
    ManufacturerFile::stampChanges(cards, before);
    EXPECT_EQ(cards.at(1).getLastModified(), timeOf("20260101T000000"));
    EXPECT_GT(cards.at(2).getLastModified(), timeOf("20260101T000000"));
    EXPECT_EQ(cards.at(3).getLastModified(), timeOf("20260101T000000"));
}

// ---- Threads -------------------------------------------------------------------------------------

TEST_F(ManufacturerFileValue, NeedsNothingThatThreadsShare)
{
    constexpr int rounds = 50;
    const auto use = [&](const std::u32string& name) {
        const fileString own = folder() / name;
        for (long id = 0; id < rounds; ++id) {
            ManufacturerFile file;
            EXPECT_TRUE((ManufacturerFile{{{id, makeCard(name)}}, name, {}}.write(own)));
            EXPECT_TRUE(file.read(own));
            EXPECT_EQ(file.cards.count(id), 1U);
        }
    };
    std::jthread first(use, U"first.json");
    std::jthread second(use, U"second.json");
}

}  // namespace
