#include "host/fixtures/ExitCodes.h"
#include "host/fixtures/ProgramRun.h"
#include "host/fixtures/PublishFixtures.h"

#include "host/service/SiteService.h"
#include "support/ScriptedServer.h"

#include <VelkCommon/Files/FileUtils.h>

#include <QJsonArray>
#include <QJsonObject>

#include <memory>

using test::ProgramRun;
using test::Reply;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::Not;
using testing::StartsWith;

namespace {

/// The real program in an installation at "home".
class ManufacturerCommand : public test::PublishTest
{
protected:
    ProgramRun velk(std::vector<std::string> arguments, const std::string& home = "home") const
    {
        arguments.insert(arguments.begin(), "manufacturer");
        arguments.insert(arguments.begin() + 2, {"--home", home});
        ProgramRun run = test::runProgram(folder(), arguments);
        EXPECT_FALSE(run.crashed) << run.errors;
        return run;
    }

    /// Runs a command that must succeed.
    void have(const std::vector<std::string>& arguments, const std::string& home = "home") const
    {
        const ProgramRun run = velk(arguments, home);
        EXPECT_EQ(run.exitCode, 0) << run.errors;
        EXPECT_EQ(run.errors, "");
    }

    fileString data(const std::u32string& name = U"manufacturer_data.json") const
    {
        return folder() / U"home" / U"manufacturer-data" / name;
    }

