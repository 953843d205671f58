#include "VelkLibrary/Update/UpdateTest.h"

#include <VelkLibrary/Update/detail/CatalogDownload.h>
#include <VelkLibrary/Update/detail/CatalogUpdateState.h>

#include "support/EventLoop.h"
#include "support/Numbers.h"

#include <gmock/gmock.h>

#include <limits>
#include <optional>
#include <string>
#include <utility>
#include <vector>

namespace {

using namespace LibraryCatalogUpdate;
using detail::CatalogUpdateState;
using test::databaseBytes;
using test::sha1;
using testing::Contains;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::Not;
using testing::SizeIs;
using testing::StartsWith;

// ---- The progress callback -----------------------------------------------------------------------

class ProgressCallback : public testing::Test
{
protected:
    ProgressCallback()
    {
        test::ensureApplication();
        CatalogUpdateState::get().begin("");
        CatalogUpdateState::get().counters = {};
    }
    ~ProgressCallback() override { CatalogUpdateState::get().counters = {}; }

    int call(double received) { return detail::reportProgress(&progress_, 0, received, 0, 0); }

    // The values that were sent to the receiver.
    std::vector<std::size_t> told()
    {
        test::deliverEvents();
        std::vector<std::size_t> values;
        for (const test::Event& event : receiver_.events())
            values.push_back(event.number);
        return values;
    }

private:
    class Job : public LibraryProgressBase
    {
    public:
        explicit Job(QObject& receiver) : LibraryProgressBase(receiver) {}
    };

