#include <VelkLibrary/Manufacturer/ManufacturerManager.h>

#include "ManufacturerTest.h"
#include "support/Numbers.h"

#include <gmock/gmock.h>

#include <filesystem>

namespace {

using test::describe;
using test::makeCard;
using test::namesOf;
using test::timeOf;
using testing::IsEmpty;

class Manager : public test::ManufacturerTest
{
protected:
    static void save(test::Cards cards, const std::u32string& text = U"text")
    {
        manager().saveModifiedManufacturers(cards, text);
    }

    // The text of the one member of this name in the data file, with its quotes.
    static std::string member(const std::string& key)
    {
        const std::string text = test::readFile(dataFile());
        const std::string begin = "\"" + key + "\": ";
        const std::size_t at = text.find(begin);
        EXPECT_NE(at, std::string::npos) << key;
        return text.substr(at + begin.size(), text.find_first_of(",\n", at) - at - begin.size());
    }

    void expectUnwritable(std::size_t line) const
    {
        ASSERT_EQ(messages().size(), 1U);
        const test::Message message = messages().front();
        EXPECT_EQ(message.sourceFile, "Manufacturer/ManufacturerManager");
        EXPECT_EQ(message.line, line);
        EXPECT_EQ(message.id, test::messageId::fileUnwritable);
        EXPECT_EQ(message.trait.severity, error::Severity::Error);
        EXPECT_EQ(message.text, dataFile().unicodeString());
        EXPECT_EQ(message.detail1, U"");
        EXPECT_EQ(message.detail2, U"");
    }
};

// ---- The instance and lookups --------------------------------------------------------------------

TEST_F(Manager, IsEmptyWithoutAFile)
{
    EXPECT_EQ(namesOf(manager()), "");
    EXPECT_EQ(manager().getDefaultText(), U"");
    EXPECT_FALSE(dataFile().pathExists());
    EXPECT_THAT(messages(), IsEmpty());
    EXPECT_THAT(assertions(), IsEmpty());
}

TEST_F(Manager, IsOneUntilItIsCleanedUp)
{
    EXPECT_EQ(&manager(), &manager());
    save({{1, makeCard(U"Acme")}});
    EXPECT_EQ(namesOf(manager()), "1 Acme");
    ManufacturerManager::cleanup();
    ManufacturerManager::cleanup();
    EXPECT_EQ(namesOf(manager()), "1 Acme");
}

TEST_F(Manager, ReadsTheFileAgainAfterCleanup)
{
    EXPECT_EQ(namesOf(managerOf(R"({"Manufacturer_1": {"Id": 1, "Name": "A"}})")), "1 A");
    test::writeFile(dataFile(), R"({"Manufacturer_1": {"Id": 1, "Name": "B"}})");
    EXPECT_EQ(namesOf(manager()), "1 A");
    ManufacturerManager::cleanup();
    EXPECT_EQ(namesOf(manager()), "1 B");
}

TEST_F(Manager, FindsCardsById)
{
    const Manufacturer deleted(U"Gone", U"", U"", U"", fileString(), U"", true, timeOf("20260101T000000"));
    save({{-3, makeCard(U"Acme")}, {7, deleted}});
    EXPECT_EQ(manager().getManufacturer(-3).getManufacturerName(), U"Acme");
    EXPECT_TRUE(manager().getManufacturer(7).isDeleted());
    EXPECT_TRUE(manager().manufacturerExists(7));
    EXPECT_TRUE(manager().manufacturerExists(-3));
    EXPECT_FALSE(manager().manufacturerExists(3));
    EXPECT_EQ(namesOf(manager()), "-3 Acme, 7 Gone");
}

TEST_F(Manager, GivesAnEmptyCardForAnUnknownId)
{
    const Manufacturer& card = manager().getManufacturer(999);
    EXPECT_EQ(card.getManufacturerName(), U"");
    EXPECT_EQ(card.getManufacturerPhoneNumber(true), U"");
    EXPECT_FALSE(card.isDeleted());
    EXPECT_EQ(&card, &manager().getManufacturer(1000));
}

TEST_F(Manager, AnInstanceThatWasCleanedUpAsksTheCurrentOne)
{
    ManufacturerManager& old = managerOf(R"({"Manufacturer_1": {"Id": 1, "Name": "A"}})");
    ManufacturerManager::cleanup();
    EXPECT_FALSE(old.manufacturerExists(1));
    EXPECT_THAT(old.getIdNameMap(), IsEmpty());
    EXPECT_EQ(old.getManufacturer(1).getManufacturerName(), U"");
    manager();
    EXPECT_TRUE(old.manufacturerExists(1));
}

TEST_F(Manager, MakesItsFolder)
{
    std::filesystem::remove_all(dataFolder().utf8());
    manager();
    EXPECT_TRUE(dataFolder().pathExists());
}

// ---- Saving --------------------------------------------------------------------------------------

TEST_F(Manager, WritesTheFile)
{
    Manufacturer card(U"K\u00FCchen \"A\"", U"u", U"p", U"f", std::u32string(U"l\u00F6go.png"), U"e", true,
                      timeOf("20260102T030405.000006"));
    card.setPhoneDefaulted();
    const test::Time before = Library::getTimeNow();
    save({{7, card}, {-2, makeCard(U"B")}}, U"Ask \u20AC");
    const std::string quotedTime = member("Last_Modified");
    const test::Time written = timeOf(quotedTime.substr(1, quotedTime.size() - 2));
    EXPECT_GE(written, before);
    EXPECT_LE(written, Library::getTimeNow());
    EXPECT_EQ(test::readFile(dataFile()),
              "{\n"
              "    \"Version\": \"42\",\n"
              "    \"Last_Modified\": " +
                  quotedTime +
                  ",\n"
                  "    \"Default_Text\": \"Ask \xE2\x82\xAC\",\n"
                  "    \"Manufacturer_-2\": {\n"
                  "        \"Id\": -2,\n"
                  "        \"Last_Modified\": \"20260101T000000\",\n"
                  "        \"Name\": \"B\",\n"
                  "        \"Url\": \"https://B\",\n"
                  "        \"Phone\": \"phone\",\n"
                  "        \"Fax\": \"fax\",\n"
                  "        \"Email\": \"e-mail\",\n"
                  "        \"Logo\": \"\",\n"
                  "        \"Deleted\": false\n"
                  "    },\n"
                  "    \"Manufacturer_7\": {\n"
                  "        \"Id\": 7,\n"
                  "        \"Last_Modified\": \"20260102T030405.000006\",\n"
                  "        \"Name\": \"K\xC3\xBC"
                  "chen \\\"A\\\"\",\n"
                  "        \"Url\": \"u\",\n"
                  "        \"Phone\": \"default\",\n"
                  "        \"Fax\": \"f\",\n"
                  "        \"Email\": \"e\",\n"
                  "        \"Logo\": \"l\xC3\xB6go.png\",\n"
                  "        \"Deleted\": true\n"
                  "    }\n"
                  "}\n");
}

TEST_F(Manager, ReadsWhatItWrites)
{
    const Manufacturer odd(std::u32string(U"\0\"\\\n", 4), U"\U0001F600", U"default", U"", std::u32string(U"a b.png"),
                           U"\u00E9", true, test::Time());
    save({{2147483647, odd}, {-2147483647 - 1, makeCard(U"B")}}, U"default");
    const std::string before = describe(manager().getManufacturer(2147483647));
    ManufacturerManager::cleanup();
    EXPECT_EQ(describe(manager().getManufacturer(2147483647)), before);
    EXPECT_EQ(describe(manager().getManufacturer(-2147483647 - 1)), describe(makeCard(U"B")));
    EXPECT_EQ(manager().getDefaultText(), U"default");
}

TEST_F(Manager, MarksChangedCardsInTheCallersMap)
{
    const auto time = timeOf("20260101T000000");
    const auto card = [&](const char32_t* name, const char32_t* fax) {
        return Manufacturer(name, U"u", U"p", fax, fileString(), U"e", false, time);
    };
    save({{1, card(U"Same", U"f")}, {2, card(U"Fax", U"f")}, {3, card(U"Changed", U"f")}, {4, card(U"Dropped", U"f")}});
    test::Cards cards{
        {1, card(U"Same", U"f")}, {2, card(U"Fax", U"other")}, {3, card(U"Changed!", U"f")}, {5, card(U"New", U"f")}};
    const test::Time before = Library::getTimeNow();
    manager().saveModifiedManufacturers(cards, U"text");
    EXPECT_EQ(cards.at(1).getLastModified(), time);
    EXPECT_EQ(cards.at(2).getLastModified(), time);
    EXPECT_GE(cards.at(3).getLastModified(), before);
    EXPECT_EQ(cards.at(5).getLastModified(), time);
    EXPECT_EQ(namesOf(manager()), "1 Same, 2 Fax, 3 Changed!, 5 New");
    for (const auto& [id, saved] : cards)
        EXPECT_EQ(describe(manager().getManufacturer(id)), describe(saved));
    EXPECT_EQ(manager().getManufacturer(2).getManufacturerFaxNumber(false), U"other");
}

TEST_F(Manager, ACardWithAnotherTimeIsAChangedOne)
{
    save({{1, makeCard(U"A", U"", "20260101T000000")}});
    test::Cards cards{{1, makeCard(U"A", U"", "20250101T000000")}};
    const test::Time before = Library::getTimeNow();
    manager().saveModifiedManufacturers(cards, U"");
    EXPECT_GE(cards.at(1).getLastModified(), before);
}

TEST_F(Manager, CopiesTheMap)
{
    test::Cards cards{{1, makeCard(U"A")}};
    std::u32string text = U"text";
    manager().saveModifiedManufacturers(cards, text);
    cards.at(1).setPhoneDefaulted();
    text = U"other";
    EXPECT_FALSE(manager().getManufacturer(1).isPhoneDefaulted());
    EXPECT_EQ(manager().getDefaultText(), U"text");
}

TEST_F(Manager, TakesItsOwnDefaultText)
{
    save({{1, makeCard(U"A")}}, U"a text that is too long to stand in the string itself");
    test::Cards cards;
    manager().saveModifiedManufacturers(cards, manager().getDefaultText());
    EXPECT_EQ(manager().getDefaultText(), U"a text that is too long to stand in the string itself");
}

TEST_F(Manager, WritesWhenAskedTo)
{
    manager().manageManufacturerData();
    EXPECT_EQ(member("Version"), "\"42\"");
    EXPECT_EQ(member("Default_Text"), "\"\"");
    EXPECT_EQ(test::listFolder(dataFolder()), std::vector<std::string>{"manufacturer_data.json"});
}

TEST_F(Manager, EveryoneMayChangeTheFile)
{
    manager().manageManufacturerData();
    using std::filesystem::perms;
    const perms everyone = perms::others_read | perms::others_write;
    EXPECT_EQ(std::filesystem::status(dataFile().utf8()).permissions() & everyone, everyone);
}

TEST_F(Manager, AnIdOfMoreThan32BitsLeavesTheOldFile)
{
    if constexpr (sizeof(long) > 4) {
        save({{1, makeCard(U"A")}});
        const std::string before = test::readFile(dataFile());
        save({{1L << 40, makeCard(U"B")}});
        EXPECT_EQ(test::readFile(dataFile()), before);
        EXPECT_THAT(messages(), IsEmpty());
    }
}

// A folder in the place of the file cannot be replaced with a file.
TEST_F(Manager, TellsTheUserOfAFileThatMayNotBeWritten)
{
    std::filesystem::create_directory(dataFile().utf8());
    save({{1, makeCard(U"A")}});
    expectUnwritable(test::reportLine::manufacturersUnwritable);
    EXPECT_EQ(namesOf(manager()), "1 A");
}

// If it were written, the file could not be read any more.
TEST_F(Manager, WritesNoInfiniteTime)
{
    Manufacturer endless = makeCard(U"Endless");
    endless.setLastModified(boost::posix_time::ptime(boost::posix_time::pos_infin));
    save({{1, makeCard(U"A")}, {2, endless}});
    ManufacturerManager::cleanup();
    EXPECT_EQ(namesOf(manager()), "1 A, 2 Endless");
    EXPECT_TRUE(manager().getManufacturer(2).getLastModified().is_not_a_date_time());
}

TEST_F(Manager, TakesOneOfItsOwnTextsAsTheDefault)
{
    save({{7, makeCard(U"Acme")}});
    test::Cards cards{{7, makeCard(U"A name that is longer than any text may be inside a string")}};
    manager().saveModifiedManufacturers(cards, manager().getManufacturer(7).getManufacturerName());
    EXPECT_EQ(member("Default_Text"), "\"Acme\"");
}

TEST_F(Manager, ChecksWhetherTheFileCanBeWritten)
{
    ManufacturerManager::checkWriteDataFile();
    EXPECT_THAT(messages(), IsEmpty()) << "it can be made";
    EXPECT_FALSE(dataFile().pathExists());
    test::writeFile(dataFile(), "{}");
    ManufacturerManager::checkWriteDataFile();
    EXPECT_THAT(messages(), IsEmpty());
    EXPECT_EQ(test::readFile(dataFile()), "{}");
}

TEST_F(Manager, ChecksAndTellsTheUser)
{
    std::filesystem::create_directory(dataFile().utf8());
    ManufacturerManager::checkWriteDataFile();
    expectUnwritable(test::reportLine::manufacturersChecked);
}

TEST_F(Manager, MakesTheFolderWhenItChecks)
{
    std::filesystem::remove_all(dataFolder().utf8());
    ManufacturerManager::checkWriteDataFile();
    EXPECT_TRUE(dataFolder().pathExists());
    EXPECT_THAT(messages(), IsEmpty());
}

// ---- Another folder ------------------------------------------------------------------------------

class OtherFolder : public Manager
{
protected:
    OtherFolder()
    {
        std::filesystem::create_directory(other_.utf8());
        managerOf(R"({"Version": "42", "Default_Text": "own", "Manufacturer_1": {"Id": 1, "Name": "Own"}})");
    }

