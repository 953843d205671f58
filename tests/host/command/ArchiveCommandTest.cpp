// Packing, unpacking and merging, through the real program.
#include "host/fixtures/ExitCodes.h"
#include "host/fixtures/Fixtures.h"
#include "host/fixtures/ProgramRun.h"
#include "support/QtProcesses.h"
#include "support/ScriptedServer.h"
#include "support/ZipBuilder.h"

#include <VelkCommon/Archive/ZipUtils.h>
#include <VelkCommon/Files/FileLock.h>
#include <VelkCommon/Files/FileUtils.h>

#include <QProcess>

#include <optional>
#include <string>

using test::ProgramRun;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::UnorderedElementsAre;

namespace {

class ArchiveCommand : public test::TestHost
{
protected:
    ArchiveCommand()
    {
        FileUtils::createDirectoriesWithPerm(work_ / U"files/sub");
        test::writeFile(work_ / U"house.calib", "database");
        test::writeFile(work_ / U"files/a.png", "picture");
        test::writeFile(work_ / U"files/sub/K\u00FCche.txt", "text");
    }

    ProgramRun velk(const std::vector<std::string>& arguments) const
    {
        ProgramRun run = test::runProgram(work_, arguments);
        EXPECT_FALSE(run.crashed) << run.errors;
        return run;
    }

    void pack() const
    {
        EXPECT_EQ(velk({"catalog", "pack", "house.calib", "--files", "files", "-o", "house.calibz"}).exitCode, 0);
    }

    static std::vector<std::string> namesIn(const fileString& archive)
    {
        std::vector<std::string> names;
        for (const fileString& name : ZipUtils::getFilenamesInArchive(archive))
            names.push_back(name.utf8());
        return names;
    }

