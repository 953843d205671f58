#pragma once

#include <VelkCommon/Archive/detail/ZipDirectory.h>
#include <VelkCommon/Files/fileString.h>
#include <VelkCommon/Platform/File.h>

#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <unordered_map>

namespace Velk::detail {

/// Where an entry lies in its archive: local header, data, and the descriptor that some have.
struct ZipExtent
{
    std::uint64_t begin = 0;
    std::uint64_t dataBegin = 0;
    std::uint64_t dataEnd = 0;
    std::uint64_t end = 0;
};

/// A readable archive, open. One thread at a time.
class ZipArchive
{
public:
    /// Opens the archive; null when it is not readable.
    static std::unique_ptr<ZipArchive> open(const fileString& path);

    const ZipDirectory& directory() const noexcept { return directory_; }
    Platform::File& file() noexcept { return file_; }

    /// The entry that stands for `name`; null when there is none.
    const ZipEntry* find(const fileString& name);
    /// Where the entry lies according to its local header. Nothing when that header is damaged.
    std::optional<ZipExtent> extent(const ZipEntry& entry);

    /// Closes the file; the directory stays.
    void close() noexcept;

private:
    ZipArchive(Platform::File file, ZipDirectory directory);

    std::string_view view(std::uint64_t begin, std::size_t size);
    std::uint64_t descriptorSize(const ZipEntry& entry, std::uint64_t begin);

    Platform::File file_;
    ZipDirectory directory_;
    std::unordered_map<std::string, const ZipEntry*> byName_;  // filled by the first find()
    std::string window_;                                       // what the file holds from windowBegin_ on
    std::uint64_t windowBegin_ = 0;
};

}  // namespace Velk::detail
