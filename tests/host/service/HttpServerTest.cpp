#include "host/service/HttpServer.h"

#include "RawClient.h"

#include "support/Threads.h"

#include <gmock/gmock.h>

#include <atomic>
#include <list>
#include <optional>
#include <stdexcept>

using namespace std::chrono_literals;
using test::answersIn;
using test::RawAnswer;
using test::RawClient;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::Not;
using VelkHost::HttpAnswer;
using VelkHost::HttpServer;
using VelkHost::RequestHead;
using VelkHost::ServiceLimits;

namespace {

constexpr std::uint64_t farTooFast = std::uint64_t{1} << 40;  // bytes in a second
constexpr std::uint64_t large = 64 << 20;
constexpr std::uint64_t huge = std::uint64_t{1} << 40;  // more than anybody reads in a test
constexpr std::uint64_t begun = 64 << 10;               // at most, of many bytes, by a client that has begun to read

/// Bytes without a file. Counts how many of its kind have gone.
class Letters : public VelkHost::BodySource
{
public:
    explicit Letters(test::Tally& gone) : gone_(gone) {}
    ~Letters() override { gone_.add(); }
    std::string next(std::size_t most) override { return std::string(most, 'x'); }

private:
    test::Tally& gone_;
};

std::string get(const std::string& target, const std::string& fields = "")
{
    return "GET " + target + " HTTP/1.1\r\nHost: a\r\n" + fields + "\r\n";
}

std::string lastGet(const std::string& target)
{
    return get(target, "Connection: close\r\n");
}

std::vector<std::string> bodiesIn(const std::string& received)
{
    std::vector<std::string> bodies;
    for (const RawAnswer& answer : answersIn(received))
        bodies.push_back(answer.body);
    return bodies;
}

/// Limits that nothing reaches, unless a test sets one.
ServiceLimits noLimits()
{
    ServiceLimits limits;
    limits.idle = limits.asking = limits.behind = limits.leaving = limits.ending = 1h;
    return limits;
}

/// A server that answers with the request's target, or with many bytes.
class HttpServerTest : public testing::Test
{
protected:
    void start()
    {
        server_.emplace("127.0.0.1", 0, std::nullopt, limits_,
                        [this](const RequestHead& head) { return answer(head); });
    }
    void end() { server_.reset(); }
    int port() const { return server_->port(); }
    std::size_t handled() const { return handled_; }

    HttpAnswer answer(const RequestHead& head)
    {
        ++handled_;
        HttpAnswer answer;
        if (head.target == "/large" || head.target == "/huge") {
            answer.source = std::make_unique<Letters>(sourcesGone_);
            answer.length = head.target == "/huge" ? huge : large;
        } else if (head.target == "/fault") {
            throw std::runtime_error("fault");
        } else {
            answer.text = head.target;
        }
        return answer;
    }

    /// Whether another client gets its answer.
    void expectServed()
    {
        RawClient other(port());
        EXPECT_TRUE(other.send(lastGet("/other")));
        EXPECT_THAT(bodiesIn(other.readToEnd()), ElementsAre("/other"));
    }

    /// A client whose request for many bytes is being answered.
    std::unique_ptr<RawClient> reader() const
    {
        auto client = std::make_unique<RawClient>(port());
        client->send(get("/large"));
        EXPECT_THAT(client->read(1), testing::StartsWith("HTTP/1.1 200 OK\r\n"));
        return client;
    }

