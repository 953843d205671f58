#pragma once

/// @file
/// Everything that differs between operating systems, and nothing else: the sources of each system
/// stand behind this header. Paths are narrow UTF-8 text (odd bytes allowed, see fileString.h); an
/// empty path and one with a zero byte name nothing, so every operation on them fails.
///
/// Any thread. Unless said otherwise, nothing throws but for memory, and what fails leaves its reason
/// for lastErrorText().

#include <VelkCommon/Export.h>

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace Velk::Platform {

// ---- The process ---------------------------------------------------------------------------------

/// The text of the calling thread's last system error, UTF-8, without line break. Ask for it before
/// anything else runs.
VELKCOMMON_EXPORT std::string lastErrorText();
/// A debugger is attached to this process.
VELKCOMMON_EXPORT bool debuggerPresent();
/// Stops in the attached debugger. Without one the system may end the process.
VELKCOMMON_EXPORT void debugBreak();
/// Writes UTF-8 text to standard error as it is; what cannot be written is lost.
VELKCOMMON_EXPORT void writeToStandardError(std::string_view text) noexcept;
/// The system's number of the calling thread, as its tools show it.
VELKCOMMON_EXPORT std::uint32_t currentThreadId() noexcept;
/// Fills `size` bytes with the system's randomness, good enough for names that nobody may guess.
VELKCOMMON_EXPORT bool fillRandom(void* bytes, std::size_t size) noexcept;

// ---- Path text -----------------------------------------------------------------------------------

#ifdef _WIN32
inline constexpr char separator = '\\';
inline constexpr bool linesEndWithCarriageReturn = true;
#else
inline constexpr char separator = '/';
inline constexpr bool linesEndWithCarriageReturn = false;
#endif

/// `character` separates folders. The separator of the other systems counts only where it does there.
constexpr bool isSeparator(char character) noexcept
{
    return character == '/' || character == separator;
}

/// The length of the path's root with its separators: "/" on POSIX; "C:\", "\\server\share\", "\" and
/// the incomplete "C:" on Windows. 0 without one.
VELKCOMMON_EXPORT std::size_t rootLength(std::string_view path) noexcept;
/// `path` names the same place whatever the current folder or drive is.
VELKCOMMON_EXPORT bool isAbsolute(std::string_view path) noexcept;
/// The path as UTF-32, which holds the same names: a byte that is not text stands as U+DC80 to U+DCFF, and the
/// three-byte form of a lone surrogate (a name on Windows) as that surrogate. Only the three bytes of a surrogate
/// that stands for an odd byte count as odd ones, or two byte texts would share one UTF-32 text.
VELKCOMMON_EXPORT std::u32string toUnicodePath(std::string_view path);
/// The reverse. A value above Unicode becomes U+FFFD.
VELKCOMMON_EXPORT std::string fromUnicodePath(std::u32string_view points);
/// The form that the system's calls take, see fileString::toNativeString(). Lone surrogates stay, and odd bytes
/// stand as in toUnicodePath().
VELKCOMMON_EXPORT std::wstring toNativePath(std::string_view path);
/// The reverse; a long-path prefix is taken off.
VELKCOMMON_EXPORT std::string fromNativePath(std::wstring_view native);

/// The folder below which programs keep this user's data.
VELKCOMMON_EXPORT std::string userDataFolder();
/// The folder for temporary files, which other users may share.
VELKCOMMON_EXPORT std::string temporaryFolder();
/// A name for this user's folder below temporaryFolder(), different for each user that shares it.
VELKCOMMON_EXPORT std::string userFolderName();

// ---- Files and folders by path -------------------------------------------------------------------

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
/// Deletes the folder and all below it without following links, not even one that is put in place
/// while it runs; a link at `path` itself is only unlinked. Goes on after a failure; false when
/// anything is left. Needs a fixed number of descriptors and no stack, however deep the tree is.
VELKCOMMON_EXPORT bool removeTree(const std::string& path, bool overrideReadOnly);

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

// ---- An open file --------------------------------------------------------------------------------

/// An open file without a buffer; closes itself. Bytes go in and out as they are. A folder does not
/// open, and for reading neither does a device or a pipe, which may have no end. One thread at a time.
class VELKCOMMON_EXPORT File
{
public:
    enum class Mode {
        read,    ///< for reading; others may do as they like
        create,  ///< a new file for writing; fails when the name is taken, be it by a link to nowhere
    };
    enum class Lock {
        shared,    ///< for reading, with other readers
        exclusive  ///< for writing, alone; created when missing, not emptied; on POSIX no link
    };
    enum class LockResult { locked, held, failed };

    File() = default;
    File(File&& other) noexcept;
    File& operator=(File&& other) noexcept;
    ~File();

    /// Not open on failure.
    static File open(const std::string& path, Mode mode) noexcept;
    /// Opens with a lock and without waiting; `held` when others prevent it for now.
    LockResult openLocked(const std::string& path, Lock lock) noexcept;

    bool isOpen() const noexcept { return handle_ != closed; }
    /// Closes and unlocks. False when the system reports that written bytes are lost, and when the
    /// file is not open.
    bool close() noexcept;

    /// The number of bytes read, fewer than `size` only at the end; -1 on failure.
    long long read(char* bytes, std::size_t size) noexcept;
    /// The same from `offset` bytes behind the beginning. On Windows it moves the place where read() and
    /// write() go on.
    long long readAt(long long offset, char* bytes, std::size_t size) noexcept;
    /// Writes all or fails.
    bool write(const char* bytes, std::size_t size) noexcept;
    /// Moves to `offset` bytes from the beginning.
    bool seek(long long offset) noexcept;
    /// -1 on failure.
    long long size() const noexcept;
    /// Empties the file; what is no regular file stays as it is.
    bool truncate() noexcept;
    /// Makes the bytes last through a power failure.
    bool sync() noexcept;
    /// Tells the system that the file will be read from the beginning to the end.
    void expectSequentialReading() noexcept;

    /// Appends the rest of `source`, by the system's own means where it has them.
    bool copyFrom(File& source);
    /// Appends `size` bytes of `source` from `offset` on; false as well when it does not have them. On
    /// Windows it moves the place where `source` goes on.
    bool copyRange(File& source, long long offset, long long size);
    /// Takes over who may do what with the file `source`, where files carry that themselves.
    bool copyPermissionsFrom(const std::string& source) noexcept;

private:
    static constexpr std::intptr_t closed = -1;
    explicit File(std::intptr_t handle) noexcept : handle_(handle) {}

    std::intptr_t handle_ = closed;
};

}  // namespace Velk::Platform
