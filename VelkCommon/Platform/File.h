#pragma once

#include <VelkCommon/Export.h>

#include <cstddef>
#include <cstdint>
#include <string>

namespace Velk::Platform {

/// An open file without a buffer; closes itself. Bytes go in and out as they are. A folder does not
/// open, and for reading neither does a device or a pipe, which may have no end. Paths and failures as in
/// FileSystem.h. One thread at a time.
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
    /// Appends what the system itself copies of the rest of `source`.
    void copyBySystem(File& source) noexcept;
    /// The same from `offset` on; returns how many of the `size` bytes.
    long long copyBySystem(File& source, long long offset, long long size) noexcept;

    std::intptr_t handle_ = closed;
};

}  // namespace Velk::Platform
