#include "host/fixtures/PublishFixtures.h"

#include "host/service/CoreIndex.h"
#include "support/OpenModes.h"
#include "support/Threads.h"

#include <VelkCommon/Files/FileUtils.h>
#include <VelkCommon/Files/LockingFStream.h>
#include <VelkCommon/Files/SHA1.h>

#include <algorithm>

using testing::Contains;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::SizeIs;
using VelkHost::PublishedLibrary;
using VelkHost::PublishReport;
using State = VelkHost::PublishedLibrary::State;

namespace {

using Publisher = test::PublishTest;

std::string described(const PublishReport& report)
{
    const char* const states[] = {"added", "changed", "unchanged", "removed"};
    std::string text;
    for (const PublishedLibrary& library : report.libraries)
        text += library.name + " " + states[static_cast<int>(library.state)] + "\n";
    return text;
}

TEST_F(Publisher, NamesLibrariesAsClientsAskForThem)
{
    writeEverything();
    const PublishReport report = publish();
    EXPECT_EQ(report.edition, 1U);
    EXPECT_TRUE(report.changed);
    EXPECT_EQ(
        described(report),
        "M\xC3\xB6"
        "bel 2.calib added\nM\xC3\xB6"
        "bel 2.zip added\n" +
            std::string(200, 'x') +
            ".calibz added\n~It's (a) $5 deal; 50=50, @home!.calib added\n\xE6\xA4\x85\xE5\xAD\x90.calibz added\n");
    EXPECT_EQ(published("M\xC3\xB6"
                        "bel 2.calib"),
              test::readFile(input(U"core/M\u00F6bel 2.calib")));
    EXPECT_EQ(published("\xE6\xA4\x85\xE5\xAD\x90.calibz"), test::readFile(input(U"bonus/\u6905\u5B50.calibz")));
    const VelkHost::SiteTable now = table();
    EXPECT_EQ(now.logos.size(), 1U);
    EXPECT_TRUE(now.manufacturers.has_value());
    EXPECT_EQ(now.withdrawn.at("Old {1}.calibz"), "Replaced by \"New\" for $5 \\ year, \xC3\xBC.");
}

TEST_F(Publisher, TagsWithTheHashThatAnInstallationHolds)
{
    writeEverything();
    publish();
    const auto libraries = table().libraries;
    EXPECT_EQ(libraries
                  .at("M\xC3\xB6"
                      "bel 2.calib")
                  .tag,
              SHA1::fileContentsToSHA1Hex(input(U"core/M\u00F6bel 2.calib")));
    EXPECT_EQ(libraries
                  .at("M\xC3\xB6"
                      "bel 2.zip")
                  .tag,
              SHA1::fileContentsToSHA1Hex(input(U"referenced/M\u00F6bel 2.zip")));
    test::writeCatalogFile(folder() / U"installed.calib", "Chair");
    EXPECT_EQ(libraries.at("\xE6\xA4\x85\xE5\xAD\x90.calibz").tag,
              SHA1::fileContentsToSHA1Hex(folder() / U"installed.calib"));
}

TEST_F(Publisher, ListsTheCoreLibrariesForEveryEditionOfTheProduct)
{
    Velk::HostServices host = services();
    host.editions.words[3] = "Studio";
    Velk::installHost(std::move(host));
    writeEverything();
    publish();
    EXPECT_THAT(VelkHost::coreIndexNames(), SizeIs(10));
    EXPECT_THAT(VelkHost::coreIndexNames(), Contains("Studio_Core_Content_Index.txt"));
    for (const std::string& name : VelkHost::coreIndexNames())
        EXPECT_EQ(published(name),
                  "M\xC3\xB6"
                  "bel 2.calib\nM\xC3\xB6"
                  "bel 2.zip\n~It's (a) $5 deal; 50=50, @home!.calib\n")
            << name;
}

TEST_F(Publisher, StoresFilesByTheirContent)
{
    writeEverything();
    publish();
    for (const std::string& name : test::listFolder(site() / U"files")) {
        EXPECT_TRUE(VelkHost::isStoredName(name)) << name;
        EXPECT_EQ(SHA1::fileContentsToSHA1Hex(VelkHost::storedFile(site(), name)), name.substr(0, 40));
    }
    EXPECT_THAT(test::listFolder(site()), ElementsAre("current", "files", "publish.lock"));
}

TEST_F(Publisher, KeepsTheEditionWhenNothingChanged)
{
    writeEverything();
    publish();
    const std::vector<std::string> files = test::listFolder(site() / U"files");
    const PublishReport again = publish();
    EXPECT_EQ(again.edition, 1U);
    EXPECT_FALSE(again.changed);
    EXPECT_TRUE(std::all_of(again.libraries.begin(), again.libraries.end(),
                            [](const PublishedLibrary& library) { return library.state == State::Unchanged; }));
    EXPECT_EQ(test::listFolder(site() / U"files"), files);
}

TEST_F(Publisher, TellsWhatChanged)
{
    test::writeCatalogFile(input(U"core/a.calib"), "A");
    test::writeCatalogFile(input(U"core/b.calib"), "B");
    test::writePackedFile(input(U"bonus/c.calibz"), "C", {});
    publish();
    test::writeCatalogFile(input(U"core/b.calib"), "B2");
    test::writeCatalogFile(input(U"core/d.calib"), "D");
    FileUtils::removePath(input(U"core/a.calib"), FileUtils::noFlags);
    const PublishReport report = publish();
    EXPECT_EQ(report.edition, 2U);
    EXPECT_EQ(described(report), "b.calib changed\nc.calibz unchanged\nd.calib added\na.calib removed\n");
    EXPECT_EQ(published("Standard_Core_Content_Index.txt"), "b.calib\nd.calib\n");
    EXPECT_EQ(published("b.calib"), test::readFile(input(U"core/b.calib")));
}

TEST_F(Publisher, KeepsTheFilesOfThePreviousEdition)
{
    std::vector<std::string> stored;
    for (const char* version : {"1", "2", "3"}) {
        test::writeCatalogFile(input(U"core/a.calib"), version);
        publish();
        stored.push_back(table().libraries.at("a.calib").stored);
    }
    EXPECT_FALSE(VelkHost::storedFile(site(), stored[0]).pathExists());
    EXPECT_TRUE(VelkHost::storedFile(site(), stored[1]).pathExists());
    EXPECT_TRUE(VelkHost::storedFile(site(), stored[2]).pathExists());
    // Two tables, two catalogs and the index of all.
    EXPECT_THAT(test::listFolder(site() / U"files"), SizeIs(5));
}

// As one that was killed leaves them.
TEST_F(Publisher, RemovesWhatAnEarlierPublicationLeftAlsoWhenNothingChanged)
{
    const std::string unused = std::string(40, 'a') + ".calib";
    for (const char* version : {"1", "2", "3"}) {
        test::writeCatalogFile(input(U"core/a.calib"), version);
        publish();
        const std::vector<std::string> files = test::listFolder(site() / U"files");
        test::writeFile(VelkHost::storedFile(site(), unused), "unused");
        EXPECT_FALSE(publish().changed);
        EXPECT_EQ(test::listFolder(site() / U"files"), files) << version;
    }
}

TEST_F(Publisher, CountsWhatItCannotRemove)
{
    test::writeCatalogFile(input(U"core/a.calib"), "1");
    EXPECT_EQ(publish().left, 0U);
    FileUtils::createDirectoriesWithPerm(site() / U"files" / U"no file");
    EXPECT_EQ(publish().left, 1U);
    test::writeCatalogFile(input(U"core/a.calib"), "2");
    EXPECT_EQ(publish().left, 1U);
}

// It was written before tables told of it.
TEST_F(Publisher, KeepsEverythingWhereThePreviousEditionIsNotKnown)
{
    for (const char* version : {"1", "2"}) {
        test::writeCatalogFile(input(U"core/a.calib"), version);
        publish();
    }
    VelkHost::SiteTable older = table();
    older.previous.clear();
    const std::string text = VelkHost::tableText(older);
    const std::string name = SHA1::bytesToSHA1Hex(text) + ".json";
    test::writeFile(VelkHost::storedFile(site(), name), text);
    test::writeFile(site() / U"current", name + "\n");
    const std::vector<std::string> files = test::listFolder(site() / U"files");
    EXPECT_FALSE(publish().changed);
    EXPECT_EQ(test::listFolder(site() / U"files"), files);
}

TEST_F(Publisher, RefusesOtherTexturesWithTheSameCatalog)
{
    test::writePackedFile(input(U"bonus/a.calibz"), "A", {{"oak.png", "oak"}});
    publish();
    const std::string before = test::readFile(site() / U"current");
    test::writePackedFile(input(U"bonus/a.calibz"), "A", {{"oak.png", "OAK"}});
    EXPECT_THAT(problems(), ElementsAre(HasSubstr("bonus/a.calibz: has other textures or files than an earlier "
                                                  "edition, but the same catalog")));
    EXPECT_EQ(test::readFile(site() / U"current"), before);
    test::writePackedFile(input(U"bonus/a.calibz"), "A2", {{"oak.png", "OAK"}});
    EXPECT_EQ(publish().edition, 2U);
}

TEST_F(Publisher, RemembersTheTexturesOfAllEditions)
{
    test::writePackedFile(input(U"bonus/a.calibz"), "A", {{"oak.png", "oak"}});
    publish();
    test::writePackedFile(input(U"bonus/a.calibz"), "A2", {{"oak.png", "oak"}});
    publish();
    test::writeCatalogFile(input(U"core/b.calib"), "B");
    FileUtils::removePath(input(U"bonus/a.calibz"), FileUtils::noFlags);
    publish();
    test::writePackedFile(input(U"bonus/a.calibz"), "A", {{"oak.png", "OAK"}});
    EXPECT_THAT(problems(), SizeIs(1));
    test::writePackedFile(input(U"bonus/a.calibz"), "A", {{"oak.png", "oak"}});
    EXPECT_EQ(publish().edition, 4U);
}

TEST_F(Publisher, KeepsTheEarlierPackingOfTheSameContent)
{
    test::writePackedFile(input(U"bonus/a.calibz"), "A", {{"oak.png", "oak"}, {"elm.png", "elm"}});
    publish();
    const std::string before = published("a.calibz");
    test::writePackedFile(input(U"bonus/a.calibz"), "A", {{"elm.png", "elm"}, {"oak.png", "oak"}});
    ASSERT_NE(test::readFile(input(U"bonus/a.calibz")), before);
    EXPECT_FALSE(publish().changed);
    EXPECT_EQ(published("a.calibz"), before);
}

TEST_F(Publisher, RepairsAStoredFileThatIsGone)
{
    test::writeCatalogFile(input(U"core/a.calib"), "A");
    publish();
    FileUtils::removePath(VelkHost::storedFile(site(), table().libraries.at("a.calib").stored), FileUtils::noFlags);
    publish();
    EXPECT_EQ(published("a.calib"), test::readFile(input(U"core/a.calib")));
}

TEST_F(Publisher, RefusesADamagedSite)
{
    test::writeCatalogFile(input(U"core/a.calib"), "A");
    publish();
    const std::string name = VelkHost::currentTable(site());
    test::writeFile(site() / U"current", "../../etc/passwd\n");
    EXPECT_THAT(test::reasonOf([&] { publish(); }), HasSubstr("does not name a table"));
    test::writeFile(site() / U"current", name + "\n");
    test::writeFile(VelkHost::storedFile(site(), name), "[]");
    EXPECT_THAT(test::reasonOf([&] { publish(); }), HasSubstr("is damaged"));
}

TEST_F(Publisher, RefusesASiteWithAnEmptyTag)
{
    test::writeCatalogFile(input(U"core/a.calib"), "A");
    publish();
    const fileString file = VelkHost::storedFile(site(), VelkHost::currentTable(site()));
    std::string text = test::readFile(file);
    const std::string tag = "\"tag\": \"" + table().libraries.at("a.calib").tag;
    const std::size_t place = text.find(tag);
    ASSERT_NE(place, std::string::npos) << text;
    test::writeFile(file, text.replace(place, tag.size(), "\"tag\": \""));
    EXPECT_THAT(test::reasonOf([&] { table(); }), HasSubstr("is damaged"));
    EXPECT_THAT(test::reasonOf([&] { publish(); }), HasSubstr("is damaged"));
}

TEST_F(Publisher, WaitsForNoOtherPublisher)
{
    test::writeCatalogFile(input(U"core/a.calib"), "A");
    publish();
    const LockingFStream other(site() / U"publish.lock", test::writeBytes);
    ASSERT_TRUE(other.isOpen());
    EXPECT_THAT(test::reasonOf([&] { publish(); }), HasSubstr("cannot be locked"));
}

// Readers see every edition whole: the index names what the table has, and each file has the content that
// its tag promises.
TEST_F(Publisher, ShowsReadersTheOldOrTheNewEdition)
{
    constexpr int editions = 12;
    const auto write = [&](int edition) {
        for (const char32_t* name : {U"core/a.calib", U"core/b.calib"})
            test::writeCatalogFile(input(name), "Edition " + std::to_string(edition));
    };
    write(0);
    publish();
    const auto read = [&] {
        const VelkHost::SiteTable seen = table();
        const auto& a = seen.libraries.at("a.calib");
        EXPECT_EQ(a.tag, seen.libraries.at("b.calib").tag);
        EXPECT_EQ(SHA1::fileContentsToSHA1Hex(VelkHost::storedFile(site(), a.stored)), a.tag);
    };
    const test::Repeatedly first(read);
    const test::Repeatedly second(read);
    for (int edition = 1; edition < editions; ++edition) {
        write(edition);
        EXPECT_TRUE(publish().changed);
        // Files stay for one more edition, so a reader that has begun with the earlier one can finish.
        first.rounds().waitFor(first.rounds().count() + 1);
        second.rounds().waitFor(second.rounds().count() + 1);
    }
}

}  // namespace
