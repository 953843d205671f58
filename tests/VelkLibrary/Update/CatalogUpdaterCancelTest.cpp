#include "VelkLibrary/Update/UpdateTest.h"
#include "support/Numbers.h"
#include "support/Threads.h"

#include <gmock/gmock.h>

#include <atomic>
#include <optional>

namespace {

using namespace LibraryCatalogUpdate;
using test::databaseBytes;
using test::sha1;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::SizeIs;

class UpdaterCancel : public test::UpdateTest
{
protected:
    UpdaterCancel() { publishIndex(""); }

    // Cancels when the worker asks for a text for the `nth` time.
    void cancelAtText(unsigned int id, int nth)
    {
        whenAskedForText(id, [nth, calls = std::make_shared<std::atomic<int>>(0)] {
            if (++*calls == nth)
                LibraryCatalogUpdater::killDownload();
        });
    }

    // Runs, and cancels once the service has been asked something that waits at the gate.
    void cancelAtGate(test::Gate gate)
    {
        auto updater = makeUpdater(false);
        test::Thread host([&] {
            gate.waitForArrivals(1);
            LibraryCatalogUpdater::killDownload();
            gate.openForGood();
        });
        run(updater);
        host.join();
    }

    void expectCancelled() { EXPECT_EQ(receiver().finalEvent().slot, "onClose"); }
};

TEST_F(UpdaterCancel, BeforeTheRunEndsItWithoutChecks)
{
    installCore(U"a.calib", databaseBytes('a'));
    installBonus(U"b.calib", databaseBytes('b'));
    auto updater = makeUpdater(false);
    LibraryCatalogUpdater::killDownload();
    run(updater);
    EXPECT_THAT(steps(), ElementsAre("onSetRangeInGauge 0", "onClose"));
    EXPECT_THAT(requests("a.calib", "HEAD"), IsEmpty());
}

TEST_F(UpdaterCancel, IsTakenBackByTheNextUpdater)
{
    LibraryCatalogUpdater::killDownload();
    run();
    EXPECT_EQ(report().outcome, UpToDate);
}

TEST_F(UpdaterCancel, DuringTheIndexRequest)
{
    const test::Gate gate;
    test::Reply index{.body = "new.calib\n"};
    index.beforeHeader = gate;
    answer("Standard_Core_Content_Index.txt", index);
    cancelAtGate(gate);
    EXPECT_THAT(steps(), ElementsAre("onSetRangeInGauge 0", "onClose"));
}

TEST_F(UpdaterCancel, BetweenTheCatalogsOfAKind)
{
    installCore(U"a.calib", databaseBytes('a'));
    installCore(U"b.calib", databaseBytes('b'));
    installCore(U"c.calib", databaseBytes('c'));
    installBonus(U"d.calib", databaseBytes('d'));
    publish("a.calib", databaseBytes('a'));
    publish("b.calib", databaseBytes('b'));
    cancelAtText(test::textNumber::checkingCatalog, 2);
    run();
    expectCancelled();
    EXPECT_THAT(steps(),
                ElementsAre("onSetText Checking catalogs", "onSetRangeInGauge 3", "onSetText Checking a.calib",
                            "onUpdateInGauge", "onSetText Checking b.calib", "onUpdateInGauge", "onSetRangeInGauge 2",
                            "onSetText Asking the service about a.calib", "onUpdateInGauge",
                            "onSetText Asking the service about b.calib", "onUpdateInGauge", "onClose"));
    EXPECT_EQ(hashFile(coreFolder()),
              "a.calib:" + sha1(databaseBytes('a')) + "\nb.calib:" + sha1(databaseBytes('b')) + "\n")
        << "hash files are written for what was seen";
    EXPECT_EQ(hashFile(bonusFolder()), "");
}

TEST_F(UpdaterCancel, BetweenTheKinds)
{
    installCore(U"a.calib", databaseBytes('a'));
    installBonus(U"b.calib", databaseBytes('b'));
    publish("a.calib", databaseBytes('a'));
    cancelAtText(test::textNumber::checkingCatalog, 1);
    run();
    expectCancelled();
    EXPECT_THAT(requests("a.calib", "HEAD"), SizeIs(1));
    EXPECT_THAT(requests("b.calibz", "HEAD"), IsEmpty());
}

TEST_F(UpdaterCancel, DuringTheHeaderCheckLetsItFinish)
{
    const test::Gate gate;
    for (char32_t c = U'a'; c <= U'l'; ++c) {
        installCore(std::u32string(1, c) + U".calib", "outdated");
        test::Reply changed = test::Reply::file(databaseBytes('x'), "new");
        changed.beforeHeader = gate;
        answer(fileString(std::u32string(1, c)).utf8() + ".calib", changed);
    }
    cancelAtGate(gate);
    expectCancelled();
    EXPECT_EQ(receiver().count("onUpdateInGauge"), 24u) << "twelve checks and twelve answers";
    EXPECT_THAT(requests("l.calib", "HEAD"), SizeIs(1));
    EXPECT_THAT(requests("a.calib", "GET"), IsEmpty());
    EXPECT_EQ(receiver().count("onSetUnits"), 1u) << "the phase is announced before it ends";
}

TEST_F(UpdaterCancel, DuringADownloadAbortsIt)
{
    const test::Gate gate;
    installCore(U"a.calib", "outdated");
    installCore(U"b.calib", "outdated");
    publish("b.calib", databaseBytes('b'));
    test::Reply slow = test::Reply::file(databaseBytes('a', 50'000), "new");
    slow.block = 1'000;
    slow.beforeBlock = gate;
    answer("a.calib", slow);
    auto updater = makeUpdater(false);
    test::Thread host([&] {
        gate.waitForArrivals(1);
        test::Gate(gate).open(3);
        gate.waitForArrivals(4);
        LibraryCatalogUpdater::killDownload();
    });
    run(updater);
    host.join();
    test::Gate(gate).openForGood();
    expectCancelled();
    ASSERT_THAT(log(), SizeIs(1));
    EXPECT_THAT(log()[0], testing::StartsWith("Failed To Download File:  a   Reason:  "));
    EXPECT_THAT(test::listFolder(downloads(U"core")), IsEmpty()) << "nothing is left of the transfer";
    EXPECT_THAT(requests("b.calib", "GET"), IsEmpty());
    EXPECT_EQ(hashFile(coreFolder()), "a.calib:" + sha1("outdated") + "\nb.calib:" + sha1("outdated") + "\n");
}

TEST_F(UpdaterCancel, BetweenTwoDownloadsKeepsTheFirst)
{
    installCore(U"a.calib", "outdated");
    installCore(U"b.calib", "outdated");
    publish("b.calib", databaseBytes('b'));
    publish("a.calib", databaseBytes('a'));
    const auto updater = std::make_shared<LibraryCatalogUpdater>(makeUpdater(false));
    // The second announcement comes after the first catalog was handed over.
    cancelAtText(test::textNumber::downloading, 2);
    run(*updater);
    expectCancelled();
    EXPECT_EQ(handedOver()["a.calib"], databaseBytes('a'));
    EXPECT_EQ(hashFile(coreFolder()), "a.calib:" + sha1(databaseBytes('a')) + "\nb.calib:" + sha1("outdated") + "\n");
    EXPECT_EQ(handedOver().count("b.calib"), 0u);
}

TEST_F(UpdaterCancel, ManualRunsEndWithOnCloseToo)
{
    installCore(U"a.calib", "outdated");
    auto updater = makeUpdater(true);
    LibraryCatalogUpdater::killDownload();
    run(updater);
    EXPECT_THAT(steps(), ElementsAre("onSetRangeInGauge 0", "onClose"));
}

// Whenever it is cancelled, the run ends with one final event, and the installed catalogs are as before.
class CancelAtText : public UpdaterCancel, public testing::WithParamInterface<int>
{};

TEST_P(CancelAtText, EndsTheRun)
{
    for (const char32_t* const name : {U"a.calib", U"b.calib"}) {
        installCore(name, "outdated");
        installBonus(U"bonus " + std::u32string(name), "outdated");
        publish(fileString(std::u32string(name)).utf8(), databaseBytes('n'));
    }
    const std::string packed = test::zipOf({{"x.calib", databaseBytes('x')}, {"t.png", databaseBytes('t')}});
    answer("bonus a.calibz", test::Reply::file(packed, "new"));
    answer("bonus b.calibz", test::Reply::file(packed, "new"));
    Velk::HostServices host = services();
    host.resourceString = [calls =
                               std::make_shared<std::atomic<int>>(0)](unsigned int) -> std::optional<std::u32string> {
        if (++*calls == GetParam())
            LibraryCatalogUpdater::killDownload();
        return std::nullopt;
    };
    Velk::installHost(host);
    run();
    expectCancelled();
    EXPECT_EQ(test::readFile(coreFolder() / U"a.calib"), "outdated");
    EXPECT_EQ(test::readFile(bonusFolder() / U"bonus b.calib"), "outdated");
}

INSTANTIATE_TEST_SUITE_P(EveryText, CancelAtText, testing::Range(1, 13));

}  // namespace
