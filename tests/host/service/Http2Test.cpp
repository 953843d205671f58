#include "NginxServer.h"
#include "ServedInstallation.h"

#include "VelkLibrary/Update/RecordingReceiver.h"
#include "host/service/NginxConfiguration.h"
#include "host/support/InstallHost.h"
#include "support/EventLoop.h"
#include "support/TransferCodes.h"

#include <VelkCommon/Files/FileUtils.h>
#include <VelkCommon/Network/Curl.h>
#include <VelkCommon/Network/WebUtils.h>
#include <VelkLibrary/LibraryCatalogUpdater.h>

#include <optional>
#include <set>

using testing::SizeIs;

namespace {

/// The client against a web server that speaks HTTP/2.
class Http2 : public test::ServedInstallation
{
protected:
    Http2()
    {
        const VelkHost::ServiceCertificate files = certificate(authority_);
        const fileString configuration = folder() / U"nginx configuration";
        VelkHost::writeNginxConfiguration(site(), configuration);
        server_.emplace(folder() / U"nginx", configuration, files.certificate, files.privateKey);
        Velk::HostServices host = VelkHost::hostServices(home());
        host.certificateFile = folder() / U"authority.crt";
        Velk::installHost(std::move(host));
    }

    std::string address() const { return server_->origin() + "/"; }
    std::string endpoint() const { return server_->origin() + "/catalog?v=1"; }
    std::string request(const std::string& library) const { return endpoint() + "&library=" + library; }

    /// How many requests the server got; checks that all came in HTTP/2 over one connection.
    std::size_t requestsOverOneConnection()
    {
        const std::vector<test::NginxRequest> requests = server_->stop();
        std::set<std::string> protocols;
        std::set<std::string> connections;
        for (const test::NginxRequest& request : requests) {
            protocols.insert(request.protocol);
            connections.insert(request.connection);
        }
        EXPECT_THAT(protocols, testing::ElementsAre("HTTP/2.0"));
        EXPECT_THAT(connections, SizeIs(1));
        return requests.size();
    }

    /// Updates the installation; returns the outcome.
    std::int32_t update()
    {
        test::RecordingReceiver receiver;
        receiver.reaction = [](const test::Event& event) {
            const auto& [installed, fresh] = event.paths;
            if (event.slot == "onCatalogUpdatedEvent") {
                EXPECT_TRUE(FileUtils::moveFile(fresh, installed, true)) << installed;
            }
        };
        const std::set<fileString> bonus = {home("bonus/" + bonusName + ".calib")};
        const std::set<fileString> manufacturer = {home("manufacturer/" + manufacturerName + ".calib")};
        for (const char* name : {"core", "bonus", "manufacturer", "user"})
            FileUtils::createDirectoriesWithPerm(home(name));
        LibraryCatalogUpdate::LibraryCatalogUpdater updater(receiver, {}, bonus, manufacturer, "velk", "1", address(),
                                                            false);
        test::runBesideEventLoop([&] { updater(); });
        return receiver.finalEvent().data.outcome;
    }

