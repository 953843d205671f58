#include <VelkCommon/Files/FileUtils.h>
#include <VelkCommon/Files/ReplacementFile.h>

#include "PosixFiles.h"
#include "support/Processes.h"
#include "support/TestHost.h"
#include "support/Threads.h"

#include <gmock/gmock.h>

#include <fcntl.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <unistd.h>

namespace {

using testing::ElementsAre;
using testing::IsEmpty;

class FileUtilsPosix : public test::PosixFiles
{
protected:
    void makeLinksOfAllKinds() const
    {
        test::writeFile(at(U"target"), "x");
        makeFolder(at(U"folder"));
        makeLink(at(U"target"), at(U"link"));
        makeLink(at(U"folder"), at(U"folderlink"));
        makeLink(at(U"nowhere"), at(U"dangling"));
    }
};

// ---- Folders of one user -------------------------------------------------------------------------

TEST_F(FileUtilsPosix, APrivateDirectoryIsClosedToOthers)
{
    EXPECT_TRUE(FileUtils::createPrivateDirectory(at(U"new/")));
    EXPECT_EQ(modeOf(at(U"new")), 0700U);
    EXPECT_TRUE(FileUtils::createPrivateDirectory(at(U"new"))) << "it is there";
    makeFolder(at(U"open"));
    EXPECT_FALSE(FileUtils::createPrivateDirectory(at(U"open")));
    EXPECT_EQ(modeOf(at(U"open")), 0755U);
    test::asOrdinaryUser([this] { EXPECT_FALSE(FileUtils::createPrivateDirectory(at(U"new"))) << "another user's"; });
}

TEST_F(FileUtilsPosix, APrivateDirectoryIsNoLink)
{
    ASSERT_TRUE(FileUtils::createPrivateDirectory(at(U"private")));
    makeLink(at(U"private"), at(U"link"));
    EXPECT_FALSE(FileUtils::createPrivateDirectory(at(U"link")));
    EXPECT_FALSE(FileUtils::createPrivateDirectory(at(U"link/")));
}

// ---- Links ---------------------------------------------------------------------------------------

TEST_F(FileUtilsPosix, IsLinkLooksAtTheNameItself)
{
    makeLinksOfAllKinds();
    for (const char32_t* name : {U"link", U"folderlink", U"folderlink/", U"dangling"})
        EXPECT_TRUE(FileUtils::isLink(at(name))) << at(name);
    for (const char32_t* name : {U"target", U"folder", U"folder/", U"none", U"link/none"})
        EXPECT_FALSE(FileUtils::isLink(at(name))) << at(name);
    EXPECT_FALSE(FileUtils::isLink({}));
}

TEST_F(FileUtilsPosix, RemovePathRemovesTheLinkNotItsTarget)
{
    makeLinksOfAllKinds();
    EXPECT_TRUE(FileUtils::removePath(at(U"link"), FileUtils::noFlags));
    EXPECT_TRUE(FileUtils::removePath(at(U"folderlink"), FileUtils::overrideReadOnly));
    EXPECT_TRUE(FileUtils::removePath(at(U"dangling"), FileUtils::noFlags));
    EXPECT_THAT(names(), ElementsAre("folder", "target"));
}

TEST_F(FileUtilsPosix, LinksInARemovedTreeLeadNowhere)
{
    makeFolder(at(U"outside"));
    test::writeFile(at(U"outside/kept"), "x");
    makeFolder(at(U"tree"));
    makeFolder(at(U"tree/deep"));
    makeLink(at(U"outside"), at(U"tree/folder"));
    makeLink(at(U"outside/kept"), at(U"tree/deep/file"));
    makeLink(at(U"nowhere"), at(U"tree/dangling"));
    makeLink(at(U"tree"), at(U"tree/deep/loop"));
    EXPECT_TRUE(FileUtils::removeDirectoryAndFiles(at(U"tree"), FileUtils::overrideReadOnly));
    EXPECT_THAT(names(), ElementsAre("outside"));
    EXPECT_EQ(test::readFile(at(U"outside/kept")), "x");
}

TEST_F(FileUtilsPosix, ALinkInTheTreesPlaceIsOnlyUnlinked)
{
    makeFolder(at(U"outside"));
    test::writeFile(at(U"outside/kept"), "x");
    for (const char32_t* name : {U"link", U"link/", U"link//"}) {
        makeLink(at(U"outside"), at(U"link"));
        EXPECT_TRUE(FileUtils::removeDirectoryAndFiles(at(name), FileUtils::overrideReadOnly));
        EXPECT_THAT(names(), ElementsAre("outside"));
        EXPECT_EQ(test::readFile(at(U"outside/kept")), "x");
    }
}

// A second thread keeps putting a link in a folder's place while the tree is removed.
TEST_F(FileUtilsPosix, ALinkPutInPlaceMeanwhileLeadsNowhere)
{
    makeFolder(at(U"outside"));
    test::writeFile(at(U"outside/kept"), "x");
    makeLink(at(U"outside"), at(U"link"));
    makeFolder(at(U"spare"));
    test::writeFile(at(U"spare/file"), "x");
    for (int round = 0; round < 100; ++round) {
        makeFolder(at(U"tree"));
        makeFolder(at(U"tree/swapped"));
        {
            const std::string inside = at(U"tree/swapped").utf8();
            const std::string link = at(U"link").utf8();
            const test::Repeatedly attacker(
                [&] { ::renameat2(AT_FDCWD, inside.c_str(), AT_FDCWD, link.c_str(), RENAME_EXCHANGE); });
            FileUtils::removeDirectoryAndFiles(at(U"tree"), FileUtils::overrideReadOnly);
        }
        ASSERT_EQ(test::readFile(at(U"outside/kept")), "x");
        ::unlink(at(U"link").utf8().c_str());
        ::rmdir(at(U"link").utf8().c_str());
        FileUtils::removeDirectoryAndFiles(at(U"tree"), FileUtils::overrideReadOnly);
        makeLink(at(U"outside"), at(U"link"));
    }
}

TEST_F(FileUtilsPosix, CopyAndMoveReplaceALinkNotItsTarget)
{
    test::writeFile(at(U"protected"), "protected");
    for (const bool moves : {false, true}) {
        test::writeFile(at(U"new"), "new");
        makeLink(at(U"protected"), at(U"link"));
        EXPECT_FALSE(FileUtils::copyFile(at(U"new"), at(U"link"), false));
        EXPECT_FALSE(FileUtils::moveFile(at(U"new"), at(U"link"), false));
        EXPECT_TRUE(moves ? FileUtils::moveFile(at(U"new"), at(U"link"), true)
                          : FileUtils::copyFile(at(U"new"), at(U"link"), true));
        EXPECT_EQ(test::readFile(at(U"protected")), "protected");
        EXPECT_EQ(test::readFile(at(U"link")), "new");
        EXPECT_TRUE(FileUtils::removePath(at(U"link"), FileUtils::noFlags));
    }
}

TEST_F(FileUtilsPosix, ALinkToNowhereCountsAsAnExistingTarget)
{
    test::writeFile(at(U"new"), "new");
    makeLink(at(U"nowhere"), at(U"link"));
    EXPECT_FALSE(FileUtils::copyFile(at(U"new"), at(U"link"), false));
    EXPECT_FALSE(FileUtils::moveFile(at(U"new"), at(U"link"), false));
    EXPECT_THAT(names(), ElementsAre("link", "new"));
}

TEST_F(FileUtilsPosix, MovingOneNameOfAFileToAnotherLeavesOne)
{
    test::writeFile(at(U"a"), "x");
    ASSERT_EQ(::link(at(U"a").utf8().c_str(), at(U"b").utf8().c_str()), 0);
    EXPECT_TRUE(FileUtils::moveFile(at(U"a"), at(U"b"), true));
    EXPECT_THAT(names(), ElementsAre("b"));
    EXPECT_EQ(test::readFile(at(U"b")), "x");
}

TEST_F(FileUtilsPosix, MovingAFileToItselfByAnotherWayLosesNothing)
{
    makeFolder(at(U"folder"));
    makeLink(at(U"folder"), at(U"link"));
    test::writeFile(at(U"folder/a"), "x");
    EXPECT_TRUE(FileUtils::moveFile(at(U"folder/a"), at(U"link/a"), true));
    EXPECT_EQ(test::readFile(at(U"folder/a")), "x");
}

// ---- Trees ---------------------------------------------------------------------------------------

TEST_F(FileUtilsPosix, RootsAndRelativePathsAreRefused)
{
    test::inChild([this] {
        ASSERT_EQ(::chdir(root_.path().utf8().c_str()), 0);
        makeFolder(at(U"tree"));
        for (const char* path : {"tree", "./tree", "../tree", ".", "..", "tree/"})
            EXPECT_FALSE(FileUtils::removeDirectoryAndFiles(std::string(path), FileUtils::overrideReadOnly)) << path;
        EXPECT_THAT(names(), ElementsAre("tree"));
    });
    // As an ordinary user, who could do no harm if these paths were not refused.
    test::asOrdinaryUser([] {
        EXPECT_FALSE(FileUtils::removeDirectoryAndFiles(std::string("/"), FileUtils::noFlags));
        EXPECT_FALSE(FileUtils::removeDirectoryAndFiles(std::string("//"), FileUtils::noFlags));
    });
}

// The tree is too deep for recursion, for one descriptor per level and for the longest path of the system.
TEST_F(FileUtilsPosix, DeepTreesAreRemoved)
{
    constexpr int depth = 5000;
    makeFolder(at(U"tree"));
    int folder = ::open(at(U"tree").utf8().c_str(), O_RDONLY | O_DIRECTORY);
    for (int level = 0; level < depth; ++level) {
        ASSERT_EQ(::mkdirat(folder, "folder", 0755), 0);
        const int next = ::openat(folder, "folder", O_RDONLY | O_DIRECTORY);
        ::close(folder);
        folder = next;
    }
    ::close(::openat(folder, "file", O_CREAT | O_WRONLY, 0644));
    ::close(folder);
    test::inChild([this] {
        const struct rlimit few = {32, 32};
        ASSERT_EQ(::setrlimit(RLIMIT_NOFILE, &few), 0);
        EXPECT_TRUE(FileUtils::removeDirectoryAndFiles(at(U"tree"), FileUtils::overrideReadOnly));
    });
    EXPECT_THAT(names(), IsEmpty());
}

TEST_F(FileUtilsPosix, ReadOnlyFoldersInATreeGiveWayToTheFlagOnly)
{
    test::asOrdinaryUser([this] {
        makeFolder(at(U"tree"));
        makeFolder(at(U"tree/readonly"));
        makeFolder(at(U"tree/closed"));
        makeFolder(at(U"tree/free"));
        test::writeFile(at(U"tree/readonly/file"), "x");
        test::writeFile(at(U"tree/closed/file"), "x");
        test::writeFile(at(U"tree/free/file"), "x");
        setMode(at(U"tree/readonly"), 0555);
        setMode(at(U"tree/closed"), 0000);
        EXPECT_FALSE(FileUtils::removeDirectoryAndFiles(at(U"tree"), FileUtils::noFlags));
        EXPECT_THAT(test::listFolder(at(U"tree")), ElementsAre("closed", "readonly")) << "the rest is removed";
        EXPECT_TRUE(FileUtils::removeDirectoryAndFiles(at(U"tree"), FileUtils::overrideReadOnly));
        EXPECT_THAT(names(), IsEmpty());
    });
}

TEST_F(FileUtilsPosix, NamesThatAreNotTextAreRemovedToo)
{
    makeFolder(at(U"tree"));
    const std::string odd = at(U"tree").utf8() + "/caf\xE9\xFF";
    test::writeFile(odd, "x");
    EXPECT_TRUE(FileUtils::copyFile(odd, odd + "2", false));
    EXPECT_EQ(test::readFile(fileString(fileString(odd + "2").unicodeString())), "x");
    EXPECT_EQ(FileUtils::fileSize(odd), 1);
    EXPECT_TRUE(FileUtils::removeDirectoryAndFiles(at(U"tree"), FileUtils::overrideReadOnly));
    EXPECT_THAT(names(), IsEmpty());
}

// ---- Permissions ---------------------------------------------------------------------------------

TEST_F(FileUtilsPosix, NewFoldersAreForEveryUserWhateverTheMask)
{
    test::inChild([this] {
        ::umask(077);
        makeFolder(at(U"old"));
        EXPECT_TRUE(FileUtils::createDirectoriesWithPerm(at(U"old/a/b")));
        EXPECT_EQ(modeOf(at(U"old/a")), mode_t{0777});
        EXPECT_EQ(modeOf(at(U"old/a/b")), mode_t{0777});
        EXPECT_EQ(modeOf(at(U"old")), mode_t{0700}) << "it was there";
    });
}

TEST_F(FileUtilsPosix, EveryoneGetsFullAccess)
{
    test::writeFile(at(U"file"), "x");
    makeFolder(at(U"folder"));
    setMode(at(U"file"), 0400);
    setMode(at(U"folder"), 0500);
    EXPECT_TRUE(FileUtils::setFilePermEveryoneFullAccess(at(U"file")));
    EXPECT_TRUE(FileUtils::setFilePermEveryoneFullAccess(at(U"folder")));
    EXPECT_EQ(modeOf(at(U"file")), mode_t{0666});
    EXPECT_EQ(modeOf(at(U"folder")), mode_t{0777});
}

TEST_F(FileUtilsPosix, MakeFileWritableAddsTheOwnersRightOnly)
{
    test::asOrdinaryUser([this] {
        test::writeFile(at(U"file"), "x");
        setMode(at(U"file"), 0444);
        EXPECT_FALSE(FileUtils::canWriteFile(at(U"file")));
        EXPECT_TRUE(FileUtils::makeFileWritable(at(U"file")));
        EXPECT_EQ(modeOf(at(U"file")), mode_t{0644});
        EXPECT_TRUE(FileUtils::canWriteFile(at(U"file")));
    });
}

TEST_F(FileUtilsPosix, CanReplaceWhatTheFolderLetsGo)
{
    const fileString held = at(U"held");
    FileUtils::createDirectoriesWithPerm(held);
    test::writeFile(held / U"file", "x");
    setMode(held / U"file", 0666);
    test::asOrdinaryUser([this] {
        test::writeFile(at(U"own"), "x");
        EXPECT_TRUE(FileUtils::canReplaceFile(at(U"own")));
        EXPECT_FALSE(FileUtils::canReplaceFile(at(U"missing")));
    });
    for (const mode_t mode : {mode_t{0755}, mode_t{01777}}) {
        setMode(held, mode);
        test::asOrdinaryUser([&] {
            EXPECT_TRUE(FileUtils::canWriteFile(held / U"file"));
            EXPECT_FALSE(FileUtils::canReplaceFile(held / U"file"));
        });
        EXPECT_TRUE(FileUtils::canReplaceFile(held / U"file"));
    }
}

// It gets its name while it is still held against those who remove leftovers.
TEST_F(FileUtilsPosix, AFileThatTakesTheNameOfAnotherDoesNotLookAsIfItWereWritten)
{
    const ReplacementFile fresh(at(U"file"));
    ASSERT_TRUE(fresh.isOpen());
    EXPECT_FALSE(FileUtils::isPathWriteLocked(fresh.path()));
    EXPECT_TRUE(FileUtils::canWriteFile(fresh.path()));
}

TEST_F(FileUtilsPosix, ACopyHasTheModeOfItsSource)
{
    test::writeFile(at(U"from"), "new");
    test::writeFile(at(U"to"), "old");
    setMode(at(U"from"), 0440);
    setMode(at(U"to"), 0666);
    EXPECT_TRUE(FileUtils::copyFile(at(U"from"), at(U"to"), true));
    EXPECT_TRUE(FileUtils::copyFile(at(U"from"), at(U"fresh"), true));
    EXPECT_EQ(modeOf(at(U"to")), mode_t{0440});
    EXPECT_EQ(modeOf(at(U"fresh")), mode_t{0440});
}

TEST_F(FileUtilsPosix, AReadOnlyFolderRefusesEverything)
{
    test::writeFile(at(U"outside"), "outside");
    setMode(at(U"outside"), 0666);
    makeFolder(at(U"folder"));
    test::writeFile(at(U"folder/file"), "x");
    setMode(at(U"folder"), 0555);
    test::asOrdinaryUser([this] {
        EXPECT_FALSE(FileUtils::removePath(at(U"folder/file"), FileUtils::overrideReadOnly));
        EXPECT_FALSE(FileUtils::copyFile(at(U"outside"), at(U"folder/file"), true));
        EXPECT_FALSE(FileUtils::copyFile(at(U"outside"), at(U"folder/new"), true));
        EXPECT_FALSE(FileUtils::moveFile(at(U"outside"), at(U"folder/file"), true));
        EXPECT_FALSE(FileUtils::moveFile(at(U"folder/file"), at(U"moved"), true));
        EXPECT_FALSE(FileUtils::renameFile(at(U"folder/file"), at(U"folder/other")));
        EXPECT_FALSE(FileUtils::canWriteFile(at(U"folder/new")));
        EXPECT_FALSE(FileUtils::createDirectoriesWithPerm(at(U"folder/a/b")));
        EXPECT_FALSE(FileUtils::removeDirectoryAndFiles(at(U"folder"), FileUtils::overrideReadOnly));
    });
    EXPECT_THAT(names(), ElementsAre("folder", "outside"));
    EXPECT_THAT(test::listFolder(at(U"folder")), ElementsAre("file"));
    EXPECT_EQ(test::readFile(at(U"folder/file")), "x");
}

}  // namespace
