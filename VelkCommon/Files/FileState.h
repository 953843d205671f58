#pragma once

#include <VelkCommon/Export.h>
#include <VelkCommon/Files/fileString.h>

#include <cstdint>
#include <optional>
#include <string>
#include <system_error>

/// @file
/// What an application asks about files and folders beyond FileUtils. The standard library's file operations cannot
/// stand in for these: on Windows they know no path that is longer than 259 characters. Any thread; throws nothing but
/// `std::bad_alloc`.

namespace Velk {

/// What is at a path.
struct FileState
{
    /// What sort of thing a path leads to.
    enum class Kind {
        nothing,  ///< nothing has that name, or a link leads nowhere
        file,     ///< a file with bytes in it
        folder,   ///< a folder
        other,    ///< a device, a pipe or the like
        unknown   ///< it cannot be looked at
    };

    Kind kind = Kind::unknown;  ///< what is there
    std::uint64_t size = 0;     ///< bytes of a file
    long long modified = 0;     ///< nanoseconds since 1970-01-01 UTC, as exactly as the file system knows them
    std::string why;            ///< why it is unknown: UTF-8, in the system's words
};

/// What is at `path`; a link counts by its target. The empty path names nothing.
VELKCOMMON_EXPORT FileState fileState(const fileString& path);

/// Why the calling thread's last call here or in FileUtils failed: UTF-8, in the system's words. Ask for it before
/// anything else runs. A failure for another reason, such as a path that names a folder, leaves an older one.
VELKCOMMON_EXPORT std::string lastFileFailure();

/// The text of an error such as that of folderEntries(): UTF-8, in the system's words. What the standard library says
/// of it, `error.message()`, is in another encoding on Windows.
VELKCOMMON_EXPORT std::string errorText(const std::error_code& error);

/// Whether both paths lead to the same file or folder, however they are written.
VELKCOMMON_EXPORT bool isSameFile(const fileString& one, const fileString& other);

/// A relative path, counted from the current folder; any other path, and the empty one, unchanged.
VELKCOMMON_EXPORT fileString absolutePath(const fileString& path);

/// Makes the folder and its missing parents with the access that the process's defaults give. Returns why that failed,
/// UTF-8, in the system's words, and nothing when the folder is there afterwards.
VELKCOMMON_EXPORT std::optional<std::string> makeFolders(const fileString& path);

/// Removes a folder that is empty. False for any other, and when nothing is there.
VELKCOMMON_EXPORT bool removeEmptyFolder(const fileString& path);

/// How many bytes this user may still write to the volume of `folder`; empty when that is unknown.
VELKCOMMON_EXPORT std::optional<std::uint64_t> freeSpace(const fileString& folder);

}  // namespace Velk
