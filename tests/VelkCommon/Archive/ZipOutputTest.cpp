// Archives that are written: when they are begun, what they hold, and when they are put in place.
#include "ZipWalk.h"

#include <VelkCommon/Files/FileUtils.h>

#include <gmock/gmock.h>

#include <stdexcept>
#include <string>

namespace {

using test::ZipBuilder;
using test::ZipHandle;
using test::ZipItem;
using testing::ElementsAre;
using testing::IsEmpty;

class ZipOutput : public test::ArchiveTest
{
protected:
    ZipOutput() { ZipBuilder().add("a", "1").add("b", "2").add("c", "3").writeTo(source_); }

    static bool write(const fileString& to, const fileString& name, const ZipHandle& handle, bool create,
                      ZipUtils::ZipRawDataInfo* entry)
    {
        return ZipUtils::writeFileToArchiveRaw(to, name, handle, create, entry);
    }

    std::vector<std::string> names() const { return test::listFolder(folder_); }

    fileString folder_ = at(U"work");
    bool made_ = FileUtils::createDirectoriesWithPerm(folder_);
    fileString source_ = at(U"source.zip");
    fileString target_ = folder_ / U"target.zip";
};

TEST_F(ZipOutput, FirstFalseThenTrue)
{
    std::string results;
    walk(source_, [&](const fileString& name, const ZipHandle& handle, ZipUtils::ZipRawDataInfo* entry) {
        results += ZipUtils::canAddToArchive(target_) ? "can " : "cannot ";
        const bool added = write(target_, name, handle, false, entry);
        results += added ? "added " : write(target_, name, handle, true, entry) ? "created " : "failed ";
    });
    EXPECT_EQ(results, "cannot created can added can added ");
    EXPECT_TRUE(ZipUtils::canAddToArchive(target_));
    EXPECT_TRUE(test::readFile(target_) == test::readFile(source_));
}

TEST_F(ZipOutput, NothingIsAtItsPlaceBeforeTheEnd)
{
    walk(source_, [&](const fileString& name, const ZipHandle& handle, ZipUtils::ZipRawDataInfo* entry) {
        EXPECT_TRUE(write(target_, name, handle, true, entry));
        EXPECT_FALSE(target_.pathExists());
        EXPECT_EQ(names().size(), 1u) << "a sibling";
    });
    EXPECT_THAT(names(), ElementsAre("target.zip"));
}

TEST_F(ZipOutput, AWalkThatIsStoppedCompletesItsOutput)
{
    const auto visited = ZipUtils::getFilesDataInArchive(
        source_,
        [&](const std::u32string& name, const ZipHandle& handle, ZipUtils::ZipRawDataInfo* entry) {
            EXPECT_TRUE(write(target_, name, handle, true, entry));
            return name != U"b";
        },
        &test::never);
    EXPECT_EQ(visited.size(), 2u);
    EXPECT_EQ(namesOf(target_), "a b");
}

TEST_F(ZipOutput, AnExceptionGivesTheOutputUp)
{
    ZipBuilder().add("old", "o").writeTo(target_);
    const fileString fresh = folder_ / U"fresh.zip";
    const auto throwing = [&](const fileString& name, const ZipHandle& handle, ZipUtils::ZipRawDataInfo* entry) {
        EXPECT_TRUE(write(target_, name, handle, false, entry));
        EXPECT_TRUE(write(fresh, name, handle, true, entry));
        if (name.utf8() == "b")
            throw std::runtime_error("b");
    };
    EXPECT_THROW(walk(source_, throwing), std::runtime_error);
    EXPECT_THAT(names(), ElementsAre("target.zip"));
    EXPECT_EQ(namesOf(target_), "old");
}

TEST_F(ZipOutput, AWalkThatCopiesNothingTouchesNothing)
{
    const std::string old = ZipBuilder().add("old", "o").bytes();
    test::writeFile(target_, old);
    const auto visited = walk(source_, [&](const fileString& name, const ZipHandle& handle, auto*) {
        EXPECT_FALSE(write(target_, name, handle, true, nullptr));
        EXPECT_FALSE(write(folder_ / U"new.zip", name, handle, true, nullptr));
    });
    EXPECT_EQ(visited.size(), 3u);
    EXPECT_THAT(names(), ElementsAre("target.zip"));
    EXPECT_TRUE(test::readFile(target_) == old);
}

TEST_F(ZipOutput, SeveralOutputsOfOneWalk)
{
    walk(source_, [&](const fileString& name, const ZipHandle& handle, ZipUtils::ZipRawDataInfo* entry) {
        EXPECT_TRUE(write(folder_ + fileString(std::string("/")) + name, name, handle, true, entry));
        EXPECT_TRUE(write(target_, name, handle, true, entry));
    });
    EXPECT_THAT(names(), ElementsAre("a", "b", "c", "target.zip"));
    EXPECT_EQ(namesOf(folder_ / U"b"), "b");
    EXPECT_EQ(namesOf(target_), "a b c");
}

// ---- Archives that are there ---------------------------------------------------------------------

TEST_F(ZipOutput, AddingKeepsWhatIsThere)
{
    for (const bool create : {false, true}) {
        ZipItem item;
        item.name = "old";
        item.data = test::noise(100'000);
        item.deflated = true;
        item.comment = "c";
        ZipBuilder().add(item).add("older", "o").comment("archive").writeTo(target_);
        const auto visited =
            walk(source_, [&](const fileString& name, const ZipHandle& handle, ZipUtils::ZipRawDataInfo* entry) {
                EXPECT_TRUE(write(target_, name, handle, create, entry));
                EXPECT_EQ(namesOf(target_), "old older") << "until the end";
            });
        EXPECT_EQ(visited.size(), 3u);
        EXPECT_EQ(namesOf(target_), "old older a b c");
        EXPECT_TRUE(dataOf(target_, "old") == item.data);
        EXPECT_EQ(dataOf(target_, "older"), "o");
        EXPECT_EQ(dataOf(target_, "c"), "3");
        EXPECT_THAT(names(), ElementsAre("target.zip"));
    }
}

TEST_F(ZipOutput, AnEntryOfTheNameIsReplacedAtItsPlace)
{
    ZipBuilder().add("x", "old x").add("b", "old b").add("y", "old y").writeTo(target_);
    EXPECT_TRUE(copyAll(source_, target_));
    EXPECT_EQ(namesOf(target_), "x b y a c");
    EXPECT_EQ(dataOf(target_, "b"), "2");
    EXPECT_EQ(dataOf(target_, "y"), "old y");
    EXPECT_EQ(test::readFile(target_).find("old b"), std::string::npos);
}

TEST_F(ZipOutput, ReplacingEverythingDoesNotGrowTheArchive)
{
    FileUtils::copyFile(source_, target_, true);
    for (int round = 0; round < 3; ++round)
        EXPECT_TRUE(copyAll(source_, target_));
    EXPECT_EQ(FileUtils::fileSize(target_), FileUtils::fileSize(source_));
    EXPECT_EQ(namesOf(target_), "a b c");
}

TEST_F(ZipOutput, EachNameStandsOnce)
{
    ZipBuilder().add("a", "1").add("b", "2").add("a", "3").writeTo(source_);
    EXPECT_TRUE(copyAll(source_, target_));
    EXPECT_EQ(namesOf(target_), "a b");
    EXPECT_EQ(dataOf(target_, "a"), "3");
    ZipBuilder().add("x", "1").add("y", "2").add("x", "3").writeTo(target_);
    EXPECT_TRUE(copyAll(source_, target_));
    EXPECT_EQ(namesOf(target_), "x y a b");
    EXPECT_EQ(dataOf(target_, "x"), "3");
}

TEST_F(ZipOutput, NamesAreTheSameWhateverTheirEncoding)
{
    ZipBuilder()
        .add(
            "K\x81"
            "che",
            "old")
        .writeTo(target_);
    ZipItem item;
    item.name =
        "K\xC3\xBC"
        "che";
    item.flags = test::zip::utf8Names;
    item.data = "new";
    ZipBuilder().add(item).writeTo(source_);
    EXPECT_TRUE(copyAll(source_, target_));
    EXPECT_EQ(ZipUtils::getSizeOfArchive(target_), 1u);
    EXPECT_EQ(dataOf(target_, item.name), "new");
}

TEST_F(ZipOutput, WhatIsNoArchiveIsReplacedOnlyByCreating)
{
    test::writeFile(target_, "no archive");
    walk(source_, [&](const fileString& name, const ZipHandle& handle, ZipUtils::ZipRawDataInfo* entry) {
        if (name.utf8() != "a")
            return;
        EXPECT_FALSE(ZipUtils::canAddToArchive(target_));
        EXPECT_FALSE(write(target_, name, handle, false, entry));
        EXPECT_TRUE(write(target_, name, handle, true, entry));
        EXPECT_EQ(test::readFile(target_), "no archive");
    });
    EXPECT_EQ(namesOf(target_), "a");
}

TEST_F(ZipOutput, AFolderInTheWayIsAFailure)
{
    FileUtils::createDirectoriesWithPerm(target_);
    const auto visited =
        walk(source_, [&](const fileString& name, const ZipHandle& handle, ZipUtils::ZipRawDataInfo* entry) {
            EXPECT_FALSE(ZipUtils::canAddToArchive(target_));
            EXPECT_FALSE(write(target_, name, handle, false, entry));
            EXPECT_FALSE(write(target_, name, handle, true, entry));
        });
    EXPECT_EQ(visited.size(), 3u);
    EXPECT_THAT(names(), ElementsAre("target.zip"));
}

TEST_F(ZipOutput, NoFolderNoOutput)
{
    const fileString lost = folder_ / U"missing/target.zip";
    walk(source_, [&](const fileString& name, const ZipHandle& handle, ZipUtils::ZipRawDataInfo* entry) {
        EXPECT_FALSE(write(lost, name, handle, true, entry));
        EXPECT_FALSE(write(fileString(), name, handle, true, entry));
        EXPECT_FALSE(ZipUtils::canAddToArchive(lost));
    });
    EXPECT_THAT(names(), IsEmpty());
}

// A failure at the end, because something else has appeared at the archive's path by then.
TEST_F(ZipOutput, AFailureAtTheEndGivesNoNames)
{
    const auto visited =
        walk(source_, [&](const fileString& name, const ZipHandle& handle, ZipUtils::ZipRawDataInfo* entry) {
            EXPECT_TRUE(write(target_, name, handle, true, entry));
            EXPECT_TRUE(write(folder_ / U"other.zip", name, handle, true, entry));
            FileUtils::createDirectoriesWithPerm(target_ / U"in the way");
        });
    EXPECT_THAT(visited, IsEmpty());
    EXPECT_THAT(names(), ElementsAre("other.zip", "target.zip"));
    EXPECT_EQ(namesOf(folder_ / U"other.zip"), "a b c");
    EXPECT_THAT(test::listFolder(target_), ElementsAre("in the way"));
}

TEST_F(ZipOutput, AnArchiveCanBeWrittenIntoItself)
{
    walk(source_, [&](const fileString& name, const ZipHandle& handle, ZipUtils::ZipRawDataInfo* entry) {
        EXPECT_TRUE(ZipUtils::canAddToArchive(source_));
        if (name.utf8() == "b") {
            EXPECT_TRUE(write(source_, std::string("b again"), handle, false, entry));
        }
    });
    EXPECT_EQ(namesOf(source_), "a b c b again");
    EXPECT_EQ(dataOf(source_, "b again"), "2");
    EXPECT_EQ(dataOf(source_, "c"), "3");
}

TEST_F(ZipOutput, AWalkWithinAWalk)
{
    const fileString inner = at(U"inner.zip");
    ZipBuilder().add("i", "inner").writeTo(inner);
    walk(source_, [&](const fileString& name, const ZipHandle& handle, ZipUtils::ZipRawDataInfo* entry) {
        EXPECT_TRUE(write(target_, name, handle, true, entry));
        walk(inner, [&](const fileString& innerName, const ZipHandle& innerHandle, auto* innerEntry) {
            EXPECT_TRUE(ZipUtils::canAddToArchive(target_));
            EXPECT_TRUE(write(folder_ + fileString(std::string("/")) + name, innerName, innerHandle, true, innerEntry));
        });
        EXPECT_EQ(dataOf(source_, "c"), "3");
    });
    EXPECT_THAT(names(), ElementsAre("a", "b", "c", "target.zip"));
    EXPECT_EQ(dataOf(folder_ / U"c", "i"), "inner");
    EXPECT_EQ(namesOf(target_), "a b c");
}

}  // namespace