    fileString work_ = folder() / U"work";
};

TEST_F(ArchiveCommand, PacksALibraryWithItsFiles)
{
    const ProgramRun run = velk({"catalog", "pack", "house.calib", "--files", "files", "-o", "house.calibz"});
    EXPECT_EQ(run.exitCode, 0) << run.errors;
    EXPECT_THAT(run.output, HasSubstr("house.calibz: a library and 2 files, "));
    EXPECT_THAT(namesIn(work_ / U"house.calibz"), ElementsAre("house.calib", "a.png", "sub/K\u00FCche.txt"));
}

TEST_F(ArchiveCommand, UnpacksAfterWhoeverChangesTheLibrary)
{
    constexpr int moment = 300;  // ms, for one that does not wait
    pack();
    FileUtils::createDirectoriesWithPerm(work_ / U"out");
    std::optional other(FileLock::ofFile(work_ / U"out/house.zip", std::chrono::seconds(0), "merging textures"));
    ASSERT_TRUE(*other);
    QProcess velk;
    velk.setWorkingDirectory(QString::fromStdString(work_.utf8()));
    velk.start(QStringLiteral(VELK_PROGRAM),
               {QStringLiteral("unpack"), QStringLiteral("house.calibz"), QStringLiteral("-o"), QStringLiteral("out")});
    test::waitForStart(velk);
    EXPECT_FALSE(velk.waitForFinished(moment));
    test::writeFile(work_ / U"out/house.calib", "of the other one");
    test::writeFile(work_ / U"out/house.zip", "of the other one");
    other.reset();
    test::waitForEnd(velk);
    EXPECT_EQ(velk.exitCode(), 0);
    EXPECT_EQ(test::readFile(work_ / U"out/house.calib"), "database");
    EXPECT_THAT(namesIn(work_ / U"out/house.zip"), UnorderedElementsAre("a.png", "sub/K\u00FCche.txt"));
    EXPECT_THAT(test::listFolder(work_ / U"out"), ElementsAre("house.calib", "house.zip"));
}

TEST_F(ArchiveCommand, UnpacksWhatWasPacked)
{
    pack();
    const ProgramRun run = velk({"unpack", "house.calibz", "-o", "new/folder"});
    EXPECT_EQ(run.exitCode, 0) << run.errors;
    EXPECT_THAT(run.output, HasSubstr("house.calib: 0 KB\n"));
    EXPECT_THAT(run.output, HasSubstr("house.zip: 0 KB, 2 entries\n"));
    EXPECT_THAT(test::listFolder(work_ / U"new/folder"), ElementsAre("house.calib", "house.zip"));
    EXPECT_EQ(test::readFile(work_ / U"new/folder/house.calib"), "database");
    EXPECT_THAT(namesIn(work_ / U"new/folder/house.zip"), ElementsAre("a.png", "sub/K\u00FCche.txt"));
}

TEST_F(ArchiveCommand, UnpacksIntoTheCurrentFolder)
{
    pack();
    FileUtils::removePath(work_ / U"house.calib", FileUtils::noFlags);
    EXPECT_EQ(velk({"unpack", "house.calibz"}).exitCode, 0);
    EXPECT_THAT(test::listFolder(work_), testing::IsSupersetOf({"house.calib", "house.calibz", "house.zip"}));
}

TEST_F(ArchiveCommand, UnpacksFromAnAddress)
{
    pack();
    test::ScriptedServer server;
    server.on("/plain.calibz", test::Reply::file(test::readFile(work_ / U"house.calibz"), "tag"));
    EXPECT_EQ(velk({"unpack", server.url("/plain.calibz?x=/y"), "-o", "out"}).exitCode, 0);
    EXPECT_THAT(test::listFolder(work_ / U"out"), ElementsAre("plain.calib", "plain.zip"));
    const ProgramRun missing = velk({"unpack", server.url("/missing.calibz"), "-o", "none"});
    EXPECT_EQ(missing.exitCode, test::exitCode::buildFailed);
    EXPECT_THAT(missing.errors, HasSubstr("cannot be downloaded (HTTP status 404)"));
    EXPECT_FALSE((work_ / U"none").pathExists());
}

TEST_F(ArchiveCommand, SaysWhyItCannotUnpack)
{
    const ProgramRun missing = velk({"unpack", "missing.calibz"});
    EXPECT_EQ(missing.exitCode, test::exitCode::buildFailed);
    EXPECT_THAT(missing.errors, HasSubstr("missing.calibz: does not exist"));
    test::writeZip(work_ / U"empty.calibz", {{"a.png", "picture"}});
    const ProgramRun empty = velk({"unpack", "empty.calibz", "-o", "none"});
    EXPECT_EQ(empty.exitCode, test::exitCode::buildFailed);
    EXPECT_THAT(empty.errors, HasSubstr("is not a packed library"));
    EXPECT_FALSE((work_ / U"none").pathExists());
    EXPECT_EQ(velk({"unpack"}).exitCode, test::exitCode::usage);
}

TEST_F(ArchiveCommand, RefusesWhatIsCutOff)
{
    pack();
    const std::string whole = test::readFile(work_ / U"house.calibz");
    for (const std::size_t bytes : {whole.size() - 1, whole.size() - 30, whole.size() / 2, std::size_t{1}}) {
        SCOPED_TRACE(bytes);
        test::writeFile(work_ / U"cut.calibz", whole.substr(0, bytes));
        const ProgramRun run = velk({"unpack", "cut.calibz", "-o", "out"});
        EXPECT_EQ(run.exitCode, test::exitCode::buildFailed);
        EXPECT_EQ(run.errors, "velk: cut.calibz: is not a packed library, or it is damaged\n");
        EXPECT_FALSE((work_ / U"out").pathExists());
    }
}

TEST_F(ArchiveCommand, AFailureKeepsOlderFiles)
{
    test::writeZip(work_ / U"house.calibz", {{"a.png", "picture"}});
    EXPECT_EQ(velk({"unpack", "house.calibz"}).exitCode, test::exitCode::buildFailed);
    EXPECT_EQ(test::readFile(work_ / U"house.calib"), "database");
    EXPECT_FALSE((work_ / U"house.zip").pathExists());
}

TEST_F(ArchiveCommand, UnpacksAllOrNothing)
{
    pack();
    FileUtils::createDirectoriesWithPerm(work_ / U"out" / U"house.calib");
    test::writeFile(work_ / U"out" / U"house.zip", "old");
    const ProgramRun run = velk({"unpack", "house.calibz", "-o", "out"});
    EXPECT_EQ(run.exitCode, test::exitCode::buildFailed);
    EXPECT_THAT(run.errors, HasSubstr("house.calib: is a folder, not a file"));
    EXPECT_EQ(test::readFile(work_ / U"out" / U"house.zip"), "old");
    EXPECT_THAT(test::listFolder(work_ / U"out"), ElementsAre("house.calib", "house.zip"));
}

TEST_F(ArchiveCommand, SaysWhatCouldNotBeUnpacked)
{
    // The module leaves such an entry out: its header lies outside the archive.
    test::ZipItem damaged;
    damaged.name = "a.png";
    damaged.data = "picture";
    damaged.offset = 100'000;
    for (const bool isCatalog : {false, true}) {
        test::ZipItem catalog;
        catalog.name = "house.calib";
        catalog.data = "database";
        if (isCatalog)
            catalog.crc = 1;
        test::ZipBuilder builder;
        builder.add(catalog);
        if (!isCatalog)
            builder.add(damaged);
        builder.writeTo(work_ / U"house.calibz");
        EXPECT_EQ(velk({"unpack", "house.calibz", "-o", "out/deep"}).exitCode, test::exitCode::buildFailed);
        EXPECT_FALSE((work_ / U"out").pathExists()) << "nothing is left";
    }
}

TEST_F(ArchiveCommand, RemovesWhatAKilledOneLeft)
{
    pack();
    FileUtils::createDirectoriesWithPerm(work_ / U"out" / U".velk-0123.tmp");
    test::writeFile(work_ / U"out" / U".velk-0123.tmp" / U"half", "left");
    test::writeFile(work_ / U"out" / U".velk-4567.tmp", "left");
    EXPECT_EQ(velk({"unpack", "house.calibz", "-o", "out"}).exitCode, 0);
    EXPECT_THAT(test::listFolder(work_ / U"out"), ElementsAre("house.calib", "house.zip"));
}

TEST_F(ArchiveCommand, MergesAndKeepsItsSource)
{
    test::writeZip(work_ / U"source.zip", {{"a", "source"}, {"b", "source"}});
    test::writeZip(work_ / U"dest.zip", {{"b", "dest"}, {"c", "dest"}});
    const ProgramRun run = velk({"textures", "merge", "source.zip", "dest.zip"});
    EXPECT_EQ(run.exitCode, 0) << run.errors;
    EXPECT_EQ(run.output, "dest.zip: 3 entries\n");
    EXPECT_THAT(namesIn(work_ / U"dest.zip"), UnorderedElementsAre("a", "b", "c"));
    EXPECT_THAT(namesIn(work_ / U"source.zip"), ElementsAre("a", "b"));
    EXPECT_EQ(velk({"textures", "merge", "source.zip", "new/dest.zip"}).exitCode, 0);
    EXPECT_THAT(namesIn(work_ / U"new/dest.zip"), ElementsAre("a", "b"));
}

TEST_F(ArchiveCommand, SaysWhyItCannotMerge)
{
    test::writeZip(work_ / U"source.zip", {{"a", "source"}});
    test::writeFile(work_ / U"text.zip", "no archive");
    EXPECT_THAT(velk({"textures", "merge", "missing.zip", "dest.zip"}).errors, HasSubstr("does not exist"));
    EXPECT_THAT(velk({"textures", "merge", "text.zip", "dest.zip"}).errors, HasSubstr("is not a readable zip archive"));
    const ProgramRun run = velk({"textures", "merge", "source.zip", "text.zip"});
    EXPECT_EQ(run.exitCode, test::exitCode::buildFailed);
    EXPECT_THAT(run.errors, HasSubstr("is not a zip archive that can be added to"));
    EXPECT_EQ(test::readFile(work_ / U"text.zip"), "no archive");
    EXPECT_FALSE((work_ / U"dest.zip").pathExists());
}

TEST_F(ArchiveCommand, SaysWhyItCannotPack)
{
    test::writeFile(work_ / U"house.calibz", "old");
    const auto pack = [&](const std::string& catalog, const std::string& files) {
        const ProgramRun run = velk({"catalog", "pack", catalog, "--files", files, "-o", "house.calibz"});
        EXPECT_EQ(run.exitCode, test::exitCode::buildFailed) << run.output;
        return run.errors;
    };
    EXPECT_THAT(pack("missing.calib", "files"), HasSubstr("missing.calib"));
    EXPECT_THAT(pack("files/a.png", "files"), HasSubstr("must end with \".calib\""));
    EXPECT_THAT(pack("house.calib", "missing"), HasSubstr("missing: is not a folder"));
    EXPECT_THAT(pack("house.calib", "."), HasSubstr("is another library"));
    EXPECT_EQ(test::readFile(work_ / U"house.calibz"), "old");
}

}  // namespace
