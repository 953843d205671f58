#include <VelkCommon/Network/Curl.h>
#include <VelkCommon/Platform/FileSystem.h>

#include "NetworkTest.h"

#include <curl/curl.h>

namespace {

using test::Outcome;
using test::Reply;
using test::ScriptedServer;
using testing::Contains;
using testing::IsEmpty;

class CurlTls : public test::NetworkTest
{
protected:
    CurlTls() { trust(authority_.certificate()); }

    void trust(const std::string& certificates)
    {
        test::writeFile(folder() / U"authority.pem", certificates);
        Velk::HostServices host = services();
        host.certificateFile = folder() / U"authority.pem";
        Velk::installHost(std::move(host));
    }

    test::TestAuthority authority_;
};

TEST_F(CurlTls, TransfersFromAServerOfATrustedAuthority)
{
    ScriptedServer server(authority_.issue());
    server.on("/a", Reply::file("secret", "tag"));
    EXPECT_TRUE(browse(server.url("/a")));
    EXPECT_EQ(body_, "secret");
    EXPECT_TRUE(askHeader(server.url("/a")));
    EXPECT_TRUE(download(server.url("/a")).succeeded);
    EXPECT_EQ(server.connections(), 1U);
}

// A libcurl for Windows may have been built without HTTP/2; then there is nothing to choose between.
TEST_F(CurlTls, OffersHttp2)
{
    const bool known = (curl_version_info(CURLVERSION_NOW)->features & CURL_VERSION_HTTP2) != 0;
    EXPECT_TRUE(known || Velk::Platform::linesEndWithCarriageReturn);
    ScriptedServer server(authority_.issue());
    static_cast<void>(browse(server.url()));
    EXPECT_EQ(testing::Matches(Contains("h2"))(server.offeredProtocols()), known);
    EXPECT_EQ(testing::Matches(Contains("http/1.1"))(server.offeredProtocols()), known);
}

TEST_F(CurlTls, RefusesEveryOtherServer)
{
    const test::TestAuthority unknown;
    struct
    {
        const char* what;
        test::Certificate certificate;
    } const cases[] = {
        {"unknown authority", unknown.issue()},
        {"wrong host", authority_.issue("content.example")},
        {"wrong address", authority_.issue("127.0.0.2")},
        {"no longer valid", authority_.issue("127.0.0.1", -1)},
    };
    for (const auto& [what, certificate] : cases) {
        ScriptedServer server(certificate);
        server.on("/a", Reply{.body = "evil"});
        EXPECT_FALSE(browse(server.url("/a"))) << what;
        EXPECT_EQ(body_, "") << what;
        EXPECT_FALSE(askHeader(server.url("/a"))) << what;
        const Outcome outcome = download(server.url("/a"));
        EXPECT_FALSE(outcome.succeeded) << what;
        EXPECT_EQ(outcome.code, test::badCertificate) << what;
        EXPECT_NE(outcome.reason, "") << what;
        EXPECT_THAT(server.requests(), IsEmpty()) << what;
    }
}

TEST_F(CurlTls, TrustsTheSystemsAuthoritiesByDefault)
{
    Velk::installHost(services());
    ScriptedServer server(authority_.issue());
    EXPECT_EQ(download(server.url("/a")).code, test::badCertificate) << "the test's authority is not the system's";
}

TEST_F(CurlTls, DoesNotKeepAConnectionThatIsNoLongerTrusted)
{
    ScriptedServer server(authority_.issue());
    server.on("/a", Reply{.body = "x"});
    EXPECT_TRUE(browse(server.url("/a")));
    trust(test::TestAuthority().certificate());
    EXPECT_FALSE(browse(server.url("/a")));
}

TEST_F(CurlTls, FailsWithoutItsCertificates)
{
    ScriptedServer server(authority_.issue());
    server.on("/a", Reply{.body = "x"});
    Velk::HostServices host = services();
    host.certificateFile = folder() / U"missing.pem";
    Velk::installHost(std::move(host));
    const Outcome outcome = download(server.url("/a"));
    EXPECT_FALSE(outcome.succeeded);
    EXPECT_EQ(outcome.code, test::badAuthorities);
    EXPECT_THAT(outcome.reason, testing::HasSubstr("missing.pem"));
    server_.on("/plain", Reply{.body = "x"});
    EXPECT_TRUE(browse(server_.url("/plain"))) << "without TLS they do not matter";
    trust("no certificate at all");
    EXPECT_FALSE(download(server.url("/a")).succeeded);
}

TEST_F(CurlTls, NoticesACutInABodyWithoutLength)
{
    ScriptedServer server(authority_.issue());
    server.on("/cut", Reply{.body = "half of it", .withLength = false, .ending = Reply::Ending::reset});
    server.on("/whole", Reply{.body = "all of it", .withLength = false});
    EXPECT_FALSE(download(server.url("/cut")).succeeded);
    EXPECT_TRUE(download(server.url("/whole")).succeeded);
    EXPECT_EQ(test::readFile(target()), "all of it");
}

// ---- Proxies -------------------------------------------------------------------------------------

/// A variable of the environment for the length of a test.
class Environment
{
public:
    Environment(const char* name, const std::string& value) : name_(name), before_(qgetenv(name))
    {
        qputenv(name, QByteArray::fromStdString(value));
    }
    ~Environment() { before_.isNull() ? qunsetenv(name_) : qputenv(name_, before_); }
    Environment(const Environment&) = delete;
    Environment& operator=(const Environment&) = delete;

private:
    const char* name_;
    QByteArray before_;
};

TEST_F(CurlTls, UsesTheProxyOfTheEnvironment)
{
    const Environment proxy("http_proxy", server_.url(""));
    const Environment exceptions("no_proxy", "");
    server_.on("/a", Reply{.body = "by proxy"});
    EXPECT_TRUE(browse("http://content.example/a?b=c d"));
    EXPECT_EQ(body_, "by proxy");
    EXPECT_EQ(server_.requests().at(0).target, "http://content.example/a?b=c%20d");
    EXPECT_EQ(server_.requests().at(0).header("Host"), "content.example");
}

TEST_F(CurlTls, SparesTheProxyWhereItIsNotWanted)
{
    const test::RefusingPort refusing;
    const Environment proxy("http_proxy", refusing.url(""));
    const Environment exceptions("no_proxy", "127.0.0.1");
    server_.on("/a", Reply{.body = "direct"});
    EXPECT_TRUE(browse(server_.url("/a")));
    EXPECT_EQ(body_, "direct");
}

TEST_F(CurlTls, TunnelsThroughTheProxy)
{
    const Environment proxy("https_proxy", server_.url(""));
    const Environment exceptions("no_proxy", "");
    server_.otherwise([](const test::SeenRequest&) { return Reply{.status = 407}; });
    EXPECT_FALSE(browse("https://content.example/a"));
    EXPECT_EQ(server_.requests().at(0).method, "CONNECT");
    EXPECT_EQ(server_.requests().at(0).target, "content.example:443");
}

}  // namespace