    void writeData(const std::string& text) const { test::writeFileDeep(data(), text); }
};

TEST_F(ManufacturerCommand, MakesAndChangesCards)
{
    EXPECT_EQ(velk({"list"}).output, "There are no manufacturers; \"velk manufacturer update\" fetches them.\n");
    EXPECT_EQ(velk({"edit", "7", "--new", "--name", "T\u00FCr & Tor", "--phone", "default"}).output,
              "Made manufacturer 7 (T\u00FCr & Tor).\n");
    EXPECT_EQ(velk({"edit", "7", "--url", "https://acme.example", "--email", "a@b", "--logo", "acme.png"}).output,
              "Changed url, email, logo of manufacturer 7 (T\u00FCr & Tor).\n");
    EXPECT_EQ(velk({"edit", "7", "--fax", "12"}).output, "Changed fax of manufacturer 7 (T\u00FCr & Tor).\n");
    EXPECT_EQ(velk({"edit", "7", "--fax", "12"}).output,
              "There is nothing to change in manufacturer 7 (T\u00FCr & Tor).\n");
    have({"edit", "--new", "--deleted", "yes", "--", "-3"});
    EXPECT_EQ(velk({"list"}).output,
              "Id  Name       Web address           Phone    Fax  E-mail  Logo\n"
              "-3                                                                   deleted\n"
              " 7  T\u00FCr & Tor  https://acme.example  default  12   a@b     acme.png\n");
    EXPECT_EQ(velk({"edit", "7", "--name", "", "--phone", "", "--fax", "", "--deleted", "no"}).output,
              "Changed name, phone, fax of manufacturer 7.\n");
}

TEST_F(ManufacturerCommand, ShowsACard)
{
    writeData(test::manufacturerData("acme.png"));
    have({"edit", "7", "--phone", "default", "--email", "a@b"});
    const std::string text = velk({"show", "7"}).output;
    EXPECT_THAT(text, StartsWith("Manufacturer  7\n"
                                 "Name          Acme\n"
                                 "Web address\n"
                                 "Phone         See the web site  (the default text)\n"
                                 "Fax\n"
                                 "E-mail        a@b\n"
                                 "Logo          acme.png  (not there)\n"
                                 "Changed       20"));
    EXPECT_THAT(text, HasSubstr("\nDeleted       no\n"));
    test::writeFile(data(U"acme.png"), test::png("acme"));
    EXPECT_THAT(velk({"show", "7"}).output, HasSubstr("\nLogo          acme.png\n"));
    const QJsonObject json = velk({"show", "7", "--format", "json"}).json();
    EXPECT_EQ(json[QStringLiteral("phone")].toString(), QStringLiteral("default"));
    EXPECT_EQ(json[QStringLiteral("shown")].toObject()[QStringLiteral("phone")].toString(),
              QStringLiteral("See the web site"));
    EXPECT_TRUE(json[QStringLiteral("hasLogoFile")].toBool());
    EXPECT_EQ(json[QStringLiteral("logoPath")].toString().toStdString(), data(U"acme.png").utf8());
}

TEST_F(ManufacturerCommand, StampsWhatItChanges)
{
    writeData(test::manufacturerData("acme.png"));
    const auto changed = [&] {
        return velk({"show", "7", "--format", "json"}).json()[QStringLiteral("lastModified")].toString().toStdString();
    };
    EXPECT_EQ(changed(), "2026-03-01T14:05:59.012345Z");
    have({"edit", "7", "--fax", "1"});
    EXPECT_EQ(changed(), "2026-03-01T14:05:59.012345Z") << "the fax does not count";
    have({"edit", "7", "--phone", "1"});
    EXPECT_GT(changed(), "2026-03-01T14:05:59.012345Z");
}

TEST_F(ManufacturerCommand, ListsAsJson)
{
    writeData(test::manufacturerData("acme.png"));
    const QJsonObject json = velk({"list", "--format", "json"}).json();
    EXPECT_EQ(json[QStringLiteral("defaultText")].toString(), QStringLiteral("See the web site"));
    const QJsonObject card = json[QStringLiteral("manufacturers")].toArray().at(0).toObject();
    EXPECT_EQ(card[QStringLiteral("id")].toInt(), 7);
    EXPECT_EQ(card[QStringLiteral("name")].toString(), QStringLiteral("Acme"));
    EXPECT_FALSE(card[QStringLiteral("hasLogoFile")].toBool());
    EXPECT_FALSE(card[QStringLiteral("deleted")].toBool());
}

TEST_F(ManufacturerCommand, ChangesTheDefaultText)
{
    EXPECT_EQ(velk({"edit", "--default-text", "Ask us"}).output, "Changed the default text.\n");
    EXPECT_EQ(velk({"edit", "--default-text", "Ask us"}).output, "This is the default text already.\n");
    EXPECT_THAT(test::readFile(data()), HasSubstr("\"Default_Text\": \"Ask us\""));
}

TEST_F(ManufacturerCommand, RefusesWrongChanges)
{
    writeData(test::manufacturerData("acme.png"));
    const std::string before = test::readFile(data());
    const auto errors = [&](const std::vector<std::string>& arguments) {
        const ProgramRun run = velk(arguments);
        EXPECT_EQ(run.exitCode, test::exitCode::dataFailed);
        EXPECT_EQ(run.output, "");
        EXPECT_EQ(test::readFile(data()), before);
        return run.errors;
    };
    EXPECT_EQ(errors({"edit", "8", "--phone", "1"}), "velk: there is no manufacturer 8\nAdd --new to make it.\n");
    EXPECT_EQ(errors({"edit", "7", "--new"}),
              "velk: there is already a manufacturer 7\nLeave out --new to change it.\n");
    EXPECT_THAT(errors({"show", "8"}), StartsWith("velk: there is no manufacturer 8\n"));
    for (const char* logo :
         {"doors//acme.png", "doors/../acme.png", "..", "C:acme.png", "nul", "errors.log", "doors/errors.log"})
        EXPECT_THAT(errors({"edit", "7", "--logo", logo}), HasSubstr("is not a safe name for a logo")) << logo;
}

TEST_F(ManufacturerCommand, FindsWhatIsWrong)
{
    writeData(R"({"Version": "42", "Last_Modified": "20260301T140559", "Default_Text": "",
        "Manufacturer_1": {"Id": 1, "Last_Modified": "20260301T140559", "Name": "Sound", "Logo": "sound.png"},
        "Manufacturer_2": {"Id": 2, "Name": "Timeless"},
        "Manufacturer_3": {"Id": 3, "Last_Modified": "20260301T140559", "Phone": "default"},
        "Manufacturer_4": {"Id": 4, "Last_Modified": "20260301T140559", "Name": "Far", "Logo": "../far.png"},
        "Manufacturer_5": {"Id": 5, "Last_Modified": "20260301T140559", "Name": "Lost", "Logo": "lost.png"},
        "Manufacturer_6": {"Id": 6, "Last_Modified": "20260301T140559", "Name": "Gone", "Logo": "gone.png",
                           "Deleted": true}})");
    test::writeFile(data(U"sound.png"), test::png("sound"));
    const ProgramRun run = velk({"check"});
    EXPECT_EQ(run.exitCode, test::exitCode::noHit);
    EXPECT_EQ(run.output,
              "Id  Name      What is wrong\n"
              " 2  Timeless  does not tell when it was changed, so no update reaches its logo\n"
              " 3            has no name\n"
              " 3            stands for the default text, which is empty\n"
              " 4  Far       names the logo \"../far.png\", which is not a safe name\n"
              " 5  Lost      names the logo \"lost.png\", which is not there\n"
              "\n"
              "6 manufacturers, 5 problems.\n");
    const QJsonObject json = velk({"check", "--format", "json"}).json();
    EXPECT_EQ(json[QStringLiteral("cards")].toInt(), 6);
    EXPECT_EQ(json[QStringLiteral("problems")].toArray().size(), 5);
    EXPECT_EQ(json[QStringLiteral("problems")].toArray().at(4).toObject()[QStringLiteral("id")].toInt(), 5);
}

