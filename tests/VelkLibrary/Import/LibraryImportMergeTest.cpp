#include "LibraryImportFixture.h"

#include "support/Names.h"

#include <gmock/gmock.h>

#include <filesystem>
#include <string>

namespace {

using test::ZipBuilder;
using test::ZipItem;
using testing::ElementsAre;
using testing::IsEmpty;

class Merge : public test::ImportTest
{
protected:
    Merge() { FileUtils::createDirectoriesWithPerm(folder_); }

    Velk::HostServices watchedServices()
    {
        Velk::HostServices host = services();
        host.fileSearchReset = [this](const fileString& folder) { resets_.push_back(folder); };
        return host;
    }

    bool merge() { return LibraryImport::moveArchivedTextures(source_, destination_, &progress_); }
    std::vector<std::string> names() const { return test::listFolder(folder_); }
    std::vector<std::string> temporaryFiles() const { return test::listFolder(at(U"temp")); }

    fileString folder_ = at(U"work");
    fileString source_ = at(U"source.zip");
    fileString destination_ = folder_ / U"destination.zip";
    test::RecordedProgress progress_;
    std::vector<fileString> resets_;
};

TEST_F(Merge, ThePathOfALibrarysTextureArchive)
{
    const fileString library(
        std::string("/somewhere/else/K\xC3\xBC"
                    "che 2.calib"));
    EXPECT_EQ(LibraryImport::getArchivedTexturePath(library, false), at(U"textures") / U"Küche 2.zip");
    EXPECT_EQ(LibraryImport::getArchivedTexturePath(library, true), at(U"referenced") / U"Küche 2.zip");
    EXPECT_EQ(LibraryImport::getArchivedTexturePath(std::string("a.b.calib"), false), at(U"textures") / U"a.b.zip");
}

TEST_F(Merge, AMissingSourceChangesNothing)
{
    Velk::installHost(watchedServices());
    ZipBuilder().add("a", "1").writeTo(destination_);
    const std::string old = test::readFile(destination_);
    EXPECT_TRUE(merge());
    EXPECT_TRUE(test::readFile(destination_) == old);
    EXPECT_THAT(progress_.calls, IsEmpty());
    EXPECT_THAT(resets_, IsEmpty());
}

TEST_F(Merge, AnArchiveMergedIntoItselfStaysAsItIs)
{
    ZipBuilder().add("a", "1").writeTo(destination_);
    const std::string old = test::readFile(destination_);
    EXPECT_TRUE(LibraryImport::moveArchivedTextures(destination_, destination_, &progress_));
    EXPECT_TRUE(test::readFile(destination_) == old);
}

TEST_F(Merge, AnArchiveMergedIntoItselfByAnotherSpellingStaysAsItIs)
{
    ZipBuilder().add("a", "1").writeTo(destination_);
    const std::string old = test::readFile(destination_);
    std::vector<fileString> spellings = {folder_ / U"." / U"destination.zip",
                                         at(U"temp") / U".." / U"work" / U"destination.zip"};
    if constexpr (test::anybodyMayLink) {
        std::filesystem::create_directory_symlink(folder_.utf8(), at(U"linked").utf8());
        spellings.push_back(at(U"linked") / U"destination.zip");
    } else {
        spellings.push_back(folder_ / U"DESTINATION.zip");
    }
    for (const fileString& spelling : spellings) {
        EXPECT_TRUE(LibraryImport::moveArchivedTextures(spelling, destination_, &progress_)) << spelling;
        EXPECT_TRUE(LibraryImport::moveArchivedTextures(destination_, spelling, &progress_)) << spelling;
        EXPECT_TRUE(test::readFile(destination_) == old) << spelling;
    }
}

TEST_F(Merge, AMissingDestinationIsACopy)
{
    Velk::installHost(watchedServices());
    destination_ = folder_ / U"new/folder/destination.zip";
    ZipBuilder().add("a", "1").writeTo(source_);
    const std::string bytes = test::readFile(source_);
    EXPECT_TRUE(merge());
    EXPECT_TRUE(test::readFile(destination_) == bytes);
    EXPECT_FALSE(source_.pathExists());
    EXPECT_THAT(resets_, ElementsAre(destination_.parentPathWithSeparator()));
    EXPECT_THAT(progress_.calls, IsEmpty());
}

TEST_F(Merge, BothArchivesInOne)
{
    Velk::installHost(watchedServices());
    ZipBuilder().add("a", "1").add("both", "destination").add("b", "2").comment("kept").writeTo(destination_);
    ZipBuilder().add("c", "3").add("both", "source").add("d", "4").writeTo(source_);
    EXPECT_TRUE(merge());
    EXPECT_EQ(namesOf(destination_), "a both b c d");
    EXPECT_EQ(dataOf(destination_, "both"), "destination");
    EXPECT_EQ(dataOf(destination_, "d"), "4");
    EXPECT_FALSE(source_.pathExists());
    EXPECT_THAT(names(), ElementsAre("destination.zip"));
    EXPECT_THAT(temporaryFiles(), IsEmpty());
    EXPECT_THAT(resets_, ElementsAre(destination_.parentPathWithSeparator()));
}

TEST_F(Merge, EachEntryOfBothIsReported)
{
    ZipBuilder().add("a", "1").add("both", "2").writeTo(destination_);
    ZipBuilder().add("both", "3").add("c", "4").writeTo(source_);
    EXPECT_TRUE(merge());
    EXPECT_THAT(progress_.calls, ElementsAre("range 2 100", "step [Copying: a] []", "step [Copying: both] []",
                                             "range 2 100", "step [Copying: both] []", "step [Copying: c] []"));
}

TEST_F(Merge, WithoutProgressAndWithoutCancellation)
{
    ZipBuilder().add("a", "1").writeTo(destination_);
    ZipBuilder().add("b", "2").writeTo(source_);
    EXPECT_TRUE(LibraryImport::moveArchivedTextures(source_, destination_, nullptr));
    ZipBuilder().add("c", "3").writeTo(source_);
    progress_.cancelAfter = 0;
    EXPECT_TRUE(merge());
    EXPECT_EQ(namesOf(destination_), "a b c");
}

TEST_F(Merge, ASourceThatTheDestinationHasAlready)
{
    ZipBuilder().add("a", "old").add("b", "old").writeTo(destination_);
    const std::string old = test::readFile(destination_);
    ZipBuilder().add("b", "new").add("a", "new").writeTo(source_);
    EXPECT_TRUE(merge());
    EXPECT_TRUE(test::readFile(destination_) == old);
    EXPECT_FALSE(source_.pathExists());
}

TEST_F(Merge, EmptyArchives)
{
    ZipBuilder().writeTo(destination_);
    ZipBuilder().add("a", "1").writeTo(source_);
    EXPECT_TRUE(merge());
    EXPECT_EQ(namesOf(destination_), "a");
    ZipBuilder().writeTo(source_);
    EXPECT_TRUE(merge());
    EXPECT_EQ(namesOf(destination_), "a");
    EXPECT_FALSE(source_.pathExists());
}

TEST_F(Merge, ADestinationThatIsNotAnArchiveStays)
{
    Velk::installHost(watchedServices());
    test::writeFile(destination_, "no archive");
    ZipBuilder().add("a", "1").writeTo(source_);
    EXPECT_FALSE(merge());
    EXPECT_EQ(test::readFile(destination_), "no archive");
    EXPECT_FALSE(source_.pathExists());
    EXPECT_THAT(temporaryFiles(), IsEmpty());
    EXPECT_THAT(resets_, IsEmpty());
}

TEST_F(Merge, ASourceThatIsNotAnArchiveAddsNothing)
{
    ZipBuilder().add("a", "1").writeTo(destination_);
    test::writeFile(source_, "no archive");
    EXPECT_TRUE(merge());
    EXPECT_EQ(namesOf(destination_), "a");
    EXPECT_FALSE(source_.pathExists());
}

TEST_F(Merge, ADamagedEntryFails)
{
    ZipBuilder().add("a", "1").writeTo(destination_);
    const std::string old = test::readFile(destination_);
    std::string bytes = ZipBuilder().add("b", "2").add("c", "3").bytes();
    bytes[bytes.find(test::zip::signature::local, 1)] = 'X';
    test::writeFile(source_, bytes);
    EXPECT_FALSE(merge());
    EXPECT_TRUE(test::readFile(destination_) == old);
    EXPECT_FALSE(source_.pathExists());
    EXPECT_THAT(temporaryFiles(), IsEmpty());
}

class DamagedDestination : public Merge
{
protected:
    // The entry b is not at the place that the directory gives.
    DamagedDestination()
    {
        old_ = ZipBuilder().add("a", "1").add("b", "2").add("c", "3").bytes();
        old_[old_.find(test::zip::signature::local, 1)] = 'X';
        test::writeFile(destination_, old_);
    }

