#include "RawClient.h"
#include "ServedSiteTest.h"

#include "host/service/ServiceError.h"
#include "host/service/SiteAnswer.h"
#include "host/service/SiteService.h"
#include "support/Threads.h"

#include <VelkCommon/Network/Curl.h>
#include <VelkCommon/Network/WebUtils.h>

#include <list>
#include <mutex>

using testing::HasSubstr;
using testing::StartsWith;
using testing::UnorderedElementsAre;
using VelkHost::ServiceOptions;
using VelkHost::SiteService;

namespace {

using SiteServiceTest = test::ServedSiteTest;

TEST_F(SiteServiceTest, AnswersAsTheTableSays)
{
    const SiteService service(options());
    httplib::Client client("127.0.0.1", service.port());
    test::expectAnswers(client, test::serviceRequests(served()));
}

TEST_F(SiteServiceTest, AnswersTheSameOverTls)
{
    const test::TestAuthority authority;
    ServiceOptions secure = options();
    secure.tls = certificate(authority);
    const SiteService service(secure);
    EXPECT_THAT(service.address(), StartsWith("https://127.0.0.1:"));
    httplib::Client client("https://127.0.0.1:" + std::to_string(service.port()));
    client.set_ca_cert_path((folder() / U"authority.crt").utf8());
    test::expectAnswers(client, test::serviceRequests(served()));
}

// The names arrive as the client's own transport encodes them.
TEST_F(SiteServiceTest, UnderstandsTheClient)
{
    const SiteService service(options());
    const std::string endpoint = WebUtils::getUrlAfterRedirects(service.address());
    EXPECT_EQ(endpoint, service.address() + "catalog?v=1");
    expectLibrariesKnown(endpoint);
    std::string reason;
    for (const auto& [name, file] : table().logos) {
        const std::string url = service.logoAddress() + "&logo-path=" + VelkHost::logoOnTheWire(name);
        EXPECT_TRUE(Curl::get().download_to_location(url, folder() / U"logo", reason)) << reason;
        EXPECT_EQ(test::readFile(folder() / U"logo"), served().logo);
    }
    EXPECT_TRUE(Curl::get().download_to_location(service.manufacturersAddress(), folder() / U"data", reason));
    EXPECT_EQ(test::readFile(folder() / U"data"), served().manufacturers);
}

TEST_F(SiteServiceTest, ServesANewEditionAtOnce)
{
    const SiteService service(options());
    httplib::Client client("127.0.0.1", service.port());
    const std::string target = "/catalog?v=1&library=new.calib";
    EXPECT_EQ(client.Get(target)->status, 404);
    test::writeCatalogFile(input(U"core/new.calib"), "New");
    publish();
    EXPECT_EQ(client.Get(target)->body, test::readFile(input(U"core/new.calib")));
    EXPECT_THAT(client.Get("/catalog?v=1&library=Home_Core_Content_Index.txt")->body, HasSubstr("new.calib\n"));
}

TEST_F(SiteServiceTest, KeepsTheLastEditionThatItCouldRead)
{
    const SiteService service(options());
    httplib::Client client("127.0.0.1", service.port());
    test::writeFile(site() / U"current", "nonsense");
    EXPECT_EQ(client.Get("/manufacturers")->status, 200);
}

TEST_F(SiteServiceTest, SaysThatItsSiteIsDamaged)
{
    const SiteService service(options());
    httplib::Client client("127.0.0.1", service.port());
    for (const std::string& name : test::listFolder(site() / U"files"))
        test::writeFile(VelkHost::storedFile(site(), name), "");
    const auto cut = client.Get("/manufacturers");
    EXPECT_FALSE(cut && cut->status == 200 && cut->body.empty());
}

// A file that is being sent arrives as it was when it was asked for, while editions come and go.
TEST_F(SiteServiceTest, ShowsReadersOneEditionWhileOthersArePublished)
{
    constexpr int editions = 8;
    const SiteService service(options());
    const auto write = [&](int edition) {
        test::writeCatalogFile(input(U"core/v.calib"), std::string(100'000, 'v') + std::to_string(edition));
    };
    write(0);
    publish();
    const auto read = [&](const fileString& target) {
        httplib::Client client("127.0.0.1", service.port());
        const auto answer = client.Get("/catalog?v=1&library=v.calib");
        EXPECT_TRUE(answer && answer->status == 200);
        test::writeFile(target, answer ? answer->body : std::string());
        EXPECT_EQ("\"" + test::hashOf(target) + "\"", answer ? answer->get_header_value("ETag") : std::string());
    };
    const test::Repeatedly first([&] { read(folder() / U"first"); });
    const test::Repeatedly second([&] { read(folder() / U"second"); });
    for (int edition = 1; edition < editions; ++edition) {
        write(edition);
        const std::size_t firstBefore = first.rounds().count();
        const std::size_t secondBefore = second.rounds().count();
        publish();
        // Files stay for one more edition, so a reader that has begun with the earlier one can finish.
        first.rounds().waitFor(firstBefore + 2);
        second.rounds().waitFor(secondBefore + 2);
    }
}

TEST_F(SiteServiceTest, TellsWhatItServed)
{
    std::mutex mutex;
    std::vector<std::string> lines;
    {
        ServiceOptions watched = options();
        watched.served = [&](const VelkHost::ServedRequest& served) {
            const std::lock_guard lock(mutex);
            lines.push_back(served.method + " " + served.target + " " + std::to_string(served.status) + " " +
                            std::to_string(served.bodyBytes));
        };
        const SiteService service(watched);
        httplib::Client client("127.0.0.1", service.port());
        client.Get("/manufacturers");
        client.Head("/manufacturers");
        client.Get("/none");
    }
    EXPECT_THAT(lines, UnorderedElementsAre("GET /manufacturers 200 " + std::to_string(served().manufacturers.size()),
                                            "HEAD /manufacturers 200 0", "GET /none 404 23"));
}

TEST_F(SiteServiceTest, ListensOnThisMachineOnly)
{
    const SiteService service(options());
    EXPECT_THAT(service.address(), StartsWith("http://127.0.0.1:"));
    EXPECT_GT(service.port(), 0);
    ServiceOptions second = options();
    second.port = service.port();
    EXPECT_THAT([&] { SiteService{second}; }, testing::ThrowsMessage<VelkHost::ServiceError>(
                                                  "127.0.0.1:" + std::to_string(service.port()) +
                                                  ": cannot be listened on; is another program using the port?"));
}

TEST_F(SiteServiceTest, GetsItsPortBackAtOnce)
{
    ServiceOptions same = options();
    {
        const SiteService service(same);
        same.port = service.port();
        httplib::Client client("127.0.0.1", service.port());
        EXPECT_EQ(client.Get("/manufacturers")->status, 200);
    }
    const SiteService again(same);
    EXPECT_EQ(again.port(), same.port);
}

TEST_F(SiteServiceTest, NeedsAPublishedSite)
{
    ServiceOptions wrong = options();
    wrong.site = folder() / U"nothing";
    EXPECT_THAT(test::reasonOf([&] { SiteService{wrong}; }), HasSubstr("is not a published site"));
}

TEST_F(SiteServiceTest, NeedsACertificateWithItsKey)
{
    const test::TestAuthority authority;
    ServiceOptions secure = options();
    secure.tls = certificate(authority);
    test::writeFile(secure.tls->privateKey, authority.issue().key);
    EXPECT_THAT(test::reasonOf([&] { SiteService{secure}; }), HasSubstr("must be PEM files that belong together"));
}

TEST_F(SiteServiceTest, ServesOthersBesideClientsThatDoNotBeginTls)
{
    const test::TestAuthority authority;
    ServiceOptions secure = options();
    secure.tls = certificate(authority);
    secure.limits.connections = 4;
    secure.limits.asking = std::chrono::hours(1);
    const SiteService service(secure);
    std::list<test::RawClient> silent;
    for (int i = 0; i < 10; ++i)
        silent.emplace_back(service.port()).send(i % 2 == 0 ? "" : "\x16\x03\x01");
    httplib::Client client("https://127.0.0.1:" + std::to_string(service.port()));
    client.set_ca_cert_path((folder() / U"authority.crt").utf8());
    const auto answer = client.Get("/manufacturers");
    ASSERT_TRUE(answer) << httplib::to_string(answer.error());
    EXPECT_EQ(answer->body, served().manufacturers);
}

TEST_F(SiteServiceTest, GivesTheBeginningOfTlsALimitedTime)
{
    const test::TestAuthority authority;
    ServiceOptions secure = options();
    secure.tls = certificate(authority);
    secure.limits.idle = std::chrono::hours(1);
    secure.limits.asking = std::chrono::milliseconds(50);
    const SiteService service(secure);
    test::RawClient client(service.port());
    EXPECT_EQ(client.readToEnd(), "");
    test::RawClient plain(service.port());
    plain.send("GET / HTTP/1.1\r\nHost: a\r\n\r\n");
    EXPECT_THAT(plain.readToEnd(), testing::Not(HasSubstr("HTTP")));
}

// Each answer is a part of its own, and the last one ends the connection of TLS properly.
TEST_F(SiteServiceTest, EndsTlsAfterTheLastAnswer)
{
    const test::TestAuthority authority;
    ServiceOptions secure = options();
    secure.tls = certificate(authority);
    const SiteService service(secure);
    httplib::Client client("https://127.0.0.1:" + std::to_string(service.port()));
    client.set_ca_cert_path((folder() / U"authority.crt").utf8());
    client.set_keep_alive(false);
    for (int i = 0; i < 3; ++i) {
        const auto answer = client.Get("/manufacturers");
        ASSERT_TRUE(answer) << httplib::to_string(answer.error());
        EXPECT_EQ(answer->get_header_value("Connection"), "close");
    }
}

TEST_F(SiteServiceTest, AnswersOverTheNewerProtocol)
{
    ServiceOptions newer = options();
    newer.address = "::1";
    const SiteService service(newer);
    EXPECT_EQ(service.address(), "http://[::1]:" + std::to_string(service.port()) + "/");
    httplib::Client client("::1", service.port());
    const auto answer = client.Get("/manufacturers");
    ASSERT_TRUE(answer) << httplib::to_string(answer.error());
    EXPECT_EQ(answer->status, 200);
}

TEST_F(SiteServiceTest, RefusesWhatIsTooLong)
{
    const SiteService service(options());
    httplib::Client client("127.0.0.1", service.port());
    EXPECT_EQ(client.Get("/catalog?library=" + std::string(9'000, 'x'))->status, 414);
    const auto posted = client.Post("/catalog", std::string(100'000, 'x'), "text/plain");
    EXPECT_EQ(posted->status, 413);
    EXPECT_EQ(client.Get("/manufacturers")->status, 200);
}

}  // namespace
