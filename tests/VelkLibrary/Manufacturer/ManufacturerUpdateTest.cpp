#include "ManufacturerUpdateTest.h"
#include "support/Numbers.h"

#include <gmock/gmock.h>

#include <filesystem>

namespace {

using namespace test::manufacturerUpdate;
using test::makeCard;
using test::namesOf;
using test::timeOf;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::UnorderedElementsAre;

TEST_F(Update, TakesOverTheServicesFile)
{
    hold(early, {{1, "Old", early, ""}, {2, "Gone", early, ""}});
    publish(dataText(late, {{1, "New", late, ""}, {3, "Added", late, ""}}));
    const test::Time before = Library::getTimeNow();
    update();
    EXPECT_EQ(namesOf(manager()), "1 New, 3 Added");
    EXPECT_EQ(manager().getDefaultText(), U"service text");
    EXPECT_EQ(manager().getManufacturer(1).getLastModified(), timeOf(late)) << "cards keep the service's times";
    ManufacturerManager::cleanup();
    EXPECT_EQ(namesOf(manager()), "1 New, 3 Added") << "it was written";
    EXPECT_EQ(manager().getManufacturer(3).getLastModified(), timeOf(late));
    const std::string text = test::readFile(dataFile());
    const std::string key = "\"Last_Modified\": \"";
    const auto begin = text.find(key) + key.size();
    EXPECT_GE(timeOf(text.substr(begin, text.find('"', begin) - begin)), before) << "the time of writing";
    EXPECT_THAT(messages(), IsEmpty());
    EXPECT_THAT(assertions(), IsEmpty());
}

TEST_F(Update, OfAnEmptyStoreFetchesAllLogos)
{
    publish(dataText(late, {{1, "A", late, "a.png"}, {2, "B", late, ""}, {3, "C", late, "c.png"}}));
    update();
    EXPECT_EQ(namesOf(manager()), "1 A, 2 B, 3 C");
    EXPECT_THAT(askedLogos(), ElementsAre("a.png", "c.png"));
    EXPECT_EQ(test::readFile(logo(U"a.png")), "picture a.png");
    EXPECT_EQ(test::readFile(logo(U"c.png")), "picture c.png");
    EXPECT_THAT(test::listFolder(dataFolder()), UnorderedElementsAre("a.png", "c.png", "manufacturer_data.json"));
}

TEST_F(Update, AppendsTheNameToTheLogosAddress)
{
    publish(dataText(late, {{1, "A", late, "a b&c.png"}}));
    update();
    ASSERT_EQ(server_.requests("/logo").size(), 1U);
    EXPECT_EQ(server_.requests("/logo").front().target, "/logo?v=1&logo-path=a%20b&c.png");
    EXPECT_EQ(server_.requests("/data").front().method, "GET");
}

// The service expects addresses in Windows-1252.
TEST_F(Update, SendsNamesAsWindows1252)
{
    publish(dataText(late, {{1, "A", late,
                             "k\xC3\xBC"
                             "che.png"},
                            {2, "B", late, "\xE6\xA4\x85.png"}}));
    update();
    ASSERT_EQ(server_.requests("/logo").size(), 2U);
    EXPECT_EQ(server_.requests("/logo")[0].target, "/logo?v=1&logo-path=k%FCche.png");
    EXPECT_EQ(server_.requests("/logo")[1].target, "/logo?v=1&logo-path=?.png");
    EXPECT_TRUE(logo(U"k\u00FCche.png").pathExists());
    EXPECT_TRUE(logo(U"\u6905.png").pathExists());
}

// ---- When ----------------------------------------------------------------------------------------

TEST_F(Update, OfTheSameTimeChangesNothing)
{
    hold(late, {{1, "Own", early, ""}});
    const std::string before = test::readFile(dataFile());
    publish(dataText(late, {{1, "Service", late, "a.png"}}));
    update();
    EXPECT_EQ(namesOf(manager()), "1 Own");
    EXPECT_EQ(manager().getDefaultText(), U"own text");
    EXPECT_EQ(test::readFile(dataFile()), before);
    EXPECT_THAT(askedLogos(), IsEmpty());
}

TEST_F(Update, OfAnOlderFileChangesNothing)
{
    hold(late, {{1, "Own", early, ""}});
    publish(dataText(early, {{1, "Service", late, ""}}));
    update();
    EXPECT_EQ(namesOf(manager()), "1 Own");
}

TEST_F(Update, IsDoneOnce)
{
    hold(early, {});
    publish(dataText(late, {{1, "A", late, "a.png"}}));
    update();
    publish(dataText(late, {{1, "B", late, "b.png"}}));
    update();
    EXPECT_EQ(namesOf(manager()), "1 A");
    EXPECT_THAT(askedLogos(), ElementsAre("a.png"));
}

// The service's time is compared with that of the file as it was read, not of what was saved since.
TEST_F(Update, GoesByTheTimeOfTheFileThatWasRead)
{
    hold(early, {{1, "Own", early, ""}});
    test::Cards cards{{1, makeCard(U"Edited")}};
    manager().saveModifiedManufacturers(cards, U"edited");
    publish(dataText(late, {{1, "Service", late, ""}}));
    update();
    EXPECT_EQ(namesOf(manager()), "1 Service");
}

TEST_F(Update, OfAFileWithoutTimeIsNow)
{
    hold(early, {});
    publish(R"({"Version": "42", "Manufacturer_1": {"Id": 1, "Name": "A"}})");
    update();
    EXPECT_EQ(namesOf(manager()), "1 A");
    EXPECT_EQ(manager().getDefaultText(), U"Contact the manufacturer for more information about its products.");
}

TEST_F(Update, MayEmptyTheStore)
{
    hold(early, {{1, "Own", early, ""}});
    publish(dataText(late, {}));
    update();
    EXPECT_EQ(namesOf(manager()), "");
}

// ---- Logos ---------------------------------------------------------------------------------------

TEST_F(Update, FetchesTheLogosOfNewerCardsOnly)
{
    hold(early, {{1, "Same", early, "same.png"}, {2, "Newer", early, "old.png"}, {3, "Older", late, "older.png"}});
    for (const char32_t* const name : {U"same.png", U"old.png", U"older.png", U"other.png"})
        test::writeFile(logo(name), "old");
    publish(dataText(late, {{1, "Same!", early, "same2.png"},
                            {2, "Newer!", late, "new.png"},
                            {3, "Older!", early, "older2.png"},
                            {4, "Added", early, "added.png"}}));
    update();
    EXPECT_EQ(namesOf(manager()), "1 Same!, 2 Newer!, 3 Older!, 4 Added");
    EXPECT_THAT(askedLogos(), ElementsAre("new.png", "added.png"));
    EXPECT_THAT(test::listFolder(dataFolder()), UnorderedElementsAre("same.png", "new.png", "older.png", "other.png",
                                                                     "added.png", "manufacturer_data.json"));
    EXPECT_EQ(test::readFile(logo(U"new.png")), "picture new.png");
}

TEST_F(Update, ReplacesALogoOfTheSameName)
{
    hold(early, {{1, "A", early, "a.png"}});
    test::writeFile(logo(U"a.png"), "old");
    publish(dataText(late, {{1, "A", late, "a.png"}}));
    update();
    EXPECT_EQ(test::readFile(logo(U"a.png")), "picture a.png");
}

TEST_F(Update, StoresCardsWhoseLogosCannotBeFetched)
{
    hold(early, {{1, "A", early, "a.png"}});
    test::writeFile(logo(U"a.png"), "old");
    server_.on("/logo", test::Reply{.status = 404});
    publish(dataText(late, {{1, "B", late, "a.png"}, {2, "C", late, "c.png"}}));
    update();
    EXPECT_EQ(namesOf(manager()), "1 B, 2 C");
    EXPECT_THAT(test::listFolder(dataFolder()), ElementsAre("manufacturer_data.json"));
}

TEST_F(Update, LeavesTheLogosOfDroppedCards)
{
    hold(early, {{1, "A", early, "a.png"}});
    test::writeFile(logo(U"a.png"), "old");
    publish(dataText(late, {}));
    update();
    EXPECT_EQ(test::readFile(logo(U"a.png")), "old");
}

TEST_F(Update, FetchesALogoIntoAFolder)
{
    publish(dataText(late, {{1, "A", late, "acme/a.png"}, {2, "B", late, "acme/2026/b.png"}}));
    update();
    EXPECT_THAT(askedLogos(), ElementsAre("acme/a.png", "acme/2026/b.png"));
    EXPECT_EQ(server_.requests("/logo").front().target, "/logo?v=1&logo-path=acme/a.png");
    EXPECT_EQ(test::readFile(logo(U"acme/a.png")), "picture acme/a.png");
    EXPECT_EQ(test::readFile(logo(U"acme/2026/b.png")), "picture acme/2026/b.png");
    EXPECT_THAT(test::listFolder(dataFolder()), UnorderedElementsAre("acme", "manufacturer_data.json"));
}

TEST_F(Update, ReplacesAndRemovesALogoInAFolder)
{
    hold(early, {{1, "A", early, "acme/a.png"}, {2, "B", early, "acme/b.png"}});
    std::filesystem::create_directory(logo(U"acme").utf8());
    test::writeFile(logo(U"acme/a.png"), "old");
    test::writeFile(logo(U"acme/b.png"), "old");
    publish(dataText(late, {{1, "A", late, "acme/a.png"}, {2, "B", late, "other/b.png"}}));
    update();
    EXPECT_EQ(test::readFile(logo(U"acme/a.png")), "picture acme/a.png");
    EXPECT_EQ(test::readFile(logo(U"other/b.png")), "picture other/b.png");
    EXPECT_THAT(test::listFolder(logo(U"acme")), ElementsAre("a.png"));
}

TEST_F(Update, KeepsAFileThatStandsWhereAFolderShould)
{
    test::writeFile(logo(U"acme"), "a file");
    publish(dataText(late, {{1, "A", late, "acme/a.png"}, {2, "B", late, "b.png"}}));
    update();
    EXPECT_THAT(askedLogos(), ElementsAre("b.png"));
    EXPECT_EQ(test::readFile(logo(U"acme")), "a file");
}

// A name from the service or from the file that leads elsewhere, or to the module's own files.
class HostileLogo : public Update, public testing::WithParamInterface<const char*>
{
protected:
    HostileLogo()
    {
        for (const char* const name : {"outside.png", "user/errors.log"})
            protect(folder() / fileString(std::string(name)));
        std::filesystem::create_directory((dataFolder() / std::u32string(U"sub")).utf8());
        for (const char* const name : {"sub/inner.png", "errors.log", "catalog_filters.json", "catalog_hash.txt"})
            protect(dataFolder() / fileString(std::string(name)));
    }

