#pragma once

#include <VelkCommon/Export.h>

#include <cstddef>
#include <cstdint>
#include <string>

namespace Velk::Platform {

/// An open file without a buffer; the destructor closes it. Bytes are read and written as they are. A
/// folder cannot be opened, nor can a device or a pipe for reading, because it may have no end. Paths and
/// failures as in FileSystem.h. One thread at a time.
class VELKCOMMON_EXPORT File
{
public:
    enum class Mode {
        read,  ///< for reading; others may do as they like
        /// a new file for writing; fails when the name is taken, even by a dangling link. removeUnheldFile() leaves
        /// it alone for as long as it is open.
        create,
    };
    enum class Lock {
        shared,     ///< for reading, with other readers
        exclusive,  ///< for writing, alone; created when missing, not emptied; on POSIX never through a link
        /// alone, on a file that only stands for something else: like `exclusive`, but a file that this user may
        /// only read will do, and others may read it. A new one is open to every user.
        marker
    };
    enum class LockResult { locked, held, failed };

    File() = default;
    File(File&& other) noexcept;
    File& operator=(File&& other) noexcept;
    ~File();

    /// Opens the file at `path`; the result is not open on failure.
    static File open(const std::string& path, Mode mode) noexcept;
    /// Opens with a lock and without waiting; `held` when others hold the file at the moment.
    LockResult openLocked(const std::string& path, Lock lock) noexcept;
    /// The same for a folder, which this user may only read: `exclusive` to be alone, `shared` to see that nobody is,
    /// for a moment. Locks of the files in it are something else.
    LockResult lockFolder(const std::string& folder, Lock lock) noexcept;

    bool isOpen() const noexcept { return handle_ != closed; }
    /// A second handle of the same open file, which keeps its lock when this one is closed. Not open where a lock
    /// cannot be shared.
    File duplicate() const noexcept;
    /// Closes and unlocks. False when the system reports that written bytes are lost, and when the
    /// file is not open.
    bool close() noexcept;

    /// Reads up to `size` bytes. Returns the number of bytes read, which is less than `size` only at the end of
    /// the file; -1 on failure.
    long long read(char* bytes, std::size_t size) noexcept;
    /// The same from `offset` bytes after the beginning. On Windows this moves the position at which read()
    /// and write() continue.
    long long readAt(long long offset, char* bytes, std::size_t size) noexcept;
    /// Writes all `size` bytes or fails.
    bool write(const char* bytes, std::size_t size) noexcept;
    /// Moves to `offset` bytes from the beginning.
    bool seek(long long offset) noexcept;
    /// The size in bytes; -1 on failure.
    long long size() const noexcept;
    /// Cuts a regular file off after `size` bytes; anything else stays as it is.
    bool truncate(long long size = 0) noexcept;
    /// Makes the bytes last through a power failure.
    bool sync() noexcept;
    /// Tells the system that the file will be read from the beginning to the end.
    void expectSequentialReading() noexcept;

    /// Appends the rest of `source`, by the system's own means where it has them.
    bool copyFrom(File& source);
    /// Appends `size` bytes of `source` from `offset` on. False as well when `source` is too short. On
    /// Windows this moves the position at which `source` continues.
    bool copyRange(File& source, long long offset, long long size);
    /// Copies the access rights of the file `source`, on systems where each file has its own.
    bool copyPermissionsFrom(const std::string& source) noexcept;

private:
    static constexpr std::intptr_t closed = -1;
    explicit File(std::intptr_t handle) noexcept : handle_(handle) {}
    /// Appends as much of the rest of `source` as the system itself can copy.
    void copyBySystem(File& source) noexcept;
    /// The same for `size` bytes from `offset` on; returns how many of them were copied.
    long long copyBySystem(File& source, long long offset, long long size) noexcept;

    std::intptr_t handle_ = closed;
};

}  // namespace Velk::Platform
