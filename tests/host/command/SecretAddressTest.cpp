// Names and passwords in addresses are sent to the service, and shown to nobody.
#include "host/fixtures/ExitCodes.h"
#include "host/fixtures/Fixtures.h"
#include "host/fixtures/ProgramRun.h"
#include "support/ScriptedServer.h"
#include "support/SecretAddress.h"

#include <filesystem>

using test::ProgramRun;
using test::Reply;
using test::withPassword;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::Not;

namespace {

class SecretAddress : public test::TestHost
{
protected:
    /// Runs the program, which must fail and say what `told` is. Its output and what it leaves hold no password.
    ProgramRun failure(const std::vector<std::string>& arguments, int exitCode, const std::string& told) const
    {
        const ProgramRun run = test::runProgram(folder(), arguments);
        EXPECT_EQ(run.exitCode, exitCode) << run.errors;
        EXPECT_THAT(run.output + run.errors, HasSubstr(told));
        expectNoPassword(run);
        return run;
    }

    void expectNoPassword(const ProgramRun& run) const
    {
        EXPECT_THAT(run.output, Not(HasSubstr(test::password)));
        EXPECT_THAT(run.errors, Not(HasSubstr(test::password)));
        for (const auto& entry : std::filesystem::recursive_directory_iterator(folder().utf8())) {
            const std::string path = entry.path().string();
            EXPECT_THAT(path, Not(HasSubstr(test::password)));
            if (entry.is_regular_file()) {
                EXPECT_THAT(test::readFile(fileString(path)), Not(HasSubstr(test::password))) << path;
            }
        }
    }

    /// The service is asked with the password.
    void expectSent(const std::string& path) const
    {
        ASSERT_FALSE(server_.requests(path).empty());
        EXPECT_EQ(server_.requests(path).back().header("Authorization"), "Basic dXNlcjpzM2NyZXQ=");
    }

    ProgramRun failingUpdate(const std::string& address, const std::string& told) const
    {
        return failure({"update", "--service", withPassword(address), "--home", "home"}, test::exitCode::updateFailed,
                       told);
    }

    ProgramRun failingCards(const Reply& reply, const std::string& told)
    {
        server_.on("/data", reply);
        ProgramRun run =
            failure({"manufacturer", "update", "--home", "home", "--data-url", withPassword(server_.url("/data")),
                     "--logo-url", withPassword(server_.url("/logo?v=1"))},
                    test::exitCode::updateFailed, told);
        expectSent("/data");
        return run;
    }

    test::ScriptedServer server_;
};

// ---- Of a packed library -------------------------------------------------------------------------

TEST_F(SecretAddress, OfNoLibrary)
{
    server_.on("/none.calibz", Reply{.status = 404});
    failure({"unpack", withPassword(server_.url("/none.calibz"))}, test::exitCode::buildFailed,
            server_.url("/none.calibz") + ": cannot be downloaded (HTTP status 404)");
    expectSent("/none.calibz");
}

TEST_F(SecretAddress, OfSomethingElse)
{
    server_.on("/text.calibz", Reply{.body = "<html>" + std::string(5'000, 'x')});
    failure({"unpack", withPassword(server_.url("/text.calibz"))}, test::exitCode::buildFailed,
            server_.url("/text.calibz") + ": is not a packed library");
}

TEST_F(SecretAddress, OfAnotherKind)
{
    failure({"unpack", withPassword("ftp://host/a.calibz")}, test::exitCode::buildFailed,
            "ftp://host/a.calibz: does not exist");
}

TEST_F(SecretAddress, ThatLeadsElsewhere)
{
    server_.on("/moved.calibz", Reply::redirect(withPassword("ftp://host/a.calibz")));
    failure({"unpack", server_.url("/moved.calibz")}, test::exitCode::buildFailed, "ftp://host/a.calibz");
}

// Where the address has no path, the library is called after its host.
TEST_F(SecretAddress, IsNoNameOfALibrary)
{
    test::writeZip(folder() / U"a.calibz", {{"a.calib", "database"}});
    server_.on("/", Reply{.body = test::readFile(folder() / U"a.calibz")});
    std::string address = server_.url("");
    address.insert(address.find("//") + 2, std::string(test::password) + "@");
    const ProgramRun run = test::runProgram(folder(), {"unpack", address, "-o", "out"});
    EXPECT_EQ(run.exitCode, 0) << run.errors;
    EXPECT_THAT(test::listFolder(folder() / U"out"), ElementsAre("127.0.0.calib"));
    expectNoPassword(run);
}

// ---- Of the content service ----------------------------------------------------------------------

TEST_F(SecretAddress, OfNoService)
{
    const test::RefusingPort nobody;
    failingUpdate(nobody.url(), "cannot reach " + nobody.url() + ": it does not accept connections");
}

TEST_F(SecretAddress, OfAServiceWithoutAnIndex)
{
    server_.on("/api", [](const test::SeenRequest& request) {
        return request.parameter("library").empty() ? Reply{} : Reply::resetAtOnce();
    });
    const std::string address = server_.url("/api?key=k");
    failingUpdate(address, "the list of core libraries cannot be fetched from " + address + ": ");
    expectSent("/api");
    EXPECT_THAT(test::readFile(folder() / U"home" / U"user" / U"errors.log"),
                HasSubstr("Failed to Download Core Library Index File:  " + server_.url("/api")));
}

// ---- Of manufacturers' data ----------------------------------------------------------------------

TEST_F(SecretAddress, OfNoCards)
{
    failingCards({.status = 404}, server_.url("/data") + ": HTTP status 404");
}

TEST_F(SecretAddress, OfDamagedCards)
{
    failingCards({.body = "<html>"}, server_.url("/data") + ": is not a JSON object");
}

TEST_F(SecretAddress, OfNoLogos)
{
    failingCards({.body = R"({"Version": "42", "Last_Modified": "20990301T140559", "Manufacturer_7":
                  {"Id": 7, "Name": "Acme", "Logo": "none.png", "Last_Modified": "20990301T140559"}})"},
                 "its logo could not be fetched");
    expectSent("/logo");
}

}  // namespace
