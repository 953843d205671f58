// Ctrl-C while archives are unpacked, merged and packed.
#include "host/fixtures/ExitCodes.h"
#include "host/fixtures/Fixtures.h"
#include "support/Processes.h"
#include "support/QtProcesses.h"
#include "support/ScriptedServer.h"

#include "host/support/ShownProgress.h"

#include <VelkCommon/Archive/ZipUtils.h>
#include <VelkCommon/Files/FileUtils.h>
#include <VelkLibrary/LibraryImport.h>

#include <QProcess>

#include <csignal>
#include <string>
#include <sys/types.h>

using testing::ElementsAre;
using testing::IsEmpty;

namespace {

class ArchiveInterrupt : public test::TestHost
{
protected:
    /// Starts the program in its folder, with its temporary files in another.
    void start(QProcess& process, const std::vector<std::string>& arguments) const
    {
        FileUtils::createDirectoriesWithPerm(work_);
        FileUtils::createDirectoriesWithPerm(temporary_);
        QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
        environment.insert(QStringLiteral("TMPDIR"), QString::fromStdString(temporary_.utf8()));
        process.setProcessEnvironment(environment);
        process.setWorkingDirectory(QString::fromStdString(work_.utf8()));
        QStringList list;
        for (const std::string& argument : arguments)
            list << QString::fromStdString(argument);
        process.start(QStringLiteral(VELK_PROGRAM), list);
        test::waitForStart(process);
    }

    /// Interrupts the program as Ctrl-C does; returns its exit code.
    static int interrupt(QProcess& process)
    {
        EXPECT_EQ(::kill(static_cast<pid_t>(process.processId()), SIGINT), 0);
        test::waitForEnd(process);
        EXPECT_EQ(process.exitStatus(), QProcess::NormalExit);
        return process.exitCode();
    }

    /// The files anywhere below the folder of temporary files.
    std::vector<std::string> temporaryFiles() const
    {
        std::vector<std::string> files;
        for (const std::string& folder : test::listFolder(temporary_))
            for (const std::string& file : test::listFolder(temporary_ / fileString(folder)))
                files.push_back(file);
        return files;
    }

    fileString work_ = folder() / U"work";
    fileString temporary_ = folder() / U"tmp";
};

TEST_F(ArchiveInterrupt, ADownload)
{
    test::ScriptedServer server;
    test::Reply reply = test::Reply::file(std::string(100'000, 'x'), "tag");
    test::Gate gate;
    reply.block = 50'000;
    reply.beforeBlock = gate;
    server.on("/house.calibz", reply);
    QProcess process;
    start(process, {"unpack", server.url("/house.calibz")});
    gate.waitForArrivals(1);
    EXPECT_EQ(interrupt(process), test::exitCode::cancelled);
    EXPECT_THAT(test::listFolder(work_), IsEmpty());
    EXPECT_THAT(temporaryFiles(), IsEmpty());
}

TEST_F(ArchiveInterrupt, AnUnpack)
{
    test::writeZip(folder() / U"house.calibz", {{"a.png", "picture"}, {"house.calib", "database"}});
    test::inChild([&] {
        VelkHost::Output output;
        const auto progress =
            std::make_shared<VelkHost::ShownProgress>(output, VelkHost::ShownProgress::Cancel::answered);
        EXPECT_TRUE(LibraryImport::unpack(folder() / U"house.calibz", true, progress).first);
        std::raise(SIGINT);
        const auto [first, second] = LibraryImport::unpack(folder() / U"house.calibz", false, progress);
        EXPECT_FALSE(first || second);
    });
    EXPECT_FALSE((folder() / U"house.calib").pathExists());
    EXPECT_FALSE((folder() / U"house.zip").pathExists());
}

TEST_F(ArchiveInterrupt, AMerge)
{
    const fileString source = folder() / U"source.zip";
    const fileString destination = folder() / U"dest.zip";
    test::writeZip(source, {{"a", "1"}});
    test::writeZip(destination, {{"b", "2"}});
    const std::string old = test::readFile(destination);
    test::inChild([&] {
        VelkHost::Output output;
        VelkHost::ShownProgress progress(output, VelkHost::ShownProgress::Cancel::thrown);
        std::raise(SIGINT);
        EXPECT_THROW(LibraryImport::moveArchivedTextures(source, destination, &progress), VelkHost::Interrupted);
    });
    EXPECT_EQ(test::readFile(destination), old);
    EXPECT_THAT(test::listFolder(folder() / U"temp"), IsEmpty());
}

// Whenever Ctrl-C comes, there is the old file or the new one, and nothing else.
TEST_F(ArchiveInterrupt, APack)
{
    FileUtils::createDirectoriesWithPerm(work_ / U"files");
    test::writeFile(work_ / U"house.calib", std::string(20'000'000, 'x'));
    test::writeFile(work_ / U"files/a.png", std::string(20'000'000, 'y'));
    test::writeFile(work_ / U"house.calibz", "old");
    QProcess process;
    start(process, {"catalog", "pack", "house.calib", "--files", "files", "-o", "house.calibz"});
    test::repeatUntil([&] { return process.state() != QProcess::Running || test::listFolder(work_).size() > 3; },
                      [&] { process.waitForFinished(1); });
    const int code = process.state() == QProcess::Running ? interrupt(process) : process.exitCode();
    EXPECT_TRUE(code == test::exitCode::cancelled || code == 0) << code;
    EXPECT_EQ(test::readFile(work_ / U"house.calibz") == "old", code == test::exitCode::cancelled);
    EXPECT_EQ(ZipUtils::getSizeOfArchive(work_ / U"house.calibz"), code == test::exitCode::cancelled ? 0u : 2u);
    EXPECT_THAT(test::listFolder(work_), ElementsAre("files", "house.calib", "house.calibz"));
}

}  // namespace
