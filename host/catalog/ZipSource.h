#pragma once

#include "host/catalog/OpenZip.h"

#include <VelkCommon/Files/fileString.h>

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace VelkHost {

/// A zip archive as a source of texts and pictures, read with bounds: declared sizes are never trusted,
/// names are only compared, and nothing is written to disk. One thread at a time.
class ZipSource
{
public:
    /// Opens the archive. Throws FileError unless it is a sound archive of at most 100,000 entries that
    /// do not share their bytes.
    explicit ZipSource(const fileString& path);
    ~ZipSource();
    ZipSource(const ZipSource&) = delete;
    ZipSource& operator=(const ZipSource&) = delete;

    /// The names of the entries that are files, sorted by bytes.
    const std::vector<std::string>& names() const noexcept { return names_; }

    /// The bytes of the entry with exactly that name; empty when there is no such entry. Throws
    /// FileError for an entry that is damaged, encrypted or longer than `maximumBytes`, and once the
    /// entries that were read exceed 2 GiB.
    std::optional<std::string> read(const std::string& name, std::size_t maximumBytes);

private:
    [[noreturn]] void fail(const std::string& reason) const;
    void readNames(std::uint64_t archiveBytes);
    std::string readEntry(std::size_t index, const std::string& name, std::size_t maximumBytes);

    fileString path_;
    OpenZip archive_;
    std::vector<std::string> names_;
    std::size_t bytesRead_ = 0;
};

}  // namespace VelkHost
