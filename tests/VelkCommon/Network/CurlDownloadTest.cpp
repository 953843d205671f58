#include <VelkCommon/Files/FileUtils.h>
#include <VelkCommon/Network/Curl.h>
#include <VelkCommon/Platform/FileSystem.h>

#include "NetworkTest.h"

#include <numeric>
#include <stdexcept>

namespace {

using test::Gate;
using test::Outcome;
using test::Reply;
using testing::ElementsAre;
using testing::IsEmpty;

constexpr std::size_t block = 4096;

std::string bytes(std::size_t size)
{
    std::string result(size, '\0');
    unsigned int value = 1;
    for (char& byte : result) {
        value = value * 1664525U + 1013904223U;
        byte = static_cast<char>(value >> 24U);
    }
    return result;
}

using CurlDownload = test::NetworkTest;

TEST_F(CurlDownload, StoresTheBody)
{
    const std::string body = bytes(1000000);
    server_.on("/a.calib", Reply::file(body, "tag"));
    const Outcome outcome = download(server_.url("/a.calib"), {"If-None-Match: \"old\""});
    EXPECT_TRUE(outcome.succeeded);
    EXPECT_EQ(outcome.reason, "");
    EXPECT_EQ(outcome.code, 0U);
    EXPECT_EQ(test::readFile(target()), body);
    EXPECT_THAT(strayFiles(), ElementsAre("target"));
    EXPECT_EQ(server_.requests().at(0).method, "GET");
}

TEST_F(CurlDownload, StoresTheBodyByTheShortForm)
{
    server_.on("/logo", Reply{.body = std::string("a\0\r\n\x1A", 5)});
    std::string reason = "before";
    EXPECT_TRUE(Curl::get().download_to_location(server_.url("/logo"), target(), reason));
    EXPECT_EQ(reason, "");
    EXPECT_EQ(test::readFile(target()), std::string("a\0\r\n\x1A", 5));
}

TEST_F(CurlDownload, StoresBodiesOfAnyForm)
{
    const std::string body = bytes(300000);
    server_.on("/chunked", Reply{.body = body, .chunked = true, .block = 1000});
    server_.on("/closed", Reply{.body = body, .withLength = false});
    server_.on("/created", Reply{.status = 201, .body = body});
    server_.on("/moved", Reply::redirect("/chunked"));
    for (const char* const path : {"/chunked", "/closed", "/created", "/moved"}) {
        EXPECT_TRUE(download(server_.url(path)).succeeded) << path;
        EXPECT_EQ(test::readFile(target()), body) << path;
    }
}

TEST_F(CurlDownload, StoresAnEmptyBody)
{
    test::writeFile(target(), "old");
    server_.on("/empty", Reply{});
    EXPECT_TRUE(download(server_.url("/empty")).succeeded);
    EXPECT_EQ(test::readFile(target()), "");
}

TEST_F(CurlDownload, KeepsCompressedBytesAsTheyAre)
{
    server_.on("/a", Reply{.headers = {{"Content-Encoding", "gzip"}}, .body = "\x1f\x8b no gzip at all"});
    EXPECT_TRUE(download(server_.url("/a")).succeeded);
    EXPECT_EQ(test::readFile(target()), "\x1f\x8b no gzip at all");
}

TEST_F(CurlDownload, IgnoresWhatFollowsTheDeclaredLength)
{
    server_.on(
        "/a", Reply{.raw = "HTTP/1.1 200 OK\r\nContent-Length: 4\r\n\r\nbodyand more", .ending = Reply::Ending::close});
    EXPECT_TRUE(download(server_.url("/a")).succeeded);
    EXPECT_EQ(test::readFile(target()), "body");
}

TEST_F(CurlDownload, TakesNoOtherStatusForAFile)
{
    test::writeFile(target(), "old");
    for (const int status : {206, 302, 304, 400, 401, 403, 404, 410, 429, 500, 503}) {
        server_.on("/a", Reply{.status = status, .body = status == 304 ? "" : "<html>Sorry</html>"});
        const Outcome outcome = download(server_.url("/a"));
        EXPECT_FALSE(outcome.succeeded) << status;
        EXPECT_EQ(outcome.reason, "HTTP status " + std::to_string(status));
        EXPECT_EQ(outcome.code, test::httpError);
        std::string reason;
        EXPECT_FALSE(Curl::get().download_to_location(server_.url("/a"), target(), reason));
        EXPECT_EQ(reason, "HTTP status " + std::to_string(status));
        EXPECT_TRUE(Curl::get().download(server_.url("/a")).empty());
        EXPECT_EQ(test::readFile(target()), "old");
    }
    EXPECT_THAT(strayFiles(), ElementsAre("target"));
    EXPECT_THAT(test::listFolder(services().folders.temp), IsEmpty());
}

TEST_F(CurlDownload, NeedsNoEndOfAnErrorsBody)
{
    server_.on("/a", Reply{.status = 500, .body = "on and on", .chunked = true, .endless = true});
    const Outcome outcome = download(server_.url("/a"));
    EXPECT_EQ(outcome.reason, "HTTP status 500");
    EXPECT_EQ(outcome.code, test::httpError);
}

TEST_F(CurlDownload, LeavesTheOldFileOnAnyFailure)
{
    test::writeFile(target(), "old");
    const std::string body = bytes(100000);
    server_.on("/cut", Reply{.body = body, .cutAfter = 99999});
    server_.on("/short", Reply{.body = body, .length = "100001", .ending = Reply::Ending::close});
    server_.on("/huge", Reply{.body = body, .length = "4611686018427387904", .ending = Reply::Ending::close});
    server_.on("/reset", Reply{.body = body, .cutAfter = 50000, .ending = Reply::Ending::reset});
    server_.on("/chunks", Reply{.body = body, .chunked = true, .cutAfter = 5000, .block = 1000});
    server_.on("/bad", Reply{.raw = "HTTP/1.1 200 OK\r\nTransfer-Encoding: chunked\r\n\r\nzz\r\nabc\r\n"});
    server_.on("/no-length", Reply{.body = body, .length = "many", .ending = Reply::Ending::close});
    for (const char* const path : {"/cut", "/short", "/huge", "/reset", "/chunks", "/bad"}) {
        const Outcome outcome = download(server_.url(path));
        EXPECT_FALSE(outcome.succeeded) << path;
        EXPECT_NE(outcome.reason, "") << path;
        EXPECT_NE(outcome.code, 0U) << path;
        EXPECT_EQ(test::readFile(target()), "old") << path;
    }
    EXPECT_THAT(strayFiles(), ElementsAre("target"));
    EXPECT_EQ(download(server_.url("/cut")).code, test::partialFile);
    EXPECT_EQ(download(server_.url("/huge")).code, test::writeError) << "there is no such disk";
}

TEST_F(CurlDownload, LeavesNothingBehindWithoutAnOldFile)
{
    server_.on("/cut", Reply{.body = bytes(100000), .cutAfter = 99999});
    EXPECT_FALSE(download(server_.url("/cut")).succeeded);
    EXPECT_THAT(strayFiles(), IsEmpty());
}

TEST_F(CurlDownload, ShowsNoPartUnderTheFinalName)
{
    Gate gate;
    server_.on("/a", Reply{.body = "abcdefgh", .block = 4, .beforeBlock = gate});
    test::writeFile(target(), "old");
    struct Seen
    {
        Gate gate;
        fileString target;
        std::vector<std::string> contents;
    } seen{gate, target(), {}};
    const auto look = [](void* data, double, double, double, double) {
        auto& state = *static_cast<Seen*>(data);
        state.contents.push_back(test::readFile(state.target));
        return 0;
    };
    gate.openForGood();
    EXPECT_TRUE(download(server_.url("/a"), {}, &seen, look).succeeded);
    EXPECT_THAT(seen.contents, testing::Each("old"));
    EXPECT_FALSE(seen.contents.empty());
    EXPECT_EQ(test::readFile(target()), "abcdefgh");
}

TEST_F(CurlDownload, ReportsAFolderThatIsNotThere)
{
    server_.on("/a", Reply{.body = "x"});
    std::string reason;
    unsigned int code = 0;
    EXPECT_FALSE(Curl::get().download_to_location(server_.url("/a"), folder() / U"none" / U"file", {}, nullptr, nullptr,
                                                  reason, code));
    EXPECT_EQ(code, test::writeError);
    EXPECT_THAT(reason, testing::HasSubstr("none"));
    EXPECT_FALSE(Curl::get().download_to_location(server_.url("/a"), fileString(), reason));
    EXPECT_NE(reason, "");
}

TEST_F(CurlDownload, KnowsTheRoomOnTheDisk)
{
    EXPECT_GT(Velk::Platform::freeSpace(folder().utf8()).value_or(0), 0U);
    EXPECT_FALSE(Velk::Platform::freeSpace((folder() / U"none").utf8()));
    EXPECT_FALSE(Velk::Platform::freeSpace(""));
}

TEST_F(CurlDownload, LeavesRoomOnTheDisk)
{
    const test::SmallDisk disk(0);
    server_.on("/a", Reply{.body = "x"});
    server_.on("/unknown", Reply{.body = "x", .chunked = true});
    for (const char* const path : {"/a", "/unknown"}) {
        const Outcome outcome = download(server_.url(path));
        EXPECT_FALSE(outcome.succeeded);
        EXPECT_EQ(outcome.code, test::writeError);
        EXPECT_THAT(outcome.reason, testing::HasSubstr("space"));
    }
    EXPECT_THAT(strayFiles(), IsEmpty());
    EXPECT_TRUE(Curl::get().download(server_.url("/a")).empty());
}

// ---- Into a temporary file -----------------------------------------------------------------------

TEST_F(CurlDownload, MakesATemporaryFile)
{
    server_.on("/packed/Kitchen.calibz", Reply{.body = "packed"});
    const fileString first = Curl::get().download(server_.url("/packed/Kitchen.calibz?edition=1.2/3"));
    const fileString second = Curl::get().download(server_.url("/packed/Kitchen.calibz"));
    EXPECT_EQ(test::readFile(first), "packed");
    EXPECT_NE(first, second);
    EXPECT_EQ(first.extension(), fileString(std::string(".calibz")));
    EXPECT_EQ(first.parentPath(), services().folders.temp);
}

TEST_F(CurlDownload, TakesNoOddExtension)
{
    server_.otherwise([](const test::SeenRequest&) { return Reply{.body = "x"}; });
    for (const char* const path : {"", "/", "/name", "/a.b/name", "/a.", "/a.b%2Fc", "/a.b\\..\\c", "/a.b:c",
                                   "/a.extensionthatislong", "?a=b.zip", "/a#b.zip"}) {
        const fileString file = Curl::get().download(server_.url(path));
        EXPECT_TRUE(file.pathExists()) << path;
        EXPECT_EQ(file.extension(), fileString()) << path;
        EXPECT_EQ(file.parentPath(), services().folders.temp) << path;
    }
}

// ---- Progress ------------------------------------------------------------------------------------

struct Calls
{
    std::vector<double> received;
    double total = -1;
    bool sent = false;
    int abortAt = -1;  // the call that ends the transfer
};

int note(void* data, double toReceive, double received, double toSend, double sent)
{
    auto& calls = *static_cast<Calls*>(data);
    calls.received.push_back(received);
    calls.total = toReceive;
    calls.sent = calls.sent || toSend != 0 || sent != 0;
    return static_cast<int>(calls.received.size()) == calls.abortAt ? 1 : 0;
}

TEST_F(CurlDownload, ReportsEachBlock)
{
    const std::string body = bytes(100 * block + 5);
    server_.on("/a", Reply{.body = body});
    Calls calls;
    EXPECT_TRUE(download(server_.url("/a"), {}, &calls, note).succeeded);
    EXPECT_GE(calls.received.size(), 101U);
    EXPECT_TRUE(std::is_sorted(calls.received.begin(), calls.received.end()));
    double before = 0;
    for (const double received : calls.received) {
        EXPECT_LE(received - before, static_cast<double>(block));
        before = received;
    }
    EXPECT_EQ(calls.received.back(), static_cast<double>(body.size()));
    EXPECT_EQ(calls.total, static_cast<double>(body.size()));
    EXPECT_FALSE(calls.sent);
}

TEST_F(CurlDownload, KnowsNoTotalWithoutALength)
{
    server_.on("/a", Reply{.body = "abc", .chunked = true});
    Calls calls;
    EXPECT_TRUE(download(server_.url("/a"), {}, &calls, note).succeeded);
    EXPECT_EQ(calls.total, 0);
    EXPECT_EQ(calls.received.back(), 3);
}

TEST_F(CurlDownload, EndsWhenTheCallbackSaysSo)
{
    test::writeFile(target(), "old");
    server_.on("/a", Reply{.body = "on and on", .chunked = true, .endless = true});
    Calls calls;
    calls.abortAt = 50;
    const Outcome outcome = download(server_.url("/a"), {}, &calls, note);
    EXPECT_FALSE(outcome.succeeded);
    EXPECT_EQ(outcome.code, test::aborted);
    EXPECT_NE(outcome.reason, "");
    EXPECT_EQ(calls.received.size(), 50U) << "not called again";
    EXPECT_EQ(test::readFile(target()), "old");
    EXPECT_THAT(strayFiles(), ElementsAre("target"));
}

TEST_F(CurlDownload, IsCalledWhileNothingArrives)
{
    limit([](auto& limits) { limits.tick = std::chrono::milliseconds(2); });
    // Before the header, and in the middle of the body.
    server_.on("/silent", Reply::never());
    server_.on("/half", Reply{.body = "abcdef", .cutAfter = 3, .ending = Reply::Ending::hang});
    for (const auto& [path, received] : {std::pair("/silent", 0.0), std::pair("/half", 3.0)}) {
        Calls calls;
        calls.abortAt = 40;
        EXPECT_EQ(download(server_.url(path), {}, &calls, note).code, test::aborted) << path;
        EXPECT_EQ(calls.received.size(), 40U);
        EXPECT_EQ(calls.received.back(), received);
    }
    EXPECT_THAT(strayFiles(), IsEmpty());
}

TEST_F(CurlDownload, IsCalledBeforeTheConnectionStands)
{
    limit([](auto& limits) { limits.tick = std::chrono::milliseconds(2); });
    const test::DeafPort deaf;
    Calls calls;
    calls.abortAt = 3;
    EXPECT_EQ(download(deaf.url(), {}, &calls, note).code, test::aborted);
    EXPECT_THAT(calls.received, ElementsAre(0, 0, 0));
}

TEST_F(CurlDownload, HasNoTimeOutOfItsOwnWithACallback)
{
    limit([](auto& limits) {
        limits.tick = std::chrono::milliseconds(2);
        limits.silence = limits.total = limits.header = std::chrono::milliseconds(1);
    });
    server_.on("/silent", Reply::never());
    Calls calls;
    calls.abortAt = 100;
    EXPECT_EQ(download(server_.url("/silent"), {}, &calls, note).code, test::aborted);
    EXPECT_EQ(calls.received.size(), 100U);
}

TEST_F(CurlDownload, SurvivesACallbackThatThrows)
{
    const auto thrower = [](void*, double, double, double, double) -> int { throw std::runtime_error("odd"); };
    server_.on("/a", Reply{.body = bytes(10000)});
    EXPECT_EQ(download(server_.url("/a"), {}, nullptr, thrower).code, test::aborted);
    EXPECT_THAT(strayFiles(), IsEmpty());
}

TEST_F(CurlDownload, LetsACallbackTransferToo)
{
    struct Inner
    {
        std::string url;
        std::string body;
    } inner{server_.url("/inner"), {}};
    const auto browseInside = [](void* data, double, double, double, double) {
        auto& state = *static_cast<Inner*>(data);
        return Curl::get().browseURL(state.url, {}, state.body, true, 0) ? 0 : 1;
    };
    server_.on("/a", Reply{.body = bytes(3 * block)});
    server_.on("/inner", Reply{.body = "inner"});
    EXPECT_TRUE(download(server_.url("/a"), {}, &inner, browseInside).succeeded);
    EXPECT_EQ(inner.body, "inner");
}

}  // namespace
