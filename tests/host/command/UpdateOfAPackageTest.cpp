#include "UpdateFixture.h"

#include "host/fixtures/ExitCodes.h"
#include "host/fixtures/Fixtures.h"
#include "support/Hashes.h"
#include "support/ZipBuilder.h"

#include <VelkCommon/Archive/ZipUtils.h>
#include <VelkCommon/Files/FileUtils.h>

#include <gmock/gmock.h>

#include <QJsonArray>
#include <QJsonObject>

#include <chrono>
#include <filesystem>

using test::ProgramRun;
using test::Reply;
using test::sha1;
using test::smallCatalogBytes;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;

namespace {

/// A packed library is installed as a whole or not at all.
class UpdateOfAPackage : public test::UpdateFixture
{
protected:
    UpdateOfAPackage()
    {
        publish("Standard_Core_Content_Index.txt", "");
        publishVersion("1");
        EXPECT_EQ(update({"--bonus", "garden"}).exitCode, 0);
        expectVersion("1");
    }

    static std::string catalog(const std::string& version) { return smallCatalogBytes("Garden " + version); }

    static test::ZipBuilder package(const std::string& version)
    {
        return test::ZipBuilder().add("garden.calib", catalog(version)).add("oak.png", "texture " + version);
    }

    static test::ZipItem catalogItem(const std::string& version)
    {
        test::ZipItem item;
        item.name = "garden.calib";
        item.data = catalog(version);
        return item;
    }

    void answerWith(const std::string& version, const std::string& bytes)
    {
        answer("garden.calibz", Reply::file(bytes, sha1(catalog(version))));
    }
    void publishVersion(const std::string& version) { answerWith(version, package(version).bytes()); }

    fileString catalogFile() const { return home() / U"bonus" / U"garden.calib"; }
    fileString archive() const { return home() / U"referenced" / U"garden.zip"; }

    void expectVersion(const std::string& version) const
    {
        EXPECT_TRUE(test::readFile(catalogFile()) == catalog(version)) << "the catalog is not version " << version;
        std::string texture;
        ZipUtils::writeFileDataFromArchive(
            archive() + fileString(ZipUtils::getDelimiter()) + fileString(std::string("oak.png")),
            [&](std::vector<unsigned char>& bytes) { texture.assign(bytes.begin(), bytes.end()); });
        EXPECT_EQ(texture, "texture " + version);
        EXPECT_THAT(test::listFolder(home() / U"referenced"), ElementsAre("garden.zip"));
        EXPECT_THAT(test::listFolder(home() / U"temp"), IsEmpty());
    }

    void updateTo(const std::string& version)
    {
        publishVersion(version);
        EXPECT_EQ(update().exitCode, 0);
        expectVersion(version);
    }

    void expectRepaired() const
    {
        EXPECT_EQ(update().exitCode, 0);
        expectVersion("1");
    }

