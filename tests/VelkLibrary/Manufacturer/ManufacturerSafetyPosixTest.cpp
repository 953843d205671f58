#include <VelkLibrary/JsonReader.h>
#include <VelkLibrary/Manufacturer/ManufacturerManager.h>

#include "ManufacturerTest.h"
#include "support/DocumentDeaths.h"
#include "support/Numbers.h"

#include <gmock/gmock.h>

#include <sys/stat.h>
#include <unistd.h>

namespace {

using testing::IsEmpty;

class ManufacturerSafety : public test::ManufacturerTest
{
protected:
    static void save(char32_t letter, int count)
    {
        test::Cards cards;
        for (int id = 0; id < count; ++id)
            cards.emplace(id, test::makeCard(std::u32string(50, letter)));
        manager().saveModifiedManufacturers(cards, U"text");
    }

    // A whole file of cards with names from this letter. It holds the time of writing, so whole texts would
    // differ.
    static bool isFileOf(const std::string& text, char letter, std::size_t cards)
    {
        std::size_t found = 0;
        const std::string name(50, letter);
        for (std::size_t at = text.find("\"" + name); at != std::string::npos; at = text.find("\"" + name, at + 1))
            ++found;
        return found == cards && !json::read(text)->empty();
    }
};

// The user may write the file, but may not make the file that would take its place.
TEST_F(ManufacturerSafety, AFileThatCannotBeReplacedIsWrittenInPlace)
{
    ASSERT_EQ(::chmod(folder().utf8().c_str(), 0755), 0);
    const fileString userFolder = PathUtils::getObject().getUserDatabasePath();
    ASSERT_EQ(::chmod(userFolder.utf8().c_str(), 0777), 0);
    for (const mode_t mode : {mode_t{0755}, mode_t{01777}}) {
        test::writeFile(dataFile(), "{}");
        ASSERT_EQ(::chmod(dataFile().utf8().c_str(), 0666), 0);
        ASSERT_EQ(::chmod(dataFolder().utf8().c_str(), mode), 0);
        test::asOrdinaryUser([this] {
            ManufacturerManager::checkWriteDataFile();
            save('n', 3);
            EXPECT_THAT(messages(), IsEmpty());
        });
        EXPECT_TRUE(isFileOf(test::readFile(dataFile()), 'n', 3));
        EXPECT_THAT(test::listFolder(userFolder), IsEmpty());
    }
}

TEST_F(ManufacturerSafety, ADeathAtAnyMomentLeavesTheOldOrTheNewFile)
{
    save(U'o', 100);
    const std::string oldText = test::readFile(dataFile());
    test::expectOldOrNewAtEveryDeath(
        dataFile(), oldText, [] { save(U'n', 100); }, [](const std::string& text) { return isFileOf(text, 'n', 100); });
}

TEST_F(ManufacturerSafety, AFullDiskLeavesTheOldFile)
{
    save(U'o', 5);
    const std::string oldText = test::readFile(dataFile());
    test::expectOldOnFullDisk(dataFile(), oldText, 20'000, [this] {
        save(U'n', 300);
        EXPECT_EQ(manager().getIdNameMap().size(), 300U);
        EXPECT_THAT(messages(), IsEmpty());
    });
}

TEST_F(ManufacturerSafety, ProcessesThatSaveAtOnceLeaveOneOfTheirFiles)
{
    test::expectWholeAmongWriters(
        dataFile(), [](int writer) { save(writer == 0 ? U'a' : U'b', 100); },
        [](const std::string& text) { return isFileOf(text, 'a', 100) || isFileOf(text, 'b', 100); });
}

TEST_F(ManufacturerSafety, AReadOnlyFileIsReportedAndLeft)
{
    for (const fileString& path : {folder(), dataFolder()})
        ASSERT_EQ(::chmod(path.utf8().c_str(), 0777), 0);
    save(U'o', 1);
    ASSERT_EQ(::chmod(dataFile().utf8().c_str(), 0444), 0);
    const std::string before = test::readFile(dataFile());
    test::asOrdinaryUser([this] {
        save(U'n', 1);
        ManufacturerManager::checkWriteDataFile();
        ASSERT_EQ(messages().size(), 2U);
        EXPECT_EQ(messages()[0].line, test::reportLine::manufacturersUnwritable);
        EXPECT_EQ(messages()[1].line, test::reportLine::manufacturersChecked);
        EXPECT_EQ(messages()[1].text, dataFile().unicodeString());
    });
    EXPECT_EQ(test::readFile(dataFile()), before);
}

// Writing through a link would change a file elsewhere.
TEST_F(ManufacturerSafety, ALinkInTheFilesPlaceIsReplaced)
{
    const fileString elsewhere = folder() / std::u32string(U"elsewhere");
    test::writeFile(elsewhere, "protected");
    ASSERT_EQ(::symlink(elsewhere.utf8().c_str(), dataFile().utf8().c_str()), 0);
    save(U'n', 1);
    EXPECT_EQ(test::readFile(elsewhere), "protected");
    EXPECT_TRUE(isFileOf(test::readFile(dataFile()), 'n', 1));
}

}  // namespace
