#include "LibraryImportFixture.h"
#include "support/SmallDisk.h"

#include <VelkCommon/Files/LockingFStream.h>

#include <gmock/gmock.h>

#include <memory>
#include <string>

namespace {

using test::ZipBuilder;
using test::ZipItem;
using testing::ElementsAre;
using testing::IsEmpty;

class Unpack : public test::ImportTest
{
protected:
    Unpack() { FileUtils::createDirectoriesWithPerm(folder_); }

    static ZipItem deflatedItem(const std::string& name, const std::string& data)
    {
        ZipItem item;
        item.name = name;
        item.data = data;
        item.deflated = true;
        return item;
    }

    auto unpack(bool useTempNames = false) { return LibraryImport::unpack(archive_, useTempNames, progress_); }
    std::vector<std::string> names() const { return test::listFolder(folder_); }
    std::vector<std::string> temporaryFiles() const { return test::listFolder(at(U"temp")); }

    fileString folder_ = at(U"work");
    fileString archive_ = folder_ / U"lib.calibz";
    fileString database_ = folder_ / U"lib.calib";
    fileString others_ = folder_ / U"lib.zip";
    std::shared_ptr<test::RecordedProgress> progress_ = std::make_shared<test::RecordedProgress>();
};

TEST_F(Unpack, AMissingArchiveGivesNothing)
{
    const auto [first, second] = unpack();
    EXPECT_FALSE(first);
    EXPECT_FALSE(second);
    EXPECT_THAT(names(), IsEmpty());
    EXPECT_THAT(progress_->calls, IsEmpty());
}

TEST_F(Unpack, SeparatesTheCatalogFileFromTheOtherFiles)
{
    const std::string database = test::noise(200'000);
    ZipBuilder()
        .add("a.png", "picture")
        .add(deflatedItem("library.calib", database))
        .add("folder/", "")
        .add(deflatedItem("folder/b.obj", std::string(50'000, 'v')))
        .writeTo(archive_);
    const auto [first, second] = unpack();
    EXPECT_EQ(first, database_);
    EXPECT_EQ(second, others_);
    EXPECT_TRUE(test::readFile(database_) == database);
    EXPECT_TRUE(test::readFile(others_) == ZipBuilder()
                                               .add("a.png", "picture")
                                               .add("folder/", "")
                                               .add(deflatedItem("folder/b.obj", std::string(50'000, 'v')))
                                               .bytes());
    EXPECT_THAT(names(), ElementsAre("lib.calib", "lib.calibz", "lib.zip"));
}

TEST_F(Unpack, TemporaryNamesLieInTheTemporaryFolder)
{
    ZipBuilder().add("library.calib", "database").add("a.png", "picture").writeTo(archive_);
    const auto one = unpack(true);
    const auto other = unpack(true);
    ASSERT_TRUE(one.first && one.second && other.first && other.second);
    EXPECT_NE(one.first, other.first);
    EXPECT_EQ(one.first->extension(), fileString(std::string(".calib")));
    EXPECT_EQ(one.second->extension(), fileString(std::string(".zip")));
    EXPECT_EQ(one.first->parentPath(), at(U"temp"));
    EXPECT_EQ(test::readFile(*one.first), "database");
    EXPECT_EQ(namesOf(*one.second), "a.png");
    EXPECT_EQ(temporaryFiles().size(), 4u);
    EXPECT_THAT(names(), ElementsAre("lib.calibz"));
}

TEST_F(Unpack, WithoutACatalogFile)
{
    ZipBuilder().add("a.png", "1").add("LIBRARY.CALIB", "2").add("x.calib/", "").add(".calib", "3").writeTo(archive_);
    const auto [first, second] = unpack();
    EXPECT_FALSE(first);
    EXPECT_EQ(second, others_);
    EXPECT_EQ(namesOf(others_), "a.png LIBRARY.CALIB x.calib/ .calib");
    EXPECT_THAT(names(), ElementsAre("lib.calibz", "lib.zip"));
}

TEST_F(Unpack, WithNothingButTheCatalogFile)
{
    ZipBuilder().add("folder/library.calib", "database").writeTo(archive_);
    const auto [first, second] = unpack();
    EXPECT_EQ(first, database_);
    EXPECT_FALSE(second);
    EXPECT_THAT(names(), ElementsAre("lib.calib", "lib.calibz"));
}

TEST_F(Unpack, AnEmptyCatalogFile)
{
    ZipBuilder().add("library.calib", "").writeTo(archive_);
    EXPECT_EQ(unpack().first, database_);
    EXPECT_EQ(test::readFile(database_), "");
}

TEST_F(Unpack, TheLastOfSeveralCatalogFilesWins)
{
    ZipBuilder().add("a.calib", "a long first database").add("b.calib", "second").writeTo(archive_);
    EXPECT_EQ(unpack().first, database_);
    EXPECT_EQ(test::readFile(database_), "second");
}

TEST_F(Unpack, ADamagedLastCatalogFileIsNotTaken)
{
    ZipItem damaged = deflatedItem("b.calib", "second");
    damaged.crc = 1;
    ZipBuilder().add("a.calib", "first").add(damaged).add("c", "3").writeTo(archive_);
    const auto [first, second] = unpack();
    EXPECT_FALSE(first);
    EXPECT_EQ(second, others_);
    EXPECT_THAT(names(), ElementsAre("lib.calibz", "lib.zip"));
}

TEST_F(Unpack, WhatIsNotAnArchive)
{
    for (const std::string& bytes : {std::string(), std::string("<html>Please log in</html>"), ZipBuilder().bytes()}) {
        test::writeFile(archive_, bytes);
        const auto [first, second] = unpack();
        EXPECT_FALSE(first);
        EXPECT_FALSE(second);
        EXPECT_THAT(names(), ElementsAre("lib.calibz"));
    }
}

TEST_F(Unpack, AFolderIsNotAnArchive)
{
    FileUtils::createDirectoriesWithPerm(archive_);
    const auto [first, second] = unpack(true);
    EXPECT_FALSE(first);
    EXPECT_FALSE(second);
    EXPECT_THAT(temporaryFiles(), IsEmpty());
}

// ---- Existing files ------------------------------------------------------------------------------

TEST_F(Unpack, AnOldCatalogFileIsOverwritten)
{
    test::writeFile(database_, std::string(1000, 'o'));
    ZipBuilder().add("library.calib", "new").writeTo(archive_);
    EXPECT_EQ(unpack().first, database_);
    EXPECT_EQ(test::readFile(database_), "new");
}

TEST_F(Unpack, AnOldZipReceivesTheEntries)
{
    ZipBuilder().add("old", "o").add("a.png", "old picture").writeTo(others_);
    ZipBuilder().add("library.calib", "database").add("a.png", "picture").add("b.png", "2").writeTo(archive_);
    EXPECT_EQ(unpack().second, others_);
    EXPECT_EQ(namesOf(others_), "old a.png b.png");
    EXPECT_EQ(dataOf(others_, "a.png"), "picture");
    EXPECT_EQ(dataOf(others_, "old"), "o");
}

TEST_F(Unpack, AnOldFileThatIsNotAZipIsReplaced)
{
    test::writeFile(others_, "no archive");
    ZipBuilder().add("a.png", "picture").writeTo(archive_);
    EXPECT_EQ(unpack().second, others_);
    EXPECT_EQ(namesOf(others_), "a.png");
}

TEST_F(Unpack, WhatTheResultDoesNotNameIsRemoved)
{
    test::writeFile(database_, "old");
    ZipBuilder().add("old", "o").writeTo(others_);
    ZipBuilder().add("folder/library.calib", "database").writeTo(archive_);
    EXPECT_FALSE(unpack().second);
    EXPECT_THAT(names(), ElementsAre("lib.calib", "lib.calibz"));
    ZipBuilder().add("a.png", "picture").writeTo(archive_);
    EXPECT_FALSE(unpack().first);
    EXPECT_THAT(names(), ElementsAre("lib.calibz", "lib.zip"));
}

TEST_F(Unpack, EntriesThatCannotBeCopiedAreLeftOut)
{
    FileUtils::createDirectoriesWithPerm(others_);
    ZipBuilder().add("a.png", "1").add("library.calib", "database").add("b.png", "2").writeTo(archive_);
    const auto [first, second] = unpack();
    EXPECT_EQ(first, database_);
    EXPECT_FALSE(second);
    EXPECT_THAT(names(), ElementsAre("lib.calib", "lib.calibz", "lib.zip"));
}

TEST_F(Unpack, ADamagedEntryIsLeftOut)
{
    std::string bytes = ZipBuilder().add("a.png", "1").add("b.png", "2").add("library.calib", "database").bytes();
    bytes[bytes.find(test::zip::signature::local, 1)] = 'X';
    test::writeFile(archive_, bytes);
    const auto [first, second] = unpack();
    EXPECT_EQ(first, database_);
    EXPECT_EQ(second, others_);
    EXPECT_EQ(namesOf(others_), "a.png");
}

TEST_F(Unpack, AnArchiveNamedLikeItsOutputsStays)
{
    archive_ = folder_ / U"lib.zip";
    for (const bool withOthers : {true, false}) {
        ZipBuilder builder;
        if (withOthers)
            builder.add("a.png", "1");
        builder.add("library.calib", "database").writeTo(archive_);
        const auto [first, second] = unpack();
        EXPECT_EQ(first, database_);
        EXPECT_EQ(second.has_value(), withOthers);
        EXPECT_EQ(test::readFile(database_), "database");
        EXPECT_EQ(namesOf(archive_), withOthers ? "a.png library.calib" : "library.calib");
    }
    ZipBuilder().add("library.calib", "database").writeTo(database_);
    const std::string bytes = test::readFile(database_);
    archive_ = database_;
    EXPECT_FALSE(unpack().first);
    EXPECT_TRUE(test::readFile(database_) == bytes);
    EXPECT_TRUE(unpack(true).first);
}

TEST_F(Unpack, NamesAreNotUsedOnDisk)
{
    ZipBuilder()
        .add("../../evil.calib", "database")
        .add("../../../evil.png", "1")
        .add("/tmp/evil.png", "2")
        .add("C:\\evil.png", "3")
        .writeTo(archive_);
    const auto [first, second] = unpack();
    EXPECT_EQ(first, database_);
    EXPECT_EQ(second, others_);
    EXPECT_EQ(namesOf(others_), "../../../evil.png /tmp/evil.png C:\\evil.png");
    EXPECT_THAT(names(), ElementsAre("lib.calib", "lib.calibz", "lib.zip"));
}

TEST_F(Unpack, ACatalogFileThatSomebodyHoldsIsNotWritten)
{
    ZipBuilder().add("library.calib", "database").writeTo(archive_);
    const LockingFStream holder(database_, LockingFStream::out);
    EXPECT_FALSE(unpack().first);
}

// ---- Progress and cancellation -------------------------------------------------------------------

TEST_F(Unpack, EachEntryIsAskedForAndReported)
{
    ZipBuilder()
        .add("a %1% b", "1")
        .add("library.calib", "2")
        .add(
            "K\xC3\xBC"
            "che",
            "3")
        .writeTo(archive_);
    unpack();
    EXPECT_THAT(progress_->calls, ElementsAre("range 3 100", "cancelled?", "step [Copying: a %1% b] []", "cancelled?",
                                              "step [Copying: library.calib] []", "cancelled?",
                                              "step [Copying: K\xC3\xBC"
                                              "che] []"));
    EXPECT_EQ(progress_->state().position, 100);
}

TEST_F(Unpack, TheLabelIsTranslatedAndEveryPlaceFilled)
{
    Velk::HostServices host = services();
    host.translate = [](std::u32string_view literal) {
        return literal == U"Copying: %1%" ? std::u32string(U"%1% wird kopiert (%1%)") : std::u32string();
    };
    Velk::installHost(host);
    ZipBuilder().add("a", "1").writeTo(archive_);
    unpack();
    EXPECT_EQ(progress_->calls.back(), "step [a wird kopiert (a)] []");
}

TEST_F(Unpack, WithoutProgress)
{
    ZipBuilder().add("a", "1").add("library.calib", "2").writeTo(archive_);
    const auto [first, second] = LibraryImport::unpack(archive_, false, nullptr);
    EXPECT_EQ(first, database_);
    EXPECT_EQ(second, others_);
}

TEST_F(Unpack, CancelledAtEachEntry)
{
    ZipBuilder().add("a", "1").add("library.calib", "2").add("b", "3").writeTo(archive_);
    for (int entry = 0; entry < 3; ++entry) {
        progress_ = std::make_shared<test::RecordedProgress>();
        progress_->cancelAfter = entry;
        const auto [first, second] = unpack();
        EXPECT_FALSE(first) << entry;
        EXPECT_FALSE(second) << entry;
        EXPECT_THAT(names(), ElementsAre("lib.calibz")) << entry;
        EXPECT_EQ(progress_->calls.size(), static_cast<std::size_t>(2 * entry + 2)) << "no step after the question";
    }
    progress_ = std::make_shared<test::RecordedProgress>();
    progress_->cancelAfter = 3;
    EXPECT_TRUE(unpack().first) << "nothing is asked after the last entry";
}

TEST_F(Unpack, CancelledWithTemporaryNames)
{
    ZipBuilder().add("a", "1").add("library.calib", "2").add("b", "3").writeTo(archive_);
    progress_->cancelAfter = 2;
    const auto [first, second] = unpack(true);
    EXPECT_FALSE(first || second);
    EXPECT_THAT(temporaryFiles(), IsEmpty());
}

// ---- Large catalog files, small disks ------------------------------------------------------------

TEST_F(Unpack, ACatalogFileTooLargeForMemoryIsReadInBlocks)
{
    std::string database(ZipUtils::wholeEntryLimit + 10'000'000, 'x');
    database.replace(60'000'000, 6, "middle");
    ZipBuilder().add(deflatedItem("library.calib", database)).add("a", "1").writeTo(archive_);
    const auto [first, second] = unpack();
    EXPECT_EQ(first, database_);
    EXPECT_EQ(second, others_);
    EXPECT_TRUE(test::readFile(database_) == database);
}

TEST_F(Unpack, ALargeDamagedCatalogFileIsNotTaken)
{
    ZipItem item = deflatedItem("library.calib", std::string(ZipUtils::wholeEntryLimit + 10, 'x'));
    item.crc = 1;
    ZipBuilder().add(item).writeTo(archive_);
    EXPECT_FALSE(unpack().first);
    EXPECT_THAT(names(), ElementsAre("lib.calibz"));
}

TEST_F(Unpack, ACatalogFileLeavesTheDisksReserve)
{
    ZipBuilder().add("library.calib", "database").add("a", "1").writeTo(archive_);
    {
        const test::SmallDisk disk(7);
        EXPECT_FALSE(unpack().first);
    }
    EXPECT_THAT(names(), ElementsAre("lib.calibz", "lib.zip"));
    const test::SmallDisk disk(8);
    EXPECT_EQ(unpack().first, database_);
}

TEST_F(Unpack, ALargeCatalogFileStopsAtTheDisksReserve)
{
    ZipBuilder().add(deflatedItem("library.calib", std::string(80'000'000, 'x'))).writeTo(archive_);
    {
        const test::SmallDisk disk((1 << 17) - 1);
        EXPECT_FALSE(unpack().first);
    }
    EXPECT_THAT(names(), ElementsAre("lib.calibz"));
    const test::SmallDisk disk(1 << 17);
    EXPECT_EQ(unpack().first, database_);
}

// ---- A copy of a catalog file --------------------------------------------------------------------

TEST_F(Unpack, ATemporaryCopyOfACatalogFile)
{
    test::writeFile(database_, "database");
    const auto copy = LibraryImport::createTempDatabase(database_, progress_.get());
    ASSERT_TRUE(copy);
    EXPECT_EQ(copy->parentPath(), at(U"temp"));
    EXPECT_EQ(copy->extension(), fileString(std::string(".calib")));
    EXPECT_EQ(test::readFile(*copy), "database");
    EXPECT_THAT(progress_->calls, ElementsAre("labels [" + database_.utf8() + "] []"));
    EXPECT_TRUE(LibraryImport::createTempDatabase(database_, nullptr));
}

TEST_F(Unpack, NoCopyOfWhatIsNotAFile)
{
    EXPECT_FALSE(LibraryImport::createTempDatabase(database_, progress_.get()));
    EXPECT_THAT(progress_->calls, IsEmpty());
    EXPECT_FALSE(LibraryImport::createTempDatabase(folder_, progress_.get()));
    EXPECT_THAT(temporaryFiles(), IsEmpty());
}

}  // namespace