TEST_F(ManufacturerCommand, FindsNothingWrong)
{
    const ProgramRun none = velk({"check"});
    EXPECT_EQ(none.exitCode, test::exitCode::noHit);
    EXPECT_THAT(none.output, HasSubstr("there is no data file yet"));
    writeData(test::manufacturerData(""));
    const ProgramRun run = velk({"check"});
    EXPECT_EQ(run.exitCode, 0);
    EXPECT_EQ(run.output, "1 manufacturer, nothing wrong.\n");
}

TEST_F(ManufacturerCommand, LeavesADamagedFileAlone)
{
    for (const char* text : {"", "hello", "[]", R"({"Version": "42", "Manufacturer_1": {"Id": 1, "Name": 5}})",
                             R"({"Version": "42", "Last_Modified": "yesterday"})"}) {
        writeData(text);
        for (const std::vector<std::string>& arguments : {std::vector<std::string>{"list"},
                                                          {"check"},
                                                          {"edit", "1", "--new", "--name", "A"},
                                                          {"edit", "--default-text", "A"}}) {
            const ProgramRun run = velk(arguments);
            EXPECT_EQ(run.exitCode, test::exitCode::dataFailed) << text;
            EXPECT_EQ(run.output, "");
            EXPECT_THAT(run.errors, StartsWith("velk: " + data().utf8() + ": "));
            EXPECT_THAT(run.errors, HasSubstr("; repair it, or move it away\n"));
            EXPECT_EQ(test::readFile(data()), text);
        }
    }
}

TEST_F(ManufacturerCommand, SaysThatNothingWasSaved)
{
    test::writeFileDeep(folder() / U"home" / U"manufacturer-data", "a file");
    const ProgramRun run = velk({"edit", "1", "--new", "--name", "A"});
    EXPECT_EQ(run.exitCode, test::exitCode::dataFailed);
    EXPECT_THAT(run.errors, HasSubstr("cannot be written; the cards are as they were"));
}

TEST_F(ManufacturerCommand, LetsNoCardSteerTheTerminal)
{
    have({"edit", "1", "--new", "--name", "a\x1B[31m", "--url", "\x1B[2J"});
    EXPECT_THAT(velk({"list"}).output, Not(HasSubstr("\x1B")));
    EXPECT_THAT(velk({"show", "1"}).output, Not(HasSubstr("\x1B")));
    EXPECT_THAT(velk({"edit", "1", "--fax", "1"}).output, Not(HasSubstr("\x1B")));
}

struct ManufacturerUsageCase
{
    const char* name;
    std::vector<std::string> arguments;
    const char* errors;
};

const ManufacturerUsageCase manufacturerUsageCases[] = {
    {"NoCommand", {}, "see \"velk manufacturer --help\""},
    {"NoId", {"show"}, "ID is required"},
    {"NoNumber", {"show", "acme"}, "ID: \"acme\" is not a whole number from "},
    {"WideNumber", {"show", "2147483648"}, "ID: \"2147483648\" is not a whole number from "},
    {"NoChange", {"edit", "7"}, "what to change (such as --phone) is required"},
    {"NoChangeNorId", {"edit"}, "what to change (such as --phone) is required"},
    {"ChangeOfNobody", {"edit", "--phone", "1"}, "ID (whose card to change) is required"},
    {"BadDeleted", {"edit", "7", "--deleted", "maybe"}, "maybe not in {yes,no}"},
    {"NoAddress", {"update"}, "--data-url is required"},
    {"NoLogoAddress", {"update", "--data-url", "http://a/"}, "--logo-url is required"},
    {"OtherProtocol",
     {"update", "--data-url", "file:///etc/passwd", "--logo-url", "http://a/?v=1"},
     "--data-url: must be an address that begins with http:// or https://"},
    {"NoQuery", {"update", "--data-url", "http://a/", "--logo-url", "http://a/"}, "--logo-url: must hold a query"},
    {"BadFormat", {"check", "--format", "xml"}, "xml not in {table,json}"},
};

