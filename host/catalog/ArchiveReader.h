#pragma once

#include "host/catalog/OpenZip.h"

#include <VelkCommon/Files/fileString.h>

#include <cstdint>
#include <functional>
#include <string>
#include <string_view>
#include <vector>

namespace VelkHost {

/// A zip archive that is checked: its directory, and the data of its entries. Failures throw FileError with the
/// archive's path. One thread at a time.
class ArchiveReader
{
public:
    struct Entry
    {
        std::uint64_t index = 0;
        std::string name;            ///< the bytes that the archive has
        std::uint64_t size = 0;      ///< of the data, in bytes
        std::uint32_t checksum = 0;  ///< of the data
        bool encrypted = false;
    };

    enum class Directory {
        readable,  ///< the directory must be readable
        sound      ///< it must also agree with what stands before each entry, and entries must not share bytes
    };

    /// Opens the archive and reads its directory.
    ArchiveReader(fileString path, Directory directory);
    ~ArchiveReader();
    ArchiveReader(const ArchiveReader&) = delete;
    ArchiveReader& operator=(const ArchiveReader&) = delete;

    /// In the order of the archive.
    const std::vector<Entry>& entries() const noexcept { return entries_; }

    /// Reads an entry to its end and hands its data to `sink`, block by block. Fails unless length and checksum are
    /// those of the directory.
    void read(const Entry& entry, const std::function<void(std::string_view)>& sink) const;

    [[noreturn]] void fail(const std::string& reason) const;

private:
    void readEntries();
    void refuseOverlaps(std::uint64_t archiveBytes) const;

    fileString path_;
    OpenZip handle_;
    std::vector<Entry> entries_;
};

}  // namespace VelkHost
