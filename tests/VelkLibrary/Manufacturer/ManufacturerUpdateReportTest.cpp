#include <VelkLibrary/Manufacturer/ManufacturerUpdate.h>

#include "ManufacturerUpdateTest.h"

#include <VelkCommon/Network/Curl.h>

#include <gmock/gmock.h>

#include <filesystem>
#include <stop_token>

namespace {

using namespace test::manufacturerUpdate;
using Library::CardChange;
using Library::LogoChange;
using Library::ManufacturerChange;
using test::namesOf;
using test::timeOf;
using testing::ElementsAre;
using testing::IsEmpty;
using Outcome = Library::ManufacturerUpdateOutcome;

class ToldUpdate : public Update
{
protected:
    Library::ManufacturerUpdate told()
    {
        Library::ManufacturerUpdate update =
            manager().updateManufacturers(wide(server_.url("/data")), wide(server_.url("/logo?v=1")));
        EXPECT_EQ(server_.requests("/data").size(), 1U) << "the data file is downloaded once";
        EXPECT_FALSE(temporaryFile().pathExists());
        return update;
    }

    static void haveLogo(const std::u32string& name, const std::string& bytes) { test::writeFile(logo(name), bytes); }
};

/// "7 Changed, logo New".
std::vector<std::string> describe(const std::vector<ManufacturerChange>& changes)
{
    constexpr const char* cards[] = {"Unchanged", "Changed", "New", "Gone"};
    constexpr const char* logos[] = {"Unchanged", "Changed", "New", "Gone", "Failed"};
    std::vector<std::string> texts;
    for (const ManufacturerChange& change : changes)
        texts.push_back(std::to_string(change.id) + " " + cards[static_cast<int>(change.card)] + ", logo " +
                        logos[static_cast<int>(change.logo)]);
    return texts;
}

TEST_F(ToldUpdate, NamesWhatBecameOfEachCard)
{
    hold(early, {{1, "Same", early, ""}, {2, "Old", early, ""}, {4, "Dropped", early, ""}, {9, "Last", early, ""}});
    publish(dataText(late, {{1, "Same", early, ""}, {2, "New", late, ""}, {3, "Added", late, ""}}));
    const auto update = told();
    EXPECT_EQ(update.outcome, Outcome::Taken);
    EXPECT_TRUE(update.differs);
    EXPECT_TRUE(update.textChanged);
    EXPECT_EQ(update.offered.cards.size(), 3U);
    EXPECT_EQ(update.offered.lastModified, timeOf(late));
    EXPECT_THAT(describe(update.changes),
                ElementsAre("1 Unchanged, logo Unchanged", "2 Changed, logo Unchanged", "3 New, logo Unchanged",
                            "4 Gone, logo Unchanged", "9 Gone, logo Unchanged"));
}

TEST_F(ToldUpdate, NamesWhatBecameOfEachLogo)
{
    hold(early, {{1, "Old", early, "same.png"},
                 {2, "Old", early, "other.png"},
                 {3, "Old", early, "gone.png"},
                 {4, "Old", early, "missing.png"},
                 {5, "Kept", late, "kept.png"}});
    haveLogo(U"same.png", "picture same.png");
    haveLogo(U"other.png", "another picture");
    haveLogo(U"gone.png", "a picture");
    haveLogo(U"kept.png", "another picture");
    publish(dataText(late, {{1, "New", late, "same.png"},
                            {2, "New", late, "other.png"},
                            {3, "New", late, ""},
                            {4, "New", late, "missing.png"},
                            {5, "Kept", late, "kept.png"},
                            {6, "Added", late, "added.png"},
                            {7, "Unsafe", late, "../outside.png"}}));
    const auto update = told();
    EXPECT_THAT(
        describe(update.changes),
        ElementsAre("1 Changed, logo Unchanged", "2 Changed, logo Changed", "3 Changed, logo Gone",
                    "4 Changed, logo New", "5 Unchanged, logo Unchanged", "6 New, logo New", "7 New, logo Failed"));
    EXPECT_EQ(update.changes.back().logoReason, "its name is not safe");
}

TEST_F(ToldUpdate, SaysWhyALogoDidNotCome)
{
    hold(early, {{1, "Old", early, "a.png"}});
    haveLogo(U"a.png", "a picture");
    publish(dataText(late, {{1, "New", late, "a.png"}, {2, "Empty", late, "b.png"}}));
    server_.on("/logo", [](const test::SeenRequest& request) {
        return request.parameter("logo-path") == "a.png" ? test::Reply{.status = 404} : test::Reply{.body = ""};
    });
    const auto update = told();
    EXPECT_THAT(describe(update.changes), ElementsAre("1 Changed, logo Failed", "2 New, logo Failed"));
    EXPECT_EQ(update.changes[0].logoReason, "HTTP status 404");
    EXPECT_EQ(update.changes[1].logoReason, "it is empty");
}

TEST_F(ToldUpdate, OfNothingNewerSaysWhetherItDiffers)
{
    hold(late, {{1, "Own", early, ""}});
    publish(dataText(late, {{1, "Own", early, ""}}, "own text"));
    auto update = told();
    EXPECT_EQ(update.outcome, Outcome::NotNewer);
    EXPECT_FALSE(update.differs);
    EXPECT_EQ(update.offered.cards.size(), 1U);
    server_.forgetRequests();
    publish(dataText(late, {{1, "Other", early, ""}}, "own text"));
    update = told();
    EXPECT_EQ(update.outcome, Outcome::NotNewer);
    EXPECT_TRUE(update.differs);
    EXPECT_THAT(update.changes, IsEmpty()) << "nothing has changed here";
    server_.forgetRequests();
    publish(dataText(late, {{1, "Own", early, ""}}, "another text"));
    EXPECT_TRUE(told().differs);
}

TEST_F(ToldUpdate, SeesThatOnlyTheFaxDiffers)
{
    managerOf(R"({"Version": "42", "Last_Modified": "20260301T000000", "Default_Text": "",
                  "Manufacturer_1": {"Id": 1, "Last_Modified": "20260101T000000", "Fax": "1"}})");
    publish(R"({"Version": "42", "Last_Modified": "20260301T000000", "Default_Text": "",
                "Manufacturer_1": {"Id": 1, "Last_Modified": "20260101T000000", "Fax": "2"}})");
    EXPECT_TRUE(told().differs);
}