class WrongManufacturerUsage : public ManufacturerCommand, public testing::WithParamInterface<ManufacturerUsageCase>
{};

TEST_P(WrongManufacturerUsage, IsExplained)
{
    std::vector<std::string> arguments = GetParam().arguments;
    arguments.insert(arguments.begin(), "manufacturer");
    const ProgramRun run = test::runProgram(folder(), arguments);
    EXPECT_EQ(run.exitCode, test::exitCode::usage);
    EXPECT_EQ(run.output, "");
    EXPECT_THAT(run.errors, StartsWith("velk: "));
    EXPECT_THAT(run.errors, HasSubstr(GetParam().errors));
}

INSTANTIATE_TEST_SUITE_P(CommandLines, WrongManufacturerUsage, testing::ValuesIn(manufacturerUsageCases),
                         [](const auto& row) { return std::string(row.param.name); });

// ---- Updates from the real service ---------------------------------------------------------------

class ManufacturerUpdateCommand : public ManufacturerCommand
{
protected:
    ManufacturerUpdateCommand() { test::writeCatalogFile(input(U"core/a.calib"), "A"); }

    /// Publishes the cards that the publisher keeps in its own home.
    void publishCards()
    {
        const fileString kept = folder() / U"publisher" / U"manufacturer-data" / U"manufacturer_data.json";
        test::writeFileDeep(input(U"manufacturer_data.json"), test::readFile(kept));
        publish();
        if (!service_) {
            VelkHost::ServiceOptions options;
            options.site = site();
            service_ = std::make_unique<VelkHost::SiteService>(options);
        }
    }

    void keep(const std::vector<std::string>& arguments) const { have(arguments, "publisher"); }

    ProgramRun update(const std::vector<std::string>& more = {}) const
    {
        std::vector<std::string> arguments{"update", "--data-url", service_->manufacturersAddress(), "--logo-url",
                                           service_->logoAddress()};
        arguments.insert(arguments.end(), more.begin(), more.end());
        return velk(arguments);
    }

    std::vector<std::string> logos() const
    {
        std::vector<std::string> names = test::listFolder(folder() / U"home" / U"manufacturer-data");
        std::erase(names, "manufacturer_data.json");
        return names;
    }

private:
    std::unique_ptr<VelkHost::SiteService> service_;
};

TEST_F(ManufacturerUpdateCommand, BringsLogosInFolders)
{
    const std::u32string name = U"T\u00FCren/2026/T\u00FCr 1.png";
    keep({"edit", "1", "--new", "--name", "Acme", "--logo", fileString(name).utf8()});
    test::writeFileDeep(input(U"logos") / name, test::png("one"));
    publishCards();
    const ProgramRun run = update();
    EXPECT_EQ(run.exitCode, 0) << run.errors;
    EXPECT_EQ(test::readFile(data(name)), test::png("one"));
    EXPECT_THAT(velk({"check"}).output, Not(HasSubstr("logo")));
}

TEST_F(ManufacturerUpdateCommand, BringsCardsAndLogos)
{
    keep({"edit", "1", "--new", "--name", "T\u00FCr", "--logo", "T\u00FCr 1.png"});
    keep({"edit", "2", "--new", "--name", "Acme", "--default-text", "Ask us"});
    test::writeFileDeep(input(U"logos/T\u00FCr 1.png"), test::png("one"));
    publishCards();
    have({"edit", "9", "--new", "--name", "Mine"});
    // This change is made after the cards were published, so it is older than the next edition.
    keep({"edit", "2", "--phone", "1"});
    publishCards();
    const ProgramRun run = update();
    EXPECT_EQ(run.exitCode, 0) << run.errors;
    EXPECT_EQ(run.errors, "");
    EXPECT_EQ(run.output,
              "Id  Name  Update  What\n"
              " 1  T\u00FCr   new\n"
              " 2  Acme  new\n"
              " 9  Mine  gone\n"
              "\n"
              "2 manufacturers: 2 new, 0 changed, 1 gone; another default text.\n");
    EXPECT_EQ(test::readFile(data(U"T\u00FCr 1.png")), test::png("one"));
    EXPECT_THAT(velk({"show", "2"}).output, HasSubstr("\nPhone         1\n"));
    const ProgramRun again = update();
    EXPECT_EQ(again.exitCode, 0);
    EXPECT_EQ(again.output, "Everything is up to date (2 manufacturers).\n");
    EXPECT_FALSE((folder() / U"home" / U"temp").pathExists()) << "nothing is downloaded twice, nor elsewhere";
}

