#include "host/fixtures/ExitCodes.h"
#include "host/fixtures/Fixtures.h"
#include "host/fixtures/ProgramRun.h"

#include "support/Processes.h"

#include "host/catalog/CatalogFile.h"
#include "host/installation/LibrarySearch.h"

#include <filesystem>

#include <sys/stat.h>

using test::ProgramRun;
using testing::HasSubstr;

namespace {

class UnreadablePath : public test::TestHost
{
protected:
    std::string errorsOf(const std::vector<std::string>& arguments) const
    {
        const ProgramRun run = test::runProgram(folder(), arguments);
        EXPECT_NE(run.exitCode, 0);
        return run.errors;
    }

    std::string path(const char* name) const { return (folder() / fileString(std::string(name))).utf8(); }
};

TEST_F(UnreadablePath, IsALinkToNothing)
{
    std::filesystem::create_symlink("nowhere", path("link"));
    std::filesystem::create_symlink("loop", path("loop"));
    for (const std::string name : {"link", "loop"}) {
        const std::string reason = "velk: " + name + ": is a link to something that cannot be found\n";
        EXPECT_EQ(errorsOf({"search", "x", "-l", name}), reason);
        EXPECT_EQ(errorsOf({"catalog", "build", name, "-o", "x.calib"}), reason);
    }
}

TEST_F(UnreadablePath, IsBelowAFile)
{
    test::writeFile(folder() / U"file", "text");
    EXPECT_EQ(errorsOf({"search", "x", "-l", "file/a.calib"}),
              "velk: file/a.calib: does not exist: file is not a folder\n");
    EXPECT_EQ(errorsOf({"catalog", "build", "file/x/a.csv", "-o", "x.calib"}),
              "velk: file/x/a.csv: does not exist: file is not a folder\n");
}

TEST_F(UnreadablePath, IsAnInstallationsFolder)
{
    VelkHost::writeCatalog(test::smallCatalog(), folder() / U"a.calib");
    std::filesystem::create_directories(path("home/core"));
    std::filesystem::copy(path("a.calib"), path("home/core/a.calib"));
    test::writeFile(folder() / U"home/bonus", "text");
    const ProgramRun run = test::runProgram(folder(), {"search", "chair", "--home", "home"});
    EXPECT_EQ(run.exitCode, test::exitCode::brokenLibrary);
    EXPECT_THAT(run.errors, HasSubstr("home/bonus"));
    EXPECT_THAT(run.errors, HasSubstr("is not a folder\n"));
    EXPECT_THAT(run.output, HasSubstr("4 hits. ")) << "the others are searched";
}

TEST_F(UnreadablePath, IsAFileInPlaceOfAnInstallation)
{
    test::writeFile(folder() / U"file", "text");
    const std::string errors = errorsOf({"search", "chair", "--home", "file"});
    EXPECT_THAT(errors, HasSubstr("does not exist: " + path("file") + " is not a folder\n"));
    EXPECT_THAT(errors, testing::Not(HasSubstr("no libraries are installed")));
}

TEST_F(UnreadablePath, IsAFolderThatItsUserMayNotRead)
{
    VelkHost::writeCatalog(test::smallCatalog(), folder() / U"a.calib");
    std::filesystem::create_directories(path("closed/inner"));
    ASSERT_EQ(::chmod(folder().utf8().c_str(), 0777), 0);
    ASSERT_EQ(::chmod(path("closed").c_str(), 0), 0);
    test::asOrdinaryUser([this] {
        const VelkHost::LibrarySet libraries = VelkHost::loadLibraries(
            {folder() / U"closed", folder() / U"closed/inner", folder() / U"closed/a.calib", folder() / U"a.calib"});
        EXPECT_EQ(libraries.loaded.size(), 1U) << "the others are read";
        ASSERT_EQ(libraries.broken.size(), 3U);
        for (const VelkHost::BrokenLibrary& library : libraries.broken)
            EXPECT_EQ(library.reason, "cannot be read: Permission denied") << library.path.utf8();
    });
    ASSERT_EQ(::chmod(path("closed").c_str(), 0777), 0);
}

}  // namespace
