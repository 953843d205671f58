#include "host/fixtures/ExitCodes.h"
#include "host/fixtures/Fixtures.h"
#include "host/fixtures/ProgramRun.h"

#include "host/service/Publisher.h"
#include "host/service/SiteService.h"
#include "support/Hashes.h"
#include "support/QtProcesses.h"
#include "support/ScriptedServer.h"
#include "support/ZipBuilder.h"

#include <VelkCommon/Archive/ZipUtils.h>
#include <VelkCommon/Files/FileUtils.h>
#include <VelkLibrary/UpdateData.h>

#include <QJsonArray>
#include <QJsonObject>
#include <QProcess>

#include <csignal>
#include <filesystem>
#include <map>
#include <memory>
#include <mutex>
#include <utility>

using test::ProgramRun;
using test::Reply;
using test::sha1;
using test::smallCatalogBytes;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;

namespace {

/// The real program against a service in this process.
class UpdateCommand : public test::TestHost
{
    std::mutex mutex_;
    std::map<std::string, Reply> answers_;  // declared before the server, whose threads use them

protected:
    UpdateCommand()
    {
        server.on("/api", [this](const test::SeenRequest& request) {
            const std::lock_guard lock(mutex_);
            const auto found = answers_.find(request.parameter("library"));
            if (found != answers_.end())
                return found->second;
            return request.parameter("library").empty() ? Reply{} : Reply{.status = 404};
        });
    }

    void answer(const std::string& library, Reply reply)
    {
        const std::lock_guard lock(mutex_);
        answers_[library] = std::move(reply);
    }

    void publish(const std::string& library, const std::string& bytes)
    {
        answer(library, Reply::file(bytes, sha1(bytes)));
    }

    std::vector<std::string> arguments(std::vector<std::string> more = {}) const
    {
        std::vector<std::string> all{"update", "--service", server.url("/api?key=k"), "--home", "home"};
        all.insert(all.end(), more.begin(), more.end());
        return all;
    }

    ProgramRun update(std::vector<std::string> more = {}) const
    {
        ProgramRun run = test::runProgram(folder(), arguments(std::move(more)));
        EXPECT_FALSE(run.crashed) << run.errors;
        return run;
    }

    void start(QProcess& velk) const
    {
        velk.setWorkingDirectory(QString::fromStdString(folder().utf8()));
        QStringList list;
        for (const std::string& argument : arguments())
            list.append(QString::fromStdString(argument));
        velk.start(QStringLiteral(VELK_PROGRAM), list);
        test::waitForStart(velk);
    }

    fileString home() const { return folder() / U"home"; }