    ServiceLimits limits_ = noLimits();
    test::Tally sourcesGone_;

private:
    std::atomic<std::size_t> handled_ = 0;
    std::optional<HttpServer> server_;
};

TEST_F(HttpServerTest, AnswersRequestsThatComeTogetherInTheirOrder)
{
    start();
    RawClient client(port());
    client.send(get("/1") + "HEAD /2 HTTP/1.1\r\nHost: a\r\n\r\n" + get("/3"));
    client.send(lastGet("/4") + get("/none"));
    EXPECT_EQ(client.readToEnd(),
              "HTTP/1.1 200 OK\r\nContent-Length: 2\r\n\r\n/1"
              "HTTP/1.1 200 OK\r\nContent-Length: 2\r\n\r\n"
              "HTTP/1.1 200 OK\r\nContent-Length: 2\r\n\r\n/3"
              "HTTP/1.1 200 OK\r\nContent-Length: 2\r\nConnection: close\r\n\r\n/4");
}

TEST_F(HttpServerTest, AnswersARequestThatComesByteByByte)
{
    start();
    RawClient client(port());
    for (const char byte : get("/1") + lastGet("/2"))
        EXPECT_TRUE(client.send(std::string(1, byte)));
    EXPECT_THAT(bodiesIn(client.readToEnd()), ElementsAre("/1", "/2"));
}

// A body that looks like a request is none, whenever it comes.
TEST_F(HttpServerTest, TakesNoBodyForARequest)
{
    start();
    for (const std::string method : {"GET", "HEAD", "POST"}) {
        RawClient client(port());
        const std::string body = get("/inner");
        client.send(method + " /outer HTTP/1.1\r\nHost: a\r\nContent-Length: " + std::to_string(body.size()) +
                    "\r\n\r\n");
        client.send(body.substr(0, 10));
        client.send(body.substr(10) + lastGet("/last"));
        const std::string received = client.readToEnd();
        EXPECT_THAT(received, Not(HasSubstr("/inner"))) << method;
        EXPECT_THAT(received, HasSubstr("/last")) << method;
    }
    EXPECT_EQ(handled(), 6U);
}

TEST_F(HttpServerTest, AnswersWhenTheBodyHasCome)
{
    start();
    RawClient client(port());
    client.send(get("/1", "Content-Length: 3\r\n") + "ab");
    expectServed();
    EXPECT_EQ(handled(), 1U) << "the other one's";
    client.send("c" + lastGet("/2"));
    EXPECT_THAT(bodiesIn(client.readToEnd()), ElementsAre("/1", "/2"));
}

TEST_F(HttpServerTest, RefusesOnceAndHangsUp)
{
    start();
    const std::vector<std::pair<std::string, int>> odd = {
        {get("/a", "Content-Length: 5\r\nTransfer-Encoding: chunked\r\n") + "0\r\n\r\n", 400},
        {get("/a", "Transfer-Encoding: chunked\r\n") + "0\r\n\r\n", 400},
        {get("/a", "Content-Length: 1\r\nContent-Length: 2\r\n"), 400},
        {get("/a", "X: a\r\n b\r\n"), 400},
        {get("/a", "Content-Length: 65537\r\n") + std::string(65'537, 'x'), 413},
        {"nonsense\r\n\r\n", 400},
        {get("/" + std::string(9'000, 'x')), 414},
        {"GET /" + std::string(100'000, 'x'), 414},
        {get("/a", "X: " + std::string(100'000, 'x') + "\r\n"), 431},
        {get("/a", "X: " + std::string(100'000, 'x')), 431},
    };
    for (const auto& [request, status] : odd) {
        RawClient client(port());
        client.send(request + lastGet("/inner"));
        client.endSending();
        const std::vector<RawAnswer> answers = answersIn(client.readToEnd());
        ASSERT_EQ(answers.size(), 1U) << request.substr(0, 200);
        EXPECT_EQ(answers.front().status, status) << request.substr(0, 200);
        EXPECT_THAT(answers.front().head, HasSubstr("\r\nConnection: close\r\n"));
        EXPECT_THAT(answers.front().body, Not(IsEmpty()));
    }
    EXPECT_EQ(handled(), 0U);
}

TEST_F(HttpServerTest, ServesOthersBesideSlowAndSilentClients)
{
    limits_.connections = 16;
    start();
    std::list<RawClient> silent;
    for (int i = 0; i < 40; ++i)
        silent.emplace_back(port());
    expectServed();
    for (int i = 0; i < 40; ++i)
        silent.emplace_back(port()).send("G");
    expectServed();
    for (int i = 0; i < 40; ++i)
        silent.emplace_back(port()).send(get("/a", "Content-Length: 9\r\n"));
    expectServed();
    std::list<std::unique_ptr<RawClient>> readers;
    for (int i = 0; i < 20; ++i)
        readers.push_back(reader());
    expectServed();
}

TEST_F(HttpServerTest, LetsTheOneThatHasBeenIdleForTheLongestTimeMakeRoom)
{
    limits_.connections = 3;
    start();
    const auto reads = reader();
    RawClient idle(port());
    RawClient idleLater(port());
    RawClient next(port());
    EXPECT_EQ(idle.readToEnd(), "");
    for (RawClient* client : {&idleLater, &next}) {
        client->send(lastGet("/a"));
        EXPECT_THAT(bodiesIn(client->readToEnd()), ElementsAre("/a"));
    }
    EXPECT_GE(reads->read(large - begun).size(), large - begun);
}

TEST_F(HttpServerTest, HangsUpOnIdleClients)
{
    limits_.idle = 30ms;
    start();
    RawClient silent(port());
    EXPECT_EQ(silent.readToEnd(), "");
    // The time may be over before the request comes.
    std::string received;
    test::repeatUntil([&] { return !received.empty(); },
                      [&] {
                          RawClient client(port());
                          client.send(get("/a"));
                          received = client.readToEnd();
                      });
    EXPECT_THAT(bodiesIn(received), ElementsAre("/a"));
}

TEST_F(HttpServerTest, GivesAWholeHeadALimitedTime)
{
    limits_.asking = 60ms;
    start();
    RawClient client(port());
    client.send("GET / HTTP/1.1\r\nX: ");
    EXPECT_LT(client.dripUntilEnd("x", 2ms), 10'000U);
    EXPECT_EQ(handled(), 0U);
    expectServed();
}

TEST_F(HttpServerTest, DemandsAPaceOfABody)
{
    limits_.behind = 60ms;
    limits_.bytesPerSecond = farTooFast;
    start();
    RawClient client(port());
    client.send(get("/a", "Content-Length: 65536\r\n"));
    EXPECT_LT(client.dripUntilEnd("x", 2ms), 10'000U);
    EXPECT_EQ(handled(), 0U);
}

TEST_F(HttpServerTest, DemandsAPaceOfAReader)
{
    limits_.behind = 60ms;
    limits_.bytesPerSecond = farTooFast;
    start();
    RawClient client(port());
    client.send(get("/huge"));
    std::size_t received = 0;
    test::repeatUntil([&] { return sourcesGone_.count() > 0; }, [&] { received += client.read(1).size(); });
    EXPECT_LT(received, huge);
}

TEST_F(HttpServerTest, HangsUpOnAClientThatNeverReads)
{
    limits_.behind = 60ms;
    start();
    const auto never = reader();
    expectServed();
    sourcesGone_.waitFor(1);
    EXPECT_LT(never->readToEnd().size(), large);
}

TEST_F(HttpServerTest, SendsWhatASteadyReaderAsksFor)
{
    start();
    RawClient client(port());
    client.send(lastGet("/large"));
    const std::string received = client.readToEnd();
    EXPECT_THAT(received, HasSubstr("\r\nContent-Length: " + std::to_string(large) + "\r\n"));
    EXPECT_EQ(received.size() - received.find("\r\n\r\n") - 4, large);
    sourcesGone_.waitFor(1);
}

TEST_F(HttpServerTest, AnswersAClientThatHasSaidItsLast)
{
    start();
    RawClient client(port());
    client.send(get("/1") + get("/large"));
    client.endSending();
    EXPECT_GT(client.readToEnd().size(), large);
    RawClient half(port());
    half.send("GET / HTT");
    half.endSending();
    EXPECT_EQ(half.readToEnd(), "");
}

TEST_F(HttpServerTest, DoesNotWaitForOneThatNeverHangsUp)
{
    limits_.leaving = 30ms;
    start();
    RawClient client(port());
    client.send("nonsense\r\n\r\n");
    EXPECT_THAT(client.readToEnd(), HasSubstr("400"));
    test::repeatUntil([&] { return !client.send(std::string(1'000, 'x')); }, [] {});
}

TEST_F(HttpServerTest, SpeaksTheOldVersion)
{
    start();
    RawClient client(port());
    client.send("GET /1 HTTP/1.0\r\nConnection: keep-alive\r\n\r\n");
    client.send("GET /2 HTTP/1.0\r\n\r\n");
    const std::vector<RawAnswer> answers = answersIn(client.readToEnd());
    ASSERT_EQ(answers.size(), 2U);
    EXPECT_THAT(answers[0].head, HasSubstr("Connection: keep-alive\r\n"));
    EXPECT_THAT(answers[1].head, HasSubstr("Connection: close\r\n"));
}

TEST_F(HttpServerTest, SurvivesAFaultOfItsHandler)
{
    start();
    RawClient client(port());
    client.send(get("/fault") + lastGet("/a"));
    const std::vector<RawAnswer> answers = answersIn(client.readToEnd());
    ASSERT_EQ(answers.size(), 2U);
    EXPECT_EQ(answers[0].status, 500);
    EXPECT_EQ(answers[1].body, "/a");
}

TEST_F(HttpServerTest, EndsAConnectionAfterManyRequests)
{
    limits_.requestsPerConnection = 2;
    start();
    RawClient client(port());
    client.send(get("/1") + get("/2") + get("/3"));
    EXPECT_THAT(bodiesIn(client.readToEnd()), ElementsAre("/1", "/2"));
}

TEST_F(HttpServerTest, EndsAfterTheAnswersThatRun)
{
    limits_.leaving = 30ms;
    start();
    RawClient idle(port());
    RawClient asking(port());
    asking.send("GET");
    const auto reads = reader();
    const test::Thread ending([&] { end(); });
    EXPECT_EQ(idle.readToEnd(), "");
    EXPECT_EQ(asking.readToEnd(), "");
    EXPECT_GE(reads->readToEnd().size(), large - begun);
}

TEST_F(HttpServerTest, EndsInTimeWhateverAReaderDoes)
{
    limits_.ending = 30ms;
    start();
    const auto reads = reader();
    end();
    EXPECT_EQ(sourcesGone_.count(), 1U);
}

}  // namespace