    void protect(const fileString& path)
    {
        if (!path.parentPath().pathExists())
            std::filesystem::create_directories(path.parentPath().utf8());
        test::writeFile(path, "protected");
        protected_.push_back(path);
    }

    // The name as it is written in JSON.
    static std::string escaped(std::string name)
    {
        for (std::size_t at = name.find('\\'); at != std::string::npos; at = name.find('\\', at + 2))
            name.insert(at, 1, '\\');
        return name;
    }

    std::vector<fileString> protected_;
};

TEST_P(HostileLogo, IsStoredAndNothingElse)
{
    const std::string name = escaped(GetParam());
    hold(early, {{1, "Held", early, name}});
    publish(dataText(late, {{1, "Newer", late, name}, {2, "Added", late, name}, {3, "Good", late, "good.png"}}));
    update();
    EXPECT_EQ(namesOf(manager()), "1 Newer, 2 Added, 3 Good");
    EXPECT_EQ(manager().getManufacturer(1).getManufacturerLogoName(), fileString(std::string(GetParam())));
    EXPECT_THAT(askedLogos(), ElementsAre("good.png"));
    for (const fileString& path : protected_)
        EXPECT_EQ(test::readFile(path), "protected") << path;
    EXPECT_THAT(test::listFolder(dataFolder()),
                UnorderedElementsAre("sub", "errors.log", "catalog_filters.json", "catalog_hash.txt", "good.png",
                                     "manufacturer_data.json"));
}

// clang-format off
INSTANTIATE_TEST_SUITE_P(Names, HostileLogo, testing::Values(
    "", ".", "..", "../outside.png", "..\\outside.png", "sub//inner.png", "sub/", "./sub/inner.png", "sub/../sub/inner.png",
    "sub/manufacturer_data.json", "sub\\Manufacturer_Data.JSON", "manufacturer_data.json/a.png", "sub/nul", "sub/con/a.png",
    "/etc/passwd", "C:\\outside.png", "C:outside.png", "\\\\server\\share\\a.png", "a.png/", "a/../../outside.png",
    "NUL", "con.png", "Lpt1.txt", "a.png:stream", "a.png.", "a.png ", "a?.png", "a\x01.png",
    "manufacturer_data.json", "Manufacturer_Data.JSON", "manufacturer_data_temp.json",
    "errors.log", "ERRORS.LOG", "catalog_filters.json", "Catalog_Hash.txt"));
// clang-format on

TEST_F(HostileLogo, OfAHeldCardStaysWhileTheNewOneIsFetched)
{
    hold(early, {{1, "A", early, "../outside.png"}});
    publish(dataText(late, {{1, "B", late, "good.png"}}));
    update();
    EXPECT_EQ(test::readFile(folder() / std::u32string(U"outside.png")), "protected");
    EXPECT_THAT(askedLogos(), ElementsAre("good.png"));
}

TEST_F(HostileLogo, ThatNamesAFolderLeavesIt)
{
    hold(early, {{1, "A", early, "sub"}});
    publish(dataText(late, {{1, "B", late, "sub"}}));
    update();
    EXPECT_EQ(namesOf(manager()), "1 B");
    EXPECT_EQ(test::readFile(dataFolder() / std::u32string(U"sub/inner.png")), "protected");
}

// ---- Failures ------------------------------------------------------------------------------------

class FailedUpdate : public Update
{
protected:
    FailedUpdate()
    {
        hold(early, {{1, "Own", early, "own.png"}});
        test::writeFile(logo(U"own.png"), "own");
        file_ = test::readFile(dataFile());
    }