TEST_F(ToldUpdate, SaysWhyThereAreNoData)
{
    server_.on("/data", test::Reply{.status = 503});
    auto update = told();
    EXPECT_EQ(update.outcome, Outcome::NotFetched);
    EXPECT_EQ(update.reason, "HTTP status 503");
    server_.forgetRequests();
    publish("<html>");
    update = told();
    EXPECT_EQ(update.outcome, Outcome::NotReadable);
    EXPECT_EQ(update.reading.fault, Library::DataFileFault::NotAnObject);
    server_.forgetRequests();
    publish(R"({"Version": "42", "Last_Modified": "soon"})");
    update = told();
    EXPECT_EQ(update.outcome, Outcome::NotReadable);
    EXPECT_EQ(update.reading.member, "\"Last_Modified\"");
}

TEST_F(ToldUpdate, ThatWasStoppedLeavesTheCards)
{
    hold(early, {{1, "Own", early, ""}});
    publish(dataText(late, {{1, "New", late, "a.png"}}));
    std::stop_source source;
    server_.on("/logo", [&](const test::SeenRequest&) {
        source.request_stop();
        return test::Reply::never();
    });
    const Curl::Stoppable stoppable(source.get_token());
    const auto update = told();
    EXPECT_EQ(update.outcome, Outcome::Stopped);
    EXPECT_EQ(namesOf(manager()), "1 Own");
    server_.forgetRequests();
    EXPECT_EQ(manager().updateManufacturers(wide(server_.url("/data")), U"").outcome, Outcome::Stopped)
        << "before the data came";
}

TEST_F(ToldUpdate, SaysThatItCouldNotBeWritten)
{
    std::filesystem::create_directory(dataFile().utf8());
    publish(dataText(late, {{1, "A", late, ""}}));
    const auto update = told();
    EXPECT_EQ(update.outcome, Outcome::NotWritten);
    EXPECT_EQ(update.writing.fault, Library::DataFileFault::MayNotBeWritten);
    EXPECT_THAT(describe(update.changes), ElementsAre("1 New, logo Unchanged"));
}

}  // namespace
