#include "ServedInstallation.h"
#include "host/fixtures/ProgramRun.h"

#include <VelkCommon/Files/FileUtils.h>

using VelkHost::ServiceTraffic;
using VelkHost::SiteService;

namespace {

/// The real client against the real service.
class ServiceUpdate : public test::ServedInstallation
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
    // The catalogs are there as if an installer had put them there: without a record of what is installed.
    for (const char* kind : {"core", "bonus", "manufacturer"})
        FileUtils::removePath(home(kind + std::string("/catalog_hash.txt")), FileUtils::noFlags);
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
    FileUtils::removePath(home("core/catalog_hash.txt"), FileUtils::noFlags);
    EXPECT_EQ(update().bodyBytes, indexBytes() + published("M\xC3\xB6"
                                                           "bel 2.calib")
                                                     .size());
    expectCurrent();
}

}  // namespace