TEST_F(ManufacturerUpdateCommand, TellsWhatChanged)
{
    keep({"edit", "1", "--new", "--name", "A", "--logo", "a.png"});
    keep({"edit", "2", "--new", "--name", "B", "--logo", "b.png"});
    keep({"edit", "3", "--new", "--name", "C"});
    test::writeFileDeep(input(U"logos/a.png"), test::png("a"));
    test::writeFileDeep(input(U"logos/b.png"), test::png("b"));
    publishCards();
    EXPECT_EQ(update().exitCode, 0);
    keep({"edit", "1", "--phone", "1", "--fax", "2"});
    keep({"edit", "2", "--logo", "c.png", "--deleted", "yes"});
    test::writeFileDeep(input(U"logos/a.png"), test::png("another"));
    test::writeFileDeep(input(U"logos/c.png"), test::png("c"));
    publishCards();
    const ProgramRun run = update();
    EXPECT_EQ(run.exitCode, 0) << run.errors;
    EXPECT_EQ(run.output,
              "Id  Name  Update   What\n"
              " 1  A     changed  phone, fax, logo image\n"
              " 2  B     changed  logo, deleted, logo image\n"
              "\n"
              "3 manufacturers: 0 new, 2 changed, 0 gone.\n");
    EXPECT_EQ(test::readFile(data(U"a.png")), test::png("another"));
    EXPECT_THAT(logos(), ElementsAre("a.png", "c.png"));
}

TEST_F(ManufacturerUpdateCommand, TellsScripts)
{
    keep({"edit", "1", "--new", "--name", "A"});
    publishCards();
    QJsonObject json = update({"--format", "json"}).json();
    EXPECT_EQ(json[QStringLiteral("outcome")].toString(), QStringLiteral("updated"));
    EXPECT_EQ(json[QStringLiteral("manufacturers")].toInt(), 1);
    const QJsonObject change = json[QStringLiteral("changes")].toArray().at(0).toObject();
    EXPECT_EQ(change[QStringLiteral("change")].toString(), QStringLiteral("new"));
    EXPECT_EQ(change[QStringLiteral("name")].toString(), QStringLiteral("A"));
    json = update({"--format", "json"}).json();
    EXPECT_EQ(json[QStringLiteral("outcome")].toString(), QStringLiteral("up to date"));
}

TEST_F(ManufacturerUpdateCommand, FetchesALogoAgainThatCouldNotBeStored)
{
    keep({"edit", "1", "--new", "--name", "A", "--logo", "a.png"});
    test::writeFileDeep(input(U"logos/a.png"), test::png("one"));
    publishCards();
    FileUtils::createDirectoriesWithPerm(data(U"a.png"));
    EXPECT_EQ(update().exitCode, test::exitCode::updateFailed);
    EXPECT_EQ(update().exitCode, test::exitCode::updateFailed) << "it goes on to be told";
    FileUtils::removeDirectoryAndFiles(data(U"a.png"), FileUtils::noFlags);
    EXPECT_EQ(update().exitCode, 0);
    EXPECT_EQ(test::readFile(data(U"a.png")), test::png("one"));
    FileUtils::removePath(data(U"a.png"), FileUtils::noFlags);
    EXPECT_EQ(update().exitCode, 0);
    EXPECT_EQ(test::readFile(data(U"a.png")), test::png("one")) << "it was lost";
}

TEST_F(ManufacturerUpdateCommand, KeepsWhatIsNewerHere)
{
    keep({"edit", "1", "--new", "--name", "A"});
    publishCards();
    update();
    have({"edit", "1", "--phone", "mine"});
    const ProgramRun run = update();
    EXPECT_EQ(run.exitCode, 0);
    EXPECT_EQ(run.output, "The service has nothing newer than what is here (1 manufacturer).\n");
    EXPECT_THAT(velk({"show", "1"}).output, HasSubstr("\nPhone         mine\n"));
    EXPECT_EQ(update({"--format", "json"}).json()[QStringLiteral("outcome")].toString(),
              QStringLiteral("nothing newer"));
}

