#include "VelkLibrary/Update/UpdateTest.h"
#include "support/Names.h"
#include "support/Numbers.h"
#include "support/OpenModes.h"

#include <VelkCommon/Files/LockingFStream.h>
#include <VelkLibrary/Update/detail/CatalogInstall.h>

#include <gmock/gmock.h>

#include <filesystem>
#include <functional>
#include <memory>
#include <optional>

namespace {

namespace fs = std::filesystem;

using namespace LibraryCatalogUpdate;
using test::databaseBytes;
using test::sha1;
using test::zipOf;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::SizeIs;

class UpdaterInstall : public test::UpdateTest
{
protected:
    UpdaterInstall() { publishIndex(""); }

    void publishPacked(const std::string& library, const std::string& bytes)
    {
        answer(library, test::Reply::file(bytes, "edition2"));
    }

    std::string downloadPath(const std::u32string& kind, const std::u32string& name) const
    {
        return (downloads(kind) / name).utf8();
    }
};

TEST_F(UpdaterInstall, HandsACoreCatalogOver)
{
    installCore(U"a.calib", "outdated");
    publish("a.calib", databaseBytes('a'));
    run();
    ASSERT_EQ(receiver().count("onCatalogUpdatedEvent"), 1u);
    for (const test::Event& event : receiver().events())
        if (event.slot == "onCatalogUpdatedEvent") {
            EXPECT_EQ(event.paths.first, coreFolder() / U"a.calib");
            EXPECT_EQ(event.paths.second, downloads(U"core") / U"a.calib");
        }
    EXPECT_EQ(test::readFile(coreFolder() / U"a.calib"), "outdated") << "replacing it is the host's business";
    EXPECT_THAT(test::listFolder(downloads(U"core")), ElementsAre("a.calib"));
}

#ifndef _WIN32
TEST_F(UpdaterInstall, GivesEverybodyAccess)
{
    installCore(U"a.calib", "outdated");
    publish("a.calib", databaseBytes('a'));
    installBonus(U"b.calib", "outdated");
    publishPacked("b.calibz", zipOf({{"b.calib", databaseBytes('b')}, {"t.png", databaseBytes('t')}}));
    run();
    const auto everyone = fs::perms::owner_read | fs::perms::owner_write | fs::perms::group_read |
                          fs::perms::group_write | fs::perms::others_read | fs::perms::others_write;
    for (const std::string& path : {downloadPath(U"core", U"a.calib"), downloadPath(U"bonus", U"b.calib"),
                                    (referencedFolder() / U"b.zip").utf8()})
        EXPECT_EQ(fs::status(path).permissions() & everyone, everyone) << path;
}
#endif

TEST_F(UpdaterInstall, UnpacksBonusAndManufacturerCatalogs)
{
    std::vector<std::string> resets;
    Velk::HostServices host = services();
    host.fileSearchReset = [&](const fileString& path) { resets.push_back(path.utf8()); };
    Velk::installHost(host);
    installBonus(U"b.calib", "outdated");
    installManufacturer(U"m.calib", "outdated");
    publishPacked("b.calibz", zipOf({{"inner.calib", databaseBytes('b')}, {"t.png", databaseBytes('t')}}));
    publishPacked("m.calibz", zipOf({{"inner.calib", databaseBytes('m')}, {"u.png", databaseBytes('u')}}));
    run();
    EXPECT_EQ(report().outcome, Installed);
    EXPECT_THAT(report().updatedNames, ElementsAre("b", "m"));
    EXPECT_EQ(handedOver()["b.calib"], databaseBytes('b'));
    EXPECT_EQ(handedOver()["m.calib"], databaseBytes('m'));
    EXPECT_THAT(test::listFolder(referencedFolder()), ElementsAre("b.zip", "m.zip"));
    EXPECT_THAT(test::listFolder(downloads(U"bonus")), ElementsAre("b.calib")) << "the archive is removed";
    EXPECT_EQ(resets, std::vector<std::string>(2, (referencedFolder().utf8() + test::separator)));
    EXPECT_EQ(hashFile(bonusFolder()), "b.calib:edition2\n");
    EXPECT_EQ(hashFile(manufacturerFolder()), "m.calib:edition2\n");
    EXPECT_THAT(log(), IsEmpty());
}

TEST_F(UpdaterInstall, KeepsAnArchiveWithoutReferencedFilesUntilTheNextRun)
{
    installBonus(U"b.calib", "outdated");
    publishPacked("b.calibz", zipOf({{"inner.calib", databaseBytes('b')}}));
    run();
    EXPECT_EQ(handedOver()["b.calib"], databaseBytes('b'));
    EXPECT_THAT(test::listFolder(downloads(U"bonus")), ElementsAre("b.calib", "b.download"));
    EXPECT_THAT(test::listFolder(referencedFolder()), IsEmpty());
    answer("b.calibz", test::Reply{.status = 304});
    run();
    EXPECT_THAT(test::listFolder(folder() / U"temp"), IsEmpty());
}

TEST_F(UpdaterInstall, TakesReferencedFilesWithoutACatalogFile)
{
    installBonus(U"b.calib", "installed");
    publishPacked("b.calibz", zipOf({{"t.png", databaseBytes('t')}}));
    run();
    EXPECT_EQ(report().outcome, Installed);
    EXPECT_EQ(receiver().count("onCatalogUpdatedEvent"), 0u);
    EXPECT_THAT(report().updatedNames, ElementsAre("b"));
    EXPECT_THAT(test::listFolder(referencedFolder()), ElementsAre("b.zip"));
}

TEST_F(UpdaterInstall, ReplacesEarlierReferencedFiles)
{
    test::writeFile(referencedFolder() / U"textures.zip", "old");
    publishIndex("textures.zip\n");
    const std::string archive = zipOf({{"t.png", databaseBytes('t')}});
    publish("textures.zip", archive);
    run();
    EXPECT_EQ(report().outcome, Installed);
    EXPECT_THAT(report().updatedNames, ElementsAre("textures"));
    EXPECT_EQ(receiver().count("onCatalogUpdatedEvent"), 0u);
    EXPECT_EQ(test::readFile(referencedFolder() / U"textures.zip"), archive);
    EXPECT_THAT(test::listFolder(downloads(U"core")), IsEmpty());
    server.forgetRequests();
    run();
    EXPECT_EQ(downloadsOf("textures.zip"), 0u) << "its hash is taken from the folder of referenced files";
}

TEST_F(UpdaterInstall, AnEmptyUnpackCountsAsUpdated)
{
    installBonus(U"b.calib", "installed");
    publishPacked("b.calibz", databaseBytes('x'));
    run();
    EXPECT_EQ(report().outcome, UpToDate);
    EXPECT_EQ(receiver().count("onCatalogUpdatedEvent"), 0u);
    EXPECT_EQ(hashFile(bonusFolder()), "b.calib:edition2\n");
    EXPECT_EQ(test::readFile(bonusFolder() / U"b.calib"), "installed");
    EXPECT_THAT(log(), ElementsAre("Nothing to install in download:  " + downloadPath(U"bonus", U"b.download")));
}

TEST_F(UpdaterInstall, AnEmptyFileIsRefused)
{
    installCore(U"a.calib", "outdated");
    answer("a.calib", [](const test::SeenRequest& request) {
        return request.method == "HEAD" ? test::Reply::file(databaseBytes('a'), "new") : test::Reply::file("", "new");
    });
    run();
    EXPECT_EQ(report().outcome, ErrorsAutomatic);
    EXPECT_EQ(report().resultCode, NothingRemarkable);
    EXPECT_THAT(log(), ElementsAre("Empty Download File:  " + downloadPath(U"core", U"a.download")));
    EXPECT_THAT(test::listFolder(downloads(U"core")), IsEmpty());
    EXPECT_EQ(hashFile(coreFolder()), "a.calib:" + sha1("outdated") + "\n");
}

TEST_F(UpdaterInstall, AnotherExtensionIsRefused)
{
    installCore(U"a.calibz", "outdated");
    publish("a.calibz", databaseBytes('a'));
    run();
    EXPECT_EQ(report().outcome, ErrorsAutomatic);
    EXPECT_THAT(log(), ElementsAre("Unsupported file extension:  a.calibz"));
}

TEST_F(UpdaterInstall, ALockedTargetEndsThePhase)
{
    installCore(U"a.calib", "outdated");
    installCore(U"b.calib", "outdated");
    publish("a.calib", databaseBytes('a'));
    publish("b.calib", databaseBytes('b'));
    std::unique_ptr<LockingFStream> other;
    whenAskedForText(test::textNumber::downloading, [&] {
        fs::create_directories(downloads(U"core").utf8());
        other = std::make_unique<LockingFStream>(downloads(U"core") / U"a.calib", test::writeBytes);
    });
    run();
    EXPECT_EQ(report().outcome, ErrorsAutomatic);
    EXPECT_EQ(report().resultCode, CatalogNotRenamed);
    EXPECT_THAT(log(), ElementsAre("Download final destination file was locked or not writeable:  " +
                                   downloadPath(U"core", U"a.download")));
    EXPECT_EQ(downloadsOf("b.calib"), 0u) << "others wait for the next run";
    EXPECT_EQ(hashFile(coreFolder()), "a.calib:" + sha1("outdated") + "\nb.calib:" + sha1("outdated") + "\n");
}

// There is too little time between the end of a transfer and the installation to lock the file, so this test
// takes the step by itself.
TEST_F(UpdaterInstall, ALockedDownloadIsRefused)
{
    const LibraryCatalogUpdater updater = makeUpdater(false);
    fs::create_directories(downloads(U"core").utf8());
    const fileString downloaded = downloads(U"core") / U"a.download";
    LockingFStream other(downloaded, test::writeBytes);
    other << "bytes" << std::flush;
    detail::CatalogRun catalogRun;
    CatalogRecord record;
    record.kind = CoreCatalogs;
    EXPECT_FALSE(
        detail::installCatalog(updater, catalogRun, downloaded, fileString(std::u32string(U"a.calib")), record));
    EXPECT_EQ(catalogRun.resultCode, CatalogNotRenamed);
    EXPECT_FALSE(record.updated);
    EXPECT_THAT(log(), ElementsAre("Download destination file was locked or not writeable:  " + downloaded.utf8()));
}

TEST_F(UpdaterInstall, AFileThatCannotBeRenamedEndsThePhase)
{
    installCore(U"a.calib", "outdated");
    installCore(U"b.calib", "outdated");
    publish("a.calib", databaseBytes('a'));
    publish("b.calib", databaseBytes('b'));
    whenAskedForText(test::textNumber::downloading, [&] { fs::create_directories(downloadPath(U"core", U"a.calib")); });
    run(true);
    EXPECT_EQ(report().outcome, ErrorsManual);
    EXPECT_EQ(report().resultCode, CatalogNotRenamed);
    EXPECT_THAT(log(), ElementsAre("Unable to rename catalog update file:  " + downloadPath(U"core", U"a.download")));
    EXPECT_EQ(downloadsOf("b.calib"), 0u);
}

TEST_F(UpdaterInstall, ReferencedFilesThatCannotBePlacedEndThePhase)
{
    fs::create_directories((referencedFolder() / U"b.zip").utf8());
    installBonus(U"b.calib", "outdated");
    installBonus(U"c.calib", "outdated");
    publishPacked("b.calibz", zipOf({{"b.calib", databaseBytes('b')}, {"t.png", databaseBytes('t')}}));
    publishPacked("c.calibz", zipOf({{"c.calib", databaseBytes('c')}}));
    run();
    EXPECT_EQ(report().outcome, ErrorsAutomatic);
    EXPECT_THAT(report().updatedNames, ElementsAre("b")) << "the database was handed over before";
    EXPECT_THAT(log(), ElementsAre("Unable to copy referenced file:  " + downloadPath(U"bonus", U"b.zip")));
    EXPECT_EQ(downloadsOf("c.calibz"), 0u);
    EXPECT_EQ(hashFile(bonusFolder()), "b.calib:" + sha1("outdated") + "\nc.calib:" + sha1("outdated") + "\n");
}

TEST_F(UpdaterInstall, TheHashIsWrittenWhetherOrNotTheHostInstalls)
{
    installCore(U"a.calib", "outdated");
    publish("a.calib", databaseBytes('a'));
    run();
    EXPECT_EQ(hashFile(coreFolder()), "a.calib:" + sha1(databaseBytes('a')) + "\n");
    EXPECT_EQ(test::readFile(coreFolder() / U"a.calib"), "outdated");
}

}  // namespace
