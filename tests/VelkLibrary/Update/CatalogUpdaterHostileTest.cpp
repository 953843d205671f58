#include "VelkLibrary/Update/UpdateTest.h"
#include "support/SmallDisk.h"
#include "support/ZipFormat.h"

#include <gmock/gmock.h>

#include <filesystem>
#include <map>

namespace {

namespace fs = std::filesystem;

using namespace LibraryCatalogUpdate;
using test::databaseBytes;
using test::Reply;
using test::sha1;
using testing::Contains;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::SizeIs;
using testing::StartsWith;

// A service that is broken or hostile, and hostile files in folders that everybody may write to.
class UpdaterHostile : public test::UpdateTest
{
protected:
    UpdaterHostile()
    {
        publishIndex("");
        installCore(U"a.calib", "installed");
        installBonus(U"b.calib", "installed");
        answer("b.calibz", Reply{.status = 304});
        test::writeFile(folder() / U"precious.txt", "precious");
    }

    // The header check says that a.calib is new, and this reply is its download.
    void deliver(Reply reply)
    {
        answer("a.calib", [reply = std::move(reply)](const test::SeenRequest& request) {
            return request.method == "HEAD" ? Reply::file(databaseBytes('a'), "new") : reply;
        });
    }

    // All files below the folder except those that an update writes.
    std::map<std::string, std::string> otherFiles() const
    {
        std::map<std::string, std::string> files;
        for (const auto& entry : fs::recursive_directory_iterator(folder().utf8())) {
            const std::string name = entry.path().filename().string();
            if (entry.is_regular_file() && name != "catalog_hash.txt" && name != "errors.log" &&
                entry.path().string().find("velk.downloads.") == std::string::npos)
                files[entry.path().string()] = test::readFile(fileString(entry.path().string()));
        }
        return files;
    }

