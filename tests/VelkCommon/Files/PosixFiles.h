#pragma once

#include <VelkCommon/Files/FileUtils.h>

#include "support/TestHost.h"

#include <gtest/gtest.h>

#include <sys/stat.h>
#include <unistd.h>

#include <cstddef>
#include <cstdlib>
#include <string>
#include <vector>

namespace test {

/// Files with modes and links, in a folder that every user may write to.
class PosixFiles : public testing::Test
{
protected:
    PosixFiles() { setMode(root_.path(), 0777); }

    fileString at(const char32_t* name) const { return root_ / name; }
    std::vector<std::string> names() const { return listFolder(root_.path()); }

    static void setMode(const fileString& path, mode_t mode)
    {
        EXPECT_EQ(::chmod(path.utf8().c_str(), mode), 0) << path;
    }

    static mode_t modeOf(const fileString& path)
    {
        struct stat status = {};
        EXPECT_EQ(::lstat(path.utf8().c_str(), &status), 0) << path;
        return status.st_mode & mode_t{07777};
    }

    static void makeFolder(const fileString& path) { EXPECT_EQ(::mkdir(path.utf8().c_str(), 0755), 0) << path; }

    static void makeLink(const fileString& target, const fileString& link)
    {
        EXPECT_EQ(::symlink(target.utf8().c_str(), link.utf8().c_str()), 0) << link;
    }

    /// The size up to which a file can grow on a disk that is nearly full.
    static constexpr std::size_t smallDisk = 100'000;

    TemporaryFolder root_;
};

/// The same, with a folder on another file system in addition.
class OtherVolume : public PosixFiles
{
protected:
    OtherVolume()
    {
        std::string pattern = "/dev/shm/velk-test-XXXXXX";
        other_ = std::string(::mkdtemp(pattern.data()));
        struct stat here = {};
        struct stat there = {};
        EXPECT_EQ(::stat(root_.path().utf8().c_str(), &here), 0);
        EXPECT_EQ(::stat(other_.utf8().c_str(), &there), 0);
        EXPECT_NE(here.st_dev, there.st_dev) << "this test needs two file systems";
    }
    ~OtherVolume() override { FileUtils::removeDirectoryAndFiles(other_, FileUtils::overrideReadOnly); }

    fileString other_;
};

}  // namespace test
