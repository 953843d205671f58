#include "host/installation/PackageContent.h"

#include "host/fixtures/Fixtures.h"
#include "support/ZipBuilder.h"

namespace {

using test::ZipBuilder;
using VelkHost::PackageContent;

class Package : public test::TestHost
{
protected:
    Package()
    {
        test::writeFile(database_, "database");
        ZipBuilder().add("a.png", "picture").add("b.txt", "text").writeTo(others_);
    }

    static ZipBuilder whole()
    {
        return ZipBuilder().add("x.calib", "database").add("a.png", "picture").add("b.txt", "text");
    }

    fileString archive_ = folder() / U"x.calibz";
    fileString database_ = folder() / U"x.calib";
    fileString others_ = folder() / U"x.zip";
};

TEST_F(Package, AcceptsWhatIsComplete)
{
    whole().writeTo(archive_);
    const PackageContent content(archive_);
    EXPECT_TRUE(content.hasOthers());
    EXPECT_NO_THROW(content.requireUnpacked(database_, others_));
}

TEST_F(Package, OfSeveralCatalogsTheLastOneCounts)
{
    ZipBuilder().add("first.calib", "other").add("x.calib", "database").writeTo(archive_);
    const PackageContent content(archive_);
    EXPECT_FALSE(content.hasOthers());
    EXPECT_NO_THROW(content.requireUnpacked(database_, {}));
}

TEST_F(Package, SeesWhatIsMissing)
{
    whole().writeTo(archive_);
    const PackageContent content(archive_);
    const std::string damagedOthers =
        "its textures and other files could not be unpacked; is it damaged, or the disk full?";
    EXPECT_EQ(test::reasonOf([&] { content.requireUnpacked(database_, {}); }), damagedOthers);
    for (const ZipBuilder& incomplete :
         {ZipBuilder().add("a.png", "picture"), ZipBuilder().add("a.png", "picture").add("b.txt", "other"),
          ZipBuilder().add("a.png", "picture").add("b.txt", "text").add("c", "more")}) {
        incomplete.writeTo(others_);
        EXPECT_EQ(test::reasonOf([&] { content.requireUnpacked(database_, others_); }), damagedOthers);
    }
    for (const std::string torn : {"", "data", "Database"}) {
        test::writeFile(database_, torn);
        EXPECT_EQ(test::reasonOf([&] { content.requireUnpacked(database_, others_); }),
                  "its catalog file could not be unpacked; is it damaged, or the disk full?");
    }
}

TEST_F(Package, RefusesWhatIsNone)
{
    EXPECT_EQ(test::reasonOf([&] { PackageContent content(archive_); }), "does not exist");
    test::writeFile(archive_, "<html>");
    EXPECT_EQ(test::reasonOf([&] { PackageContent content(archive_); }), "is not a packed library, or it is damaged");
    ZipBuilder().add("a.png", "picture").writeTo(archive_);
    EXPECT_EQ(test::reasonOf([&] { PackageContent content(archive_); }),
              "is not a packed library: its catalog file is missing or damaged");
    test::ZipItem encrypted;
    encrypted.name = "x.calib";
    encrypted.data = "database";
    encrypted.flags = 1;
    ZipBuilder().add(encrypted).writeTo(archive_);
    EXPECT_EQ(test::reasonOf([&] { PackageContent content(archive_); }), "is encrypted");
}

}  // namespace