    // Runs, and expects that a.calib failed to come for a reason that the log tells.
    void expectRefused(const std::string& reasonPart = "")
    {
        const auto before = otherFiles();
        run();
        EXPECT_EQ(report().outcome, ErrorsAutomatic);
        EXPECT_THAT(handedOver(), IsEmpty());
        ASSERT_THAT(log(), SizeIs(1));
        EXPECT_THAT(log()[0], StartsWith("Failed To Download File:  a   Reason:  "));
        EXPECT_THAT(log()[0], HasSubstr(reasonPart));
        EXPECT_EQ(otherFiles(), before);
        EXPECT_EQ(hashFile(coreFolder()), "a.calib:" + sha1("installed") + "\n");
        EXPECT_THAT(test::listFolder(downloads(U"core")), IsEmpty());
    }
};

TEST_F(UpdaterHostile, ABodyCutShort)
{
    Reply reply = Reply::file(databaseBytes('a'), "new");
    reply.cutAfter = 2'000;
    reply.ending = Reply::Ending::close;
    deliver(reply);
    expectRefused();
}

TEST_F(UpdaterHostile, AConnectionTornDown)
{
    Reply reply = Reply::file(databaseBytes('a'), "new");
    reply.cutAfter = 2'000;
    reply.ending = Reply::Ending::reset;
    deliver(reply);
    expectRefused();
}

TEST_F(UpdaterHostile, AConnectionTornDownAtOnce)
{
    deliver(Reply::resetAtOnce());
    expectRefused();
}

TEST_F(UpdaterHostile, ALengthThatIsTooLarge)
{
    Reply reply = Reply::file(databaseBytes('a'), "new");
    reply.length = "6000";
    reply.ending = Reply::Ending::close;
    deliver(reply);
    expectRefused();
}

TEST_F(UpdaterHostile, ALengthBeyondAllDisks)
{
    Reply reply = Reply::file(databaseBytes('a'), "new");
    reply.length = "9000000000000000000";
    reply.ending = Reply::Ending::close;
    deliver(reply);
    expectRefused();
}

TEST_F(UpdaterHostile, ALengthThatIsNotANumber)
{
    Reply reply = Reply::file(databaseBytes('a'), "new");
    reply.length = "-5";
    deliver(reply);
    run();
    EXPECT_EQ(test::readFile(coreFolder() / U"a.calib"), "installed");
    EXPECT_EQ(otherFiles().count((folder() / U"precious.txt").utf8()), 1u);
    receiver().finalEvent();
}

// The download ends when the disk is as full as a download may make it.
TEST_F(UpdaterHostile, ABodyWithoutEnd)
{
    deliver(Reply{.body = databaseBytes('a', 100'000), .chunked = true, .endless = true});
    const test::SmallDisk disk(1 << 20, downloads(U"core"));
    expectRefused("Too little space is left on the disk");
    EXPECT_EQ(report().resultCode, NothingRemarkable) << "nobody aborted it";
}

TEST_F(UpdaterHostile, AnErrorPage)
{
    deliver(Reply{.status = 404, .body = databaseBytes('x')});
    expectRefused("HTTP status 404");
}

TEST_F(UpdaterHostile, AServerError)
{
    deliver(Reply{.status = 500, .body = databaseBytes('x')});
    expectRefused("HTTP status 500");
}

TEST_F(UpdaterHostile, NotModifiedInsteadOfABody)
{
    deliver(Reply{.status = 304});
    expectRefused("HTTP status 304");
}

TEST_F(UpdaterHostile, RedirectsInALoop)
{
    server.on("/loop", Reply::redirect("/loop"));
    deliver(Reply::redirect("/loop"));
    expectRefused();
}

TEST_F(UpdaterHostile, ARedirectToAFile)
{
    deliver(Reply::redirect("file://" + (folder() / U"precious.txt").utf8()));
    expectRefused();
}

TEST_F(UpdaterHostile, ARedirectOfTheEndpointInALoop)
{
    server.on("/loop", Reply::redirect("/loop"));
    address = server.url("/loop");
    run();
    EXPECT_EQ(report().outcome, ErrorsAutomatic);
    EXPECT_EQ(report().resultCode, EndpointUnknown);
    EXPECT_THAT(log(), Contains("Unable to determine api endpoint"));
}

TEST_F(UpdaterHostile, AHeaderWithoutEnd)
{
    answer("a.calib", Reply{.raw = "HTTP/1.1 200 OK\r\nX: " + std::string(600'000, 'x') + "\r\n\r\n"});
    run();
    EXPECT_EQ(report().outcome, ErrorsAutomatic);
    EXPECT_EQ(downloadsOf("a.calib"), 0u);
    EXPECT_EQ(hashFile(coreFolder()), "a.calib:" + sha1("installed") + "\n");
}

TEST_F(UpdaterHostile, NoHttpAtAll)
{
    answer("a.calib", Reply{.raw = std::string("\0\1\2 rubbish\n\n", 13), .ending = Reply::Ending::close});
    run();
    EXPECT_EQ(report().outcome, ErrorsAutomatic);
    EXPECT_EQ(downloadsOf("a.calib"), 0u);
}

TEST_F(UpdaterHostile, ATagThatLooksLikeALineOfTheHashFile)
{
    test::writeFile(coreFolder() / U"other.calib", "other");
    Reply reply = Reply::file(databaseBytes('a'), "x\tb:1");
    answer("a.calib", reply);
    run();
    EXPECT_THAT(report().updatedNames, ElementsAre("a"));
    EXPECT_EQ(hashFile(coreFolder()), "a.calib:xb:1\n") << "one line, which the next run ignores";
    run();
    EXPECT_EQ(requests("a.calib", "HEAD").at(1).header("If-None-Match"), "\"" + sha1("installed") + "\"");
}

TEST_F(UpdaterHostile, ATagOfAbsurdLength)
{
    answer("a.calib", Reply::file(databaseBytes('a'), std::string(50'000, 't')));
    run();
    EXPECT_THAT(report().updatedNames, ElementsAre("a"));
    run();
    receiver().finalEvent();
    EXPECT_EQ(test::readFile(coreFolder() / U"a.calib"), "installed");
}

// Only the host can tell whether a download is a catalog file; it keeps the installed one when it is not.
TEST_F(UpdaterHostile, ALoginPageInsteadOfEverything)
{
    const std::string page = "<html>" + std::string(3'000, 'p') + "</html>";
    for (const char* const library : {"Standard_Core_Content_Index.txt", "a.calib", "b.calibz"})
        answer(library, Reply{.headers = {{"Content-Type", "text/html"}}, .body = page});
    run();
    EXPECT_EQ(handedOver()["a.calib"], page);
    EXPECT_EQ(handedOver().count("b.calib"), 0u) << "not an archive, so there is no catalog in it";
    EXPECT_EQ(test::readFile(coreFolder() / U"a.calib"), "installed");
    EXPECT_EQ(test::readFile(bonusFolder() / U"b.calib"), "installed");
    EXPECT_EQ(hashFile(coreFolder()), "") << "without a tag nothing vouches for it";
    EXPECT_EQ(hashFile(bonusFolder()), "");
    EXPECT_THAT(log(), ElementsAre(StartsWith("Nothing to install in download:  ")));
}

TEST_F(UpdaterHostile, ASlowDrip)
{
    Reply reply = Reply::file(databaseBytes('a'), "new");
    reply.block = 1;
    deliver(reply);
    run();
    EXPECT_EQ(handedOver()["a.calib"], databaseBytes('a'));
}

class HostileArchive : public UpdaterHostile, public testing::WithParamInterface<int>
{
protected:
    static std::string archive(int which)
    {
        const std::string good =
            test::zipOf({{"x.calib", databaseBytes('x', 20'000)}, {"t.png", databaseBytes('t', 20'000)}});
        std::string bytes = good;
        switch (which) {
            case 0:
                return std::string(5'000, '\0');
            case 1:
                return good.substr(0, good.size() / 2);
            case 2:
                return good.substr(good.size() / 2);
            case 3:  // the catalog file's data
                bytes.replace(1'000, 5'000, 5'000, 'x');
                return bytes;
            case 4:  // the directory at the end
                bytes.replace(bytes.size() - 150, 40, 40, '\xFF');
                return bytes;
            case 5:  // a bomb, which must not leave anything outside
                return test::zipOf({{"x.calib", std::string(20'000'000, '\0')}, {"t.png", databaseBytes('t')}});
            case 6:  // names that lead elsewhere
                return test::zipOf({{"../../core/a.calib", databaseBytes('x')},
                                    {"/tmp/velk-hostile-entry", databaseBytes('y')},
                                    {"..\\..\\precious.txt", databaseBytes('z')}});
            default:  // an archive in which there is nothing
                return std::string(test::zip::signature::end) + std::string(18, '\0') + std::string(2'000, ' ');
        }
    }
};

TEST_P(HostileArchive, WritesNothingElsewhere)
{
    answer("b.calibz", Reply::file(archive(GetParam()), "new"));
    const auto before = otherFiles();
    run();
    receiver().finalEvent();
    auto after = otherFiles();
    after.erase((referencedFolder() / U"b.zip").utf8());
    EXPECT_EQ(after, before);
    EXPECT_FALSE(fs::exists("/tmp/velk-hostile-entry"));
    EXPECT_EQ(test::readFile(bonusFolder() / U"b.calib"), "installed");
}

INSTANTIATE_TEST_SUITE_P(Archives, HostileArchive, testing::Range(0, 8));

// Without a download folder nothing is fetched and nothing removed, least of all where the program happens to be.
TEST_F(UpdaterHostile, AnInstanceNameThatMakesNoFolder)
{
    const fileString here = folder() / U"here";
    fs::create_directories((here / U"velk.downloads.core").utf8());
    for (const char32_t* const name : {U"a.download", U"a.calib", U"velk.downloads.core/a.download"})
        test::writeFile(here / name, "mine");
    test::NamedApplication application("../velk");
    Velk::HostServices host = services();
    host.application = &application;
    Velk::installHost(host);
    const auto before = otherFiles();
    {
        const test::CurrentFolder current(here);
        deliver(Reply::file(databaseBytes('a'), "new"));
        run();
    }
    EXPECT_EQ(report().outcome, ErrorsAutomatic);
    EXPECT_THAT(log(), ElementsAre("Failed To Download File:  a   Reason:  The download folder cannot be made."));
    EXPECT_EQ(downloadsOf("a.calib"), 0u);
    EXPECT_EQ(otherFiles(), before);
    EXPECT_EQ(test::readFile(here / U"velk.downloads.core/a.download"), "mine");
    EXPECT_THAT(test::listFolder(here), ElementsAre("a.calib", "a.download", "velk.downloads.core"));
    Velk::installHost(services());
}

#ifndef _WIN32
TEST_F(UpdaterHostile, ALinkInsteadOfADownloadFolder)
{
    const fileString target = folder() / U"elsewhere";
    fs::create_directories(target.utf8());
    test::writeFile(target / U"keep.txt", "keep");
    fs::create_directory_symlink(target.utf8(), downloads(U"core").utf8());
    deliver(Reply::file(databaseBytes('a'), "new"));
    run();
    EXPECT_EQ(report().outcome, Installed);
    EXPECT_THAT(test::listFolder(target), ElementsAre("keep.txt"));
    EXPECT_FALSE(fs::is_symlink(downloads(U"core").utf8()));
}

TEST_F(UpdaterHostile, ALinkInsteadOfAHashFile)
{
    fs::create_symlink((folder() / U"precious.txt").utf8(), (coreFolder() / U"catalog_hash.txt").utf8());
    run();
    EXPECT_EQ(test::readFile(folder() / U"precious.txt"), "precious");
}
#endif

TEST_F(UpdaterHostile, HashFilesThatNameOtherFiles)
{
    test::writeFile(coreFolder() / U"catalog_hash.txt", "../precious.txt:1\n" + (folder() / U"precious.txt").utf8() +
                                                            ":2\na.calib:3:4\nnot there.calib:5\n");
    deliver(Reply{.status = 304});
    run();
    EXPECT_EQ(requests("a.calib", "HEAD").at(0).header("If-None-Match"), "\"" + sha1("installed") + "\"");
    EXPECT_THAT(requests("precious.txt", "HEAD"), IsEmpty());
    EXPECT_THAT(requests("not there.calib", "HEAD"), IsEmpty());
}

TEST_F(UpdaterHostile, ControlsInProductAndVersionAreNotSent)
{
    product = "planner\r\nX-Evil: 1";
    run();
    EXPECT_EQ(report().outcome, ErrorsAutomatic);
    for (const test::SeenRequest& request : server.requests())
        EXPECT_FALSE(request.hasHeader("X-Evil"));
    EXPECT_EQ(requests("a.calib", "HEAD").size(), 0u);
}

}  // namespace
