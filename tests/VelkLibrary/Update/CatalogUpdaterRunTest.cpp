#include "VelkLibrary/Update/UpdateTest.h"
#include "support/Numbers.h"
#include "support/Threads.h"

#include <VelkCommon/Reporting/EnforcerThrow.h>
#include <VelkCommon/Reporting/PreferenceEngine.h>

#include <gmock/gmock.h>

#include <QCoreApplication>

#include <filesystem>
#include <optional>
#include <stdexcept>
#include <thread>

namespace {

using namespace LibraryCatalogUpdate;
using test::databaseBytes;
using test::sha1;
using testing::Each;
using testing::ElementsAre;
using testing::Field;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::SizeIs;

class UpdaterRun : public test::UpdateTest
{
protected:
    void setPreference(std::size_t number, bool value)
    {
        PreferenceEngine::getThePrefs().getPrefSet().set<bool>(number, value);
    }

    bool preference(std::size_t number) { return *PreferenceEngine::getThePrefs().getPrefSet().get<bool>(number); }
};

TEST_F(UpdaterRun, TellsEveryStepInOrder)
{
    installCore(U"a.calib", databaseBytes('a'));
    installBonus(U"b.calib", databaseBytes('b'));
    installManufacturer(U"m.calib", databaseBytes('m'));
    publishIndex("a.calib\nnew.calib\n");
    publish("a.calib", databaseBytes('a'));
    publish("new.calib", databaseBytes('n', 12'345));
    answer("b.calibz", test::Reply::file("", sha1(databaseBytes('b'))));
    answer("m.calibz", test::Reply::file("", sha1(databaseBytes('m'))));
    run();
    EXPECT_THAT(steps(), ElementsAre("onSetText Checking catalogs", "onSetRangeInGauge 2", "onSetText Checking a.calib",
                                     "onUpdateInGauge", "onSetText Checking new.calib", "onUpdateInGauge",
                                     "onSetText Checking catalogs", "onSetRangeInGauge 1", "onSetText Checking b.calib",
                                     "onUpdateInGauge", "onSetText Checking catalogs", "onSetRangeInGauge 1",
                                     "onSetText Checking m.calib", "onUpdateInGauge", "onSetRangeInGauge 4",
                                     "onSetText Asking the service about a.calib", "onUpdateInGauge",
                                     "onSetText Asking the service about b.calib", "onUpdateInGauge",
                                     "onSetText Asking the service about m.calib", "onUpdateInGauge",
                                     "onSetText Asking the service about new.calib", "onUpdateInGauge",
                                     "onSetRangeInGauge 12", "onSetUnits KB", "onSetText Downloading new",
                                     "onCatalogUpdatedEvent new.calib", "closeCatalogUpdateEvent"));
    EXPECT_EQ(report().outcome, Installed);
    EXPECT_EQ(report().resultCode, NothingRemarkable);
    EXPECT_THAT(report().updatedNames, ElementsAre("new"));
    EXPECT_THAT(log(), IsEmpty());
    EXPECT_THAT(receiver().events(), Each(Field(&test::Event::thread, std::this_thread::get_id())));
}

TEST_F(UpdaterRun, WithNothingNewEndsWithOutcomeThree)
{
    installCore(U"a.calib", databaseBytes('a'));
    installBonus(U"b.calib", databaseBytes('b'));
    publishIndex("a.calib\n");
    publish("a.calib", databaseBytes('a'));
    answer("b.calibz", test::Reply::file("", sha1(databaseBytes('b'))));
    run();
    EXPECT_EQ(report().outcome, UpToDate);
    EXPECT_EQ(report().resultCode, NothingRemarkable);
    EXPECT_THAT(report().updatedNames, IsEmpty());
    EXPECT_EQ(receiver().count("onSetUnits"), 0u);
    EXPECT_EQ(receiver().count("onSetValueInGauge"), 0u);
    EXPECT_EQ(downloadsOf("a.calib"), 0u);
}

TEST_F(UpdaterRun, WithNothingAtAllStillEnds)
{
    publishIndex("");
    run();
    EXPECT_THAT(steps(), ElementsAre("onSetRangeInGauge 0", "closeCatalogUpdateEvent"));
    EXPECT_EQ(report().outcome, UpToDate);
}

TEST_F(UpdaterRun, ManualUpdatesTheCoreOnly)
{
    setPreference(test::preference::coreLibrariesStay, true);
    installCore(U"a.calib", databaseBytes('a'));
    installBonus(U"b.calib", databaseBytes('b'));
    installManufacturer(U"m.calib", databaseBytes('m'));
    publishIndex("");
    publish("a.calib", databaseBytes('a'));
    run(true);
    EXPECT_EQ(requests("a.calib", "HEAD").size(), 1u);
    EXPECT_THAT(requests("b.calibz", "HEAD"), IsEmpty());
    EXPECT_THAT(requests("m.calibz", "HEAD"), IsEmpty());
    EXPECT_EQ(report().outcome, UpToDate);
    EXPECT_EQ(hashFile(coreFolder()), "a.calib:" + sha1(databaseBytes('a')) + "\n");
    EXPECT_FALSE((bonusFolder() / U"catalog_hash.txt").pathExists());
    EXPECT_FALSE((manufacturerFolder() / U"catalog_hash.txt").pathExists());
}

TEST_F(UpdaterRun, AutomaticLeavesTheCoreAloneWhenThePreferenceSaysSo)
{
    setPreference(test::preference::coreLibrariesStay, true);
    installCore(U"a.calib", databaseBytes('a'));
    installBonus(U"b.calib", databaseBytes('b'));
    installManufacturer(U"m.calib", databaseBytes('m'));
    answer("b.calibz", test::Reply::file("", sha1(databaseBytes('b'))));
    answer("m.calibz", test::Reply::file("", sha1(databaseBytes('m'))));
    run();
    EXPECT_THAT(requests("Standard_Core_Content_Index.txt", "GET"), IsEmpty());
    EXPECT_THAT(requests("a.calib", "HEAD"), IsEmpty());
    EXPECT_THAT(requests("b.calibz", "HEAD"), SizeIs(1));
    EXPECT_THAT(requests("m.calibz", "HEAD"), SizeIs(1));
    EXPECT_EQ(report().outcome, UpToDate);
}

TEST_F(UpdaterRun, ManualRecordsWhetherItFailed)
{
    installCore(U"a.calib", databaseBytes('a'));
    answer("a.calib", test::Reply::resetAtOnce());
    publishIndex("");
    run(true);
    EXPECT_EQ(report().outcome, ErrorsManual);
    EXPECT_TRUE(preference(test::preference::lastManualUpdateFailed));
    publish("a.calib", databaseBytes('a'));
    run(true);
    EXPECT_EQ(report().outcome, UpToDate);
    EXPECT_FALSE(preference(test::preference::lastManualUpdateFailed));
}

TEST_F(UpdaterRun, AutomaticLeavesThatPreferenceAlone)
{
    run();  // there is no index
    EXPECT_EQ(report().outcome, ErrorsAutomatic);
    EXPECT_FALSE(preference(test::preference::lastManualUpdateFailed));
}

TEST_F(UpdaterRun, RemovesWhatEarlierRunsLeft)
{
    for (const char32_t* const kind : {U"core", U"bonus", U"manufacturer"}) {
        std::filesystem::create_directories(downloads(kind).utf8());
        test::writeFile(downloads(kind) / U"old.download", "leftover");
    }
    publishIndex("");
    run();
    EXPECT_THAT(test::listFolder(folder() / U"temp"), IsEmpty());
}

TEST_F(UpdaterRun, MakesTheFolderOfReferencedFiles)
{
    std::filesystem::remove_all(referencedFolder().utf8());
    publishIndex("");
    run();
    EXPECT_TRUE(referencedFolder().pathExists());
}

TEST_F(UpdaterRun, AsksWithProductVersionAndHash)
{
    product = "plan & build";
    version = "12.1 beta";
    installBonus(U"Küche 2.calib", databaseBytes('k'));
    publishIndex("");
    run();
    const auto seen = requests("Küche 2.calibz", "HEAD");
    ASSERT_THAT(seen, SizeIs(1));
    EXPECT_EQ(seen[0].header("If-None-Match"), "\"" + sha1(databaseBytes('k')) + "\"");
    EXPECT_EQ(seen[0].target, "/api?key=k&library=K%C3%BCche%202.calibz&product=plan%20&%20build&version=12.1%20beta");
}

TEST_F(UpdaterRun, NamesReachTheReceiverInWindows1252)
{
    installBonus(U"Küche 図.calib", databaseBytes('k'));
    publishIndex("");
    answer("Küche 図.calibz",
           test::Reply::file(test::zipOf({{"x.calib", databaseBytes('K')}, {"t", databaseBytes('t')}}), "tag"));
    run();
    const auto told = steps();
    EXPECT_THAT(told, testing::Contains("onSetText Checking K\xFC"
                                        "che ?.calib"));
    EXPECT_THAT(told, testing::Contains("onSetText Asking the service about K\xFC"
                                        "che ?.calib"));
}

TEST_F(UpdaterRun, TextsOfTheHostMayHaveNoPlaceholderOrTooMany)
{
    Velk::HostServices host = services();
    host.resourceString = [](unsigned int id) -> std::optional<std::u32string> {
        if (id == test::textNumber::downloading)
            return U"%1% of %2% (100 %)";
        if (id == test::textNumber::askingService)
            return U"";
        return std::nullopt;
    };
    Velk::installHost(host);
    publishIndex("new.calib\n");
    publish("new.calib", databaseBytes('n'));
    run();
    EXPECT_EQ(report().outcome, Installed);
    EXPECT_THAT(steps(), testing::Contains("onSetText new.calib"));
    EXPECT_THAT(steps(), testing::Contains(testing::StartsWith("onSetText new of ")));
}

TEST_F(UpdaterRun, TheSecondOneDownloadsNothing)
{
    installBonus(U"b.calib", databaseBytes('b'));
    publishIndex("new.calib\n");
    publish("new.calib", databaseBytes('n'));
    answer("b.calibz", test::Reply::file(test::zipOf({{"b.calib", databaseBytes('B')}, {"t.png", databaseBytes('t')}}),
                                         "edition2"));
    const auto placeCatalogs = [this] {
        for (const test::Event& event : receiver().events())
            if (event.slot == "onCatalogUpdatedEvent")
                std::filesystem::rename(event.paths.second.utf8(), event.paths.first.utf8());
    };
    run();
    EXPECT_THAT(report().updatedNames, ElementsAre("b", "new"));
    placeCatalogs();
    server.forgetRequests();
    core = {coreFolder() / U"new.calib"};
    run();
    EXPECT_EQ(report().outcome, UpToDate);
    EXPECT_EQ(downloadsOf("new.calib"), 0u);
    EXPECT_EQ(downloadsOf("b.calibz"), 0u);
    ASSERT_THAT(requests("b.calibz", "HEAD"), SizeIs(1));
    EXPECT_EQ(requests("b.calibz", "HEAD")[0].header("If-None-Match"), "\"edition2\"");
}

TEST_F(UpdaterRun, ACatalogChangedByHandIsNoticedWhenItsHashLineIsGone)
{
    installCore(U"a.calib", databaseBytes('a'));
    publishIndex("");
    publish("a.calib", databaseBytes('a'));
    run();
    test::writeFile(coreFolder() / U"a.calib", "changed by hand");
    server.forgetRequests();
    run();
    EXPECT_EQ(downloadsOf("a.calib"), 0u) << "the hash file still vouches for it";
    test::writeFile(coreFolder() / U"catalog_hash.txt", "");
    run();
    EXPECT_EQ(downloadsOf("a.calib"), 1u);
    EXPECT_EQ(handedOver()["a.calib"], databaseBytes('a'));
}

TEST_F(UpdaterRun, FollowsTheServiceWhereItHasMoved)
{
    server.on("/old", test::Reply::redirect("/api?key=moved"));
    address = server.url("/old");
    publishIndex("new.calib\n");
    publish("new.calib", databaseBytes('n'));
    run();
    EXPECT_EQ(report().outcome, Installed);
    ASSERT_THAT(requests("new.calib", "HEAD"), SizeIs(1));
    EXPECT_THAT(requests("new.calib", "HEAD")[0].target, HasSubstr("/api?key=moved&library=new.calib"));
    EXPECT_THAT(server.requests("/old"), SizeIs(1)) << "asked once in a run";
}

TEST_F(UpdaterRun, WithoutAServiceFailsAndSaysSo)
{
    const test::RefusingPort nobody;
    address = nobody.url("/api?key=k");
    installCore(U"a.calib", databaseBytes('a'));
    installBonus(U"b.calib", databaseBytes('b'));
    run();
    EXPECT_EQ(report().outcome, ErrorsAutomatic);
    EXPECT_EQ(report().resultCode, EndpointUnknown);
    EXPECT_THAT(log(), ElementsAre("Unable to determine api endpoint", "Failed to Download Core Library Index File:  ",
                                   "Unable to determine api endpoint", "Unable to determine api endpoint"));
    EXPECT_EQ(hashFile(coreFolder()), "a.calib:" + sha1(databaseBytes('a')) + "\n");
    EXPECT_EQ(test::readFile(coreFolder() / U"a.calib"), databaseBytes('a'));
}

TEST_F(UpdaterRun, StartsAfreshWhenTheServiceIsBack)
{
    {
        const test::RefusingPort nobody;
        address = nobody.url("/api?key=k");
        run();
        EXPECT_EQ(report().outcome, ErrorsAutomatic);
    }
    address = server.url("/api?key=k");
    publishIndex("new.calib\n");
    publish("new.calib", databaseBytes('n'));
    run();
    EXPECT_EQ(report().outcome, Installed);
    EXPECT_EQ(report().resultCode, NothingRemarkable);
}

TEST_F(UpdaterRun, ASecondCallRepeatsTheRunAgainstTheSameTable)
{
    installCore(U"a.calib", databaseBytes('a'));
    publishIndex("");
    publish("a.calib", databaseBytes('a'));
    auto updater = makeUpdater(false);
    run(updater);
    run(updater);
    EXPECT_EQ(receiver().count("closeCatalogUpdateEvent"), 2u);
    EXPECT_THAT(requests("a.calib", "HEAD"), SizeIs(2));
}

TEST_F(UpdaterRun, NeedsAnApplicationObject)
{
    publishIndex("");
    auto updater = makeUpdater(false);
    gApp = nullptr;
    bool thrown = false;
    run([&] {
        try {
            updater();
        } catch (const EnforcerException& error) {
            thrown = error.expression() == "!gApp" && error.sourceFile() == "LibraryCatalogUpdater";
        }
    });
    EXPECT_TRUE(thrown);
    EXPECT_EQ(report().outcome, ErrorsAutomatic) << "the receiver learns that the run has ended";
}

class ThrowingApplication : public applicationManager
{
public:
    std::string getInstanceName() const override { throw std::runtime_error("no name today"); }
};

TEST_F(UpdaterRun, GoesOnAfterAnException)
{
    ThrowingApplication application;
    Velk::HostServices host = services();
    host.application = &application;
    Velk::installHost(host);
    installCore(U"a.calib", "outdated");
    installCore(U"b.calib", "outdated");
    publishIndex("");
    publish("a.calib", databaseBytes('a'));
    publish("b.calib", databaseBytes('b'));
    run();
    EXPECT_EQ(report().outcome, ErrorsAutomatic);
    EXPECT_THAT(log(), SizeIs(3)) << "the removal of leftovers and two downloads";
    EXPECT_THAT(log(), Each(std::string("Exception in catalog update:  no name today")));
    EXPECT_THAT(steps(), testing::Contains("onSetText Downloading b"));
    EXPECT_EQ(hashFile(coreFolder()), "a.calib:" + sha1("outdated") + "\nb.calib:" + sha1("outdated") + "\n");
    Velk::installHost(services());
}

// The receiver is destroyed on its own thread after a number of calls, while the worker goes on.
TEST_F(UpdaterRun, GoesOnWhereverItsReceiverDies)
{
    for (char32_t c = U'a'; c <= U'f'; ++c) {
        installCore(std::u32string(1, c) + U".calib", "outdated");
        publish(fileString(std::u32string(1, c)).utf8() + ".calib", databaseBytes(static_cast<char>(c)));
    }
    publishIndex("");
    const std::string hashOfA = sha1(databaseBytes('a'));
    for (int calls = 1; calls <= 40; ++calls) {
        test::writeFile(coreFolder() / U"catalog_hash.txt", "");
        auto updater = makeUpdater(false);
        receiver().reaction = [&, made = 0](const test::Event&) mutable {
            if (++made == calls)
                QMetaObject::invokeMethod(
                    QCoreApplication::instance(), [&] { destroyReceiver(); }, Qt::QueuedConnection);
        };
        run(updater);
        ASSERT_THAT(hashFile(coreFolder()), testing::StartsWith("a.calib:" + hashOfA)) << "the run was completed";
    }
}

TEST_F(UpdaterRun, GoesOnWithoutItsReceiver)
{
    const test::Gate gate;
    publishIndex("new.calib\n");
    test::Reply slow = test::Reply::file(databaseBytes('n'), "tag");
    slow.beforeHeader = gate;
    answer("new.calib", slow);
    auto updater = makeUpdater(false);
    test::Thread worker([&] { updater(); });
    gate.waitForArrivals(1);
    destroyReceiver();
    test::Gate(gate).openForGood();
    worker.join();
    EXPECT_EQ(hashFile(coreFolder()), "new.calib:tag\n") << "the run was completed";
}

}  // namespace
