#include "host/fixtures/Fixtures.h"
#include "host/fixtures/ProgramRun.h"

#include "host/service/Publisher.h"
#include "host/service/SiteService.h"
#include "support/TestHost.h"
#include "support/ZipBuilder.h"

#include <VelkCommon/Files/FileUtils.h>

#include <gmock/gmock.h>

#include <memory>
#include <mutex>
#include <utility>

using test::ProgramRun;
using test::smallCatalogBytes;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;

namespace {

/// With the real publisher and service.
class UpdateFromSite : public test::TestHost
{
protected:
    UpdateFromSite()
    {
        for (const char32_t* const name : {U"core", U"bonus", U"referenced"})
            FileUtils::createDirectoriesWithPerm(folder() / U"publish" / name);
    }

    /// Publishes the folder and serves the site until the end of the test.
    void publish()
    {
        VelkHost::publish(folder() / U"publish", folder() / U"site");
        if (service_)
            return;
        VelkHost::ServiceOptions options;
        options.site = folder() / U"site";
        options.served = [this](const VelkHost::ServedRequest& request) {
            const std::lock_guard lock(mutex_);
            if (request.method == "GET" && request.target.find("Index.txt") == std::string::npos)
                fetched_.push_back(request.target);
        };
        service_ = std::make_unique<VelkHost::SiteService>(options);
    }

    ProgramRun update(const std::string& home, std::vector<std::string> more = {}) const
    {
        std::vector<std::string> arguments{"update", "--service", service_->address(), "--home", home};
        arguments.insert(arguments.end(), more.begin(), more.end());
        return test::runProgram(folder(), arguments);
    }

    /// What was downloaded since the last call.
    std::vector<std::string> fetched()
    {
        const std::lock_guard lock(mutex_);
        return std::exchange(fetched_, {});
    }

    fileString in(const char32_t* first, const char32_t* second, const char32_t* third) const
    {
        return folder() / first / second / third;
    }

private:
    std::mutex mutex_;
    std::vector<std::string> fetched_;
    std::unique_ptr<VelkHost::SiteService> service_;
};

TEST_F(UpdateFromSite, TagsAndHashesAgreeOnEveryPath)
{
    const std::string plants = smallCatalogBytes("Plants");
    const std::string garden = smallCatalogBytes("Garden");
    const std::string textures = test::ZipBuilder().add("oak.png", std::string(3'000, 'o')).bytes();
    test::writeFile(in(U"publish", U"core", U"Küche 2.calib"), plants);
    test::writeFile(in(U"publish", U"referenced", U"textures.zip"), textures);
    test::writeFile(in(U"publish", U"bonus", U"garden.calibz"),
                    test::ZipBuilder().add("garden.calib", garden).add("oak.png", "texture").bytes());
    publish();

    EXPECT_EQ(update("home", {"--bonus", "garden"}).exitCode, 0);
    EXPECT_EQ(fetched().size(), 3u);
    EXPECT_EQ(test::readFile(in(U"home", U"core", U"Küche 2.calib")), plants);
    EXPECT_EQ(test::readFile(in(U"home", U"bonus", U"garden.calib")), garden);
    EXPECT_EQ(test::readFile(in(U"home", U"referenced", U"textures.zip")), textures);
    EXPECT_EQ(update("home").output, "Everything is up to date.\n");
    EXPECT_THAT(fetched(), IsEmpty()) << "after an update";

    for (const char32_t* const name : {U"core", U"bonus", U"referenced"})
        FileUtils::createDirectoriesWithPerm(folder() / U"fresh" / name);
    test::writeFile(in(U"fresh", U"core", U"Küche 2.calib"), plants);
    test::writeFile(in(U"fresh", U"bonus", U"garden.calib"), garden);
    test::writeFile(in(U"fresh", U"referenced", U"textures.zip"), textures);
    EXPECT_EQ(update("fresh").output, "Everything is up to date.\n");
    EXPECT_THAT(fetched(), IsEmpty()) << "with the publisher's own catalogs, and no hash file";

    const std::string changed = smallCatalogBytes("Plants 2");
    test::writeFile(in(U"publish", U"core", U"Küche 2.calib"), changed);
    publish();
    EXPECT_EQ(update("home").exitCode, 0);
    EXPECT_THAT(fetched(), ElementsAre(HasSubstr("K%C3%BCche%202.calib"))) << "only what has changed";
    EXPECT_EQ(test::readFile(in(U"home", U"core", U"Küche 2.calib")), changed);
}

}  // namespace