    test::ScriptedServer server;
};

TEST_F(UpdateCommand, FillsAnEmptyInstallation)
{
    const std::string plants = smallCatalogBytes("Plants");
    const std::string garden = smallCatalogBytes("Garden");
    publish("Standard_Core_Content_Index.txt", "plants.calib\n");
    publish("plants.calib", plants);
    answer("garden.calibz",
           Reply::file(test::ZipBuilder().add("x.calib", garden).add("oak.png", "texture").bytes(), "edition1"));
    ProgramRun run = update({"--bonus", "garden"});
    EXPECT_EQ(run.exitCode, 0) << run.errors;
    EXPECT_EQ(run.errors, "");
    EXPECT_THAT(run.output, HasSubstr("installed  " + (home() / U"core" / U"plants.calib").utf8() + "\n"));
    EXPECT_THAT(run.output, HasSubstr("installed  " + (home() / U"bonus" / U"garden.calib").utf8() + "\n"));
    EXPECT_EQ(test::readFile(home() / U"core" / U"plants.calib"), plants);
    EXPECT_EQ(test::readFile(home() / U"bonus" / U"garden.calib"), garden);
    EXPECT_THAT(test::listFolder(home() / U"referenced"), ElementsAre("garden.zip"));
    run = update();
    EXPECT_EQ(run.exitCode, 0);
    EXPECT_EQ(run.output, "Everything is up to date.\n");
    EXPECT_THAT(test::listFolder(home() / U"temp"), IsEmpty());
}

TEST_F(UpdateCommand, TrustsTheCertificatesItIsGiven)
{
    const test::TestAuthority authority;
    test::ScriptedServer secure(authority.issue());
    secure.on("/api", Reply{.status = 304});
    const std::vector<std::string> arguments{"update", "--service", secure.url("/api?key=k"), "--home", "home"};
    EXPECT_EQ(test::runProgram(folder(), arguments).exitCode, test::exitCode::updateFailed);
    EXPECT_THAT(secure.requests(), IsEmpty());
    test::writeFile(folder() / U"authority.pem", authority.certificate());
    qputenv("VELK_CERTIFICATES", "authority.pem");
    test::runProgram(folder(), arguments);
    qunsetenv("VELK_CERTIFICATES");
    EXPECT_FALSE(secure.requests().empty());
}

TEST_F(UpdateCommand, TellsScripts)
{
    publish("Standard_Core_Content_Index.txt", "Küche 2.calib\n");
    publish("Küche 2.calib", smallCatalogBytes("Kitchen"));
    const ProgramRun run = update({"--format", "json"});
    EXPECT_EQ(run.exitCode, 0);
    const QJsonObject object = run.json();
    EXPECT_EQ(object[QStringLiteral("outcome")].toString().toStdString(), "installed");
    EXPECT_EQ(object[QStringLiteral("updated")].toArray().at(0).toString().toStdString(), "Küche 2");
    EXPECT_EQ(object[QStringLiteral("installed")].toArray().at(0).toString().toStdString(),
              (home() / U"core" / U"Küche 2.calib").utf8());
    EXPECT_TRUE(object[QStringLiteral("kept")].toArray().isEmpty());
    EXPECT_GT(object[QStringLiteral("kilobytes")].toDouble(), 0);
    EXPECT_EQ(object[QStringLiteral("resultCode")].toDouble(), double{LibraryCatalogUpdate::NothingRemarkable});
}

TEST_F(UpdateCommand, KeepsACatalogWhenTheDownloadIsNotOne)
{
    const std::string installed = smallCatalogBytes("Plants");
    FileUtils::createDirectoriesWithPerm(home() / U"core");
    test::writeFile(home() / U"core" / U"plants.calib", installed);
    publish("Standard_Core_Content_Index.txt", "");
    publish("plants.calib", "<html>" + std::string(5'000, 'x'));
    ProgramRun run = update();
    EXPECT_EQ(run.exitCode, test::exitCode::updateFailed);
    EXPECT_THAT(run.output, HasSubstr("kept       " + (home() / U"core" / U"plants.calib").utf8()));
    EXPECT_EQ(test::readFile(home() / U"core" / U"plants.calib"), installed);
    // The service repairs itself: the catalog must come although its first version was fetched.
    const std::string repaired = smallCatalogBytes("Plants 2");
    publish("plants.calib", repaired);
    EXPECT_EQ(update().exitCode, 0);
    EXPECT_EQ(test::readFile(home() / U"core" / U"plants.calib"), repaired);
}

TEST_F(UpdateCommand, AsksAgainForWhatCouldNotBeInstalled)
{
    const std::string installed = smallCatalogBytes("Plants");
    FileUtils::createDirectoriesWithPerm(home() / U"core");
    test::writeFile(home() / U"core" / U"plants.calib", installed);
    publish("Standard_Core_Content_Index.txt", "");
    const std::string page = "<html>" + std::string(5'000, 'x');
    publish("plants.calib", page);
    update();
    server.forgetRequests();
    EXPECT_EQ(update().exitCode, test::exitCode::updateFailed);
    EXPECT_EQ(server.requests("/api").back().method, "GET") << "it is fetched again, as what came was no catalog";
    EXPECT_EQ(test::readFile(home() / U"core" / U"plants.calib"), installed);
}

// ---- All of a library or nothing -----------------------------------------------------------------

class UpdateOfAPackage : public UpdateCommand
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
    publishVersion("2");
    EXPECT_EQ(update().exitCode, 0);
    expectVersion("2");
}

TEST_F(UpdateOfAPackage, RefusesADamagedCatalog)
{
    test::ZipItem item;
    item.name = "garden.calib";
    item.data = catalog("2");
    item.crc = 1;
    expectRefused(test::ZipBuilder().add(item).add("oak.png", "texture 2").bytes(), "could not be unpacked");
    publishVersion("2");
    EXPECT_EQ(update().exitCode, 0);
    expectVersion("2");
}

TEST_F(UpdateOfAPackage, RefusesAnEncryptedOne)
{
    test::ZipItem item;
    item.name = "garden.calib";
    item.data = catalog("2");
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
    EXPECT_EQ(update().exitCode, 0);
    expectVersion("1");
    EXPECT_EQ(update().output, "Everything is up to date.\n");
}

TEST_F(UpdateOfAPackage, BringsBackACatalogThatIsGone)
{
    FileUtils::removePath(catalogFile(), FileUtils::noFlags);
    EXPECT_EQ(update().exitCode, 0);
    expectVersion("1");
}

TEST_F(UpdateOfAPackage, RepairsATornArchive)
{
    test::writeFile(archive(), "torn");
    EXPECT_EQ(update().exitCode, 0);
    expectVersion("1");
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
    const auto time = std::filesystem::last_write_time(catalogFile().utf8());
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

TEST_F(UpdateOfAPackage, LeavesNothingOfAKilledUpdate)
{
    test::writeFile(home() / U"referenced" / U".velk-0123.tmp", "left");
    FileUtils::createDirectoriesWithPerm(home() / U"temp" / U".velk-0123.tmp" / U"velk.downloads.bonus");
    update();
    expectVersion("1");
}

TEST_F(UpdateCommand, SaysThatALibraryIsNotPartOfTheService)
{
    publish("Standard_Core_Content_Index.txt", "");
    const ProgramRun run = update({"--bonus", "NoSuch"});
    EXPECT_EQ(run.exitCode, test::exitCode::updateFailed);
    EXPECT_THAT(run.output, HasSubstr("NoSuch: not part of this service\n"));
}

TEST_F(UpdateCommand, SaysWhyTheServiceCannotBeReached)
{
    const test::RefusingPort nobody;
    const std::vector<std::string> arguments{"update", "--service", nobody.url(), "--home", "home", "--format", "json"};
    const ProgramRun run = test::runProgram(folder(), arguments);
    EXPECT_EQ(run.errors, "velk: cannot reach " + nobody.url() + ": it does not accept connections\n");
    EXPECT_EQ(run.json()[QStringLiteral("error")].toString().toStdString(),
              "cannot reach " + nobody.url() + ": it does not accept connections");
}

TEST_F(UpdateCommand, UpdatesTheKindsThatAreNamed)
{
    FileUtils::createDirectoriesWithPerm(home() / U"core");
    FileUtils::createDirectoriesWithPerm(home() / U"bonus");
    test::writeFile(home() / U"core" / U"a.calib", smallCatalogBytes("A"));
    test::writeFile(home() / U"bonus" / U"b.calib", smallCatalogBytes("B"));
    const auto asked = [this] {
        std::vector<std::string> names;
        for (const auto& request : server.requests("/api"))
            if (request.method == "HEAD" && !request.parameter("library").empty())
                names.push_back(request.parameter("library"));
        server.forgetRequests();
        return names;
    };
    publish("Standard_Core_Content_Index.txt", "");
    update({"--kinds", "bonus"});
    EXPECT_THAT(asked(), ElementsAre("b.calibz"));
    update({"--kinds", "core"});
    EXPECT_THAT(asked(), ElementsAre("a.calib"));
    update({"--manual"});
    EXPECT_THAT(asked(), ElementsAre("a.calib"));
    update({"--kinds", "core,bonus", "--product", "planner", "--version", "7 beta"});
    EXPECT_EQ(server.requests("/api").back().parameter("product"), "planner");
    EXPECT_EQ(server.requests("/api").back().parameter("version"), "7 beta");
}

TEST_F(UpdateCommand, AsksForTheIndexOfTheEdition)
{
    publish("Grand_Core_Content_Index.txt", "");
    EXPECT_EQ(update({"--edition", "Grand"}).exitCode, 0);
}

TEST_F(UpdateCommand, SaysWhereTheReasonsAre)
{
    const test::RefusingPort nobody;
    const ProgramRun run = test::runProgram(folder(), {"update", "--service", nobody.url(), "--home", "home"});
    EXPECT_EQ(run.exitCode, test::exitCode::updateFailed);
    EXPECT_THAT(run.output, HasSubstr((home() / U"user" / U"errors.log").utf8()));
    EXPECT_THAT(test::readFile(home() / U"user" / U"errors.log"), HasSubstr("Unable to determine api endpoint"));
}

TEST_F(UpdateCommand, RefusesACommandLineThatMakesNoSense)
{
    EXPECT_EQ(test::runProgram(folder(), {"update"}).exitCode, test::exitCode::usage);
    EXPECT_EQ(test::runProgram(folder(), {"update", "--service", "file:///etc/passwd"}).exitCode,
              test::exitCode::usage);
    EXPECT_EQ(update({"--kinds", "core,user"}).exitCode, test::exitCode::usage);
    EXPECT_EQ(update({"--kinds", "bonus", "--manual"}).exitCode, test::exitCode::usage);
    EXPECT_THAT(server.requests(), IsEmpty());
}

#ifndef _WIN32
TEST_F(UpdateCommand, EndsOnCtrlCWhileTheServiceDoesNotAnswer)
{
    for (const char* const library : {"", "Standard_Core_Content_Index.txt", "plants.calib"}) {
        SCOPED_TRACE(library);
        publish("", "");
        publish("Standard_Core_Content_Index.txt", "plants.calib\n");
        const test::Gate gate;
        Reply never;
        never.beforeHeader = gate;
        answer(library, never);
        QProcess velk;
        start(velk);
        gate.waitForArrivals(1);
        ::kill(static_cast<pid_t>(velk.processId()), SIGINT);
        test::waitForEnd(velk);
        test::Gate(gate).openForGood();
        EXPECT_EQ(velk.exitCode(), test::exitCode::cancelled);
        EXPECT_EQ(velk.readAllStandardOutput().toStdString(), "Cancelled.\n");
        EXPECT_THAT(test::listFolder(home() / U"temp"), IsEmpty());
    }
}

TEST_F(UpdateCommand, EndsCleanlyOnCtrlC)
{
    const std::string installed = smallCatalogBytes("Plants");
    FileUtils::createDirectoriesWithPerm(home() / U"core");
    test::writeFile(home() / U"core" / U"plants.calib", installed);
    publish("Standard_Core_Content_Index.txt", "");
    const test::Gate gate;
    Reply slow = Reply::file(smallCatalogBytes("Plants 2"), "new");
    slow.block = 1'000;
    slow.beforeBlock = gate;
    answer("plants.calib", slow);
    QProcess velk;
    start(velk);
    gate.waitForArrivals(1);
    ::kill(static_cast<pid_t>(velk.processId()), SIGINT);
    test::waitForEnd(velk);
    test::Gate(gate).openForGood();
    EXPECT_EQ(velk.exitStatus(), QProcess::NormalExit);
    EXPECT_EQ(velk.exitCode(), test::exitCode::cancelled);
    EXPECT_EQ(velk.readAllStandardOutput().toStdString(), "Cancelled.\n");
    EXPECT_EQ(test::readFile(home() / U"core" / U"plants.calib"), installed);
    EXPECT_THAT(test::listFolder(home() / U"temp"), IsEmpty());
}
#endif

// ---- With the real publisher and service ---------------------------------------------------------

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
