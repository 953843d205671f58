#pragma once

#include <VelkCommon/Archive/detail/ZipArchive.h>
#include <VelkCommon/Files/ReplacementFile.h>
#include <VelkCommon/Files/fileString.h>

#include <cstdint>
#include <memory>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

namespace Velk::detail {

/// An archive that is being written, entry by entry copied from others. It replaces what is at its place
/// whole or not at all, and holds each name once.
///
/// Entries are written as they come; those that an archive in its place holds follow at the end, without
/// what was replaced by then. The directory has the old ones first.
class ZipWriter
{
public:
    /// Begins the archive. What stands at `target` is added to when it is `old`, and replaced otherwise.
    ZipWriter(const fileString& target, std::unique_ptr<ZipArchive> old);

    /// Nothing went wrong so far.
    bool good() const noexcept { return good_; }
    /// An entry was added.
    bool changed() const noexcept { return changed_; }

    /// Copies an entry of `source`, which must stay open until finish(). False when the entry is damaged,
    /// and after the first failed write.
    bool add(ZipArchive& source, const ZipEntry& entry, const fileString& name);

    /// Writes what is missing, and closes the old archive.
    bool finish();
    /// Puts the finished archive in its place.
    bool commit();

private:
    struct Record
    {
        std::string text;         // as in the directory, but for the offset
        std::uint64_t begin = 0;  // of the local header, in the new archive or (as long as it is there) in the old one
        std::uint64_t end = 0;    // of what is to be copied from the old archive
        bool inOld = false;
    };
    struct Range
    {
        ZipArchive* source = nullptr;
        std::uint64_t begin = 0;
        std::uint64_t end = 0;
    };

    void takeOver();
    void put(const fileString& name, Record record);
    bool addRenamed(ZipArchive& source, const ZipEntry& entry, const ZipExtent& extent, const fileString& name);
    bool copy(ZipArchive& source, std::uint64_t begin, std::uint64_t end);
    bool flush();
    bool write(std::string_view bytes);
    bool copyOld();
    bool writeDirectory();
    std::string endRecords(std::uint64_t directoryBegin) const;

    std::unique_ptr<ZipArchive> old_;
    ReplacementFile file_;
    bool good_;
    bool changed_ = false;
    std::vector<Record> records_;
    std::unordered_map<std::string, std::size_t> byName_;  // index in records_
    std::string comment_;
    Range pending_;             // to be copied; neighbours are copied at once
    std::uint64_t offset_ = 0;  // where the next byte goes, pending_ included
};

}  // namespace Velk::detail
