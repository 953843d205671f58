#include <VelkCommon/Files/WorkFolder.h>

#include <VelkCommon/Files/ReplacementFile.h>

#include "support/TestHost.h"

#include <gmock/gmock.h>

#include <filesystem>

namespace {

using testing::ElementsAre;
using testing::IsEmpty;

class WorkFolderTest : public testing::Test
{
protected:
    std::vector<std::string> names() const { return test::listFolder(root_.path()); }

    test::TemporaryFolder root_;
};

TEST_F(WorkFolderTest, IsRemovedWithWhatIsInIt)
{
    {
        const WorkFolder folder(root_.path());
        ASSERT_FALSE(folder.path().empty());
        EXPECT_EQ(folder.path().parentPath(), root_.path());
        test::writeFile(folder.path() / U"file", "text");
    }
    EXPECT_THAT(names(), IsEmpty());
}

TEST_F(WorkFolderTest, MayBeNamedFromTheCurrentFolder)
{
    const std::filesystem::path before = std::filesystem::current_path();
    std::filesystem::current_path(root_.path().utf8());
    for (const std::string parent : {"", "."}) {
        const WorkFolder folder{fileString(parent)};
        EXPECT_FALSE(folder.path().empty());
    }
    std::filesystem::current_path(before);
    EXPECT_THAT(names(), IsEmpty());
}

TEST_F(WorkFolderTest, HasNoPathWhereNoneCanBe)
{
    EXPECT_TRUE(WorkFolder(root_ / U"none").path().empty());
    test::writeFile(root_ / U"file", "text");
    EXPECT_TRUE(WorkFolder(root_ / U"file").path().empty());
}

TEST_F(WorkFolderTest, IsNotALeftoverWhileItIsUsed)
{
    const WorkFolder folder(root_.path());
    test::writeFile(folder.path() / U"file", "text");
    ReplacementFile file(root_ / U"target");
    WorkFolder::removeLeftovers(root_.path());
    EXPECT_EQ(test::readFile(folder.path() / U"file"), "text");
    EXPECT_TRUE(file.commit());
}

TEST_F(WorkFolderTest, RemovesOnlyWhatItKnowsByItsName)
{
    test::writeFile(root_ / U".velk-0.tmp", "left");
    test::writeFile(root_ / U".velk-1.lock", "left");
    test::writeFile(root_ / U".velk-notes", "kept");
    test::writeFile(root_ / U"house.tmp", "kept");
    test::writeFile(root_ / U"house.lock", "kept");
    WorkFolder::removeLeftovers(root_.path());
    EXPECT_THAT(names(), ElementsAre(".velk-notes", "house.lock", "house.tmp"));
}

TEST_F(WorkFolderTest, LeftoversOfAFolderThatIsNotThereAreNone)
{
    WorkFolder::removeLeftovers(root_ / U"none");
    EXPECT_THAT(names(), IsEmpty());
}

}  // namespace