    std::string old_;
};

TEST_F(DamagedDestination, Stays)
{
    Velk::installHost(watchedServices());
    ZipBuilder().add("d", "4").writeTo(source_);
    EXPECT_FALSE(merge());
    EXPECT_TRUE(test::readFile(destination_) == old_);
    EXPECT_FALSE(source_.pathExists());
    EXPECT_THAT(names(), ElementsAre("destination.zip"));
    EXPECT_THAT(temporaryFiles(), IsEmpty());
    EXPECT_THAT(resets_, IsEmpty());
    EXPECT_THAT(progress_.calls, ElementsAre("range 3 100", "step [Copying: a] []", "step [Copying: b] []"));
}

TEST_F(DamagedDestination, AlsoStaysWhenThereIsNothingToAdd)
{
    ZipBuilder().add("a", "4").writeTo(source_);
    EXPECT_FALSE(merge());
    EXPECT_TRUE(test::readFile(destination_) == old_);
    EXPECT_FALSE(source_.pathExists());
}

// An entry that the source has, too, is not copied: the destination's stays.
TEST_F(DamagedDestination, TakesMoreWhenTheSourceHasTheDamagedEntry)
{
    ZipBuilder().add("b", "source").add("d", "4").writeTo(source_);
    EXPECT_TRUE(merge());
    EXPECT_EQ(namesOf(destination_), "a b c d");
    EXPECT_EQ(dataOf(destination_, "c"), "3");
    EXPECT_EQ(dataOf(destination_, "d"), "4");
    EXPECT_FALSE(source_.pathExists());
}

TEST_F(Merge, AFolderInThePlaceOfTheDestination)
{
    FileUtils::createDirectoriesWithPerm(destination_ / U"inside");
    ZipBuilder().add("a", "1").writeTo(source_);
    EXPECT_FALSE(merge());
    EXPECT_THAT(test::listFolder(destination_), ElementsAre("inside"));
    EXPECT_FALSE(source_.pathExists());
}

TEST_F(Merge, ManyEntriesEachOnce)
{
    ZipBuilder destination;
    ZipBuilder source;
    for (int i = 0; i < 3000; ++i) {
        destination.add("name " + std::to_string(2 * i), "destination");
        source.add("name " + std::to_string(3 * i), "source");
    }
    destination.writeTo(destination_);
    source.writeTo(source_);
    EXPECT_TRUE(merge());
    EXPECT_EQ(ZipUtils::getSizeOfArchive(destination_), 5000u);
    EXPECT_EQ(dataOf(destination_, "name 6"), "destination");
    EXPECT_EQ(dataOf(destination_, "name 3"), "source");
}

}  // namespace