    test::TestAuthority authority_;
    std::optional<test::NginxServer> server_;
};

TEST_F(Http2, CarriesRedirectsAndTexts)
{
    EXPECT_EQ(WebUtils::getUrlAfterRedirects(address()), endpoint());
    std::string body;
    EXPECT_TRUE(Curl::get().browseURL(request("Standard_Core_Content_Index.txt"), {}, body, true, 0));
    EXPECT_EQ(body, published("Standard_Core_Content_Index.txt"));
    EXPECT_FALSE(Curl::get().browseURL(request("none.calib"), {}, body, true, 0));
    EXPECT_EQ(body, "This library is not part of the content service.\n");
    EXPECT_EQ(requestsOverOneConnection(), 4U);
}

TEST_F(Http2, CarriesHeaders)
{
    const std::string tag = table().libraries.at(bonusName + ".calibz").tag;
    std::string header;
    long status = 0;
    EXPECT_TRUE(Curl::get().getURLHeader(request(bonusName + ".calibz"), {}, header, status));
    EXPECT_EQ(status, 200);
    std::map<std::string, std::vector<std::string>, WebUtils::HeaderNameCompare> values;
    WebUtils::parseReturnHeader(header, values);
    EXPECT_THAT(values["ETag"], testing::ElementsAre("\"" + tag + "\""));
    EXPECT_THAT(values["Content-Length"],
                testing::ElementsAre(std::to_string(published(bonusName + ".calibz").size())));
    EXPECT_TRUE(
        Curl::get().getURLHeader(request(bonusName + ".calibz"), {"If-None-Match: \"" + tag + "\""}, header, status));
    EXPECT_EQ(status, 304);
    EXPECT_EQ(requestsOverOneConnection(), 2U);
}

// There are more requests than run at a time, and the answers come in another order.
TEST_F(Http2, CarriesManyHeadersAtOnce)
{
    const auto libraries = table().libraries;
    std::vector<Curl::HeaderRequest> asked;
    std::vector<long> expected;
    while (asked.size() < 40) {
        for (const auto& [name, file] : libraries) {
            asked.push_back({request(name), {"If-None-Match: \"" + file.tag + "\""}});
            asked.push_back({request(name), {"If-None-Match: \"other\""}});
            asked.push_back({request("none " + name), {}});
            expected.insert(expected.end(), {304, 200, 404});
        }
    }
    std::vector<long> statuses;
    Curl::get().getURLHeaders(asked, [&](std::size_t index, const Curl::HeaderAnswer& answer) {
        EXPECT_EQ(index, statuses.size());
        EXPECT_TRUE(answer.received);
        statuses.push_back(answer.responseCode);
    });
    EXPECT_EQ(statuses, expected);
    EXPECT_EQ(requestsOverOneConnection(), asked.size());
}

TEST_F(Http2, CarriesDownloads)
{
    const std::string library = bonusName + ".calibz";
    const fileString target = folder() / U"target";
    std::string reason;
    unsigned int code = 99;
    double last = 0;
    const auto progress = [](void* data, double, double received, double, double) {
        *static_cast<double*>(data) = received;
        return 0;
    };
    EXPECT_TRUE(Curl::get().download_to_location(request(library), target, {}, &last, progress, reason, code))
        << reason;
    EXPECT_EQ(code, 0U);
    EXPECT_TRUE(test::readFile(target) == published(library));
    EXPECT_EQ(last, static_cast<double>(published(library).size()));
    EXPECT_TRUE(Curl::get().download_to_location(request(library), folder() / U"short", reason)) << reason;
    EXPECT_TRUE(test::readFile(folder() / U"short") == published(library));
    const fileString temporary = Curl::get().download(request(library));
    EXPECT_TRUE(test::readFile(temporary) == published(library));
    FileUtils::removePath(temporary, FileUtils::noFlags);
    EXPECT_FALSE(Curl::get().download_to_location(request("none.calib"), target, {}, nullptr, nullptr, reason, code));
    EXPECT_EQ(reason, "HTTP status 404");
    EXPECT_EQ(code, test::httpError);
    EXPECT_EQ(requestsOverOneConnection(), 4U);
}

TEST_F(Http2, LetsADownloadBeCancelled)
{
    std::string reason;
    unsigned int code = 0;
    const auto cancel = [](void*, double, double, double, double) { return 1; };
    EXPECT_FALSE(Curl::get().download_to_location(request(bonusName + ".calibz"), folder() / U"target", {}, nullptr,
                                                  cancel, reason, code));
    EXPECT_EQ(code, test::aborted);
    EXPECT_FALSE((folder() / U"target").pathExists());
    std::string body;
    EXPECT_TRUE(Curl::get().browseURL(endpoint(), {}, body, true, 0)) << "the next one is not disturbed";
}

TEST_F(Http2, CarriesAWholeUpdate)
{
    test::ensureApplication();
    EXPECT_EQ(update(), LibraryCatalogUpdate::Installed);
    expectCurrent();
    EXPECT_EQ(update(), LibraryCatalogUpdate::UpToDate);
    // The endpoint twice with a redirect each, the index twice, two checks and a download of each library.
    EXPECT_EQ(requestsOverOneConnection(), 4U + 2U + 3 * 5U);
}

}  // namespace