    /// What the service sends cannot be installed: that is told, and the older version stays until a good one comes.
    void expectRefused(const std::string& bytes, const std::string& reason)
    {
        SCOPED_TRACE(reason);
        answerWith("2", bytes);
        const ProgramRun run = update();
        EXPECT_EQ(run.exitCode, test::exitCode::updateFailed);
        EXPECT_THAT(run.output, HasSubstr("kept       " + catalogFile().utf8() + ": "));
        EXPECT_THAT(run.output, HasSubstr(reason));
        expectVersion("1");
        EXPECT_EQ(update().exitCode, test::exitCode::updateFailed) << "it goes on to be told";
    }
};

TEST_F(UpdateOfAPackage, RefusesWhatIsNoPackage)
{
    expectRefused("<html>" + std::string(5'000, 'x'), "is not a packed library, or it is damaged");
    updateTo("2");
}

TEST_F(UpdateOfAPackage, RefusesADamagedCatalog)
{
    test::ZipItem item = catalogItem("2");
    item.crc = 1;
    expectRefused(test::ZipBuilder().add(item).add("oak.png", "texture 2").bytes(), "could not be unpacked");
    updateTo("2");
}

TEST_F(UpdateOfAPackage, RefusesAnEncryptedOne)
{
    test::ZipItem item = catalogItem("2");
    item.flags = 1;
    expectRefused(test::ZipBuilder().add(item).add("oak.png", "texture 2").bytes(), "is encrypted");
}

TEST_F(UpdateOfAPackage, RefusesOtherBytesThanTheServiceAnnounced)
{
    expectRefused(package("3").bytes(), "is not what it announced");
}

TEST_F(UpdateOfAPackage, BringsBackAnArchiveThatIsGone)
{
    FileUtils::removePath(archive(), FileUtils::noFlags);
    expectRepaired();
    EXPECT_EQ(update().output, "Everything is up to date.\n");
}

TEST_F(UpdateOfAPackage, BringsBackACatalogThatIsGone)
{
    FileUtils::removePath(catalogFile(), FileUtils::noFlags);
    expectRepaired();
}

TEST_F(UpdateOfAPackage, RepairsATornArchive)
{
    test::writeFile(archive(), "torn");
    expectRepaired();
}

TEST_F(UpdateOfAPackage, RepairsWhatAnInterruptedUpdateLeft)
{
    // The archive of the next version was placed, and the module's hash file written, but not the catalog.
    publishVersion("2");
    test::ZipBuilder().add("oak.png", "texture 2").writeTo(archive());
    test::writeFile(home() / U"bonus" / U"catalog_hash.txt", "garden.calib:" + sha1(catalog("2")) + "\n");
    EXPECT_EQ(update().exitCode, 0);
    expectVersion("2");
}

TEST_F(UpdateOfAPackage, RepairsWhatCouldNotBePlaced)
{
    publishVersion("2");
    FileUtils::removeDirectoryAndFiles(home() / U"referenced", FileUtils::noFlags);
    test::writeFile(home() / U"referenced", "a file in the folder's place");
    EXPECT_EQ(update().exitCode, test::exitCode::updateFailed);
    EXPECT_TRUE(test::readFile(catalogFile()) == catalog("1"));
    FileUtils::removePath(home() / U"referenced", FileUtils::noFlags);
    EXPECT_EQ(update().exitCode, 0);
    expectVersion("2");
}

TEST_F(UpdateOfAPackage, TrustsSizesAndTimesUnlessItIsToVerify)
{
    // In whole seconds, which the test can set on every system.
    const auto time = std::filesystem::file_time_type(std::chrono::floor<std::chrono::seconds>(
        std::filesystem::last_write_time(catalogFile().utf8()).time_since_epoch()));
    std::filesystem::last_write_time(catalogFile().utf8(), time);
    EXPECT_EQ(update().output, "Everything is up to date.\n") << "it is noted with this time";
    std::string damaged = catalog("1");
    damaged[damaged.size() / 2] ^= 1;
    test::writeFile(catalogFile(), damaged);
    std::filesystem::last_write_time(catalogFile().utf8(), time);
    EXPECT_EQ(update().output, "Everything is up to date.\n");
    EXPECT_EQ(update({"--verify"}).exitCode, 0);
    expectVersion("1");
}

TEST_F(UpdateOfAPackage, SaysThatDamageCannotBeRepaired)
{
    answer("garden.calibz", {.status = 304});
    FileUtils::removePath(archive(), FileUtils::noFlags);
    const ProgramRun run = update();
    EXPECT_EQ(run.exitCode, test::exitCode::updateFailed);
    EXPECT_THAT(run.output, HasSubstr("its files are missing or damaged, and could not be fetched again"));
}

TEST_F(UpdateOfAPackage, TellsOnceThatTheServiceNoLongerHasIt)
{
    answer("garden.calibz", {.status = 404});
    const ProgramRun first = update();
    EXPECT_EQ(first.exitCode, 0);
    EXPECT_THAT(first.output, HasSubstr("garden: not part of this service\n"));
    EXPECT_EQ(update().output, "Everything is up to date.\n");
    expectVersion("1");
    EXPECT_THAT(update({"--bonus", "garden"}).output, HasSubstr("garden: not part of this service\n"));
}

TEST_F(UpdateOfAPackage, TellsWhyItIsWithdrawn)
{
    answer("garden.calibz", {.status = 403, .body = "Out of season.\n"});
    const ProgramRun run = update();
    EXPECT_EQ(run.exitCode, 0);
    EXPECT_THAT(run.output, HasSubstr("garden: withdrawn: Out of season.\n"));
    const QJsonObject withdrawn =
        update({"--format", "json"}).json()[QStringLiteral("withdrawn")].toArray().at(0).toObject();
    EXPECT_EQ(withdrawn[QStringLiteral("message")].toString().toStdString(), "Out of season.");
    expectVersion("1");
}

TEST_F(UpdateOfAPackage, TakesNoPageForAWithdrawal)
{
    answer("garden.calibz", {.status = 403, .body = "<html>\n<h1>Blocked by the proxy</h1>\n</html>\n"});
    const ProgramRun run = update();
    EXPECT_EQ(run.exitCode, test::exitCode::updateFailed);
    EXPECT_THAT(run.output, HasSubstr("garden.calib: the service answers with status 403\n"));
    expectVersion("1");
}

TEST_F(UpdateOfAPackage, LeavesNothingOfAKilledUpdate)
{
    test::writeFile(home() / U"referenced" / U".velk-0123.tmp", "left");
    FileUtils::createDirectoriesWithPerm(home() / U"temp" / U".velk-0123.tmp" / U"velk.downloads.bonus");
    update();
    expectVersion("1");
}

}  // namespace
