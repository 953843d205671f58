#include "ManufacturerUpdateTest.h"

#include <VelkLibrary/Manufacturer/LogoName.h>

#include <gmock/gmock.h>

#include <filesystem>

namespace {

namespace fs = std::filesystem;
using namespace test::manufacturerUpdate;
using test::namesOf;
using testing::ElementsAre;
using testing::IsEmpty;

/// Links in the folder of the logos, which anybody may put there.
class LogoLinks : public Update
{
protected:
    LogoLinks()
    {
        fs::create_directory(outside(U"").utf8());
        test::writeFile(outside(U"a.png"), "outside");
    }

    ~LogoLinks() override
    {
        EXPECT_THAT(test::listFolder(outside(U"")), ElementsAre("a.png"));
        EXPECT_EQ(test::readFile(outside(U"a.png")), "outside");
    }

    fileString outside(const std::u32string& name) const { return folder() / U"outside" / name; }

    static void link(const std::u32string& name, const fileString& target)
    {
        fs::create_symlink(target.utf8(), logo(name).utf8());
    }

    std::vector<Library::ManufacturerChange> changes()
    {
        return manager().updateManufacturers(wide(server_.url("/data")), wide(server_.url("/logo?v=1"))).changes;
    }
};

TEST_F(LogoLinks, AreSeenWhereverTheyStand)
{
    fs::create_directories(logo(U"real/deeper").utf8());
    link(U"folder", outside(U""));
    link(U"real/deeper/folder", outside(U""));
    link(U"file.png", outside(U"a.png"));
    link(U"dangling", outside(U"none"));
    const auto isBehindLink = [](const char32_t* name) {
        return Library::logoIsBehindLink(dataFolder(), fileString(std::u32string(name)));
    };
    for (const char32_t* name : {U"folder/a.png", U"folder/none/a.png", U"real/deeper/folder/a.png", U"file.png",
                                 U"dangling", U"dangling/a.png"})
        EXPECT_TRUE(isBehindLink(name)) << fileString(std::u32string(name));
    for (const char32_t* name : {U"a.png", U"real/a.png", U"real/deeper/none/a.png", U"none/a.png"})
        EXPECT_FALSE(isBehindLink(name)) << fileString(std::u32string(name));
}

TEST_F(LogoLinks, InThePlaceOfAFolderAreNotFollowed)
{
    link(U"acme", outside(U""));
    hold(early, {{1, "Held", early, "acme/a.png"}});
    publish(dataText(late, {{1, "Newer", late, "acme/a.png"}, {2, "Added", late, "acme/sub/b.png"}}));
    const auto changed = changes();
    ASSERT_EQ(changed.size(), 2U);
    for (const Library::ManufacturerChange& change : changed) {
        EXPECT_EQ(change.logo, Library::LogoChange::Failed);
        EXPECT_EQ(change.logoReason, "a link stands in its place or on the way there");
    }
    EXPECT_EQ(namesOf(manager()), "1 Newer, 2 Added");
    EXPECT_THAT(askedLogos(), IsEmpty());
    EXPECT_TRUE(fs::is_symlink(logo(U"acme").utf8()));
}

TEST_F(LogoLinks, ToNowhereMakeNoFolderThere)
{
    link(U"acme", outside(U"made"));
    publish(dataText(late, {{1, "A", late, "acme/a.png"}}));
    update();
    EXPECT_THAT(askedLogos(), IsEmpty());
}

TEST_F(LogoLinks, InThePlaceOfALogoAreNotWrittenThrough)
{
    link(U"a.png", outside(U"a.png"));
    publish(dataText(late, {{1, "A", late, "a.png"}}));
    update();
    EXPECT_THAT(askedLogos(), IsEmpty());
    EXPECT_TRUE(fs::is_symlink(logo(U"a.png").utf8()));
}

// It stands where the update is to remove a file, and goes itself.
TEST_F(LogoLinks, InThePlaceOfAHeldLogoAreReplaced)
{
    link(U"a.png", outside(U"a.png"));
    hold(early, {{1, "Held", early, "a.png"}});
    publish(dataText(late, {{1, "Newer", late, "a.png"}}));
    update();
    EXPECT_FALSE(fs::is_symlink(logo(U"a.png").utf8()));
    EXPECT_EQ(test::readFile(logo(U"a.png")), "picture a.png");
}

}  // namespace
