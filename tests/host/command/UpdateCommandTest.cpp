#include "UpdateFixture.h"

#include "host/fixtures/ExitCodes.h"
#include "host/fixtures/Fixtures.h"
#include "support/ZipBuilder.h"

#include <VelkCommon/Files/FileUtils.h>
#include <VelkLibrary/UpdateData.h>

#include <gmock/gmock.h>

#include <QJsonArray>
#include <QJsonObject>

#include <csignal>

using test::ProgramRun;
using test::Reply;
using test::smallCatalogBytes;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;

namespace {

class UpdateCommand : public test::UpdateFixture
{
protected:
    /// Makes an installation with one core library, which the service's index does not name; returns its bytes.
    std::string installPlants()
    {
        std::string installed = smallCatalogBytes("Plants");
        FileUtils::createDirectoriesWithPerm(home() / U"core");
        test::writeFile(home() / U"core" / U"plants.calib", installed);
        publish("Standard_Core_Content_Index.txt", "");
        return installed;
    }
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

TEST_F(UpdateCommand, TakesNoPageForTheListOfCoreLibraries)
{
    const std::string installed = installPlants();
    publish("plants.calib", smallCatalogBytes("New plants"));
    publish("Standard_Core_Content_Index.txt", "<html><h1>Welcome to the hotel</h1></html>\n");
    const ProgramRun run = update();
    EXPECT_EQ(run.exitCode, test::exitCode::updateFailed);
    EXPECT_THAT(run.errors,
                HasSubstr("what " + server.url("/api?key=k") + " sends as the list of core libraries is none"));
    EXPECT_NE(test::readFile(home() / U"core" / U"plants.calib"), installed) << "what is here is updated nevertheless";
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
    const std::string installed = installPlants();
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
    const std::string installed = installPlants();
    const std::string page = "<html>" + std::string(5'000, 'x');
    publish("plants.calib", page);
    update();
    server.forgetRequests();
    EXPECT_EQ(update().exitCode, test::exitCode::updateFailed);
    EXPECT_EQ(server.requests("/api").back().method, "GET") << "it is fetched again, as what came was no catalog";
    EXPECT_EQ(test::readFile(home() / U"core" / U"plants.calib"), installed);
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
    const std::string installed = installPlants();
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

}  // namespace
