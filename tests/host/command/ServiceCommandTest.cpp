#include "host/fixtures/ExitCodes.h"
#include "host/fixtures/ProgramRun.h"
#include "host/fixtures/PublishFixtures.h"
#include "host/fixtures/ServiceRequests.h"

#include "support/QtProcesses.h"

#include <VelkCommon/Files/FileUtils.h>

#include <QProcess>

#include <csignal>
#include <filesystem>

using test::ProgramRun;
using testing::HasSubstr;
using testing::MatchesRegex;
using testing::StartsWith;

namespace {

class ServiceCommand : public test::PublishTest
{
protected:
    ServiceCommand() { test::writeCatalogFile(input(U"core/a.calib"), "A"); }

    ProgramRun velk(const std::vector<std::string>& arguments) const { return test::runProgram(folder(), arguments); }
};

/// "velk serve" in its own process.
class Serving
{
public:
    Serving(const fileString& folder, const QStringList& arguments)
    {
        process_.setWorkingDirectory(QString::fromStdString(folder.utf8()));
        process_.start(QStringLiteral(VELK_PROGRAM), QStringList{QStringLiteral("serve")} + arguments);
        firstLine_ = test::waitForLine(process_);
    }

    ~Serving()
    {
        process_.kill();
        test::waitForEnd(process_);
    }

    /// The service's address without its path, taken from the program's output.
    std::string origin() const
    {
        constexpr std::size_t words = sizeof "The service address is " - 1;
        return firstLine_.substr(std::min(words, firstLine_.size()),
                                 firstLine_.size() - std::min(words + 2, firstLine_.size()));
    }

    /// Ends the service as Ctrl-C does; returns the exit code.
    int interrupt()
    {
        EXPECT_EQ(::kill(static_cast<pid_t>(process_.processId()), SIGINT), 0);
        test::waitForEnd(process_);
        EXPECT_EQ(process_.exitStatus(), QProcess::NormalExit);
        return process_.exitCode();
    }

    std::string output() { return process_.readAll().toStdString(); }

private:
    QProcess process_;
    std::string firstLine_;
};

TEST_F(ServiceCommand, PublishesAndTellsWhat)
{
    const ProgramRun first = velk({"publish", "input", "-o", "site", "--nginx", "nginx"});
    EXPECT_EQ(first.exitCode, 0) << first.errors;
    EXPECT_THAT(first.output, MatchesRegex("  a.calib  new        [0-9]+ KB\n"
                                           "Published edition 1 in site: 1 library, [0-9]+ KB\n"
                                           "Wrote velk-maps.conf and velk-locations.conf to nginx; .*\n"));
    EXPECT_THAT(test::readFile(folder() / U"nginx/velk-maps.conf"), HasSubstr("\"a.calib\""));
    EXPECT_THAT(velk({"publish", "input", "-o", "site"}).output, HasSubstr("Nothing has changed since edition 1"));
    test::writeCatalogFile(input(U"core/a.calib"), "B");
    EXPECT_THAT(velk({"publish", "input", "-o", "site"}).output, HasSubstr("changed"));
}

TEST_F(ServiceCommand, TellsWhatOfEarlierEditionsIsLeft)
{
    velk({"publish", "input", "-o", "site"});
    FileUtils::createDirectoriesWithPerm(folder() / U"site" / U"files" / U"no file");
    const ProgramRun run = velk({"publish", "input", "-o", "site"});
    EXPECT_EQ(run.exitCode, 0);
    EXPECT_THAT(run.output,
                HasSubstr("\n1 file of earlier editions could not be removed; the next publication tries again.\n"));
}

TEST_F(ServiceCommand, TellsEverythingThatIsWrong)
{
    test::writeFileDeep(input(U"core/b.calib"), "broken");
    test::writeFileDeep(input(U"bonus/c&d.calibz"), "broken");
    const ProgramRun run = velk({"publish", "input", "-o", "site"});
    EXPECT_EQ(run.exitCode, test::exitCode::serviceFailed);
    EXPECT_EQ(run.output, "");
    EXPECT_THAT(run.errors, StartsWith("velk: input/core/b.calib: is not a library catalog\n"
                                       "velk: input/bonus/c&d.calibz: holds the character \"&\" in its name"));
    EXPECT_THAT(run.errors, HasSubstr("velk: nothing was published\n"));
    EXPECT_FALSE(site().pathExists());
}

TEST_F(ServiceCommand, ServesUntilInterrupted)
{
    publish();
    Serving serving(folder(), {QStringLiteral("site")});
    httplib::Client client(serving.origin());
    const auto answer = client.Get("/catalog?v=1&library=a.calib");
    ASSERT_TRUE(answer) << serving.origin();
    EXPECT_TRUE(answer->body == published("a.calib"));
    EXPECT_EQ(serving.interrupt(), 0);
    const std::string output = serving.output();
    EXPECT_THAT(output, HasSubstr("Ctrl-C ends the service."));
    EXPECT_THAT(output, HasSubstr("  200 GET /catalog?v=1&library=a.calib  "));
    EXPECT_THAT(output, HasSubstr("The service has ended.\n"));
}

TEST_F(ServiceCommand, ServesOverTlsWithACertificateOfItsOwn)
{
    publish();
    Serving serving(folder(), {QStringLiteral("site"), QStringLiteral("--tls-self"), QStringLiteral("tls")});
    EXPECT_THAT(serving.origin(), StartsWith("https://127.0.0.1:"));
    httplib::Client stranger(serving.origin());
    EXPECT_FALSE(stranger.Get("/manufacturers"));
    httplib::Client client(serving.origin());
    client.set_ca_cert_path((folder() / U"tls/velk-service.crt").utf8());
    const auto answer = client.Head("/catalog?v=1&library=a.calib");
    ASSERT_TRUE(answer) << httplib::to_string(answer.error());
    EXPECT_EQ(answer->status, 200);
    EXPECT_EQ(serving.interrupt(), 0);
}

TEST_F(ServiceCommand, KeepsItsKeyOutOfAnOpenFolder)
{
    publish();
    std::filesystem::create_directory((folder() / U"open").utf8());
    std::filesystem::permissions((folder() / U"open").utf8(), std::filesystem::perms(0755));
    const ProgramRun run = velk({"serve", "site", "--tls-self", "open"});
    EXPECT_EQ(run.exitCode, test::exitCode::serviceFailed);
    EXPECT_THAT(run.errors, StartsWith("velk: open: is open to other users"));
    EXPECT_THAT(run.errors, HasSubstr("close it (chmod 700), or name a folder that is not there yet"));
}

TEST_F(ServiceCommand, ExplainsWhyItCannotServe)
{
    const ProgramRun run = velk({"serve", "nothing"});
    EXPECT_EQ(run.exitCode, test::exitCode::serviceFailed);
    EXPECT_THAT(run.errors, HasSubstr("is not a published site"));
    EXPECT_EQ(velk({"serve", "site", "--port", "99999"}).exitCode, test::exitCode::usage);
    EXPECT_EQ(velk({"serve", "site", "--tls", "only-one.pem"}).exitCode, test::exitCode::usage);
    EXPECT_EQ(velk({"serve"}).exitCode, test::exitCode::usage);
    EXPECT_EQ(velk({"publish", "input"}).exitCode, test::exitCode::usage);
}

}  // namespace
