#include <VelkCommon/Files/ReplacementFile.h>

#include <VelkCommon/Files/FileUtils.h>
#include <VelkCommon/Files/LockingFStream.h>

#include "support/TestHost.h"
#include "support/Threads.h"

#include <gmock/gmock.h>

#include <filesystem>
#include <fstream>

namespace {

using testing::ElementsAre;
using testing::IsEmpty;

class ReplacementFileTest : public testing::Test
{
protected:
    static void makeReadOnly(const fileString& path)
    {
        using std::filesystem::perms;
        std::filesystem::permissions(path.utf8(), perms::owner_write | perms::group_write | perms::others_write,
                                     std::filesystem::perm_options::remove);
    }

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

TEST_F(ReplacementFileTest, ReplacesAFileThatIsRead)
{
    test::writeFile(target_, "old text");
    LockingFStream reader(target_, LockingFStream::in);
    std::string word;
    reader >> word;
    ReplacementFile file(target_);
    EXPECT_TRUE(file.write("new") && file.commit()) << file.failure();
    EXPECT_EQ(test::readFile(target_), "new");
    reader >> word;
    EXPECT_EQ(word, "text") << "whoever reads the old one goes on with it";
}

TEST_F(ReplacementFileTest, ReplacesAFileAsSoonAsItIsNotReadAnyMore)
{
    test::writeFile(target_, "old");
    LockingFStream reader(target_, LockingFStream::in);
    ReplacementFile file(target_);
    test::Thread replacing([&] { EXPECT_TRUE(file.write("new") && file.commit()) << file.failure(); });
    reader.close();
    replacing.join();
    EXPECT_EQ(test::readFile(target_), "new");
}

TEST_F(ReplacementFileTest, ReplacesAReadOnlyFile)
{
    test::writeFile(target_, "old");
    makeReadOnly(target_);
    ReplacementFile file(target_);
    EXPECT_TRUE(file.write("new") && file.commit()) << file.failure();
    EXPECT_EQ(test::readFile(target_), "new");
    EXPECT_TRUE(FileUtils::makeFileWritable(target_));
}

TEST_F(ReplacementFileTest, TellsWhyItFailed)
{
    std::filesystem::create_directory(target_.utf8());
    test::writeFile(target_ / U"below", "");
    ReplacementFile onAFolder(target_);
    EXPECT_EQ(onAFolder.failure(), "");
    EXPECT_FALSE(onAFolder.write("new") && onAFolder.commit());
    EXPECT_NE(onAFolder.failure(), "");
    const ReplacementFile nowhere(root_ / U"none" / U"target");
    EXPECT_FALSE(nowhere.isOpen());
    EXPECT_NE(nowhere.failure(), "");
    EXPECT_NE(nowhere.failure(), onAFolder.failure());
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