TEST_F(ManufacturerUpdateCommand, ShowsAsManyChangesAsAskedFor)
{
    for (const char* id : {"1", "2", "3"})
        keep({"edit", id, "--new", "--name", "A"});
    publishCards();
    EXPECT_EQ(update({"--limit", "1"}).output,
              "Id  Name  Update  What\n"
              " 1  A     new\n"
              "... and 2 more (--limit 0 shows all)\n"
              "\n"
              "3 manufacturers: 3 new, 0 changed, 0 gone.\n");
}

// ---- Updates that go wrong -----------------------------------------------------------------------

class FailingManufacturerUpdate : public ManufacturerCommand
{
protected:
    FailingManufacturerUpdate() { writeData(test::manufacturerData("")); }

    ProgramRun update() const
    {
        return velk({"update", "--data-url", server.url("/data"), "--logo-url", server.url("/logo?v=1")});
    }

    std::string refused(const Reply& reply)
    {
        server.on("/data", reply);
        const std::string before = test::readFile(data());
        const ProgramRun run = update();
        EXPECT_EQ(run.exitCode, test::exitCode::updateFailed);
        EXPECT_EQ(run.output, "");
        EXPECT_THAT(run.errors, StartsWith("velk: " + server.url("/data") + ": "));
        EXPECT_THAT(run.errors, HasSubstr("\nThe manufacturers are as they were.\n"));
        EXPECT_EQ(test::readFile(data()), before);
        EXPECT_FALSE((folder() / U"home" / U"temp").pathExists()) << "nothing is downloaded twice, nor elsewhere";
        return run.errors;
    }

    test::ScriptedServer server;
};

TEST_F(FailingManufacturerUpdate, SaysWhy)
{
    EXPECT_THAT(refused({.status = 404}), HasSubstr("HTTP status 404"));
    EXPECT_THAT(refused({.body = "<html>"}), HasSubstr("is not a JSON object"));
    EXPECT_THAT(refused({.body = R"({"Version": "42", "Last_Modified": "20990301T140559",
                                     "Manufacturer_1": {"Id": 1, "Last_Modified": "x"}})"}),
                HasSubstr("\"Manufacturer_1\".\"Last_Modified\" is not a time"));
    EXPECT_THAT(refused(Reply::resetAtOnce()), Not(HasSubstr(": \n")));
}

TEST_F(FailingManufacturerUpdate, TellsWhichLogosAreMissing)
{
    const std::string time = R"("Last_Modified": "20990301T140559")";
    server.on("/data", Reply{.body = R"({"Version": "42", )" + time +
                                     R"(, "Manufacturer_7": {"Id": 7, "Name": "Acme", "Logo": "none.png", )" + time +
                                     R"(}, "Manufacturer_8": {"Id": 8, "Name": "Far", "Logo": "../far.png", )" + time +
                                     R"(}, "Manufacturer_9": {"Id": 9, "Name": "Gone", "Logo": "gone.png",
                                        "Deleted": true, )" +
                                     time + "}}"});
    const ProgramRun run = update();
    EXPECT_EQ(run.exitCode, test::exitCode::updateFailed);
    EXPECT_THAT(run.output, HasSubstr(" 7  Acme  changed  logo; its logo could not be fetched\n"));
    EXPECT_THAT(run.output, HasSubstr(" 8  Far   new      its logo could not be fetched\n"));
    EXPECT_THAT(run.output, HasSubstr(" 9  Gone  new\n"));
    EXPECT_THAT(run.output,
                HasSubstr("2 new, 1 changed, 0 gone; another default text; 2 logos could not be fetched.\n"));
    EXPECT_EQ(velk({"check"}).exitCode, test::exitCode::noHit);
    EXPECT_FALSE((folder() / U"home" / U"far.png").pathExists());
}

TEST_F(FailingManufacturerUpdate, LeavesADamagedFileAlone)
{
    writeData("hello");
    server.on("/data", Reply{.body = test::manufacturerData("")});
    const ProgramRun run = update();
    EXPECT_EQ(run.exitCode, test::exitCode::dataFailed);
    EXPECT_THAT(run.errors, HasSubstr("repair it, or move it away"));
    EXPECT_EQ(test::readFile(data()), "hello");
}

}  // namespace
