#pragma once

#include <VelkCommon/Export.h>
#include <VelkCommon/Files/FileLock.h>
#include <VelkCommon/Files/fileString.h>

#include <optional>

/// A folder for the files of one operation, which is removed with everything in it when the object goes out of scope.
/// Standing beside the files that the operation will replace, it lets each of them be replaced by a rename.
///
/// A killed process leaves its folder behind. removeLeftovers() tells that from one that is in use by a lock.
///
/// Nothing throws but std::bad_alloc. One thread at a time.
class VELKCOMMON_EXPORT WorkFolder
{
public:
    /// Makes a folder in `parent`, which must exist; for this user alone.
    explicit WorkFolder(const fileString& parent);
    ~WorkFolder();
    WorkFolder(const WorkFolder&) = delete;
    WorkFolder& operator=(const WorkFolder&) = delete;

    /// The folder; empty when it could not be made.
    const fileString& path() const noexcept { return path_; }

    /// Removes what killed processes left in `folder`: work folders, and files that were to replace others
    /// (ReplacementFile). Leaves everything that is still in use, by any process. Any thread, any process.
    static void removeLeftovers(const fileString& folder);

private:
    fileString path_;
    std::optional<FileLock> lock_;
};
