// Full disks, processes that die in the middle of an import, and how other programs read the results.
#include "LibraryImportFixture.h"
#include "support/Processes.h"
#include "support/ZipJudges.h"

#include <gmock/gmock.h>

#include <string>

namespace {

using test::ZipBuilder;
using testing::ElementsAre;
using testing::IsEmpty;

class ImportPosix : public test::ImportTest
{
protected:
    ImportPosix() { FileUtils::createDirectoriesWithPerm(folder_); }

    static ZipBuilder pictures(const std::string& prefix, unsigned count, std::size_t size)
    {
        ZipBuilder builder;
        for (unsigned i = 0; i < count; ++i)
            builder.add(prefix + std::to_string(i), test::noise(size, i));
        return builder;
    }

    std::vector<std::string> names() const { return test::listFolder(folder_); }

    fileString folder_ = at(U"work");
    fileString archive_ = folder_ / U"lib.calibz";
    fileString source_ = at(U"source.zip");
    fileString destination_ = folder_ / U"destination.zip";
};

TEST_F(ImportPosix, AFullDiskLeavesOutWhatDoesNotFit)
{
    ZipBuilder builder = pictures("p", 30, 1000);
    builder.add("library.calib", test::noise(5000)).writeTo(archive_);
    test::inChild([&] {
        test::limitFileSize(20'000);
        const auto [first, second] = LibraryImport::unpack(archive_, false, nullptr);
        EXPECT_TRUE(first);
        EXPECT_FALSE(second) << "the archive of the other files is not complete";
    });
    EXPECT_THAT(names(), ElementsAre("lib.calib", "lib.calibz"));
    test::inChild([&] {
        test::limitFileSize(4000);
        const auto [first, second] = LibraryImport::unpack(archive_, false, nullptr);
        EXPECT_FALSE(first);
        EXPECT_FALSE(second);
    });
    EXPECT_THAT(names(), ElementsAre("lib.calibz"));
}

TEST_F(ImportPosix, AFullDiskLeavesTheDestinationAndRemovesTheSource)
{
    for (const std::size_t room : {std::size_t{100}, std::size_t{20'000}, std::size_t{33'000}, std::size_t{52'000}}) {
        pictures("a", 30, 1000).writeTo(destination_);
        pictures("b", 20, 1000).writeTo(source_);
        const std::string old = test::readFile(destination_);
        test::inChild([&] {
            test::limitFileSize(room);
            EXPECT_FALSE(LibraryImport::moveArchivedTextures(source_, destination_, nullptr)) << room;
        });
        EXPECT_TRUE(test::readFile(destination_) == old) << room;
        EXPECT_FALSE(source_.pathExists()) << room;
        EXPECT_THAT(names(), ElementsAre("destination.zip")) << room;
        EXPECT_THAT(test::listFolder(at(U"temp")), IsEmpty()) << room;
    }
}

TEST_F(ImportPosix, AFullDiskForAPlainCopy)
{
    pictures("b", 20, 1000).writeTo(source_);
    test::inChild([&] {
        test::limitFileSize(10'000);
        EXPECT_FALSE(LibraryImport::moveArchivedTextures(source_, destination_, nullptr));
    });
    EXPECT_THAT(names(), IsEmpty());
    EXPECT_FALSE(source_.pathExists());
}

// The process is killed at each of its system calls in turn.
TEST_F(ImportPosix, DeathDuringAMergeLeavesTheOldArchiveOrTheNew)
{
    const std::string old = pictures("a", 5, 500).bytes();
    const std::string added = pictures("b", 4, 500).bytes();
    int oldOnes = 0;
    int newOnes = 0;
    test::killedAtEachSystemCall(
        [&] {
            test::writeFile(destination_, old);
            test::writeFile(source_, added);
        },
        [&] { EXPECT_TRUE(LibraryImport::moveArchivedTextures(source_, destination_, nullptr)); },
        [&](bool) {
            const bool isOld = test::readFile(destination_) == old;
            ASSERT_TRUE(isOld || ZipUtils::getSizeOfArchive(destination_) == 9) << "torn";
            ++(isOld ? oldOnes : newOnes);
            for (const fileString& folder : {folder_, at(U"temp")})
                for (const std::string& name : test::listFolder(folder))
                    if (name != "destination.zip")
                        FileUtils::removePath(folder / fileString(name), FileUtils::noFlags);
        });
    EXPECT_GT(oldOnes, 30) << "the work was not watched";
    EXPECT_GT(newOnes, 1);
    EXPECT_EQ(namesOf(destination_), "a0 a1 a2 a3 a4 b0 b1 b2 b3");
}

TEST_F(ImportPosix, OtherProgramsReadTheResults)
{
    ZipBuilder builder = pictures("p", 30, 1000);
    builder.add("library.calib", test::noise(5000)).writeTo(archive_);
    pictures("q", 20, 1000).writeTo(destination_);
    const auto [first, second] = LibraryImport::unpack(archive_, true, nullptr);
    ASSERT_TRUE(second);
    ASSERT_TRUE(LibraryImport::moveArchivedTextures(*second, destination_, nullptr));
    for (const char* const judge : {"unzip -tqq", "7z t -bso0", "python3 -m zipfile -t"}) {
        const test::Verdict run = test::ask(std::string(judge) + " '" + destination_.utf8() + "'");
        EXPECT_EQ(run.status, 0) << judge << ": " << run.output;
    }
    const std::string expected = test::ask("unzip -p '" + archive_.utf8() + "' library.calib | sha1sum").output;
    EXPECT_EQ(test::ask("sha1sum < '" + first->utf8() + "'").output, expected);
}

}  // namespace
