#pragma once

/// @file
/// Files and folders by path. Paths are narrow UTF-8 text (odd bytes allowed, see fileString.h). A path that
/// is empty or has a zero byte names nothing, so every operation on it fails.
///
/// Any thread. Throws only when memory runs out. After a failure, lastErrorText() gives the reason.

#include <VelkCommon/Export.h>

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace Velk::Platform {

/// How lines of text files end.
#ifdef _WIN32
inline constexpr bool linesEndWithCarriageReturn = true;
#else
inline constexpr bool linesEndWithCarriageReturn = false;
#endif

/// Whether a file that is open can lose its name.
#ifdef _WIN32
inline constexpr bool openFilesCanBeRemoved = false;
#else
inline constexpr bool openFilesCanBeRemoved = true;
#endif

struct FileStatus
{
    bool folder = false;
    /// Neither a folder nor a device, a pipe or the like.
    bool file = false;
    long long size = 0;
    /// Seconds since 1970-01-01 UTC.
    long long modified = 0;
    /// What tells it from all others on its volume, however its path is written.
    std::uint64_t number = 0;
    /// What tells the volume from all others.
    std::uint64_t volume = 0;
    /// The same moment as `modified`, in nanoseconds and as exactly as the file system knows it.
    long long modifiedNanoseconds = 0;
};

/// What is at `path`; for a link, its target. Empty when nothing is there.
VELKCOMMON_EXPORT std::optional<FileStatus> fileStatus(const std::string& path) noexcept;
/// Whether something has the name `path`, even if it is only a dangling link.
VELKCOMMON_EXPORT bool nameTaken(const std::string& path) noexcept;
/// Whether a link stands at `path`, wherever it leads; on Windows also any other reparse point, such as a junction.
VELKCOMMON_EXPORT bool linkAt(const std::string& path) noexcept;

/// The path from the root; `path` itself when it is empty, or when the system cannot tell the current folder. Throws
/// only when memory runs out.
VELKCOMMON_EXPORT std::string absolutePath(const std::string& path);

/// Creates one folder as the process's defaults have it. True as well when the folder already exists.
VELKCOMMON_EXPORT bool createFolder(const std::string& path) noexcept;
/// Deletes a folder that is empty; false for a link.
VELKCOMMON_EXPORT bool removeEmptyFolder(const std::string& path) noexcept;
/// Creates one folder that every user may write to, whatever the process's defaults are. True as well when
/// the folder already exists; then nothing changes.
VELKCOMMON_EXPORT bool createSharedFolder(const std::string& path) noexcept;
/// Creates one folder for this user alone. True as well when such a folder already exists: one that is
/// not a link, is owned by this user and is closed to others.
VELKCOMMON_EXPORT bool createPrivateFolder(const std::string& path) noexcept;

/// Deletes a file or link; false for a folder. With `overrideReadOnly`, deletes a read-only file as well.
VELKCOMMON_EXPORT bool removeFile(const std::string& path, bool overrideReadOnly) noexcept;

/// Deletes a file that File::open() created, provided that nobody has it open any more. False, and nothing changes,
/// when somebody has, and for folders and links.
VELKCOMMON_EXPORT bool removeUnheldFile(const std::string& path) noexcept;

/// Gives the file a second name on the same volume. False when the file system cannot, when the name is taken, and
/// when the system forbids it for a file of somebody else.
VELKCOMMON_EXPORT bool linkFile(const std::string& file, const std::string& secondName) noexcept;

enum class MoveResult { moved, otherVolume, failed };
/// Renames in one step: at no time is `to` missing or incomplete. With `replace` false, an existing `to` is
/// never touched, even when it appears during the call. A folder replaces nothing.
VELKCOMMON_EXPORT MoveResult move(const std::string& from, const std::string& to, bool replace) noexcept;
/// Makes the names in `folder` last through a power failure, as far as the system can.
VELKCOMMON_EXPORT void syncFolder(const std::string& folder) noexcept;

/// How many bytes this user may still write to the volume of `folder`; empty when that is unknown.
VELKCOMMON_EXPORT std::optional<std::uint64_t> freeSpace(const std::string& folder) noexcept;

/// Whether the names in `folder` can be changed.
VELKCOMMON_EXPORT bool canChangeFolder(const std::string& folder) noexcept;
/// Whether the existing file can be opened for writing.
VELKCOMMON_EXPORT bool canWriteFile(const std::string& path) noexcept;
/// Whether the existing file in `folder` can be replaced by another file of that folder: the folder's names can be
/// changed, and the folder does not protect the files of others.
VELKCOMMON_EXPORT bool canReplaceFile(const std::string& folder, const std::string& path) noexcept;
/// See FileUtils::isPathWriteLocked().
VELKCOMMON_EXPORT bool isWriteLocked(const std::string& path) noexcept;
/// Lets the owner write.
VELKCOMMON_EXPORT bool makeWritable(const std::string& path) noexcept;
/// Gives every user full access; on POSIX not to the target of a link.
VELKCOMMON_EXPORT bool grantEveryone(const std::string& path) noexcept;

/// Appends `text` to the file by a single write, so that it never mixes with what others append at
/// the same time; creates the file when missing. Lines end as in the system's text files. Fails where anybody may
/// have planted what stands there: for a link, for a file with a second name, and for a device or a pipe.
VELKCOMMON_EXPORT bool appendText(const std::string& path, std::string_view text);

}  // namespace Velk::Platform
