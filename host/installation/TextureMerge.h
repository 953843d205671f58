#pragma once

#include <VelkCommon/Files/FileLock.h>
#include <VelkCommon/Files/WorkFolder.h>
#include <VelkCommon/Files/fileString.h>

#include <cstdint>
#include <map>
#include <string>

class ProgressSubject;

namespace VelkHost {

/// Adds the entries of one texture archive to another, under its lock. The old archive is kept meanwhile, and comes
/// back unless keepNew() is called. Everything throws FileError, or DataError when somebody else has the archive for
/// long.
class TextureMerge
{
public:
    /// For the archive at `archive`, which need not exist. `purpose` is for those who wait for it.
    TextureMerge(const fileString& archive, const std::string& purpose);
    ~TextureMerge();
    TextureMerge(const TextureMerge&) = delete;
    TextureMerge& operator=(const TextureMerge&) = delete;

    /// Adds the entries of the archive `others`, which must be sound and is removed, and sees to it that all of them
    /// are there, and all that were there before as they were.
    void add(const fileString& others, ProgressSubject& progress);

    /// What was added stays.
    void keepNew() noexcept { changed_ = false; }

private:
    fileString archive_;
    FileLock lock_;
    WorkFolder folder_;
    fileString old_;
    bool hadOld_;
    std::map<std::string, std::uint32_t> content_;  // the names and checksums that the archive must have
    bool changed_ = false;
};

}  // namespace VelkHost
