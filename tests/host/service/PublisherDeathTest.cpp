#include "host/fixtures/PublishFixtures.h"

#include "support/Processes.h"

#include <VelkCommon/Files/FileUtils.h>
#include <VelkCommon/Files/SHA1.h>

namespace {

class DyingPublisher : public test::PublishTest
{
protected:
    /// What the site serves, whole or not at all.
    std::string served() const
    {
        const VelkHost::SiteTable now = table();
        std::string text;
        for (const auto& [name, file] : now.libraries) {
            const fileString path = VelkHost::storedFile(site(), file.stored);
            EXPECT_EQ(FileUtils::fileSize(path), static_cast<long long>(file.size)) << name;
            EXPECT_EQ(SHA1::fileContentsToSHA1Hex(path), file.stored.substr(0, 40)) << name;
            text += name + " " + file.tag + "\n";
        }
        return text;
    }
};

// Killed between any two system calls, a publication leaves the old or the new edition, and the next one
// succeeds.
TEST_F(DyingPublisher, LeavesOneEditionWhole)
{
    test::writeCatalogFile(input(U"core/a.calib"), "First");
    publish();
    const std::string first = served();
    test::writeCatalogFile(input(U"core/a.calib"), "Second");
    test::writeCatalogFile(input(U"core/b.calib"), "Second");
    std::string second;
    int deaths = 0;
    // The stride is odd, so that all kinds of calls have their turn within a run.
    constexpr int stride = 7;
    for (bool died = true; died; deaths += stride) {
        died = test::killedAtSystemCall(deaths, [&] { publish(); });
        const std::string now = served();
        if (!died)
            second = now;
        if (died && now == first)
            continue;
        if (second.empty())
            second = now;
        ASSERT_EQ(now, second) << "torn at call " << deaths;
        if (died) {
            publish();
            // Two tables, two indexes, and a catalog of each edition, as those of the second have the same content.
            ASSERT_EQ(test::listFolder(site() / U"files").size(), 6U) << "killed at call " << deaths;
            // The switch is done already: the remaining calls only remove unused files.
            FileUtils::removeDirectoryAndFiles(site(), FileUtils::noFlags);
            test::writeCatalogFile(input(U"core/a.calib"), "First");
            FileUtils::removePath(input(U"core/b.calib"), FileUtils::noFlags);
            publish();
            test::writeCatalogFile(input(U"core/a.calib"), "Second");
            test::writeCatalogFile(input(U"core/b.calib"), "Second");
        }
    }
    EXPECT_GT(deaths, 100) << "the work was not watched";
    EXPECT_NE(second, first);
    EXPECT_EQ(table().libraries.at("a.calib").tag, SHA1::fileContentsToSHA1Hex(input(U"core/a.calib")));
}

}  // namespace
