#include <VelkCommon/Files/PathUtils.h>

#include "support/Processes.h"
#include "support/TestHost.h"
#include "support/Threads.h"

#include <sys/stat.h>
#include <unistd.h>

#include <cstdlib>
#include <set>

namespace {

// The environment belongs to the whole process, so each test runs in a process of its own.
class DefaultFolders : public testing::Test
{
protected:
    void inProcess(const std::function<void()>& work)
    {
        test::inChild([&] {
            Velk::installHost({});
            ::setenv("TMPDIR", folder_.path().utf8().c_str(), 1);
            work();
        });
    }

    static std::string temp() { return PathUtils::getObject().getTempPath().utf8(); }
    std::string usual() const { return folder_.path().utf8() + "/velk-" + std::to_string(::geteuid()); }

    static mode_t modeOf(const std::string& path)
    {
        struct stat status = {};
        EXPECT_EQ(::lstat(path.c_str(), &status), 0) << path;
        return status.st_mode;
    }

    // Checks what is expected of a temporary folder that replaces the usual one.
    void expectAnother(const std::string& path) const
    {
        EXPECT_TRUE(path.starts_with(usual() + "-")) << path;
        EXPECT_EQ(modeOf(path.substr(0, path.size() - 1)), mode_t{S_IFDIR | 0700});
        EXPECT_EQ(temp(), path) << "not remembered";
    }

    test::TemporaryFolder folder_;
};

TEST_F(DefaultFolders, FollowTheDesktopsConvention)
{
    inProcess([] {
        ::setenv("XDG_DATA_HOME", "/data", 1);
        EXPECT_EQ(PathUtils::getObject().getUserDatabasePath().utf8(), "/data/velk/user/");
        ::setenv("XDG_DATA_HOME", "relative/does/not/count", 1);
        ::setenv("HOME", "/home/ann", 1);
        EXPECT_EQ(PathUtils::getObject().getUserTexturePath().utf8(), "/home/ann/.local/share/velk/textures/");
        ::unsetenv("XDG_DATA_HOME");
        ::unsetenv("HOME");
        EXPECT_TRUE(PathUtils::getObject().getUserTexturePath().utf8().starts_with("/"));
    });
}

TEST_F(DefaultFolders, AreDifferentFromEachOther)
{
    inProcess([] {
        const PathUtils& paths = PathUtils::getObject();
        const std::set<fileString> all{
            paths.getUserDatabasePath(),         paths.getCoreLibraryDatabasePath(),
            paths.getBonusLibraryDatabasePath(), paths.getManufacturerLibraryPath(),
            paths.getManufacturerDataPath(),     paths.getProprietaryLibraryReferencedFilesPath(),
            paths.getUserTexturePath(),          paths.getTempPath()};
        EXPECT_EQ(all.size(), 8U);
    });
}

TEST_F(DefaultFolders, TheTemporaryOneIsThisUsersAlone)
{
    inProcess([this] {
        ::umask(0);
        EXPECT_EQ(temp(), usual() + "/");
        EXPECT_EQ(modeOf(usual()), mode_t{S_IFDIR | 0700});
        EXPECT_EQ(temp(), usual() + "/");
    });
}

TEST_F(DefaultFolders, ALinkInTheTemporaryFoldersPlaceIsNotTaken)
{
    inProcess([this] {
        const std::string victim = folder_.path().utf8() + "/victim";
        ASSERT_EQ(::mkdir(victim.c_str(), 0700), 0);
        ASSERT_EQ(::symlink(victim.c_str(), usual().c_str()), 0);
        expectAnother(temp());
        EXPECT_TRUE(test::listFolder(victim).empty());
    });
}

TEST_F(DefaultFolders, AFolderOpenToOthersIsNotTaken)
{
    inProcess([this] {
        ASSERT_EQ(::mkdir(usual().c_str(), 0700), 0);
        ASSERT_EQ(::chmod(usual().c_str(), 0777), 0);
        expectAnother(temp());
    });
}

TEST_F(DefaultFolders, AnotherUsersFolderIsNotTaken)
{
    inProcess([this] {
        ASSERT_EQ(::mkdir(usual().c_str(), 0700), 0);
        // Only root can give a folder to another user; anybody else has to use a folder with the wrong mode.
        const bool root = ::geteuid() == 0;
        ASSERT_EQ(root ? ::chown(usual().c_str(), 65534, 65534) : ::chmod(usual().c_str(), 0711), 0);
        expectAnother(temp());
    });
}

TEST_F(DefaultFolders, ALostFolderIsMadeAgain)
{
    inProcess([this] {
        ASSERT_EQ(::symlink("nowhere", usual().c_str()), 0);
        const std::string first = temp();
        ASSERT_EQ(::rmdir(first.c_str()), 0);
        EXPECT_EQ(modeOf(temp().substr(0, first.size() - 1)), mode_t{S_IFDIR | 0700});
    });
}

TEST_F(DefaultFolders, ThreadsAgreeOnTheTemporaryFolder)
{
    inProcess([this] {
        ASSERT_EQ(::symlink("nowhere", usual().c_str()), 0);
        std::vector<std::string> answers(8);
        test::onThreads(answers.size(), [&](std::size_t i) { answers[i] = temp(); });
        EXPECT_EQ(std::set<std::string>(answers.begin(), answers.end()).size(), 1U);
    });
}

TEST_F(DefaultFolders, AHostsMissingTemporaryFolderIsMadeForThisUserAlone)
{
    inProcess([this] {
        ::umask(0);
        Velk::HostServices services;
        services.folders.temp = folder_ / U"a/b";
        Velk::installHost(services);
        EXPECT_EQ(temp(), folder_.path().utf8() + "/a/b/");
        EXPECT_EQ(modeOf(folder_.path().utf8() + "/a"), mode_t{S_IFDIR | 0700});
        EXPECT_EQ(modeOf(folder_.path().utf8() + "/a/b"), mode_t{S_IFDIR | 0700});
    });
}

}  // namespace
