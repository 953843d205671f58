// Many requests: connections that are kept, checks that overlap, servers that cannot be reached.
#include <VelkCommon/Network/Curl.h>
#include <VelkCommon/Network/WebUtils.h>

#include "NetworkTest.h"
#include "support/Threads.h"

#include <algorithm>
#include <atomic>
#include <functional>
#include <memory>
#include <numeric>
#include <stdexcept>
#include <stop_token>

namespace {

using std::chrono::milliseconds;
using test::Gate;
using test::Outcome;
using test::Reply;
using test::SeenRequest;
using testing::ElementsAre;
using testing::IsEmpty;

class CurlRun : public test::NetworkTest
{
protected:
    // Whether a server that was away or silent is asked again: then the transfer lives to its first tick, which ends
    // it; otherwise it fails at once, as it did before.
    bool isAskedAgain(const test::DeafPort& port) { return isAskedAgain(port.url()); }
    bool isAskedAgain(const std::string& url)
    {
        limit([](auto& limits) { limits.tick = milliseconds(5); });
        const auto stop = [](void*, double, double, double, double) { return 1; };
        const unsigned int code = download(url, {}, nullptr, stop).code;
        EXPECT_TRUE(code == test::aborted || code == test::timedOut) << code;
        return code == test::aborted;
    }
};

// ---- Connections ---------------------------------------------------------------------------------

TEST_F(CurlRun, NeedsOneConnectionForAllKindsOfRequests)
{
    server_.on("/a", Reply::file("body", "tag"));
    server_.on("/missing", Reply{.status = 404, .body = "no such file"});
    server_.on("/moved", Reply::redirect("/a"));
    for (int i = 0; i < 10; ++i) {
        EXPECT_EQ(WebUtils::getUrlAfterRedirects(server_.url("/moved")), server_.url("/a"));
        EXPECT_TRUE(askHeader(server_.url("/a")));
        EXPECT_TRUE(browse(server_.url("/a")));
        EXPECT_TRUE(download(server_.url("/a")).succeeded);
        EXPECT_FALSE(download(server_.url("/missing")).succeeded);
        EXPECT_FALSE(download(server_.url("/a"), {"If-None-Match: \"tag\""}).succeeded);
        EXPECT_FALSE(browse(server_.url("/missing")));
    }
    EXPECT_EQ(server_.connections(), 1U);
}

TEST_F(CurlRun, WorksFromManyThreads)
{
    const std::string body(100000, 'x');
    server_.on("/a", Reply::file(body, "tag"));
    std::atomic<int> good = 0;
    test::onThreads(8, [&](std::size_t i) {
        for (int j = 0; j < 10; ++j) {
            std::string text;
            std::string header;
            std::string reason;
            long status = 0;
            const fileString file = folder() / fileString("file" + std::to_string(i));
            good += Curl::get().browseURL(server_.url("/a"), {}, text, true, 0) && text == body;
            good += Curl::get().getURLHeader(server_.url("/a"), {}, header, status) && status == 200;
            good += Curl::get().download_to_location(server_.url("/a"), file, reason);
        }
    });
    EXPECT_EQ(good, 8 * 10 * 3);
    EXPECT_LE(server_.connections(), 8U);
}

TEST_F(CurlRun, StopsWhatIsStoppable)
{
    server_.on("/never", Reply::never());
    server_.on("/a", Reply{.body = "a"});
    std::stop_source source;
    std::string reason;
    unsigned int code = 0;
    {
        const Curl::Stoppable stoppable(source.get_token());
        EXPECT_TRUE(browse(server_.url("/a"))) << "until it is stopped";
        test::Thread stopper([&] {
            server_.waitForRequests(2);
            source.request_stop();
        });
        EXPECT_FALSE(Curl::get().download_to_location(server_.url("/never"), folder() / U"file", {}, nullptr, nullptr,
                                                      reason, code));
        stopper.join();
        EXPECT_EQ(code, test::aborted) << reason;
        EXPECT_TRUE(Curl::Stoppable::isStopped());
        EXPECT_FALSE(browse(server_.url("/never")));
        const Curl::Stoppable other{std::stop_token()};
        EXPECT_TRUE(browse(server_.url("/a"))) << "the inner one counts";
    }
    EXPECT_TRUE(browse(server_.url("/a")));
    EXPECT_FALSE((folder() / U"file").pathExists());
}

// ---- Header requests that overlap ----------------------------------------------------------------

std::vector<Curl::HeaderRequest> numbered(const test::ScriptedServer& server, int count)
{
    std::vector<Curl::HeaderRequest> requests;
    for (int i = 0; i < count; ++i)
        requests.push_back({server.url("/n?i=" + std::to_string(i)), {"If-None-Match: \"" + std::to_string(i) + "\""}});
    return requests;
}

Reply tagged(const SeenRequest& request)
{
    return Reply{.headers = {{"ETag", '"' + request.parameter("i") + '"'}}};
}

TEST_F(CurlRun, AnswersABatchInOrder)
{
    server_.on("/n", tagged);
    std::vector<std::size_t> order;
    Curl::get().getURLHeaders(numbered(server_, 100), [&](std::size_t index, const Curl::HeaderAnswer& answer) {
        order.push_back(index);
        EXPECT_TRUE(answer.received);
        EXPECT_EQ(answer.responseCode, 200);
        EXPECT_THAT(answer.header, testing::HasSubstr("ETag: \"" + std::to_string(index) + "\"\r\n"));
    });
    std::vector<std::size_t> expected(100);
    std::iota(expected.begin(), expected.end(), 0U);
    EXPECT_EQ(order, expected);
    EXPECT_EQ(server_.requests().size(), 100U);
    EXPECT_LE(server_.connections(), 8U);
    for (const SeenRequest& request : server_.requests()) {
        EXPECT_EQ(request.method, "HEAD");
        EXPECT_EQ(request.header("If-None-Match"), '"' + request.parameter("i") + '"');
    }
}

TEST_F(CurlRun, OverlapsEightRequests)
{
    // No request is answered before eight are made, so the test ends only if they overlap.
    Gate gate;
    server_.on("/warm", Reply{});
    EXPECT_TRUE(askHeader(server_.url("/warm")));
    server_.on("/n", [gate](const SeenRequest& request) {
        Reply reply = tagged(request);
        reply.beforeHeader = gate;
        return reply;
    });
    std::size_t answered = 0;
    test::Thread opener([&] {
        gate.waitForArrivals(8);
        EXPECT_EQ(server_.requests("/n").size(), 8U) << "and not more than eight";
        gate.openForGood();
    });
    Curl::get().getURLHeaders(numbered(server_, 20), [&](std::size_t, const Curl::HeaderAnswer& answer) {
        answered += answer.received ? 1U : 0U;
    });
    opener.join();
    EXPECT_EQ(answered, 20U);
    EXPECT_LE(server_.connections(), 8U);
}

TEST_F(CurlRun, HoldsAnswersBackUntilThoseBeforeThemAreThere)
{
    Gate gate;
    server_.on("/n", [gate](const SeenRequest& request) {
        Reply reply = tagged(request);
        if (request.parameter("i") == "0")
            reply.beforeHeader = gate;
        return reply;
    });
    std::vector<std::size_t> order;
    std::atomic<std::size_t> answered = 0;
    test::Thread opener([&] {
        server_.waitForRequests(30);
        EXPECT_EQ(answered, 0U);
        gate.openForGood();
    });
    Curl::get().getURLHeaders(numbered(server_, 30), [&](std::size_t index, const Curl::HeaderAnswer&) {
        order.push_back(index);
        ++answered;
    });
    opener.join();
    EXPECT_EQ(order.size(), 30U);
    EXPECT_TRUE(std::is_sorted(order.begin(), order.end()));
}

TEST_F(CurlRun, TellsWhatFailedInABatch)
{
    const test::RefusingPort refusing;
    server_.on("/fine", Reply{});
    server_.on("/missing", Reply{.status = 404});
    server_.on("/reset", Reply::resetAtOnce());
    server_.on("/moved", Reply::redirect("/fine"));
    server_.on("/loop", Reply::redirect("/loop"));
    std::vector<long> codes;
    Curl::get().getURLHeaders({{server_.url("/fine"), {}},
                               {server_.url("/missing"), {}},
                               {refusing.url(), {}},
                               {"no address", {}},
                               {server_.url("/reset"), {}},
                               {server_.url("/moved"), {}},
                               {server_.url("/loop"), {}},
                               {server_.url("/fine"), {"X: a\r\nb"}},
                               {server_.url("/fine"), {}}},
                              [&](std::size_t, const Curl::HeaderAnswer& answer) {
                                  EXPECT_EQ(answer.received, !answer.header.empty());
                                  codes.push_back(answer.received ? answer.responseCode : -1);
                              });
    EXPECT_THAT(codes, ElementsAre(200, 404, -1, -1, -1, 200, -1, -1, 200));
}

TEST_F(CurlRun, MayTransferBetweenTheAnswersOfABatch)
{
    server_.on("/n", [](const SeenRequest& request) {
        Reply reply = tagged(request);
        reply.status = request.method == "HEAD" ? 404 : 403;
        reply.body = "message " + request.parameter("i");
        return reply;
    });
    const std::vector<Curl::HeaderRequest> requests = numbered(server_, 40);
    Curl::get().getURLHeaders(requests, [&](std::size_t index, const Curl::HeaderAnswer& answer) {
        EXPECT_EQ(answer.responseCode, 404);
        EXPECT_FALSE(browse(requests[index].url));
        EXPECT_EQ(body_, "message " + std::to_string(index));
    });
    EXPECT_LE(server_.connections(), 8U) << "also with the requests in between";
}

TEST_F(CurlRun, MayBeGivenUpBetweenTheAnswersOfABatch)
{
    server_.on("/n", tagged);
    std::size_t answered = 0;
    EXPECT_THROW(Curl::get().getURLHeaders(numbered(server_, 40),
                                           [&](std::size_t, const Curl::HeaderAnswer&) {
                                               if (++answered == 3)
                                                   throw std::runtime_error("enough");
                                           }),
                 std::runtime_error);
    EXPECT_EQ(answered, 3U);
    EXPECT_TRUE(askHeader(server_.url("/n?i=1"))) << "all goes on as before";
}

TEST_F(CurlRun, HasNothingToDoForAnEmptyBatch)
{
    Curl::get().getURLHeaders({}, [](std::size_t, const Curl::HeaderAnswer&) { ADD_FAILURE(); });
}

TEST_F(CurlRun, OverlapsOverTls)
{
    const test::TestAuthority authority;
    test::writeFile(folder() / U"authority.pem", authority.certificate());
    Velk::HostServices host = services();
    host.certificateFile = folder() / U"authority.pem";
    Velk::installHost(std::move(host));
    test::ScriptedServer server(authority.issue());
    server.on("/n", tagged);
    std::size_t good = 0;
    Curl::get().getURLHeaders(numbered(server, 100), [&](std::size_t, const Curl::HeaderAnswer& answer) {
        good += answer.received && answer.responseCode == 200 ? 1U : 0U;
    });
    EXPECT_EQ(good, 100U);
    EXPECT_LE(server.connections(), 8U);
}

// Requests on the other connections would otherwise wait until the time-out.
TEST_F(CurlRun, GetsAllAnswersOfAServerThatServesOneConnectionAtATime)
{
    limit([](auto& limits) {
        limits.header = std::chrono::hours(1);
        limits.overlap = milliseconds(20);
    });
    server_.serveOneConnectionAtATime();
    server_.on("/n", tagged);
    std::vector<std::size_t> answered;
    Curl::get().getURLHeaders(numbered(server_, 50), [&](std::size_t index, const Curl::HeaderAnswer& answer) {
        EXPECT_TRUE(answer.received) << index;
        answered.push_back(index);
    });
    ASSERT_EQ(answered.size(), 50U);
    EXPECT_TRUE(std::is_sorted(answered.begin(), answered.end()));
}

TEST_F(CurlRun, OverlapsAgainWhenOneAtATimeIsNoBetter)
{
    limit([](auto& limits) {
        limits.header = milliseconds(100);
        limits.overlap = milliseconds(1);
    });
    server_.on("/n", tagged);
    server_.on("/never", Reply::never());
    std::vector<Curl::HeaderRequest> requests = numbered(server_, 1);
    for (int i = 0; i < 20; ++i)
        requests.push_back({server_.url("/never"), {}});
    requests.push_back(requests.front());
    std::vector<bool> received;
    Curl::get().getURLHeaders(
        requests, [&](std::size_t, const Curl::HeaderAnswer& answer) { received.push_back(answer.received); });
    ASSERT_EQ(received.size(), requests.size());
    EXPECT_EQ(std::count(received.begin(), received.end(), true), 2);
    EXPECT_TRUE(received.back());
}

// ---- Servers that are away -----------------------------------------------------------------------

TEST_F(CurlRun, AsksAnewOutsideOfARun)
{
    limit([](auto& limits) { limits.connect = milliseconds(50); });
    const test::DeafPort deaf;
    {
        const Curl::Run run;
        EXPECT_EQ(download(deaf.url()).code, test::timedOut);
    }
    EXPECT_TRUE(isAskedAgain(deaf));
}

TEST_F(CurlRun, ARunWithinARunBelongsToTheOuterOne)
{
    limit([](auto& limits) { limits.connect = milliseconds(50); });
    const test::DeafPort deaf;
    const Curl::Run outer;
    {
        const Curl::Run inner;
        EXPECT_EQ(download(deaf.url()).code, test::timedOut);
    }
    EXPECT_FALSE(isAskedAgain(deaf)) << "remembered";
}

TEST_F(CurlRun, DoesNotAskAServerAgainThatWasAway)
{
    const Curl::Run run;
    // The port is bound without a listener at first; the listener that follows must not be asked for now.
    auto away = std::make_unique<test::ScriptedServer>();
    const std::string url = away->url("/a");
    away->stop();
    const Outcome first = download(url);
    EXPECT_EQ(first.code, test::couldNotConnect);
    const Outcome second = download(url);
    EXPECT_EQ(second.code, first.code);
    EXPECT_EQ(second.reason, first.reason);
    EXPECT_FALSE(browse(url));
    EXPECT_FALSE(askHeader(url));
    EXPECT_EQ(WebUtils::getUrlAfterRedirects(url), "");
}

// The time-out for connecting is an hour, so a call fails at once only if the server is not asked again.
TEST_F(CurlRun, RemembersThatAConnectionDidNotComeAbout)
{
    const Curl::Run run;
    limit([](auto& limits) { limits.connect = milliseconds(100); });
    const test::DeafPort deaf;
    const Outcome first = download(deaf.url("/a"));
    EXPECT_EQ(first.code, test::timedOut);
    limit([](auto& limits) { limits.connect = std::chrono::hours(1); });
    EXPECT_EQ(download(deaf.url("/b?c=d")).reason, first.reason);
    EXPECT_FALSE(browse(deaf.url()));
    std::size_t failed = 0;
    Curl::get().getURLHeaders(
        std::vector<Curl::HeaderRequest>(200, {deaf.url("/n"), {}}),
        [&](std::size_t, const Curl::HeaderAnswer& answer) { failed += answer.received ? 0U : 1U; });
    EXPECT_EQ(failed, 200U);
    server_.on("/a", Reply{});
    EXPECT_TRUE(browse(server_.url("/a"))) << "another port is another server";
}

TEST_F(CurlRun, RemembersThatANameWasNotFound)
{
    const Curl::Run run;
    // No label of a host name may be this long, so no name server needs to be asked.
    const std::string url = "http://" + std::string(70, 'x') + ".invalid/a";
    const Outcome first = download(url);
    EXPECT_EQ(first.code, test::couldNotResolve);
    EXPECT_EQ(download(url).reason, first.reason);
}

TEST_F(CurlRun, AsksAgainAfterAWhile)
{
    const Curl::Run run;
    limit([](auto& limits) {
        limits.connect = milliseconds(50);
        limits.unreachable = milliseconds(0);
    });
    const test::DeafPort deaf;
    EXPECT_EQ(download(deaf.url()).code, test::timedOut);
    EXPECT_TRUE(isAskedAgain(deaf));
}

// ---- Servers that accept and never answer --------------------------------------------------------

TEST_F(CurlRun, DoesNotAskASilentServerAgain)
{
    const Curl::Run run;
    limit([](auto& limits) { limits.silence = milliseconds(100); });
    server_.otherwise([](const SeenRequest&) { return Reply::never(); });
    const std::string url = server_.url("/a");
    std::string reason;
    EXPECT_FALSE(Curl::get().download_to_location(url, target(), reason));
    EXPECT_THAT(reason, testing::HasSubstr("arrived"));
    EXPECT_FALSE(isAskedAgain(server_.url("/b")));
    std::size_t failed = 0;
    Curl::get().getURLHeaders(
        std::vector<Curl::HeaderRequest>(200, {server_.url("/n"), {}}),
        [&](std::size_t, const Curl::HeaderAnswer& answer) { failed += answer.received ? 0U : 1U; });
    EXPECT_EQ(failed, 200U);
    EXPECT_EQ(server_.requests().size(), 1U);
}

TEST_F(CurlRun, ABatchAsksASilentServerOnlyAsOftenAsItOverlaps)
{
    limit([](auto& limits) { limits.header = milliseconds(200); });
    server_.otherwise([](const SeenRequest&) { return Reply::never(); });
    std::size_t failed = 0;
    Curl::get().getURLHeaders(
        std::vector<Curl::HeaderRequest>(200, {server_.url("/n"), {}}),
        [&](std::size_t, const Curl::HeaderAnswer& answer) { failed += answer.received ? 0U : 1U; });
    EXPECT_EQ(failed, 200U);
    EXPECT_LE(server_.requests().size(), 8U);
}

TEST_F(CurlRun, AsksASilentServerAgainOutsideOfARun)
{
    limit([](auto& limits) { limits.silence = milliseconds(50); });
    server_.on("/never", Reply::never());
    EXPECT_FALSE(browse(server_.url("/never")));
    EXPECT_TRUE(isAskedAgain(server_.url("/never")));
}

// One slow library must not fail all others.
TEST_F(CurlRun, AsksAServerAgainThatHasAnsweredBefore)
{
    const Curl::Run run;
    limit([](auto& limits) { limits.silence = milliseconds(100); });
    server_.on("/missing", Reply{.status = 404});
    server_.on("/never", Reply::never());
    EXPECT_FALSE(browse(server_.url("/missing"))) << "any answer shows that it answers";
    EXPECT_FALSE(browse(server_.url("/never")));
    EXPECT_TRUE(isAskedAgain(server_.url("/never")));
}

TEST_F(CurlRun, AsksAServerAgainThatBeganToAnswer)
{
    const Curl::Run run;
    limit([](auto& limits) { limits.silence = milliseconds(100); });
    server_.on("/half", Reply{.raw = "HTTP/1.1 200 OK\r\n", .ending = Reply::Ending::hang});
    EXPECT_FALSE(browse(server_.url("/half")));
    EXPECT_TRUE(isAskedAgain(server_.url("/half")));
}

TEST_F(CurlRun, ASilentServerIsNotTheOneThatRedirectsToIt)
{
    const Curl::Run run;
    limit([](auto& limits) { limits.silence = milliseconds(100); });
    test::ScriptedServer silent;
    silent.otherwise([](const SeenRequest&) { return Reply::never(); });
    server_.on("/moved", Reply::redirect(silent.url("/a")));
    server_.on("/a", Reply{.body = "a"});
    EXPECT_FALSE(browse(server_.url("/moved")));
    EXPECT_FALSE(isAskedAgain(silent.url("/b")));
    EXPECT_TRUE(browse(server_.url("/a")));
}

TEST_F(CurlRun, AnswersThatComeAfterTheFirstTimeOutCount)
{
    const Curl::Run run;
    Gate gate;
    server_.on("/never", Reply::never());
    server_.on("/late", Reply{.body = "late", .beforeHeader = gate});
    limit([](auto& limits) { limits.silence = milliseconds(100); });
    // While the late answer is awaited, another transfer of this run times out.
    std::function<void()> meanwhile = [&] {
        EXPECT_FALSE(browse(server_.url("/never")));
        gate.openForGood();
        meanwhile = [] {};
    };
    const auto doMeanwhile = [](void* work, double, double, double, double) {
        const std::function<void()> todo = *static_cast<std::function<void()>*>(work);
        todo();
        return 0;
    };
    EXPECT_TRUE(download(server_.url("/late"), {}, &meanwhile, doMeanwhile).succeeded);
    EXPECT_TRUE(isAskedAgain(server_.url("/never")));
}

TEST_F(CurlRun, AsksAgainAfterOtherFailures)
{
    server_.on("/a", Reply::resetAtOnce());
    EXPECT_FALSE(browse(server_.url("/a")));
    server_.on("/a", Reply{.body = "a"});
    EXPECT_TRUE(browse(server_.url("/a")));
}

}  // namespace
