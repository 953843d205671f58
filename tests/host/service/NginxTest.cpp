#include "NginxServer.h"
#include "ServedSiteTest.h"

#include "host/service/NginxConfiguration.h"
#include "support/QtProcesses.h"

#include <VelkCommon/Network/Curl.h>
#include <VelkCommon/Network/WebUtils.h>

#include <QProcess>

using testing::HasSubstr;
using testing::Not;

namespace {

class Nginx : public test::ServedSiteTest
{
protected:
    Nginx() { VelkHost::writeNginxConfiguration(site(), configuration()); }

    fileString configuration() const { return folder() / U"nginx configuration"; }
    fileString home() const { return folder() / U"nginx"; }

    /// What "curl -I" prints.
    std::string curl(const QStringList& arguments) const
    {
        QProcess process;
        process.start(QStringLiteral("curl"), QStringList{QStringLiteral("-sSI")} + arguments);
        test::waitForEnd(process);
        return process.readAllStandardOutput().toStdString() + process.readAllStandardError().toStdString();
    }
};

TEST_F(Nginx, AnswersAsTheEmbeddedService)
{
    const test::NginxServer server(home(), configuration());
    httplib::Client client("127.0.0.1", server.port());
    test::expectAnswers(client, test::serviceRequests(served()));
    EXPECT_EQ(server.complaints(), "");
}

TEST_F(Nginx, AnswersTheSameOverTls)
{
    const test::TestAuthority authority;
    const VelkHost::ServiceCertificate files = certificate(authority);
    const test::NginxServer server(home(), configuration(), files.certificate, files.privateKey);
    httplib::Client client(server.origin());
    client.set_ca_cert_path((folder() / U"authority.crt").utf8());
    test::expectAnswers(client, test::serviceRequests(served()));
}

TEST_F(Nginx, UnderstandsTheClient)
{
    const test::TestAuthority authority;
    const VelkHost::ServiceCertificate files = certificate(authority);
    Velk::HostServices host = services();
    host.certificateFile = folder() / U"authority.crt";
    Velk::installHost(std::move(host));
    const test::NginxServer server(home(), configuration(), files.certificate, files.privateKey);
    const std::string endpoint = WebUtils::getUrlAfterRedirects(server.origin() + "/");
    EXPECT_EQ(endpoint, server.origin() + "/catalog?v=1");
    expectLibrariesKnown(endpoint);
}

TEST_F(Nginx, PassesTheJudgementOfCurl)
{
    const test::NginxServer server(home(), configuration());
    const QString url = QString::fromStdString(server.origin()) +
                        QStringLiteral("/catalog?v=1&library=M%C3%B6bel%202.calib&product=p&version=1");
    const std::string tag = table()
                                .libraries
                                .at("M\xC3\xB6"
                                    "bel 2.calib")
                                .tag;
    const std::string whole = curl({url});
    EXPECT_THAT(whole, testing::StartsWith("HTTP/1.1 200 OK\r\n"));
    EXPECT_THAT(whole, HasSubstr("\r\nETag: \"" + tag + "\"\r\n"));
    EXPECT_THAT(whole, HasSubstr("\r\nContent-Length: " + std::to_string(served().core.size()) + "\r\n"));
    EXPECT_THAT(curl({QStringLiteral("--compressed"), url}), Not(HasSubstr("Content-Encoding")));
    const QString condition = QStringLiteral("If-None-Match: \"") + QString::fromStdString(tag) + QStringLiteral("\"");
    EXPECT_THAT(curl({QStringLiteral("-H"), condition, url}), testing::StartsWith("HTTP/1.1 304 Not Modified\r\n"));
    EXPECT_THAT(curl({QStringLiteral("-L"), QString::fromStdString(server.origin())}),
                HasSubstr("\r\nLocation: /catalog?v=1\r\n"));
}

TEST_F(Nginx, ServesANewEditionAfterAReload)
{
    const test::NginxServer server(home(), configuration());
    httplib::Client client("127.0.0.1", server.port());
    test::writeCatalogFile(input(U"core/M\u00F6bel 2.calib"), "Other");
    publish();
    const std::string target = "/catalog?v=1&library=M%C3%B6bel%202.calib";
    const std::string before = client.Head(target)->get_header_value("ETag");
    const std::string after = "\"" +
                              table()
                                  .libraries
                                  .at("M\xC3\xB6"
                                      "bel 2.calib")
                                  .tag +
                              "\"";
    ASSERT_NE(before, after);
    // Clients that do not know of the new edition still find the previous one whole.
    EXPECT_EQ(client.Get(target)->status, 200);
    VelkHost::writeNginxConfiguration(site(), configuration());
    server.reload();
    // For some moments both generations take new connections; a connection stays with its own.
    constexpr int patience = 100'000;  // connections
    std::string body;
    for (int asked = 0; body.empty() && asked < patience; ++asked) {
        httplib::Client next("127.0.0.1", server.port());
        next.set_keep_alive(true);
        next.set_url_encode(false);
        if (next.Head(target)->get_header_value("ETag") == after)
            body = next.Get(target)->body;
    }
    EXPECT_TRUE(body == published("M\xC3\xB6"
                                  "bel 2.calib"));
}

TEST_F(Nginx, RefusesWhatIsTooLong)
{
    const test::NginxServer server(home(), configuration());
    httplib::Client client("127.0.0.1", server.port());
    EXPECT_EQ(client.Get("/catalog?library=" + std::string(9'000, 'x'))->status, 414);
    EXPECT_EQ(client.Post("/catalog", std::string(100'000, 'x'), "text/plain")->status, 413);
}

TEST_F(Nginx, ManagesManyLibraries)
{
    constexpr int count = 300;
    for (int i = 0; i < count; ++i)
        test::writeZipFile(input() / fileString("referenced/many " + std::to_string(i) + ".zip"), {{"a", "b"}});
    publish();
    VelkHost::writeNginxConfiguration(site(), configuration());
    const test::NginxServer server(home(), configuration());
    httplib::Client client("127.0.0.1", server.port());
    for (int i = 0; i < count; i += 37)
        EXPECT_EQ(client.Head("/catalog?library=many%20" + std::to_string(i) + ".zip")->status, 200);
    EXPECT_EQ(server.complaints(), "");
}

TEST_F(Nginx, ServesAPathWithOddCharacters)
{
    const fileString odd = folder() / U"a $1 \"site\"; {\u00FC}\\";
    VelkHost::publish(input(), odd);
    VelkHost::writeNginxConfiguration(odd, configuration());
    const test::NginxServer server(home(), configuration());
    httplib::Client client("127.0.0.1", server.port());
    test::expectAnswers(client, test::serviceRequests(served()));
}

TEST_F(Nginx, NeedsAPublishedSite)
{
    EXPECT_EQ(test::reasonOf([&] { VelkHost::nginxConfiguration(folder() / U"none"); }), "is not a published site");
    EXPECT_THAT(test::reasonOf([&] {
                    VelkHost::publish(input(), folder() / U"line\nbreak");
                    VelkHost::nginxConfiguration(folder() / U"line\nbreak");
                }),
                HasSubstr("cannot stand in a configuration"));
}

}  // namespace
