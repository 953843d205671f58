#pragma once

#include <VelkCommon/Export.h>
#include <VelkCommon/Files/fileString.h>

/// Operations on files and folders. None throws; each reports success by its result. An empty path is
/// a failure. Any thread. What replaces a file is written to a sibling first and renamed over it, so a
/// crash or a full disk leaves the old file whole.
class VELKCOMMON_EXPORT FileUtils
{
public:
    FileUtils() = delete;

    /// How to remove. Zero: as it stands. One: what is read-only is made writable first.
    using MethodFlags = unsigned int;
    static constexpr MethodFlags noFlags = 0;           ///< as it stands
    static constexpr MethodFlags overrideReadOnly = 1;  ///< what is read-only too

    /// A file or folder exists at `path`.
    static bool pathExists(const fileString& path);

    /// Deletes one file, or one link (never its target). False for a folder and for what is not there.
    static bool removePath(const fileString& path, MethodFlags flags);

    /// Deletes a folder with everything below it. A link is unlinked, never followed, at any depth.
    /// Refuses (false) an empty or relative path, a root, and a path that ends with "." or "..". False when the folder
    /// is not there, or when anything is left.
    static bool removeDirectoryAndFiles(const fileString& path, MethodFlags flags);

    /// Creates the folder and its missing parents, each new one writable for every user. True when the
    /// folder is there afterwards.
    static bool createDirectoriesWithPerm(const fileString& path);

    /// Creates one folder for this user alone, as secrets need; its parent must be there. True as well when such a
    /// folder is there already: no link and, on POSIX, owned by this user and closed to all others. On Windows it has
    /// its parent's access list.
    static bool createPrivateDirectory(const fileString& path);

    /// Copies a file's bytes and, on POSIX, its mode. `overwrite` false never touches an existing target
    /// (false), whoever makes it and when. A link at the target is replaced, never followed. A failure
    /// leaves an existing target as it was.
    static bool copyFile(const fileString& from, const fileString& to, bool overwrite);

    /// Moves a file, also to another file system (then by copy); false for a folder. `overwrite` and
    /// links as for copyFile(). A failure leaves both ends as they were, except for a source on another
    /// file system that cannot be removed although its folder may be changed: then both are there.
    static bool moveFile(const fileString& from, const fileString& to, bool overwrite);

    /// Renames a file or folder within a file system. A file replaces an existing file, a folder nothing.
    static bool renameFile(const fileString& from, const fileString& to);

    /// Clears the read-only attribute: the owner may write afterwards.
    static bool makeFileWritable(const fileString& path);

    /// Grants every user full access to the file or folder. On POSIX false for a link, which may lead to
    /// what is this user's alone.
    static bool setFilePermEveryoneFullAccess(const fileString& path);

    /// The file can be opened for writing, which nobody else has it open for (see isPathWriteLocked()), or it
    /// does not exist yet and can be created in its folder. False for a folder. Changes nothing.
    static bool canWriteFile(const fileString& path);

    /// The existing file can be opened for writing, and another one may take its place, as everything that is
    /// written by replacement needs. Changes nothing.
    static bool canReplaceFile(const fileString& path);

    /// Somebody holds the file open for writing, by LockingFStream or (on Windows) in any way.
    /// False for a file that does not exist.
    static bool isPathWriteLocked(const fileString& path);

    /// Size in bytes; -1 for a folder and for what cannot be read.
    static long long fileSize(const fileString& path);
};
