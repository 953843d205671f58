#include <VelkLibrary/Manufacturer/ManufacturerManager.h>

#include "ManufacturerTest.h"
#include "support/Numbers.h"

#include <gmock/gmock.h>

#include <filesystem>
#include <ostream>

namespace {

using test::describe;
using test::namesOf;

constexpr const char* version = R"("Version": "42", )";

class DataFile : public test::ManufacturerTest
{
protected:
    DataFile()
    {
        Velk::HostServices host = services();
        host.resourceString = [](unsigned int id) -> std::optional<std::u32string> {
            if (id == test::textNumber::manufacturerCard)
                return U"Ask the manufacturer";
            return std::nullopt;
        };
        Velk::installHost(std::move(host));
    }
};

// ---- What is read --------------------------------------------------------------------------------

struct FileCase
{
    const char* name;
    std::string text;
    const char* names;
    const char32_t* defaultText;
};

void PrintTo(const FileCase& row, std::ostream* out)
{
    *out << row.text;
}

class DataFiles : public DataFile, public testing::WithParamInterface<FileCase>
{};

TEST_P(DataFiles, AreReadAs)
{
    const ManufacturerManager& manager = managerOf(GetParam().text);
    EXPECT_EQ(namesOf(manager), GetParam().names);
    EXPECT_EQ(manager.getDefaultText(), GetParam().defaultText);
    EXPECT_TRUE(assertions().empty());
    EXPECT_TRUE(messages().empty());
}

// A faulty card after a good one.
std::string with(const std::string& card)
{
    return std::string("{") + version + R"("Manufacturer_1": {"Id": 1, "Name": "A"}, "Manufacturer_2": )" + card + "}";
}

// clang-format off
const FileCase files[] = {
    // Not a document of cards
    {"Empty",          "",                                      "", U""},
    {"NoJson",         "{\"Version\": ",                        "", U""},
    {"Array",          "[{\"Id\": 1}]",                         "", U""},
    {"Number",         "7",                                     "", U""},
    // Members of the file
    {"Nothing",        "{}",                                    "", U"Ask the manufacturer"},
    {"DefaultText",    R"({"Default_Text": "See"})",            "", U"See"},
    {"EmptyText",      R"({"Default_Text": ""})",               "", U""},
    {"FurtherMembers", R"({"More": {"Id": 3}, "Manu": 1})",     "", U"Ask the manufacturer"},
    {"Infinite",       R"({"Last_Modified": "+infinity", "Manufacturer_1": {"Id": 1}})",       "", U""},
    {"NoDateTime",     R"({"Last_Modified": "not-a-date-time", "Manufacturer_1": {"Id": 1}})", "", U""},
    {"OtherTime",      R"({"Last_Modified": "20261301T000000", "Manufacturer_1": {"Id": 1}})", "", U""},
    {"TimeIsNumber",   R"({"Last_Modified": 2026, "Manufacturer_1": {"Id": 1}})",              "", U""},
    {"TextIsNumber",   R"({"Default_Text": 1, "Manufacturer_1": {"Id": 1}})",                  "", U""},
    {"AnyVersion",     R"({"Version": 1, "Manufacturer_1": {"Id": 1, "Name": "\u00e9"}})", "1 \xC3\xA9", U"Ask the manufacturer"},
    // Keys and ids
    {"AnyCase",        R"({"manufacturer_3": {"Id": 5, "Name": "A"}, "MANUFACTURER_x": {"Id": 6, "Name": "B"}})",
                       "5 A, 6 B", U"Ask the manufacturer"},
    {"PrefixOnly",     R"({"Manufacturer": {"Id": 1, "Name": "A"}, "Manufacturers": {"Id": 2, "Name": "B"}})",
                       "1 A, 2 B", U"Ask the manufacturer"},
    {"IdsSort",        R"({"Manufacturer_10": {"Id": 10}, "Manufacturer_9": {"Id": 9}, "Manufacturer_-1": {"Id": -1}})",
                       "-1 , 9 , 10 ", U"Ask the manufacturer"},
    {"WithoutId",      with(R"({"Name": "B"})"),                "1 A", U"Ask the manufacturer"},
    {"WithoutIdAndWrong", with(R"({"Name": 1})"),               "1 A", U"Ask the manufacturer"},
    // In the order of the keys, the later one wins
    {"SameId",         R"({"Manufacturer_b": {"Id": 1, "Name": "B"}, "Manufacturer_a": {"Id": 1, "Name": "A"}})",
                       "1 B", U"Ask the manufacturer"},
    // Equal keys come out last first
    {"SameKeyAndId",   R"({"Manufacturer_1": {"Id": 1, "Name": "A"}, "Manufacturer_1": {"Id": 1, "Name": "B"}})",
                       "1 A", U"Ask the manufacturer"},
    {"SameKey",        R"({"Manufacturer_1": {"Id": 1, "Name": "A"}, "Manufacturer_1": {"Id": 2, "Name": "B"}})",
                       "1 A, 2 B", U"Ask the manufacturer"},
    {"SameMember",     R"({"Manufacturer_1": {"Id": 2, "Name": "A", "Id": 1, "Name": "B"}})", "1 B", U"Ask the manufacturer"},
    // One wrong member makes the whole file unreadable
    {"CardIsNumber",   with("2"),                               "", U""},
    {"CardIsArray",    with("[]"),                              "", U""},
    {"CardIsNull",     with("null"),                            "", U""},
    {"IdIsReal",       with(R"({"Id": 2.0})"),                  "", U""},
    {"IdIsText",       with(R"({"Id": "2"})"),                  "", U""},
    {"IdIsTooWide",    with(R"({"Id": 4294967296})"),           "", U""},
    {"NameIsNumber",   with(R"({"Id": 2, "Name": 1})"),         "", U""},
    {"UrlIsNull",      with(R"({"Id": 2, "Url": null})"),       "", U""},
    {"PhoneIsNumber",  with(R"({"Id": 2, "Phone": 555})"),      "", U""},
    {"FaxIsArray",     with(R"({"Id": 2, "Fax": []})"),         "", U""},
    {"EmailIsBool",    with(R"({"Id": 2, "Email": true})"),     "", U""},
    {"LogoIsObject",   with(R"({"Id": 2, "Logo": {}})"),        "", U""},
    {"DeletedIsText",  with(R"({"Id": 2, "Deleted": "true"})"), "", U""},
    {"DeletedIsNumber", with(R"({"Id": 2, "Deleted": 1})"),     "", U""},
    {"CardTimeIsNumber", with(R"({"Id": 2, "Last_Modified": 1})"), "", U""},
    {"CardTimeIsNotATime", with(R"({"Id": 2, "Last_Modified": "yesterday"})"), "", U""},
    {"CardTimeIsInfinite", with(R"({"Id": 2, "Last_Modified": "-infinity"})"), "", U""},
};
// clang-format on

INSTANTIATE_TEST_SUITE_P(Texts, DataFiles, testing::ValuesIn(files),
                         [](const auto& row) { return std::string(row.param.name); });

TEST_F(DataFile, ThatIsAFolderGivesAnEmptyStore)
{
    std::filesystem::create_directory(dataFile().utf8());
    EXPECT_EQ(namesOf(manager()), "");
    EXPECT_EQ(manager().getDefaultText(), U"");
}

// ---- Cards ---------------------------------------------------------------------------------------

TEST_F(DataFile, HoldsWholeCards)
{
    managerOf(std::string("{") + version + R"("Last_Modified": "20260301T140559", "Manufacturer_7": {
        "Id": 7, "Last_Modified": "20260115T080000.5", "Name": "Acme Doors", "Url": "https://acme.example",
        "Phone": "default", "Fax": "1", "Email": "a@b", "Logo": "acme.png", "Deleted": true}})");
    EXPECT_EQ(describe(manager().getManufacturer(7)),
              "Acme Doors|https://acme.example|default|1|acme.png|a@b|true|20260115T080000.500000");
    EXPECT_TRUE(manager().getManufacturer(7).isPhoneDefaulted());
}