    void writeOther(const std::string& text) const
    {
        test::writeFile(other_ / std::u32string(U"manufacturer_data.json"), text);
    }

    static void expectOwn()
    {
        EXPECT_EQ(namesOf(manager()), "1 Own");
        EXPECT_EQ(manager().getDefaultText(), U"own");
    }

    fileString other_ = folder() / std::u32string(U"other");
};

TEST_F(OtherFolder, IsTakenOver)
{
    writeOther(R"({"Version": "42", "Default_Text": "other", "Manufacturer_2": {"Id": 2, "Name": "Other"}})");
    EXPECT_TRUE(manager().changeManufacturerDataPath(other_));
    EXPECT_EQ(namesOf(manager()), "2 Other");
    EXPECT_EQ(manager().getDefaultText(), U"other");
    manager().manageManufacturerData();
    EXPECT_EQ(member("Default_Text"), "\"other\"") << "it is still written to its own folder";
}

TEST_F(OtherFolder, WithASeparatorIsTheSame)
{
    writeOther(R"({"Manufacturer_2": {"Id": 2, "Name": "Other"}})");
    EXPECT_TRUE(manager().changeManufacturerDataPath(other_ + fileString(std::u32string(U"/"))));
    EXPECT_EQ(namesOf(manager()), "2 Other");
}

TEST_F(OtherFolder, WithoutAFileChangesNothing)
{
    EXPECT_FALSE(manager().changeManufacturerDataPath(other_));
    EXPECT_FALSE(manager().changeManufacturerDataPath(folder() / std::u32string(U"missing")));
    expectOwn();
}

TEST_F(OtherFolder, WithAnUnreadableFileChangesNothing)
{
    for (const char* const text :
         {"no JSON", "[]", R"({"Default_Text": 1})", R"({"Manufacturer_2": 2})", R"({"Last_Modified": "x"})"}) {
        writeOther(text);
        EXPECT_FALSE(manager().changeManufacturerDataPath(other_)) << text;
        expectOwn();
    }
}

}  // namespace