    void expectUnchanged() const
    {
        EXPECT_EQ(namesOf(manager()), "1 Own");
        EXPECT_EQ(manager().getDefaultText(), U"own text");
        EXPECT_EQ(test::readFile(dataFile()), file_);
        EXPECT_EQ(test::readFile(logo(U"own.png")), "own");
        EXPECT_THAT(askedLogos(), IsEmpty());
        EXPECT_THAT(messages(), IsEmpty());
        EXPECT_THAT(assertions(), IsEmpty());
    }

    std::string file_;
};

TEST_F(FailedUpdate, WithoutTheServicesFile)
{
    server_.on("/data", test::Reply{.status = 404, .body = dataText(late, {{1, "No", late, ""}})});
    update();
    expectUnchanged();
}

TEST_F(FailedUpdate, WithHalfOfTheFile)
{
    server_.on("/data", test::Reply{.body = dataText(late, {{1, "No", late, ""}}), .cutAfter = 40});
    update();
    expectUnchanged();
}

TEST_F(FailedUpdate, WithoutAService)
{
    const test::RefusingPort nobody;
    manager().checkForManufacturerUpdates(wide(nobody.url("/data")), wide(nobody.url("/logo?v=1")));
    expectUnchanged();
    manager().checkForManufacturerUpdates(U"", U"");
    manager().checkForManufacturerUpdates(U"file:///etc/passwd", U"");
    expectUnchanged();
}

TEST_F(FailedUpdate, WithWhatIsNotADataFile)
{
    for (const std::string& text :
         {std::string("<html>Please log in</html>"), std::string(), std::string("[]"), dataText("tomorrow", {}),
          dataText("+infinity", {}), dataText("not-a-date-time", {}), std::string(1 << 20, '['),
          std::string(R"({"Last_Modified": ")") + late + R"(", "Manufacturer_1": {"Id": "1"}})"}) {
        publish(text);
        update();
        expectUnchanged();
    }
}

TEST_F(FailedUpdate, RemovesWhatAnEarlierOneLeft)
{
    test::writeFile(temporaryFile(), "left behind");
    server_.on("/data", test::Reply{.status = 500});
    update();
    expectUnchanged();
}

TEST_F(Update, ThatCannotBeWrittenTellsTheUser)
{
    std::filesystem::create_directory(dataFile().utf8());
    publish(dataText(late, {{1, "A", late, ""}}));
    update();
    EXPECT_EQ(namesOf(manager()), "1 A");
    ASSERT_EQ(messages().size(), 1U);
    EXPECT_EQ(messages().front().line, test::reportLine::manufacturersUnwritable);
}

TEST_F(Update, OfAFileFromTheFutureIsTaken)
{
    hold(early, {{1, "Own", early, ""}});
    publish(dataText(never, {{1, "Service", never, ""}}));
    update();
    EXPECT_EQ(namesOf(manager()), "1 Service");
}

}  // namespace
