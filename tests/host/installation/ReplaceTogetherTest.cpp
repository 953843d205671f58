#include "host/installation/ReplaceTogether.h"

#include "host/fixtures/Fixtures.h"

#include <VelkCommon/Files/FileUtils.h>

namespace {

using testing::ElementsAre;
using VelkHost::replaceTogether;

class ReplaceTogether : public test::TestHost
{
protected:
    ReplaceTogether()
    {
        FileUtils::createDirectoriesWithPerm(from_);
        FileUtils::createDirectoriesWithPerm(to_);
        test::writeFile(from_ / U"a", "new a");
        test::writeFile(from_ / U"b", "new b");
    }

    void replace() const { replaceTogether({{from_ / U"a", to_ / U"a"}, {from_ / U"b", to_ / U"b"}}); }

    fileString from_ = folder() / U"from";
    fileString to_ = folder() / U"to";
};

TEST_F(ReplaceTogether, AddsAndReplaces)
{
    test::writeFile(to_ / U"a", "old a");
    replace();
    EXPECT_EQ(test::readFile(to_ / U"a"), "new a");
    EXPECT_EQ(test::readFile(to_ / U"b"), "new b");
    EXPECT_THAT(test::listFolder(to_), ElementsAre("a", "b"));
}

TEST_F(ReplaceTogether, ChangesNothingWhenOneCannotBePlaced)
{
    test::writeFile(to_ / U"a", "old a");
    FileUtils::createDirectoriesWithPerm(to_ / U"b");
    EXPECT_EQ(test::reasonOf([&] { replace(); }), "is a folder, not a file");
    EXPECT_EQ(test::readFile(to_ / U"a"), "old a");
    EXPECT_THAT(test::listFolder(to_), ElementsAre("a", "b"));
}

TEST_F(ReplaceTogether, ChangesNothingWhenOneIsMissing)
{
    test::writeFile(to_ / U"a", "old a");
    FileUtils::removePath(from_ / U"b", FileUtils::noFlags);
    EXPECT_EQ(test::reasonOf([&] { replace(); }), "cannot be written");
    EXPECT_EQ(test::readFile(to_ / U"a"), "old a");
    EXPECT_THAT(test::listFolder(to_), ElementsAre("a"));
}

TEST_F(ReplaceTogether, TakesBackWhatWasPlacedBeforeAFailure)
{
    test::writeFile(to_ / U"a", "old a");
    // The second target is in the folder that the first one makes a file of.
    const fileString inner = to_ / U"b";
    EXPECT_EQ(test::reasonOf([&] {
                  replaceTogether({{from_ / U"a", to_ / U"a"}, {from_ / U"b", inner / U"none" / U"c"}});
              }),
              "cannot be written");
    EXPECT_EQ(test::readFile(to_ / U"a"), "old a");
    EXPECT_THAT(test::listFolder(to_), ElementsAre("a"));
}

}  // namespace
