#pragma once

#include <VelkCommon/Export.h>
#include <VelkCommon/Files/fileString.h>

#include <iostream>
#include <memory>

/// A file stream that keeps others from changing the file while it is open: readers share the file
/// with other readers; a writer has it alone. On Windows the system enforces this. On POSIX it is an
/// advisory lock, which every LockingFStream and FileUtils::isPathWriteLocked() respect and which a forked
/// child inherits.
///
/// When somebody else holds the file, opening is tried again for up to two seconds. Opening for writing
/// creates a missing file, and empties an existing one only once the lock is held; on POSIX it does not
/// follow a link. Devices and pipes cannot be opened for reading. A failure to open, to lock or to write
/// sets the stream's failure state; nothing throws unless the caller asks the stream to.
/// One thread at a time.
class VELKCOMMON_EXPORT LockingFStream : public std::iostream
{
public:
    /// The modes. Their numbers are this class's and not those of any standard library.
    static constexpr int in = 1;       ///< for reading
    static constexpr int out = 2;      ///< for writing; the file is emptied
    static constexpr int binary = 32;  ///< bytes as they are; without it, lines end as on the system

    /// Opens `path`. The modes are 1 (reading text), 33 (reading bytes), 2 (writing text) and 34 (writing
    /// bytes); any other mode fails. Positions count the bytes of the file, for text as well.
    LockingFStream(const fileString& path, int openMode);
    /// Closes the file. A failure goes unnoticed, so call close() where it matters.
    ~LockingFStream() override;
    LockingFStream(const LockingFStream&) = delete;
    LockingFStream& operator=(const LockingFStream&) = delete;

    /// Whether the file is open and locked.
    bool isOpen() const noexcept;
    /// Writes what is buffered, closes and unlocks. A failure sets failbit. Closing twice is harmless.
    void close();

private:
    class Buffer;
    std::unique_ptr<Buffer> buffer_;
};
