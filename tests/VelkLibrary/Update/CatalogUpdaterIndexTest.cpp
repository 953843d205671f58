#include "VelkLibrary/Update/UpdateTest.h"

#include <gmock/gmock.h>

namespace {

using namespace LibraryCatalogUpdate;
using test::databaseBytes;
using test::sha1;
using testing::Contains;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::SizeIs;
using testing::UnorderedElementsAre;

constexpr const char* indexName = "Standard_Core_Content_Index.txt";

class UpdaterIndex : public test::UpdateTest
{
protected:
    // The catalogs that a header request was sent for.
    std::set<std::string> asked() const
    {
        std::set<std::string> names;
        for (const auto& request : server.requests("/api"))
            if (request.method == "HEAD" && !request.parameter("library").empty())
                names.insert(request.parameter("library"));
        return names;
    }

    std::string indexUrl() const
    {
        return server.url("/api?key=k") + "&library=" + indexName + "&product=planner&version=12";
    }
};

TEST_F(UpdaterIndex, IsAskedForFirstAndWithoutAHash)
{
    installCore(U"a.calib", databaseBytes('a'));
    publishIndex("");
    run();
    const auto seen = requests(indexName, "GET");
    ASSERT_THAT(seen, SizeIs(1));
    EXPECT_FALSE(seen[0].hasHeader("If-None-Match"));
    EXPECT_EQ(seen[0].parameter("product"), "planner");
    EXPECT_EQ(seen[0].parameter("version"), "12");
}

TEST_F(UpdaterIndex, IsThatOfTheRunningEdition)
{
    Velk::HostServices host = services();
    host.editions.running = 3;
    host.editions.words[3] = "Grand";
    Velk::installHost(host);
    publish("Grand_Core_Content_Index.txt", "new.calib\n");
    run();
    EXPECT_THAT(asked(), ElementsAre("new.calib"));
}

TEST_F(UpdaterIndex, AddsWhatIsNotInstalled)
{
    installCore(U"a.calib", databaseBytes('a'));
    test::writeFile(referencedFolder() / U"t.zip", databaseBytes('t'));
    publishIndex("a.calib\r\nnew.calib\r\nt.zip\r\npacked.calibz\r\nreadme.txt\r\n");
    publish("t.zip", databaseBytes('t'));
    run();
    EXPECT_THAT(asked(), UnorderedElementsAre("a.calib", "new.calib", "t.zip", "packed.calibz"));
    EXPECT_EQ(requests("new.calib", "HEAD").at(0).header("If-None-Match"), "\"\"");
    EXPECT_EQ(requests("t.zip", "HEAD").at(0).header("If-None-Match"), "\"" + sha1(databaseBytes('t')) + "\"");
    EXPECT_THAT(steps(), Contains("onSetRangeInGauge 4"));
}

TEST_F(UpdaterIndex, WithoutOneTheInstalledCatalogsAreChecked)
{
    installCore(U"a.calib", databaseBytes('a'));
    publish("a.calib", databaseBytes('b'));
    run();
    EXPECT_EQ(report().outcome, ErrorsAutomatic);
    EXPECT_THAT(report().updatedNames, ElementsAre("a"));
    EXPECT_THAT(log(), ElementsAre("Failed to Download Core Library Index File:  " + indexUrl()));
}

TEST_F(UpdaterIndex, ItsAddressIsLoggedWithoutThePassword)
{
    address.insert(address.find("//") + 2, "user:secret@");
    answer(indexName, test::Reply{.status = 401});
    run();
    EXPECT_THAT(log(), ElementsAre("Failed to Download Core Library Index File:  " + indexUrl()));
    ASSERT_THAT(requests(indexName, "GET"), SizeIs(1));
    EXPECT_EQ(requests(indexName, "GET")[0].header("Authorization"), "Basic dXNlcjpzZWNyZXQ=");
}

TEST_F(UpdaterIndex, CutShortIsIgnored)
{
    test::Reply cut{.body = "a.calib\nb.calib\n"};
    cut.cutAfter = 8;
    cut.ending = test::Reply::Ending::close;
    answer(indexName, cut);
    run();
    EXPECT_EQ(report().outcome, ErrorsAutomatic);
    EXPECT_THAT(asked(), IsEmpty());
    EXPECT_THAT(log(), SizeIs(1));
}

TEST_F(UpdaterIndex, WithoutEndIsIgnored)
{
    test::Reply endless{.body = std::string(1000, 'x') + ".calib\n"};
    endless.endless = true;
    endless.withLength = false;
    answer(indexName, endless);
    run();
    EXPECT_EQ(report().outcome, ErrorsAutomatic);
    EXPECT_THAT(asked(), IsEmpty());
    EXPECT_THAT(log(), SizeIs(1));
}

TEST_F(UpdaterIndex, APageInsteadOfItNamesNothing)
{
    publishIndex("<!DOCTYPE html>\n<html><body>\n<a href=\"x.zip\">Log in</a>\nlogin.zip?<br>\n</body></html>\n");
    run();
    EXPECT_EQ(report().outcome, UpToDate);
    EXPECT_THAT(asked(), IsEmpty());
}

TEST_F(UpdaterIndex, CannotLeaveItsFolder)
{
    const std::string outside = (folder() / U"user" / U"secret.calib").utf8();
    test::writeFile(folder() / U"user" / U"secret.calib", "secret");
    publishIndex("../user/secret.calib\n" + outside +
                 "\n..\\user\\secret.calib\nC:\\secret.calib\n./x.calib\n"
                 "CON.calib\na\tb.calib\na:b.calib\nsub/x.zip\n\n.calib\n..calib.\nok.calib\n");
    run();
    EXPECT_THAT(asked(), ElementsAre("ok.calib"));
}

TEST_F(UpdaterIndex, MayBeLong)
{
    std::string lines;
    for (int i = 0; i < 300; ++i)
        lines += "catalog " + std::to_string(i) + ".calib\n";
    publishIndex(lines + lines);
    run();
    EXPECT_THAT(asked(), SizeIs(300));
    EXPECT_THAT(steps(), Contains("onSetRangeInGauge 300"));
    EXPECT_LE(server.connections(), 9u);
    EXPECT_EQ(report().outcome, UpToDate);
}

}  // namespace
