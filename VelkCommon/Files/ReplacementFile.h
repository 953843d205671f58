#pragma once

#include <VelkCommon/Export.h>
#include <VelkCommon/Files/fileString.h>

#include <memory>
#include <string>
#include <string_view>

namespace Velk::Platform {
class File;
}

/// A file that replaces another one completely or not at all. Writes go to a fresh file beside the target;
/// commit() puts it in the target's place in one step. Whatever happens before that, even a crash or a
/// full disk, the target stays as it was.
///
///     ReplacementFile file(path);
///     const bool saved = file.write(text) && file.commit();
///
/// Nothing throws. A failure shows in the results, and all later calls fail as well. One thread at a time.
class VELKCOMMON_EXPORT ReplacementFile
{
public:
    /// What commit() does with a target that exists by then.
    enum class Existing { replace, keep };

    /// Opens the fresh file. It gets the access rights of an existing target.
    explicit ReplacementFile(const fileString& target, Existing existing = Existing::replace) noexcept;
    /// Removes the fresh file when it was not committed.
    ~ReplacementFile();
    ReplacementFile(const ReplacementFile&) = delete;
    ReplacementFile& operator=(const ReplacementFile&) = delete;

    /// Whether the fresh file exists and is open; false once it was committed.
    bool isOpen() const noexcept;
    /// The path of the fresh file, for code that writes by path and closes the file before commit(). Empty
    /// when the fresh file could not be made or is gone.
    const fileString& path() const noexcept { return path_; }

    /// Appends bytes. Write large blocks: there is no buffer.
    bool write(std::string_view bytes) noexcept;
    /// Appends the rest of `source`.
    bool copyFrom(Velk::Platform::File& source) noexcept;
    /// Appends `size` bytes of `source` from `offset` on. False as well when `source` is too short.
    bool copyRange(Velk::Platform::File& source, long long offset, long long size) noexcept;
    /// Copies the access rights of `source`, on systems where each file has its own.
    bool copyPermissionsFrom(const fileString& source) noexcept;

    /// Why the first call that failed did so: UTF-8, in the system's words. Empty when nothing failed, and when no
    /// memory was left to say it.
    const std::string& failure() const noexcept { return failure_; }

    /// Syncs the fresh file, closes it and renames it over the target. False on any failure, when an earlier
    /// write failed, and when the target exists and is to be kept; then the fresh file is removed. A second
    /// call returns false.
    bool commit() noexcept;

private:
    bool finish();
    bool noted(bool success) noexcept;
    void discard() noexcept;

    fileString target_;
    fileString path_;
    std::unique_ptr<Velk::Platform::File> file_;
    Existing existing_;
    bool failed_ = false;
    std::string failure_;
};
