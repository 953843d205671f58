#include <VelkCommon/Files/FileUtils.h>

#include "support/TestHost.h"

#include <gmock/gmock.h>

namespace {

using testing::ElementsAre;
using testing::IsEmpty;

class FileUtilsTest : public test::TestHost
{
protected:
    fileString at(const char32_t* name) const { return root_ / name; }
    std::vector<std::string> names() const { return test::listFolder(root_.path()); }

    // Longer than any block in which bytes are copied.
    static std::string bigText()
    {
        std::string text;
        for (int i = 0; text.size() < 3'000'000; ++i)
            text += std::to_string(i);
        return text;
    }

    test::TemporaryFolder root_;
};

TEST_F(FileUtilsTest, PathExistsForFileAndFolder)
{
    test::writeFile(at(U"a"), "x");
    EXPECT_TRUE(FileUtils::pathExists(at(U"a")));
    EXPECT_TRUE(FileUtils::pathExists(root_.path()));
    EXPECT_FALSE(FileUtils::pathExists(at(U"b")));
    EXPECT_FALSE(FileUtils::pathExists(at(U"a/b")));
    EXPECT_FALSE(FileUtils::pathExists({}));
}

TEST_F(FileUtilsTest, NothingWorksOnTheEmptyPath)
{
    test::writeFile(at(U"a"), "x");
    EXPECT_FALSE(FileUtils::removePath({}, FileUtils::noFlags));
    EXPECT_FALSE(FileUtils::removeDirectoryAndFiles({}, FileUtils::overrideReadOnly));
    EXPECT_FALSE(FileUtils::createDirectoriesWithPerm({}));
    EXPECT_FALSE(FileUtils::createPrivateDirectory({}));
    EXPECT_FALSE(FileUtils::copyFile({}, at(U"b"), true));
    EXPECT_FALSE(FileUtils::copyFile(at(U"a"), {}, true));
    EXPECT_FALSE(FileUtils::moveFile({}, at(U"b"), true));
    EXPECT_FALSE(FileUtils::moveFile(at(U"a"), {}, true));
    EXPECT_FALSE(FileUtils::renameFile({}, at(U"b")));
    EXPECT_FALSE(FileUtils::renameFile(at(U"a"), {}));
    EXPECT_FALSE(FileUtils::makeFileWritable({}));
    EXPECT_FALSE(FileUtils::setFilePermEveryoneFullAccess({}));
    EXPECT_FALSE(FileUtils::canWriteFile({}));
    EXPECT_FALSE(FileUtils::isPathWriteLocked({}));
    EXPECT_EQ(FileUtils::fileSize({}), -1);
    EXPECT_THAT(names(), ElementsAre("a"));
}

TEST_F(FileUtilsTest, RemovePathDeletesFilesOnly)
{
    test::writeFile(at(U"a"), "x");
    test::writeFile(at(U"b"), "x");
    EXPECT_TRUE(FileUtils::removePath(at(U"a"), FileUtils::noFlags));
    EXPECT_TRUE(FileUtils::removePath(at(U"b"), FileUtils::overrideReadOnly));
    EXPECT_THAT(names(), IsEmpty());
    EXPECT_FALSE(FileUtils::removePath(at(U"a"), FileUtils::noFlags)) << "it is gone";
    ASSERT_TRUE(FileUtils::createDirectoriesWithPerm(at(U"folder")));
    EXPECT_FALSE(FileUtils::removePath(at(U"folder"), FileUtils::noFlags));
    EXPECT_FALSE(FileUtils::removePath(at(U"folder/"), FileUtils::overrideReadOnly));
    EXPECT_THAT(names(), ElementsAre("folder"));
}

TEST_F(FileUtilsTest, DotsAreNoWayToAnotherFolder)
{
    ASSERT_TRUE(FileUtils::createDirectoriesWithPerm(at(U"tree")));
    test::writeFile(at(U"file"), "x");
    test::writeFile(at(U"tree/file"), "x");
    for (const char32_t* path : {U"tree/..", U"tree/../", U"tree/.", U"tree//..//"})
        EXPECT_FALSE(FileUtils::removeDirectoryAndFiles(at(path), FileUtils::overrideReadOnly)) << at(path);
    EXPECT_THAT(names(), ElementsAre("file", "tree"));
    EXPECT_THAT(test::listFolder(at(U"tree")), ElementsAre("file"));
    EXPECT_TRUE(FileUtils::removeDirectoryAndFiles(at(U"tree/../tree"), FileUtils::overrideReadOnly))
        << "a name at the end";
    EXPECT_THAT(names(), ElementsAre("file"));
}

TEST_F(FileUtilsTest, CreateDirectoriesMakesAllParents)
{
    EXPECT_TRUE(FileUtils::createDirectoriesWithPerm(at(U"a/b//c/")));
    EXPECT_TRUE(FileUtils::pathExists(at(U"a/b/c")));
    EXPECT_TRUE(FileUtils::createDirectoriesWithPerm(at(U"a/b/c"))) << "it is there";
    test::writeFile(at(U"file"), "x");
    EXPECT_FALSE(FileUtils::createDirectoriesWithPerm(at(U"file")));
    EXPECT_FALSE(FileUtils::createDirectoriesWithPerm(at(U"file/below")));
    EXPECT_EQ(test::readFile(at(U"file")), "x");
}

TEST_F(FileUtilsTest, CreatePrivateDirectoryMakesOneFolder)
{
    EXPECT_TRUE(FileUtils::createPrivateDirectory(at(U"a")));
    EXPECT_TRUE(FileUtils::createPrivateDirectory(at(U"a/"))) << "it is there";
    EXPECT_FALSE(FileUtils::createPrivateDirectory(at(U"b/c")));
    test::writeFile(at(U"file"), "x");
    EXPECT_FALSE(FileUtils::createPrivateDirectory(at(U"file")));
    EXPECT_THAT(names(), ElementsAre("a", "file"));
}

#ifdef _WIN32
TEST_F(FileUtilsTest, NothingIsCreatedOnADriveThatIsNotThere)
{
    EXPECT_FALSE(FileUtils::createDirectoriesWithPerm(fileString(U"Q:\\a\\b")));
    EXPECT_FALSE(FileUtils::createDirectoriesWithPerm(fileString(U"Q:\\")));
}
#endif

TEST_F(FileUtilsTest, RemoveDirectoryDeletesEverythingBelow)
{
    ASSERT_TRUE(FileUtils::createDirectoriesWithPerm(at(U"a/b/c")));
    ASSERT_TRUE(FileUtils::createDirectoriesWithPerm(at(U"a/d")));
    test::writeFile(at(U"a/1"), "x");
    test::writeFile(at(U"a/b/2"), "x");
    test::writeFile(at(U"a/b/c/3"), "x");
    test::writeFile(at(U"beside"), "x");
    EXPECT_TRUE(FileUtils::removeDirectoryAndFiles(at(U"a"), FileUtils::overrideReadOnly));
    EXPECT_THAT(names(), ElementsAre("beside"));
    EXPECT_FALSE(FileUtils::removeDirectoryAndFiles(at(U"a"), FileUtils::overrideReadOnly)) << "it is gone";
    EXPECT_FALSE(FileUtils::removeDirectoryAndFiles(at(U"beside"), FileUtils::overrideReadOnly)) << "it is a file";
    EXPECT_THAT(names(), ElementsAre("beside"));
}

TEST_F(FileUtilsTest, RemoveDirectoryMindsNoTrailingSeparators)
{
    ASSERT_TRUE(FileUtils::createDirectoriesWithPerm(at(U"a/b")));
    EXPECT_TRUE(FileUtils::removeDirectoryAndFiles(at(U"a//"), FileUtils::noFlags));
    EXPECT_THAT(names(), IsEmpty());
}

// ---- Copies --------------------------------------------------------------------------------------

TEST_F(FileUtilsTest, CopyFileCopiesAllBytes)
{
    for (const std::string& text : {std::string(), std::string("a\0\r\n\x1A z", 7), bigText()}) {
        test::writeFile(at(U"from"), text);
        EXPECT_TRUE(FileUtils::copyFile(at(U"from"), at(U"to"), true));
        EXPECT_EQ(test::readFile(at(U"to")), text);
        EXPECT_EQ(test::readFile(at(U"from")), text);
        EXPECT_THAT(names(), ElementsAre("from", "to"));
    }
}

TEST_F(FileUtilsTest, CopyFileKeepsAnExistingTargetUnlessToldOtherwise)
{
    test::writeFile(at(U"from"), "new");
    test::writeFile(at(U"to"), "old");
    EXPECT_FALSE(FileUtils::copyFile(at(U"from"), at(U"to"), false));
    EXPECT_EQ(test::readFile(at(U"to")), "old");
    EXPECT_TRUE(FileUtils::copyFile(at(U"from"), at(U"to"), true));
    EXPECT_EQ(test::readFile(at(U"to")), "new");
    EXPECT_TRUE(FileUtils::copyFile(at(U"from"), at(U"fresh"), false));
    EXPECT_THAT(names(), ElementsAre("fresh", "from", "to"));
}

TEST_F(FileUtilsTest, CopyFileFailsWithoutATrace)
{
    test::writeFile(at(U"to"), "old");
    test::writeFile(at(U"from"), "new");
    ASSERT_TRUE(FileUtils::createDirectoriesWithPerm(at(U"folder")));
    EXPECT_FALSE(FileUtils::copyFile(at(U"missing"), at(U"to"), true));
    EXPECT_FALSE(FileUtils::copyFile(at(U"folder"), at(U"to"), true));
    EXPECT_FALSE(FileUtils::copyFile(at(U"from"), at(U"folder"), true));
    EXPECT_FALSE(FileUtils::copyFile(at(U"from"), at(U"folder/"), true));
    EXPECT_FALSE(FileUtils::copyFile(at(U"from"), at(U"missing/to"), true));
    EXPECT_EQ(test::readFile(at(U"to")), "old");
    EXPECT_THAT(names(), ElementsAre("folder", "from", "to"));
    EXPECT_THAT(test::listFolder(at(U"folder")), IsEmpty());
}

TEST_F(FileUtilsTest, CopyFileOntoItselfLosesNothing)
{
    test::writeFile(at(U"a"), "text");
    EXPECT_TRUE(FileUtils::copyFile(at(U"a"), at(U"a"), true));
    EXPECT_FALSE(FileUtils::copyFile(at(U"a"), at(U"a"), false));
    EXPECT_EQ(test::readFile(at(U"a")), "text");
    EXPECT_THAT(names(), ElementsAre("a"));
}

TEST_F(FileUtilsTest, NamesOfTheGreatestLengthCanBeReplaced)
{
    const fileString path = root_ / std::u32string(255, U'n');
    test::writeFile(at(U"from"), "new");
    EXPECT_TRUE(FileUtils::copyFile(at(U"from"), path, true));
    EXPECT_TRUE(FileUtils::copyFile(at(U"from"), path, true));
    EXPECT_EQ(test::readFile(path), "new");
}

// ---- Moves ---------------------------------------------------------------------------------------

TEST_F(FileUtilsTest, MoveFileMoves)
{
    ASSERT_TRUE(FileUtils::createDirectoriesWithPerm(at(U"folder")));
    test::writeFile(at(U"from"), "text");
    EXPECT_TRUE(FileUtils::moveFile(at(U"from"), at(U"folder/to"), false));
    EXPECT_EQ(test::readFile(at(U"folder/to")), "text");
    EXPECT_THAT(names(), ElementsAre("folder"));
}

TEST_F(FileUtilsTest, MoveFileKeepsAnExistingTargetUnlessToldOtherwise)
{
    test::writeFile(at(U"from"), "new");
    test::writeFile(at(U"to"), "old");
    EXPECT_FALSE(FileUtils::moveFile(at(U"from"), at(U"to"), false));
    EXPECT_EQ(test::readFile(at(U"to")), "old");
    EXPECT_EQ(test::readFile(at(U"from")), "new");
    EXPECT_TRUE(FileUtils::moveFile(at(U"from"), at(U"to"), true));
    EXPECT_EQ(test::readFile(at(U"to")), "new");
    EXPECT_THAT(names(), ElementsAre("to"));
}

TEST_F(FileUtilsTest, MoveFileFailsWithoutATrace)
{
    test::writeFile(at(U"from"), "new");
    ASSERT_TRUE(FileUtils::createDirectoriesWithPerm(at(U"folder")));
    EXPECT_FALSE(FileUtils::moveFile(at(U"missing"), at(U"from"), true));
    EXPECT_FALSE(FileUtils::moveFile(at(U"from"), at(U"folder"), true));
    EXPECT_FALSE(FileUtils::moveFile(at(U"from"), at(U"missing/to"), true));
    EXPECT_FALSE(FileUtils::moveFile(at(U"folder"), at(U"other"), true)) << "it moves files";
    EXPECT_EQ(test::readFile(at(U"from")), "new");
    EXPECT_THAT(names(), ElementsAre("folder", "from"));
}

TEST_F(FileUtilsTest, MoveFileOntoItselfLosesNothing)
{
    test::writeFile(at(U"a"), "text");
    EXPECT_TRUE(FileUtils::moveFile(at(U"a"), at(U"a"), true));
    EXPECT_TRUE(FileUtils::moveFile(at(U"a"), at(U"./a"), true));
    EXPECT_EQ(test::readFile(at(U"a")), "text");
}

TEST_F(FileUtilsTest, RenameFileReplacesFilesOnly)
{
    test::writeFile(at(U"a"), "a");
    test::writeFile(at(U"b"), "b");
    ASSERT_TRUE(FileUtils::createDirectoriesWithPerm(at(U"folder")));
    ASSERT_TRUE(FileUtils::createDirectoriesWithPerm(at(U"empty")));
    EXPECT_TRUE(FileUtils::renameFile(at(U"a"), at(U"b")));
    EXPECT_EQ(test::readFile(at(U"b")), "a");
    EXPECT_FALSE(FileUtils::renameFile(at(U"b"), at(U"folder")));
    EXPECT_FALSE(FileUtils::renameFile(at(U"missing"), at(U"b")));
    EXPECT_FALSE(FileUtils::renameFile(at(U"folder"), at(U"empty")));
    EXPECT_TRUE(FileUtils::renameFile(at(U"folder"), at(U"other")));
    EXPECT_THAT(names(), ElementsAre("b", "empty", "other"));
}

// ---- Questions -----------------------------------------------------------------------------------

TEST_F(FileUtilsTest, CanWriteFileAnswersForFilesPresentAndToCome)
{
    test::writeFile(at(U"a"), "x");
    EXPECT_TRUE(FileUtils::canWriteFile(at(U"a")));
    EXPECT_TRUE(FileUtils::canWriteFile(at(U"new")));
    EXPECT_FALSE(FileUtils::canWriteFile(at(U"missing/new")));
    EXPECT_FALSE(FileUtils::canWriteFile(at(U"a/new")));
    EXPECT_FALSE(FileUtils::canWriteFile(root_.path()));
    EXPECT_FALSE(FileUtils::canWriteFile(at(U"folder/")));
    EXPECT_THAT(names(), ElementsAre("a"));
    EXPECT_EQ(test::readFile(at(U"a")), "x");
}

TEST_F(FileUtilsTest, FileSizeCountsBytes)
{
    test::writeFile(at(U"a"), std::string(1234567, 'x'));
    test::writeFile(at(U"empty"), "");
    EXPECT_EQ(FileUtils::fileSize(at(U"a")), 1234567);
    EXPECT_EQ(FileUtils::fileSize(at(U"empty")), 0);
    EXPECT_EQ(FileUtils::fileSize(at(U"missing")), -1);
    EXPECT_EQ(FileUtils::fileSize(root_.path()), -1);
}

TEST_F(FileUtilsTest, AccessIsGrantedToWhatIsThere)
{
    test::writeFile(at(U"a"), "x");
    EXPECT_TRUE(FileUtils::setFilePermEveryoneFullAccess(at(U"a")));
    EXPECT_TRUE(FileUtils::makeFileWritable(at(U"a")));
    EXPECT_FALSE(FileUtils::setFilePermEveryoneFullAccess(at(U"missing")));
    EXPECT_FALSE(FileUtils::makeFileWritable(at(U"missing")));
}

}  // namespace
