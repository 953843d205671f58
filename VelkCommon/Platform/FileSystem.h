#pragma once

/// @file
/// Files and folders by path. Paths are narrow UTF-8 text (odd bytes allowed, see fileString.h); an empty
/// path and one with a zero byte name nothing, so every operation on them fails.
///
/// Any thread. Nothing throws but for memory, and what fails leaves its reason for lastErrorText().

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

struct FileStatus
{
    bool folder = false;
    long long size = 0;
    /// Seconds since 1970-01-01 UTC.
    long long modified = 0;
};

/// What is at `path`, a link counting by its target; nothing when there is none.
VELKCOMMON_EXPORT std::optional<FileStatus> fileStatus(const std::string& path) noexcept;
/// Something has the name `path`, be it a link to nowhere.
VELKCOMMON_EXPORT bool nameTaken(const std::string& path) noexcept;

/// Creates one folder that every user may write, whatever the process's defaults are. True as well
/// when the folder is there already; then nothing changes.
VELKCOMMON_EXPORT bool createSharedFolder(const std::string& path) noexcept;
/// Creates one folder for this user alone. True as well when such a folder is there already: no link,
/// owned by this user and closed to others.
VELKCOMMON_EXPORT bool createPrivateFolder(const std::string& path) noexcept;

/// Deletes a file or link; false for a folder. `overrideReadOnly`: one that is read-only too.
VELKCOMMON_EXPORT bool removeFile(const std::string& path, bool overrideReadOnly) noexcept;

enum class MoveResult { moved, otherVolume, failed };
/// Renames in one step: at no time is `to` missing or half there. `replace` false never touches an
/// existing `to`, whoever makes it and when. A folder replaces nothing.
VELKCOMMON_EXPORT MoveResult move(const std::string& from, const std::string& to, bool replace) noexcept;
/// Makes the names in `folder` last through a power failure, as far as the system can.
VELKCOMMON_EXPORT void syncFolder(const std::string& folder) noexcept;

/// The bytes that this user may still write to the volume of `folder`; nothing when that is unknown.
VELKCOMMON_EXPORT std::optional<std::uint64_t> freeSpace(const std::string& folder) noexcept;

/// The names in `folder` can be changed.
VELKCOMMON_EXPORT bool canChangeFolder(const std::string& folder) noexcept;
/// The existing file can be opened for writing.
VELKCOMMON_EXPORT bool canWriteFile(const std::string& path) noexcept;
/// The existing file in `folder` can be replaced by a sibling: the folder's names can be changed, and it does not
/// keep the files of others.
VELKCOMMON_EXPORT bool canReplaceFile(const std::string& folder, const std::string& path) noexcept;
/// See FileUtils::isPathWriteLocked().
VELKCOMMON_EXPORT bool isWriteLocked(const std::string& path) noexcept;
/// Lets the owner write.
VELKCOMMON_EXPORT bool makeWritable(const std::string& path) noexcept;
/// Gives every user full access; on POSIX not to what a link leads to.
VELKCOMMON_EXPORT bool grantEveryone(const std::string& path) noexcept;

/// Appends `text` to the file by a single write, so that it never mixes with what others append at
/// the same time; creates the file when missing. Lines end as the system's texts do.
VELKCOMMON_EXPORT bool appendText(const std::string& path, std::string_view text);

}  // namespace Velk::Platform
