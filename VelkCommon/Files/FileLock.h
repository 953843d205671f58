#pragma once

#include <VelkCommon/Export.h>
#include <VelkCommon/Files/fileString.h>

#include <chrono>
#include <memory>
#include <stop_token>
#include <string>

namespace Velk::Platform {
class File;
}

/// A lock that programs take in turn, for what must not happen twice at a time: reading a file, changing what was
/// read and writing it back, for example.
///
///     const FileLock lock(file + fileString(std::string(".lock")), std::chrono::seconds(10), "saving filters");
///     if (!lock)
///         return failure(lock.isBusy() ? FileLock::holder(...) : "no lock");
///
/// It is the operating system's lock on a lock file, so it ends with its process, however that ends. The lock file
/// is made when missing, open to every user, and removed when the lock is given back; a killed process leaves it, and
/// the next owner of the lock removes it. It locks nothing by itself: everybody who writes has to ask for it.
///
/// Nothing throws but std::bad_alloc. Two objects exclude each other within a process as well. One thread at a time.
class VELKCOMMON_EXPORT FileLock
{
public:
    /// Takes the lock of `lockFile`, whose folder must exist. While somebody else has it, waits for `patience`, and
    /// until `stop` is requested. `purpose` is for those who wait meanwhile: one line, UTF-8.
    FileLock(const fileString& lockFile, std::chrono::milliseconds patience, const std::string& purpose,
             const std::stop_token& stop = {});
    /// The lock for changing `file`: that of the lock file beside it, which has the name of the file with ".lock"
    /// behind. In a folder where this user may make no file, but may write one that is there, the lock is on the folder
    /// instead, and still excludes everybody who takes the lock of `file` by this function. Arguments and results as
    /// above.
    static FileLock ofFile(const fileString& file, std::chrono::milliseconds patience, const std::string& purpose,
                           const std::stop_token& stop = {});
    /// Gives the lock back.
    ~FileLock();
    FileLock(FileLock&& other) noexcept;             ///< takes the lock over
    FileLock& operator=(FileLock&& other) noexcept;  ///< takes the lock over

    /// Whether the lock was taken.
    explicit operator bool() const noexcept { return file_ != nullptr; }
    /// Whether it was not taken because somebody else has it; otherwise the lock file could not be made or opened.
    bool isBusy() const noexcept { return busy_; }

    /// The purpose for which somebody has the lock now; empty when that is not known.
    static std::string holder(const fileString& lockFile);

private:
    void release() noexcept;

    FileLock() = default;
    static FileLock tryFile(const fileString& file, const std::string& purpose);

    fileString path_;  ///< of the lock file; empty when the lock is on the folder
    std::unique_ptr<Velk::Platform::File> file_;
    bool busy_ = false;
};
