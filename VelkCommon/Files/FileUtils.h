#pragma once

#include <VelkCommon/Export.h>
#include <VelkCommon/Files/fileString.h>

/// Operations on files and folders. None throws; each reports success by its result. An empty path is
/// a failure. Any thread. To replace a file, the new one is written beside it and renamed over it, so a
/// crash or a full disk leaves the old file whole.
class VELKCOMMON_EXPORT FileUtils
{
public:
    FileUtils() = delete;

    /// How to remove. Zero: no permissions are changed. One: read-only files and folders are made writable first.
    using MethodFlags = unsigned int;
    static constexpr MethodFlags noFlags = 0;           ///< changes no permissions
    static constexpr MethodFlags overrideReadOnly = 1;  ///< removes read-only files and folders as well

    /// Whether a file or folder exists at `path`.
    static bool pathExists(const fileString& path);

    /// Whether a link stands at `path`, wherever it leads; on Windows a junction counts as one.
    static bool isLink(const fileString& path);

    /// Deletes one file, or one link (never its target). False for a folder and when nothing is
    /// there.
    static bool removePath(const fileString& path, MethodFlags flags);

    /// Deletes a folder with everything below it. A link is unlinked, never followed, at any depth.
    /// Refuses (false) an empty or relative path, a root, and a path that ends with "." or "..". False when the folder
    /// is not there, or when anything is left.
    static bool removeDirectoryAndFiles(const fileString& path, MethodFlags flags);

    /// Creates the folder and its missing parents, each new one writable for every user. True when the
    /// folder is there afterwards.
    static bool createDirectoriesWithPerm(const fileString& path);

    /// Creates one folder for this user alone, for things that others must not see; its parent must exist. True as
    /// well when such a folder already exists: one that is not a link and, on POSIX, is owned by this user and closed
    /// to all others. On Windows the folder inherits its parent's access list.
    static bool createPrivateDirectory(const fileString& path);

    /// Copies a file's bytes and, on POSIX, its mode. With `overwrite` false, an existing target is
    /// never touched and the result is false, even when the target appears during the call. A link at the target is
    /// replaced, never followed. A failure leaves an existing target as it was.
    static bool copyFile(const fileString& from, const fileString& to, bool overwrite);

    /// Gives a file a second name on the same file system. False when the file system has no such names, when the name
    /// is taken, and when the system forbids it for a file of somebody else.
    static bool linkFile(const fileString& file, const fileString& secondName);

    /// Moves a file, also to another file system (then by copy); false for a folder. `overwrite` and
    /// links as for copyFile(). A failure leaves source and target as they were, with one exception:
    /// when the source is on another file system and cannot be removed although its folder may be changed,
    /// both files exist afterwards.
    static bool moveFile(const fileString& from, const fileString& to, bool overwrite);

    /// Renames a file or folder within a file system. A file replaces an existing file; a folder
    /// replaces nothing.
    static bool renameFile(const fileString& from, const fileString& to);

    /// Clears the read-only attribute: the owner may write afterwards.
    static bool makeFileWritable(const fileString& path);

    /// Grants every user full access to the file or folder. On POSIX false for a link, which may lead
    /// to a file of this user alone.
    static bool setFilePermEveryoneFullAccess(const fileString& path);

    /// Whether the file can be opened for writing and nobody else has it open for writing (see
    /// isPathWriteLocked()), or does not exist yet and can be created in its folder. False for a folder. Changes
    /// nothing.
    static bool canWriteFile(const fileString& path);

    /// Whether another file can take the place of the existing one, which need not be writable for that. Changes
    /// nothing.
    static bool canReplaceFile(const fileString& path);

    /// Whether somebody holds the file open for writing, by LockingFStream or (on Windows) in any way.
    /// False for a file that does not exist.
    static bool isPathWriteLocked(const fileString& path);

    /// The size in bytes; -1 for a folder and for a file that cannot be read.
    static long long fileSize(const fileString& path);
};