    test::RecordingReceiver receiver_;
    Job job_{receiver_};
    detail::TransferProgress progress_{0, &job_};
};

TEST_F(ProgressCallback, TellsEvery502ndCall)
{
    for (int i = 1; i <= 501; ++i)
        ASSERT_EQ(call(i * 1000.0), 0);
    EXPECT_THAT(told(), IsEmpty());
    EXPECT_EQ(call(502'000), 0);
    EXPECT_THAT(told(), ElementsAre(502u));
    for (int i = 503; i <= 1003; ++i)
        ASSERT_EQ(call(i * 1000.0), 0);
    EXPECT_THAT(told(), SizeIs(1));
    EXPECT_EQ(call(1'004'000), 0);
    EXPECT_THAT(told(), ElementsAre(502u, 1004u));
}

TEST_F(ProgressCallback, RoundsToTheNearestKilobyte)
{
    auto& counters = CatalogUpdateState::get().counters;
    const std::pair<double, int> cases[] = {{499, 0}, {500, 1}, {1499, 1}, {1500, 2}, {5e12, 2'147'483'647}, {-1, 0}};
    for (const auto& [received, kilobytes] : cases) {
        EXPECT_EQ(call(received), 0);
        EXPECT_EQ(counters.currentKilobytes, kilobytes) << received;
    }
    EXPECT_EQ(call(std::numeric_limits<double>::quiet_NaN()), 0);
}

TEST_F(ProgressCallback, AddsWhatEarlierFilesBrought)
{
    auto& counters = CatalogUpdateState::get().counters;
    counters.kilobytesDone = 5'000'000'000;
    counters.unreportedCalls = 501;
    EXPECT_EQ(call(3000), 0);
    EXPECT_THAT(told(), ElementsAre(5'000'000'003u));
}

TEST_F(ProgressCallback, EndsATransferThatReceivesNothingFor600Calls)
{
    for (int i = 1; i <= 600; ++i)
        ASSERT_EQ(call(0), 0) << i;
    EXPECT_EQ(call(0), 1);
    EXPECT_EQ(call(0), 1);
}

TEST_F(ProgressCallback, CountsStalledCallsFromZeroAfterAnyChange)
{
    for (int round = 1; round <= 5; ++round) {
        ASSERT_EQ(call(round), 0);
        for (int i = 1; i <= 600; ++i)
            ASSERT_EQ(call(round), 0) << round << " " << i;
    }
    EXPECT_EQ(call(5), 1);
    EXPECT_EQ(call(6), 0);
}

TEST_F(ProgressCallback, EndsATransferOfACancelledRun)
{
    EXPECT_EQ(call(1), 0);
    LibraryCatalogUpdater::killDownload();
    EXPECT_EQ(call(2), 1);
    CatalogUpdateState::get().begin("");
    EXPECT_EQ(call(3), 0);
}

// ---- The download phase --------------------------------------------------------------------------

class UpdaterDownload : public test::UpdateTest
{
protected:
    UpdaterDownload() { publishIndex(""); }

    // An installed core catalog that the service has in another version.
    void installOutdated(const std::u32string& name, const std::string& published)
    {
        installCore(name, "outdated");
        publish(fileString(name).utf8(), published);
    }
};

TEST_F(UpdaterDownload, FetchesWhatHasChangedInKeyOrder)
{
    installOutdated(U"b.calib", databaseBytes('b'));
    installOutdated(U"a.calib", databaseBytes('a'));
    installOutdated(U"C.calib", databaseBytes('c'));
    installCore(U"same.calib", databaseBytes('s'));
    publish("same.calib", databaseBytes('s'));
    run();
    std::vector<std::string> fetched;
    for (const auto& request : server.requests("/api"))
        if (request.method == "GET" && request.parameter("library").ends_with(".calib"))
            fetched.push_back(request.parameter("library"));
    EXPECT_THAT(fetched, ElementsAre("C.calib", "a.calib", "b.calib"));
    EXPECT_EQ(handedOver()["b.calib"], databaseBytes('b'));
    EXPECT_THAT(report().updatedNames, ElementsAre("C", "a", "b"));
    EXPECT_EQ(hashFile(coreFolder()), "C.calib:" + sha1(databaseBytes('c')) + "\na.calib:" + sha1(databaseBytes('a')) +
                                          "\nb.calib:" + sha1(databaseBytes('b')) +
                                          "\nsame.calib:" + sha1(databaseBytes('s')) + "\n");
}

TEST_F(UpdaterDownload, SendsTheHashAgain)
{
    installOutdated(U"a.calib", databaseBytes('a'));
    run();
    const auto seen = requests("a.calib", "GET");
    ASSERT_THAT(seen, SizeIs(1));
    EXPECT_EQ(seen[0].header("If-None-Match"), "\"" + sha1("outdated") + "\"");
}

TEST_F(UpdaterDownload, LeavesAloneWhatTheServiceCallsCurrent)
{
    installCore(U"a.calib", "whatever");
    answer("a.calib", test::Reply{.status = 304});
    installCore(U"b.calib", databaseBytes('b'));
    answer("b.calib",
           test::Reply{.headers = {{"ETag", "W/\"" + sha1(databaseBytes('b')) + "\""}}, .body = databaseBytes('B')});
    run();
    EXPECT_EQ(report().outcome, UpToDate);
    EXPECT_EQ(downloadsOf("a.calib") + downloadsOf("b.calib"), 0u);
}

TEST_F(UpdaterDownload, CountsWholeKilobytesOfEachFile)
{
    installOutdated(U"a.calib", databaseBytes('a', 1'999));
    installOutdated(U"b.calib", databaseBytes('b', 2'999));
    run();
    EXPECT_THAT(steps(), Contains("onSetRangeInGauge 3"));
    EXPECT_EQ(report().outcome, Installed);
}

TEST_F(UpdaterDownload, OfLessThanAKilobyteInAllDoesNotBegin)
{
    installOutdated(U"a.calib", databaseBytes('a', 999));
    run();
    EXPECT_EQ(report().outcome, UpToDate);
    EXPECT_EQ(downloadsOf("a.calib"), 0u);
    EXPECT_EQ(receiver().count("onSetUnits"), 0u);
    installOutdated(U"b.calib", databaseBytes('b', 1'000));
    run();
    EXPECT_EQ(report().outcome, Installed);
    EXPECT_EQ(downloadsOf("a.calib"), 1u) << "small ones travel with others";
}

TEST_F(UpdaterDownload, TellsTheGaugeHowFarItIs)
{
    installOutdated(U"a.calib", databaseBytes('a', 6'000'000));
    installOutdated(U"b.calib", databaseBytes('b', 6'000'000));
    CatalogUpdateState::get().counters = {};
    run();
    EXPECT_THAT(steps(), Contains("onSetRangeInGauge 12000"));
    std::size_t last = 0;
    for (const test::Event& event : receiver().events())
        if (event.slot == "onSetValueInGauge") {
            EXPECT_GE(event.number, last);
            last = event.number;
        }
    EXPECT_GT(last, 6000u);
    EXPECT_LE(last, 12000u);
    EXPECT_GE(receiver().count("onSetValueInGauge"), 4u);
    EXPECT_EQ(CatalogUpdateState::get().counters.kilobytesDone, 6000u) << "the last file is added by the next one";
}

TEST_F(UpdaterDownload, KeepsCountingInTheNextRun)
{
    CatalogUpdateState::get().counters = {};
    installOutdated(U"a.calib", databaseBytes('a', 5'000));
    run();
    run();
    EXPECT_EQ(CatalogUpdateState::get().counters.kilobytesDone, 0u) << "nothing new, nothing added";
    publish("a.calib", databaseBytes('b', 5'000));
    run();
    EXPECT_EQ(CatalogUpdateState::get().counters.kilobytesDone, 5u);
}

TEST_F(UpdaterDownload, AFailureIsLoggedAndTheNextOneTried)
{
    installCore(U"a.calib", "outdated");
    answer("a.calib", [](const test::SeenRequest& request) {
        return request.method == "HEAD" ? test::Reply::file(databaseBytes('a'), "new")
                                        : test::Reply{.status = 503, .body = databaseBytes('x')};
    });
    installOutdated(U"b.calib", databaseBytes('b'));
    run();
    EXPECT_EQ(report().outcome, ErrorsAutomatic);
    EXPECT_EQ(report().resultCode, NothingRemarkable);
    EXPECT_THAT(report().updatedNames, ElementsAre("b"));
    EXPECT_THAT(log(), ElementsAre("Failed To Download File:  a   Reason:  HTTP status 503"));
    EXPECT_THAT(test::listFolder(downloads(U"core")), Not(Contains(StartsWith("a."))));
    EXPECT_EQ(hashFile(coreFolder()), "a.calib:" + sha1("outdated") + "\nb.calib:" + sha1(databaseBytes('b')) + "\n");
}

TEST_F(UpdaterDownload, AStalledTransferIsGivenUp)
{
    installCore(U"a.calib", "outdated");
    answer("a.calib", [](const test::SeenRequest& request) {
        return request.method == "HEAD" ? test::Reply::file(databaseBytes('a'), "new") : test::Reply::never();
    });
    // 600 calls take minutes. The count is the worker's.
    whenAskedForText(test::textNumber::downloading, [] { CatalogUpdateState::get().counters.stalledCalls = 595; });
    run();
    EXPECT_EQ(report().outcome, ErrorsAutomatic);
    EXPECT_EQ(report().resultCode, TransferAborted);
    ASSERT_THAT(log(), SizeIs(1));
    EXPECT_THAT(log()[0], StartsWith("Failed To Download File:  a   Reason:  "));
    EXPECT_GT(log()[0].size(), std::string("Failed To Download File:  a   Reason:  ").size());
    EXPECT_THAT(test::listFolder(downloads(U"core")), IsEmpty());
}

TEST_F(UpdaterDownload, AServiceMessageIsFetchedForARefusalOnly)
{
    installCore(U"forbidden.calib", "f");
    installCore(U"missing.calib", "m");
    installCore(U"broken.calib", "b");
    answer("forbidden.calib", test::Reply{.status = 403, .body = "no licence"});
    answer("missing.calib", test::Reply{.status = 404, .body = "not here"});
    answer("broken.calib", test::Reply{.status = 500, .body = "oh"});
    run();
    EXPECT_EQ(downloadsOf("forbidden.calib"), 1u);
    EXPECT_EQ(downloadsOf("missing.calib"), 1u);
    EXPECT_EQ(downloadsOf("broken.calib"), 0u);
    EXPECT_EQ(report().outcome, UpToDate) << "an answer is no failure";
}

TEST_F(UpdaterDownload, ATagThatChangesMeanwhileIsNoticedNextTime)
{
    installCore(U"a.calib", "outdated");
    answer("a.calib", [](const test::SeenRequest& request) {
        return request.method == "HEAD" ? test::Reply::file(databaseBytes('1'), "edition1")
                                        : test::Reply::file(databaseBytes('2'), "edition2");
    });
    run();
    EXPECT_EQ(handedOver()["a.calib"], databaseBytes('2')) << "bytes are not checked against the tag";
    EXPECT_EQ(hashFile(coreFolder()), "a.calib:edition1\n");
    answer("a.calib", test::Reply::file(databaseBytes('2'), "edition2"));
    run();
    EXPECT_EQ(downloadsOf("a.calib"), 2u);
    EXPECT_EQ(hashFile(coreFolder()), "a.calib:edition2\n");
}

class CatalogNames : public test::UpdateTest, public testing::WithParamInterface<std::u32string>
{};

TEST_P(CatalogNames, TravelAndComeBack)
{
    const std::u32string name = GetParam();
    const std::string library = fileString(name).stem().utf8();
    installCore(name + U".calib", "outdated");
    installBonus(name + U" bonus.calib", "outdated");
    publishIndex("");
    publish(library + ".calib", databaseBytes('c'));
    answer(library + " bonus.calibz", test::Reply::file(test::zipOf({{"x.calib", databaseBytes('b')}}), "tag"));
    run();
    EXPECT_EQ(handedOver()[library + ".calib"], databaseBytes('c'));
    EXPECT_EQ(handedOver()[library + " bonus.calib"], databaseBytes('b'));
    EXPECT_EQ(hashFile(coreFolder()), library + ".calib:" + sha1(databaseBytes('c')) + "\n");
    server.forgetRequests();
    run();
    EXPECT_EQ(report().outcome, UpToDate);
    EXPECT_EQ(downloadsOf(library + ".calib"), 0u);
}

INSTANTIATE_TEST_SUITE_P(Names, CatalogNames,
                         testing::Values(U"two words", U" leading", U"K\u00FCche \u00C4\u00D6\u00DC\u00DF",
                                         U"\u56F3\u66F8\u9928", U"\U0001F6CB sofa",
                                         U"quote' (x) [y] {z} ~ ^ ` ; , = ! $ @", std::u32string(200, U'n'),
                                         std::u32string(70, U'\u56F3')));

TEST_F(UpdaterDownload, NamesThatDifferInCaseAreTwo)
{
    installOutdated(U"Plants.calib", databaseBytes('P'));
    installOutdated(U"plants.calib", databaseBytes('p'));
    run();
    EXPECT_EQ(handedOver()["Plants.calib"], databaseBytes('P'));
    EXPECT_EQ(handedOver()["plants.calib"], databaseBytes('p'));
}

// The names go into the request as they are, so these arrive cut or changed, and the service has no such
// catalog.
TEST_F(UpdaterDownload, NamesThatCannotTravelAreNotFound)
{
    for (const char32_t* const name : {U"a & b.calib", U"c # d.calib", U"e + f.calib", U"g %41.calib"})
        installCore(name, "installed");
    run();
    EXPECT_EQ(report().outcome, UpToDate);
    EXPECT_THAT(log(), IsEmpty());
    EXPECT_EQ(test::readFile(coreFolder() / U"a & b.calib"), "installed");
}

TEST_F(UpdaterDownload, RunsOnOneConnectionAtATime)
{
    for (char c = 'a'; c <= 'z'; ++c) {
        const std::u32string name = std::u32string(1, static_cast<char32_t>(c)) + U".calib";
        installOutdated(name, databaseBytes(c));
    }
    run();
    EXPECT_THAT(report().updatedNames, SizeIs(26));
    EXPECT_LE(server.connections(), 8u);
}

}  // namespace
