// What a run reports beside its events, and the functions that it calls on the way.
#include "VelkLibrary/Update/UpdateTest.h"
#include "support/ZipBuilder.h"

#include <gmock/gmock.h>

#include <stdexcept>

using test::databaseBytes;
using test::Reply;
using test::sha1;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::SizeIs;

namespace {

using namespace LibraryCatalogUpdate;

class UpdateReport : public test::UpdateTest
{
protected:
    /// Runs an updater with the hooks and keeps its report.
    const RunReport& runWith(const RunHooks& hooks = {}, bool manual = false)
    {
        updater_ = std::make_unique<LibraryCatalogUpdater>(makeUpdater(manual));
        updater_->setHooks(hooks);
        run(*updater_);
        return updater_->report();
    }

    const LibraryReport& library(const char32_t* name) const
    {
        return updater_->report().libraries.at(fileString(std::u32string(name)));
    }

private:
    std::unique_ptr<LibraryCatalogUpdater> updater_;
};

TEST_F(UpdateReport, TellsWhatBecameOfEachLibrary)
{
    const std::string current = databaseBytes('c');
    installBonus(U"current.calib", current);
    installBonus(U"refused.calib", databaseBytes('r'));
    installBonus(U"unknown.calib", databaseBytes('u'));
    installBonus(U"broken.calib", databaseBytes('b'));
    installBonus(U"taken.calib", databaseBytes('o'));
    publishIndex("");
    answer("current.calibz", Reply::file("packed", sha1(current)));
    answer("refused.calibz", {.status = 503});
    answer("unknown.calibz", {.status = 404, .body = "never heard of it"});
    answer("broken.calibz", Reply{.headers = {{"ETag", "\"b\""}}, .body = std::string(5'000, 'x'), .cutAfter = 100});
    const std::string packed = test::zipOf({{"taken.calib", databaseBytes('n')}, {"oak.png", "texture"}});
    answer("taken.calibz", Reply::file(packed, "tag of the new one"));

    const RunReport& report = runWith();
    EXPECT_THAT(report.libraries, SizeIs(5));
    EXPECT_EQ(library(U"current.calib").outcome, LibraryOutcome::UpToDate);
    EXPECT_EQ(library(U"current.calib").status, 304);
    EXPECT_EQ(library(U"current.calib").localHash, sha1(current));
    EXPECT_EQ(library(U"refused.calib").outcome, LibraryOutcome::Refused);
    EXPECT_EQ(library(U"refused.calib").status, 503);
    EXPECT_EQ(library(U"unknown.calib").outcome, LibraryOutcome::Refused);
    EXPECT_EQ(library(U"unknown.calib").serviceMessage, "never heard of it");
    EXPECT_EQ(library(U"broken.calib").outcome, LibraryOutcome::NotFetched);
    EXPECT_NE(library(U"broken.calib").fault.code, 0u);
    EXPECT_NE(library(U"broken.calib").fault.reason, "");

    const LibraryReport& taken = library(U"taken.calib");
    EXPECT_EQ(taken.outcome, LibraryOutcome::Taken);
    EXPECT_EQ(taken.kind, BonusCatalogs);
    EXPECT_EQ(taken.installedPath, bonusFolder() / U"taken.calib");
    EXPECT_EQ(taken.tag, "tag of the new one");
    EXPECT_EQ(taken.download.sha1, sha1(packed));
    EXPECT_EQ(taken.download.size, static_cast<long long>(packed.size()));
    EXPECT_EQ(taken.database.sha1, sha1(databaseBytes('n')));
    EXPECT_EQ(taken.referencedFiles.path, referencedFolder() / U"taken.zip");
    EXPECT_EQ(taken.referencedFiles.sha1, sha1(test::readFile(referencedFolder() / U"taken.zip")));
    EXPECT_FALSE(report.cancelled);
    EXPECT_EQ(report.result.outcome, this->report().outcome);
    EXPECT_EQ(report.result.updatedNames, this->report().updatedNames);
    EXPECT_TRUE(report.indexAsked);
    EXPECT_EQ(report.indexFault.code, 0u);
    EXPECT_EQ(report.addressFault.reason, "");
}

TEST_F(UpdateReport, TellsWhyTheServiceCannotBeAsked)
{
    const test::RefusingPort nobody;
    address = nobody.url();
    installCore(U"a.calib", databaseBytes('a'));
    const RunReport& report = runWith();
    EXPECT_EQ(report.address, nobody.url());
    EXPECT_EQ(report.endpoint, "");
    constexpr unsigned notConnected = 7;
    EXPECT_EQ(report.addressFault.code, notConnected);
    EXPECT_EQ(report.indexFault.code, notConnected);
    EXPECT_EQ(library(U"a.calib").outcome, LibraryOutcome::NotAnswered);
    EXPECT_EQ(library(U"a.calib").fault.code, notConnected);
}

TEST_F(UpdateReport, TellsThatTheIndexIsRefused)
{
    answer("Standard_Core_Content_Index.txt", {.status = 500});
    const RunReport& report = runWith();
    EXPECT_EQ(report.indexFault.reason, "HTTP status 500");
    EXPECT_EQ(report.addressFault.reason, "");
}

TEST_F(UpdateReport, TellsThatWhatCameIsNoIndex)
{
    publishIndex("<html>\n<h1>Welcome to the hotel</h1>\n</html>\n");
    EXPECT_TRUE(runWith().indexIsNoList);
    publishIndex("no library\nPlants.calib\n");
    EXPECT_FALSE(runWith().indexIsNoList) << "lines that name no catalog are passed over";
    publishIndex(" \r\n\t\n");
    EXPECT_FALSE(runWith().indexIsNoList) << "a service may have no core catalogs";
}

TEST_F(UpdateReport, TellsWhatCouldNotBeTakenOver)
{
    installCore(U"a.calib", databaseBytes('a'));
    installCore(U"b.calib", databaseBytes('b'));
    publishIndex("");
    answer("a.calib", Reply{.headers = {{"ETag", "\"new\""}, {"X", std::string(10, 'x')}}, .body = "", .length = "0"});
    publish("b.calib", databaseBytes('n'));
    runWith();
    EXPECT_EQ(library(U"a.calib").outcome, LibraryOutcome::NotInstalled);
    EXPECT_EQ(library(U"a.calib").fault.reason, "the downloaded file is empty");
    EXPECT_EQ(library(U"b.calib").outcome, LibraryOutcome::LeftForLater) << "the first failure ends the downloads";
}

TEST_F(UpdateReport, CallsItsHooksAroundEachInstallation)
{
    installBonus(U"a.calib", databaseBytes('a'));
    std::filesystem::create_directories(referencedFolder().utf8());
    test::writeFile(referencedFolder() / U"a.zip", "old textures");
    publishIndex("");
    const std::string packed = test::zipOf({{"a.calib", databaseBytes('n')}, {"oak.png", "texture"}});
    publish("a.calibz", packed);
    std::vector<std::string> calls;
    runWith({[&](const LibraryReport& library) {
                 calls.push_back("downloaded " + library.fileName.utf8());
                 EXPECT_EQ(test::readFile(library.download.path), packed);
                 EXPECT_EQ(test::readFile(referencedFolder() / U"a.zip"), "old textures");
             },
             [&](const LibraryReport& library) {
                 calls.push_back("done " + library.fileName.utf8());
                 EXPECT_EQ(library.outcome, LibraryOutcome::Taken);
                 EXPECT_EQ(test::readFile(library.database.path), databaseBytes('n'));
                 EXPECT_NE(test::readFile(referencedFolder() / U"a.zip"), "old textures");
             }});
    EXPECT_THAT(calls, ElementsAre("downloaded a.calib", "done a.calib"));
}

TEST_F(UpdateReport, AHookThatThrowsMakesTheRunAFailedOne)
{
    installBonus(U"a.calib", databaseBytes('a'));
    publishIndex("");
    publish("a.calibz", test::zipOf({{"a.calib", databaseBytes('n')}}));
    const RunReport& report = runWith({{}, [](const LibraryReport&) { throw std::runtime_error("no room"); }});
    EXPECT_EQ(report.result.outcome, ErrorsAutomatic);
    EXPECT_THAT(log(), testing::Contains(HasSubstr("no room")));
    EXPECT_EQ(library(U"a.calib").outcome, LibraryOutcome::Taken) << "it was handed over before";
}

TEST_F(UpdateReport, SaysThatTheRunWasCancelled)
{
    installCore(U"a.calib", databaseBytes('a'));
    publishIndex("");
    answer("a.calib", [](const test::SeenRequest&) {
        LibraryCatalogUpdater::killDownload();
        return Reply::file(databaseBytes('n'), "new");
    });
    const RunReport& report = runWith();
    EXPECT_TRUE(report.cancelled);
    EXPECT_EQ(library(U"a.calib").outcome, LibraryOutcome::LeftForLater);
    EXPECT_THAT(library(U"a.calib").download.path.utf8(), IsEmpty());
}

}  // namespace
