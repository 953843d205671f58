#include <VelkCommon/Files/ReplacementFile.h>

#include "support/TestHost.h"

#include <gmock/gmock.h>

#include <filesystem>
#include <fstream>

namespace {

using testing::ElementsAre;
using testing::IsEmpty;

class ReplacementFileTest : public testing::Test
{
protected:
    std::vector<std::string> names() const { return test::listFolder(root_.path()); }

    test::TemporaryFolder root_;
    fileString target_ = root_ / U"target";
};

TEST_F(ReplacementFileTest, ReplacesAtCommit)
{
    test::writeFile(target_, "old");
    ReplacementFile file(target_);
    EXPECT_TRUE(file.isOpen());
    EXPECT_TRUE(file.write("new "));
    EXPECT_TRUE(file.write(std::string_view("te\0xt", 5)));
    EXPECT_EQ(test::readFile(target_), "old");
    EXPECT_TRUE(file.commit());
    EXPECT_EQ(test::readFile(target_), std::string("new te\0xt", 9));
    EXPECT_THAT(names(), ElementsAre("target"));
    EXPECT_FALSE(file.isOpen());
    EXPECT_FALSE(file.commit()) << "it is done";
    EXPECT_FALSE(file.write("more"));
}

TEST_F(ReplacementFileTest, MakesAMissingTarget)
{
    ReplacementFile file(target_);
    EXPECT_TRUE(file.commit());
    EXPECT_EQ(test::readFile(target_), "");
}

TEST_F(ReplacementFileTest, LeavesNothingWithoutCommit)
{
    test::writeFile(target_, "old");
    {
        ReplacementFile file(target_);
        EXPECT_TRUE(file.write("new"));
        EXPECT_EQ(names().size(), 2U);
    }
    EXPECT_EQ(test::readFile(target_), "old");
    EXPECT_THAT(names(), ElementsAre("target"));
}

TEST_F(ReplacementFileTest, StandsBesideTheTargetAndCanBeWrittenByPath)
{
    ReplacementFile file(target_);
    EXPECT_EQ(file.path().parentPath(), root_.path());
    EXPECT_NE(file.path(), target_);
    test::writeFile(file.path(), "by path");
    EXPECT_TRUE(file.commit());
    EXPECT_EQ(test::readFile(target_), "by path");
}

TEST_F(ReplacementFileTest, KeepsATargetThatCameMeanwhile)
{
    ReplacementFile file(target_, ReplacementFile::Existing::keep);
    EXPECT_TRUE(file.write("new"));
    test::writeFile(target_, "came");
    EXPECT_FALSE(file.commit());
    EXPECT_EQ(test::readFile(target_), "came");
    EXPECT_THAT(names(), ElementsAre("target"));
}

TEST_F(ReplacementFileTest, FailsWhereNoFileCanBe)
{
    for (const fileString& path : {fileString(), root_ / U"missing/target", root_ / U"folder/", root_ / U"file/x"}) {
        ReplacementFile file(path);
        EXPECT_FALSE(file.isOpen()) << path;
        EXPECT_TRUE(file.path().empty());
        EXPECT_FALSE(file.write("new"));
        EXPECT_FALSE(file.commit());
    }
    EXPECT_THAT(names(), IsEmpty());
}

TEST_F(ReplacementFileTest, NeverReplacesAFolder)
{
    std::filesystem::create_directory(target_.utf8());
    ReplacementFile file(target_);
    EXPECT_FALSE(file.commit());
    EXPECT_THAT(names(), ElementsAre("target"));
}

TEST_F(ReplacementFileTest, KeepsTheTargetsAccessRights)
{
    using std::filesystem::perms;
    test::writeFile(target_, "old");
    std::filesystem::permissions(target_.utf8(), perms::owner_read | perms::owner_write);
    ReplacementFile file(target_);
    EXPECT_TRUE(file.commit());
    const auto rights = std::filesystem::status(target_.utf8()).permissions();
    EXPECT_EQ(rights & (perms::owner_write | perms::owner_read), perms::owner_write | perms::owner_read);
#ifndef _WIN32
    EXPECT_EQ(rights, perms::owner_read | perms::owner_write);
#endif
}

}  // namespace
