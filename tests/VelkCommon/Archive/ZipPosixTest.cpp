// Full disks, users without rights, and death in the middle.
#include "ZipWalk.h"
#include "support/Processes.h"

#include <VelkCommon/Files/FileUtils.h>

#include <gmock/gmock.h>

#include <sys/resource.h>
#include <sys/stat.h>
#include <unistd.h>

#include <string>

namespace {

using test::ZipBuilder;
using test::ZipHandle;
using testing::ElementsAre;
using testing::IsEmpty;

class ZipPosix : public test::ArchiveTest
{
protected:
    ZipPosix()
    {
        ZipBuilder builder;
        for (unsigned i = 0; i < 40; ++i)
            builder.add("entry " + std::to_string(i), test::noise(1000, i));
        builder.writeTo(source_);
        FileUtils::createDirectoriesWithPerm(folder_);
    }

    std::vector<std::string> names() const { return test::listFolder(folder_); }

    fileString folder_ = at(U"work");
    fileString source_ = at(U"source.zip");
    fileString target_ = folder_ / U"target.zip";
};

// From too little for one entry to all but the last byte: there is no archive, and the walk says so.
TEST_F(ZipPosix, AFullDiskShowsInTheResultAndLeavesNothing)
{
    const auto whole = static_cast<std::size_t>(FileUtils::fileSize(source_));
    for (const std::size_t room : {std::size_t{1}, std::size_t{1500}, whole / 2, whole - 3000, whole - 22, whole - 1}) {
        test::inChild([&] {
            test::limitFileSize(room);
            bool anySuccess = false;
            const auto visited =
                walk(source_, [&](const fileString& name, const ZipHandle& handle, ZipUtils::ZipRawDataInfo* entry) {
                    anySuccess = ZipUtils::writeFileToArchiveRaw(target_, name, handle, true, entry) || anySuccess;
                });
            EXPECT_TRUE(!anySuccess || visited.empty()) << room;
        });
        EXPECT_THAT(names(), IsEmpty()) << room;
    }
    test::inChild([&] {
        test::limitFileSize(whole);
        EXPECT_TRUE(copyAll(source_, target_));
    });
    EXPECT_TRUE(test::readFile(target_) == test::readFile(source_));
}

TEST_F(ZipPosix, AFullDiskLeavesTheOldArchive)
{
    const std::string old = ZipBuilder().add("old", test::noise(20'000)).bytes();
    test::writeFile(target_, old);
    test::inChild([&] {
        test::limitFileSize(30'000);
        const auto visited =
            walk(source_, [&](const fileString& name, const ZipHandle& handle, ZipUtils::ZipRawDataInfo* entry) {
                ZipUtils::writeFileToArchiveRaw(target_, name, handle, false, entry);
            });
        EXPECT_THAT(visited, IsEmpty());
    });
    EXPECT_THAT(names(), ElementsAre("target.zip"));
    EXPECT_TRUE(test::readFile(target_) == old);
}

// Entries so large that they are written at once: the failure shows while the walk goes on.
TEST_F(ZipPosix, AfterTheFirstFailedWriteNothingIsAdded)
{
    ZipBuilder builder;
    for (unsigned i = 0; i < 4; ++i)
        builder.add("entry " + std::to_string(i), std::string(9'000'000, 'x'));
    builder.add("small", "x");
    builder.writeTo(source_);
    test::inChild([&] {
        test::limitFileSize(10'000'000);
        std::string results;
        const auto visited =
            walk(source_, [&](const fileString& name, const ZipHandle& handle, ZipUtils::ZipRawDataInfo* entry) {
                results += ZipUtils::writeFileToArchiveRaw(target_, name, handle, true, entry) ? "+" : "-";
                results += ZipUtils::canAddToArchive(target_) ? "a" : "n";
            });
        EXPECT_EQ(results, "+a-n-n-n-n");
        EXPECT_THAT(visited, IsEmpty());
    });
    EXPECT_THAT(names(), IsEmpty());
}

/// Adds to an archive, some entries under other names, on disks that are too small.
class ZipOnASmallDisk : public ZipPosix
{
protected:
    bool addAll() const
    {
        bool added = true;
        const auto visited =
            walk(source_, [&](const fileString& name, const ZipHandle& handle, ZipUtils::ZipRawDataInfo* entry) {
                const bool another = name.utf8().starts_with("rename");
                const fileString to = another ? fileString("another " + name.utf8()) : name;
                added = ZipUtils::writeFileToArchiveRaw(target_, to, handle, false, entry) && added;
            });
        return added && !visited.empty();
    }

    /// Files cannot become longer than this: nothing is added, and the old archive stays.
    void expectFailure(std::size_t room) const
    {
        const std::string old = test::readFile(target_);
        test::inChild([&] {
            test::limitFileSize(room);
            EXPECT_FALSE(addAll()) << room;
        });
        EXPECT_THAT(names(), ElementsAre("target.zip")) << room;
        EXPECT_TRUE(test::readFile(target_) == old) << room;
    }
};

// In what waits to be copied, in the directory, which is written in blocks, and in its end.
TEST_F(ZipOnASmallDisk, TheOldArchiveStaysWhereverItIsFull)
{
    ZipBuilder().add("old", "o").comment("comment").writeTo(target_);
    ZipBuilder builder;
    builder.add("small", test::noise(1000)).add("rename", "r");
    for (unsigned i = 0; i < 40; ++i)
        builder.add(std::string(40'000, 'n') + std::to_string(i), "x");
    builder.writeTo(source_);
    const std::string old = test::readFile(target_);
    ASSERT_TRUE(addAll());
    const std::size_t whole = test::readFile(target_).size();
    const std::size_t directory = test::readFile(target_).find(test::zip::signature::central);
    ASSERT_LT(directory + (std::size_t{1} << 20), whole) << "it is written in blocks";
    test::writeFile(target_, old);
    for (const std::size_t room : {std::size_t{100}, std::size_t{1100}, directory - 1, directory + 100,
                                   directory + 1'300'000, whole - 50, whole - 1})
        expectFailure(room);
    test::inChild([&] {
        test::limitFileSize(whole);
        EXPECT_TRUE(addAll());
    });
    EXPECT_EQ(test::readFile(target_).size(), whole);
}

// In what is so large that it is copied at once.
TEST_F(ZipOnASmallDisk, TheOldArchiveStaysWhenALargeEntryDoesNotFit)
{
    constexpr std::size_t large = 8'400'000;
    ZipBuilder().add("old", std::string(large, 'o')).writeTo(target_);
    ZipBuilder().add("rename large", std::string(large, 'x')).writeTo(source_);
    expectFailure(large / 2);
    expectFailure(large + large / 2);
}

TEST_F(ZipPosix, ASourceThatBecomesShorterMeanwhile)
{
    constexpr off_t firstEntry = 30 + 7 + 1000;  // header, name and data
    const std::string whole = test::readFile(source_);
    for (const bool renames : {false, true}) {
        test::writeFile(source_, whole);
        std::string results;
        const auto visited =
            walk(source_, [&](const fileString& name, const ZipHandle& handle, ZipUtils::ZipRawDataInfo* entry) {
                const fileString to = renames ? fileString("another " + name.utf8()) : name;
                results += ZipUtils::writeFileToArchiveRaw(target_, to, handle, true, entry) ? '+' : '-';
                EXPECT_EQ(::truncate(source_.utf8().c_str(), firstEntry), 0);
            });
        EXPECT_EQ(results.substr(0, 3), renames ? "+--" : "+++") << "what is copied together fails at the end";
        EXPECT_EQ(visited.empty(), !renames);
        EXPECT_EQ(FileUtils::pathExists(target_), renames);
        if (renames) {
            EXPECT_EQ(namesOf(target_), "another entry 0");
        }
        FileUtils::removePath(target_, FileUtils::noFlags);
        EXPECT_THAT(names(), IsEmpty());
    }
}

// The old archive takes the last file that the process may open, and none is left to write to.
TEST_F(ZipPosix, AProcessWithoutFreeFilesAddsNothing)
{
    ZipBuilder().add("old", "o").writeTo(target_);
    const std::string old = test::readFile(target_);
    test::inChild([&] {
        bool added = false;
        rlimit limit = {};
        EXPECT_EQ(::getrlimit(RLIMIT_NOFILE, &limit), 0);
        walk(source_, [&](const fileString& name, const ZipHandle& handle, ZipUtils::ZipRawDataInfo* entry) {
            if (const int next = ::dup(0); next >= 0) {
                ::close(next);
                limit.rlim_cur = static_cast<rlim_t>(next) + 1;
                EXPECT_EQ(::setrlimit(RLIMIT_NOFILE, &limit), 0);
            }
            added = ZipUtils::writeFileToArchiveRaw(target_, name, handle, false, entry) || added;
        });
        EXPECT_FALSE(added);
    });
    EXPECT_TRUE(test::readFile(target_) == old);
    EXPECT_THAT(names(), ElementsAre("target.zip"));
}

TEST_F(ZipPosix, WhatMayNotBeWrittenCannotBeAddedTo)
{
    ZipBuilder().add("old", "o").writeTo(target_);
    ::chmod(source_.utf8().c_str(), 0644);
    ::chmod(folder().utf8().c_str(), 0755);
    ::chmod(folder().parentPath().utf8().c_str(), 01777);
    const std::string old = test::readFile(target_);
    for (const mode_t folderMode : {mode_t{0555}, mode_t{0777}}) {
        ::chmod(target_.utf8().c_str(), folderMode == 0555 ? 0666 : 0444);
        ::chmod(folder_.utf8().c_str(), folderMode);
        test::asOrdinaryUser([&] {
            EXPECT_EQ(namesOf(target_), "old");
            EXPECT_FALSE(ZipUtils::canAddToArchive(target_));
            walk(source_, [&](const fileString& name, const ZipHandle& handle, ZipUtils::ZipRawDataInfo* entry) {
                EXPECT_FALSE(ZipUtils::writeFileToArchiveRaw(target_, name, handle, false, entry));
                EXPECT_FALSE(ZipUtils::writeFileToArchiveRaw(target_, name, handle, true, entry));
            });
        });
        EXPECT_THAT(names(), ElementsAre("target.zip"));
        EXPECT_TRUE(test::readFile(target_) == old);
    }
}

TEST_F(ZipPosix, TheModeOfAnArchiveStays)
{
    ZipBuilder().add("old", "o").writeTo(target_);
    ::chmod(target_.utf8().c_str(), 0640);
    EXPECT_TRUE(copyAll(source_, target_));
    struct stat status = {};
    ASSERT_EQ(::stat(target_.utf8().c_str(), &status), 0);
    EXPECT_EQ(status.st_mode & 07777U, 0640u);
}

// Killed at each of its system calls in turn.
TEST_F(ZipPosix, DeathLeavesTheOldArchiveOrTheNew)
{
    const std::string old = ZipBuilder().add("old", test::noise(5000)).bytes();
    test::killedAtEachSystemCall([&] { test::writeFile(target_, old); },
                                 [&] { EXPECT_TRUE(copyAll(source_, target_)); },
                                 [&](bool died) {
                                     const bool isOld = test::readFile(target_) == old;
                                     ASSERT_TRUE(isOld ? died : ZipUtils::getSizeOfArchive(target_) == 41) << "torn";
                                     for (const std::string& name : names())
                                         if (name != "target.zip")
                                             FileUtils::removePath(folder_ / fileString(name), FileUtils::noFlags);
                                 });
    EXPECT_TRUE(dataOf(target_, "old") == test::noise(5000));
}

}  // namespace