TEST_F(DataFile, MayLeaveOutEverythingButTheId)
{
    managerOf(std::string("{") + version + R"("Manufacturer_7": {"Id": 7}})");
    EXPECT_EQ(describe(manager().getManufacturer(7)), "||||||false|not-a-date-time");
    EXPECT_TRUE(manager().manufacturerExists(7));
}

// A card without a time is written with the text of not-a-date-time, which must not make the file unreadable.
TEST_F(DataFile, WithATimelessCardIsReadAgain)
{
    managerOf(std::string("{") + version + R"("Manufacturer_7": {"Id": 7, "Name": "A"}})");
    manager().manageManufacturerData();
    ManufacturerManager::cleanup();
    EXPECT_EQ(describe(manager().getManufacturer(7)), "A||||||false|not-a-date-time");
}

// ---- Encodings -----------------------------------------------------------------------------------

// A file that holds these bytes in every text.
std::string fileWith(const std::string& begin, const std::string& bytes)
{
    std::string text = "{" + begin + "\"Default_Text\": \"" + bytes + "\", \"Manufacturer_1\": {\"Id\": 1";
    for (const char* const key : {"Name", "Url", "Phone", "Fax", "Email", "Logo"})
        text += ", \"" + std::string(key) + "\": \"" + bytes + "\"";
    return text + "}}";
}

void expectTexts(const std::u32string& text)
{
    const ManufacturerManager& manager = ManufacturerManager::getManufacturerManager();
    const Manufacturer& card = manager.getManufacturer(1);
    EXPECT_EQ(manager.getDefaultText(), text);
    EXPECT_EQ(card.getManufacturerName(), text);
    EXPECT_EQ(card.getManufacturerUrl(), text);
    EXPECT_EQ(card.getManufacturerPhoneNumber(false), text);
    EXPECT_EQ(card.getManufacturerFaxNumber(false), text);
    EXPECT_EQ(card.getManufacturerEmail(false), text);
    EXPECT_EQ(card.getManufacturerLogoName(), fileString(text));
}

TEST_F(DataFile, WithVersionIsUtf8)
{
    managerOf(fileWith(version, "\xC3\xA9\xE2\x82\xAC"));
    expectTexts(U"\u00E9\u20AC");
}

TEST_F(DataFile, WithoutVersionIsWindows1252)
{
    managerOf(fileWith("", "\xE9\x80"));
    expectTexts(U"\u00E9\u20AC");
}

TEST_F(DataFile, WithVersionAndOtherBytesHasReplacements)
{
    managerOf(fileWith(version, "\xE9"));
    expectTexts(U"\uFFFD");
}

TEST_F(DataFile, OfTheOldEncodingIsWrittenInTheNewOne)
{
    managerOf(fileWith("", "\xE9"));
    manager().manageManufacturerData();
    ManufacturerManager::cleanup();
    expectTexts(U"\u00E9");
}

}  // namespace
