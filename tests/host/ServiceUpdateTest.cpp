#include "ServedSiteTest.h"

#include <VelkCommon/Archive/ZipUtils.h>
#include <VelkCommon/Files/FileUtils.h>

#include <algorithm>

using VelkHost::ServiceTraffic;
using VelkHost::SiteService;

namespace {

const std::string bonusName = "\xE6\xA4\x85\xE5\xAD\x90";
const std::string manufacturerName(200, 'x');

/// The real client against the real service.
class ServiceUpdate : public test::ServedSiteTest
{
protected:
    ServiceUpdate() : service_(options()) {}

    /// What one update of the installation made the service do.
    ServiceTraffic update()
    {
        const ServiceTraffic before = service_.traffic();
        const test::ProgramRun run =
            test::runProgram(folder(), {"update", "--service", service_.address(), "--home", home().utf8(), "--bonus",
                                        bonusName, "--manufacturer", manufacturerName});
        EXPECT_EQ(run.exitCode, 0) << run.output << run.errors;
        const ServiceTraffic after = service_.traffic();
        return {after.requests - before.requests, after.notModified - before.notModified,
                after.bodyBytes - before.bodyBytes};
    }

    fileString home() const { return folder() / U"home"; }
    fileString home(const std::string& path) const { return home() / fileString(path); }
    std::uint64_t indexBytes() const { return published("Standard_Core_Content_Index.txt").size(); }

    void expectCurrent() const
    {
        const VelkHost::SiteTable now = table();
        for (const char* name : {"core/M\xC3\xB6"
                                 "bel 2.calib",
                                 "core/~It's (a) $5 deal; 50=50, @home!.calib"})
            EXPECT_TRUE(test::readFile(home(name)) == test::readFile(input() / fileString(std::string(name)))) << name;
        EXPECT_EQ(test::hashOf(home("bonus/" + bonusName + ".calib")), now.libraries.at(bonusName + ".calibz").tag);
        EXPECT_EQ(test::hashOf(home("manufacturer/" + manufacturerName + ".calib")),
                  now.libraries.at(manufacturerName + ".calibz").tag);
        EXPECT_EQ(ZipUtils::getFilenamesInArchive(home("referenced/" + bonusName + ".zip")).size(), 1U);
        EXPECT_TRUE(test::readFile(home("referenced/M\xC3\xB6"
                                        "bel 2.zip")) == test::readFile(input(U"referenced/M\u00F6bel 2.zip")));
    }

    SiteService service_;
};

TEST_F(ServiceUpdate, FillsAnEmptyInstallationAndThenDownloadsNothing)
{
    EXPECT_GT(update().bodyBytes, indexBytes());
    expectCurrent();
    const ServiceTraffic again = update();
    EXPECT_EQ(again.bodyBytes, indexBytes());
    EXPECT_EQ(again.notModified, 5U);
}

TEST_F(ServiceUpdate, DownloadsNothingToAFreshInstallation)
{
    update();
    // As an installer would have put it there: without a record of what is installed.
    for (const char* kind : {"core", "bonus", "manufacturer"})
        FileUtils::removePath(home(kind + std::string("/catalog_hash.txt")), 0);
    EXPECT_EQ(update().bodyBytes, indexBytes());
}

TEST_F(ServiceUpdate, DownloadsWhatChangedAndNothingElse)
{
    update();
    test::writeCatalogFile(input(U"core/M\u00F6bel 2.calib"), "Other");
    test::writePackedFile(input() / fileString("bonus/" + bonusName + ".calibz"), "Other", {{"oak.png", "OAK"}});
    publish();
    EXPECT_EQ(update().bodyBytes, indexBytes() +
                                      published("M\xC3\xB6"
                                                "bel 2.calib")
                                          .size() +
                                      published(bonusName + ".calibz").size());
    expectCurrent();
    EXPECT_EQ(update().bodyBytes, indexBytes());
}

TEST_F(ServiceUpdate, BringsBackACatalogThatWasChangedByHand)
{
    update();
    test::writeFile(home("core/M\xC3\xB6"
                         "bel 2.calib"),
                    "spoilt");
    FileUtils::removePath(home("core/catalog_hash.txt"), 0);
    EXPECT_EQ(update().bodyBytes, indexBytes() + published("M\xC3\xB6"
                                                           "bel 2.calib")
                                                     .size());
    expectCurrent();
}

}  // namespace
