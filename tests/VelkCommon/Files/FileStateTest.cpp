#include <VelkCommon/Files/FileState.h>

#include <VelkCommon/Files/FileUtils.h>
#include <VelkCommon/Files/FolderListing.h>
#include <VelkCommon/Files/LockingFStream.h>
#include <VelkCommon/Files/ReplacementFile.h>
#include <VelkCommon/Platform/PathText.h>

#include "support/TestHost.h"

#include <gmock/gmock.h>

#include <ctime>
#include <filesystem>

namespace {

using Kind = Velk::FileState::Kind;

/// The tests' own folder is the current one.
class InTheCurrentFolder : public testing::Test
{
protected:
    InTheCurrentFolder() { std::filesystem::current_path(root_.path().utf8()); }
    ~InTheCurrentFolder() override { std::filesystem::current_path(before_); }

    std::filesystem::path before_ = std::filesystem::current_path();
    test::TemporaryFolder root_;
};

using FileStateTest = InTheCurrentFolder;

TEST_F(FileStateTest, TellsWhatIsThere)
{
    test::writeFile(root_ / U"file", "12345");
    const Velk::FileState file = Velk::fileState(root_ / U"file");
    EXPECT_EQ(file.kind, Kind::file);
    EXPECT_EQ(file.size, 5U);
    EXPECT_NEAR(static_cast<double>(file.modified) / 1e9, static_cast<double>(std::time(nullptr)), 100.0);
    EXPECT_EQ(Velk::fileState(root_.path()).kind, Kind::folder);
    EXPECT_EQ(Velk::fileState(root_ / U"none").kind, Kind::nothing);
    EXPECT_EQ(Velk::fileState(root_ / U"file/below").kind, Kind::nothing);
    EXPECT_EQ(Velk::fileState({}).kind, Kind::nothing);
}

TEST_F(FileStateTest, AnyPathLeadsToTheSameFile)
{
    test::writeFile(root_ / U"one", "");
    test::writeFile(root_ / U"two", "");
    EXPECT_TRUE(Velk::isSameFile(root_ / U"one", std::string("one")));
    EXPECT_TRUE(Velk::isSameFile(root_ / U"./one", root_ / U"one"));
    EXPECT_TRUE(Velk::isSameFile(root_.path(), std::string(".")));
    EXPECT_FALSE(Velk::isSameFile(root_ / U"one", root_ / U"two"));
    EXPECT_FALSE(Velk::isSameFile(root_ / U"none", root_ / U"none"));
}

TEST_F(FileStateTest, AnAbsolutePathCountsFromTheRoot)
{
    test::writeFile(root_ / U"file", "");
    const fileString absolute = Velk::absolutePath(std::string("file"));
    EXPECT_TRUE(Velk::Platform::isAbsolute(absolute.utf8())) << absolute;
    EXPECT_TRUE(Velk::isSameFile(absolute, root_ / U"file"));
    EXPECT_EQ(Velk::absolutePath(root_ / U"file"), root_ / U"file");
    EXPECT_EQ(Velk::absolutePath({}), fileString());
}

TEST_F(FileStateTest, FoldersAreMadeWithTheirParents)
{
    EXPECT_EQ(Velk::makeFolders(root_ / U"a/b/c"), std::nullopt);
    EXPECT_EQ(Velk::makeFolders(std::string("d/./e")), std::nullopt);
    EXPECT_EQ(Velk::makeFolders(std::string("d/e/")), std::nullopt) << "they are there";
    EXPECT_EQ(Velk::fileState(root_ / U"a/b/c").kind, Kind::folder);
    EXPECT_EQ(Velk::fileState(root_ / U"d/e").kind, Kind::folder);
}

TEST_F(FileStateTest, WhyNoFolderCanBeMadeIsTold)
{
    test::writeFile(root_ / U"file", "");
    for (const char32_t* path : {U"file", U"file/below"})
        EXPECT_THAT(Velk::makeFolders(root_ / path), testing::Optional(testing::Not(testing::IsEmpty())));
    EXPECT_EQ(Velk::fileState(root_ / U"file").kind, Kind::file);
}

TEST_F(FileStateTest, OnlyAnEmptyFolderIsRemoved)
{
    ASSERT_EQ(Velk::makeFolders(root_ / U"empty"), std::nullopt);
    ASSERT_EQ(Velk::makeFolders(root_ / U"full/below"), std::nullopt);
    test::writeFile(root_ / U"file", "");
    EXPECT_TRUE(Velk::removeEmptyFolder(root_ / U"empty"));
    EXPECT_FALSE(Velk::removeEmptyFolder(root_ / U"empty"));
    EXPECT_FALSE(Velk::removeEmptyFolder(root_ / U"full"));
    EXPECT_FALSE(Velk::removeEmptyFolder(root_ / U"file"));
    EXPECT_THAT(test::listFolder(root_.path()), testing::ElementsAre("file", "full"));
}

TEST_F(FileStateTest, TheVolumeHasSpaceAndNothingHasNone)
{
    EXPECT_GT(Velk::freeSpace(root_.path()).value_or(0), 0U);
    EXPECT_EQ(Velk::freeSpace(root_ / U"none"), std::nullopt);
}

TEST_F(FileStateTest, WhyAFileCouldNotBeMovedIsTold)
{
    test::writeFile(root_ / U"file", "");
    ASSERT_FALSE(FileUtils::renameFile(root_ / U"file", root_ / U"none/file"));
    const std::string noFolder = Velk::lastFileFailure();
    ASSERT_EQ(Velk::makeFolders(root_ / U"folder/below"), std::nullopt);
    ASSERT_FALSE(FileUtils::renameFile(root_ / U"file", root_ / U"folder"));
    EXPECT_NE(noFolder, "");
    EXPECT_NE(Velk::lastFileFailure(), noFolder);
}

/// Longer than the 259 characters that Windows takes as they are.
class LongPaths : public InTheCurrentFolder
{
protected:
    LongPaths()
    {
        for (int i = 0; i < 6; ++i)
            relative_ = relative_ / fileString(std::string(50, static_cast<char>('a' + i)));
    }

    fileString relative_;
};

TEST_F(LongPaths, MayCountFromTheCurrentFolder)
{
    ASSERT_EQ(Velk::makeFolders(relative_), std::nullopt);
    const fileString file = relative_ / U"file";
    ReplacementFile written(file);
    ASSERT_TRUE(written.write("text") && written.commit());
    EXPECT_EQ(Velk::fileState(file).size, 4U);
    EXPECT_TRUE(Velk::isSameFile(file, root_.path() / file));
    EXPECT_TRUE(Velk::isSameFile(Velk::absolutePath(file), file));
    EXPECT_TRUE(FileUtils::copyFile(file, relative_ / U"copy", false));
    std::error_code error;
    EXPECT_EQ(Velk::folderEntries(relative_, error).size(), 2U) << error.message();
    std::string text;
    LockingFStream(root_.path() / file, LockingFStream::in) >> text;
    EXPECT_EQ(text, "text");
    // The test's own folder goes by the standard library, which may not know such paths.
    EXPECT_TRUE(
        FileUtils::removeDirectoryAndFiles(root_.path() / relative_.unicodeString().substr(0, 50), FileUtils::noFlags));
}

}  // namespace
