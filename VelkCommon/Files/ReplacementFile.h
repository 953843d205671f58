#pragma once

#include <VelkCommon/Export.h>
#include <VelkCommon/Files/fileString.h>

#include <memory>
#include <string_view>

namespace Velk::Platform {
class File;
}

/// A file that replaces another one whole or not at all. What is written goes to a fresh file beside
/// the target; commit() puts it in the target's place in one step. Whatever happens before, a crash and
/// a full disk included, the target stays as it was.
///
///     ReplacementFile file(path);
///     const bool saved = file.write(text) && file.commit();
///
/// Nothing throws; a failure shows in the results, and after one the later calls fail as well. One
/// thread at a time.
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

    /// The fresh file is there and open; false as well once it was committed.
    bool isOpen() const noexcept;
    /// The fresh file, for those that write by path; they must have closed it before commit(). Empty when
    /// there is none (any more).
    const fileString& path() const noexcept { return path_; }

    /// Appends bytes. Write large blocks: there is no buffer.
    bool write(std::string_view bytes) noexcept;
    /// Appends what is left of `source`.
    bool copyFrom(Velk::Platform::File& source) noexcept;
    /// Appends `size` bytes of `source` from `offset` on; false as well when it does not have them.
    bool copyRange(Velk::Platform::File& source, long long offset, long long size) noexcept;
    /// Takes over the access rights of `source`, where files carry them themselves.
    bool copyPermissionsFrom(const fileString& source) noexcept;

    /// Syncs, closes and renames over the target. False on any failure, when a write failed before, and
    /// when the target exists and is to be kept; the fresh file is removed then. A second call is false.
    bool commit() noexcept;

private:
    bool finish();
    void discard() noexcept;

    fileString target_;
    fileString path_;
    std::unique_ptr<Velk::Platform::File> file_;
    Existing existing_;
    bool failed_ = false;
};
