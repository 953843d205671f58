#include <VelkCommon/Files/FileState.h>
#include <VelkCommon/Files/FileUtils.h>
#include <VelkCommon/Files/FolderListing.h>

#include "support/CountedMemory.h"
#include "support/TestHost.h"

#include <gmock/gmock.h>

#include <new>
#include <string>
#include <system_error>
#include <vector>

namespace {

using testing::IsEmpty;
using testing::UnorderedElementsAre;

class FolderListing : public testing::Test
{
protected:
    FolderListing()
    {
        EXPECT_TRUE(FileUtils::createDirectoriesWithPerm(root_ / U"folder"));
        test::writeFile(root_ / U"file", "bytes");
        test::writeFile(root_ / U".K\u00FCche with a name that no short string holds", "");
    }
    ~FolderListing() override { test::failingAllocation = SIZE_MAX; }

    // The names, folders with a "/".
    static std::vector<std::string> names(const std::vector<Velk::FolderEntry>& entries)
    {
        std::vector<std::string> result;
        for (const Velk::FolderEntry& entry : entries)
            result.push_back(entry.name.utf8() + (entry.isFolder ? "/" : ""));
        return result;
    }

    std::vector<std::string> list(const fileString& folder)
    {
        error_ = std::make_error_code(std::errc::io_error);
        return names(Velk::folderEntries(folder, error_));
    }

    test::TemporaryFolder root_;
    std::error_code error_;
};

TEST_F(FolderListing, HasFilesAndFolders)
{
    EXPECT_THAT(list(root_.path()),
                UnorderedElementsAre("folder/", "file", ".K\u00FCche with a name that no short string holds"));
    EXPECT_FALSE(error_);
    EXPECT_THAT(list(root_ / U"folder"), IsEmpty());
    EXPECT_FALSE(error_);
}

TEST_F(FolderListing, SaysWhyThereIsNone)
{
    for (const fileString& path : {root_ / U"none", fileString(), root_.path() + fileString(std::string("\0a", 2))}) {
        EXPECT_THAT(list(path), IsEmpty());
        EXPECT_EQ(error_, std::errc::no_such_file_or_directory) << path;
    }
    EXPECT_THAT(list(root_ / U"file"), IsEmpty());
    EXPECT_TRUE(error_);
    EXPECT_EQ(Velk::errorText(error_), Velk::errorText({error_.value(), std::system_category()}));
    EXPECT_NE(Velk::errorText(error_), "");
}

// The standard library's iterator ends the program.
TEST_F(FolderListing, ThrowsWhenMemoryRunsOut)
{
    const fileString folder = root_.path();
    std::size_t refused = 0;
    for (bool ended = false; !ended; ++refused) {
        test::failingAllocation = refused;
        try {
            const auto entries = Velk::folderEntries(folder, error_);
            ended = test::failingAllocation != SIZE_MAX;
            test::failingAllocation = SIZE_MAX;
            ASSERT_TRUE(ended) << refused;
            EXPECT_EQ(entries.size(), 3U);
        } catch (const std::bad_alloc&) {
            test::failingAllocation = SIZE_MAX;
        }
    }
    EXPECT_GT(refused, 3U);
}

}  // namespace

#ifndef _WIN32

#include <unistd.h>

namespace {

TEST_F(FolderListing, ALinkCountsByItsTarget)
{
    const std::pair<const char*, const char32_t*> links[] = {
        {"folder", U"to-folder"}, {"file", U"to-file"}, {"none", U"to-none"}};
    for (const auto& [target, link] : links)
        ASSERT_EQ(::symlink(target, (root_ / link).utf8().c_str()), 0);
    EXPECT_THAT(list(root_.path()), testing::IsSupersetOf({"to-folder/", "to-file", "to-none"}));
    EXPECT_THAT(list(root_ / U"to-folder"), IsEmpty());
    EXPECT_FALSE(error_) << "a link to a folder is followed";
}

}  // namespace

#endif
