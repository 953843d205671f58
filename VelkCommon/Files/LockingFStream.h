#pragma once

#include <VelkCommon/Export.h>
#include <VelkCommon/Files/fileString.h>

#include <iostream>
#include <memory>

/// A file stream that keeps others from changing the file while it is open: readers share the file
/// with readers, a writer has it alone. On Windows the system enforces it; on POSIX it is an advisory
/// lock that every LockingFStream and FileUtils::isPathWriteLocked() obey, and that a forked child
/// inherits.
///
/// A file that somebody else holds is tried again for up to two seconds. Opening for writing creates
/// the file when missing, and empties it only once the lock is held; on POSIX it does not go through a
/// link. For reading, devices and pipes do not open. A failure to open, to lock or to
/// write shows as the stream's failure state; nothing throws unless the caller asks the stream to.
/// One thread at a time.
class VELKCOMMON_EXPORT LockingFStream : public std::iostream
{
public:
    /// The modes, as numbers of this class; they are not those of any standard library.
    static constexpr int in = 1;       ///< for reading
    static constexpr int out = 2;      ///< for writing; the file is emptied
    static constexpr int binary = 32;  ///< bytes as they are; without it lines end as the system has it

    /// Opens `path`. The modes are 1 (reading text), 33 (reading bytes), 2 (writing text) and 34 (writing
    /// bytes); any other fails. Positions are those of the file's bytes, in text too.
    LockingFStream(const fileString& path, int openMode);
    /// Closes; a failure is lost, so call close() where it matters.
    ~LockingFStream() override;
    LockingFStream(const LockingFStream&) = delete;
    LockingFStream& operator=(const LockingFStream&) = delete;

    /// The file is open and locked.
    bool isOpen() const noexcept;
    /// Writes what is buffered, closes and unlocks. A failure sets failbit. Closing twice is harmless.
    void close();

private:
    class Buffer;
    std::unique_ptr<Buffer> buffer_;
};
