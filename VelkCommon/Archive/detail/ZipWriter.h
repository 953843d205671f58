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

/// An archive that is being written from entries copied from other archives. It replaces the file at its path
/// whole or not at all, and holds each name only once.
///
/// New entries are written as they come. The entries of an archive that was there before follow at the end, without
/// those that were replaced; the directory still lists the old ones first.
class ZipWriter
{
public:
    /// Begins the archive at `target`. Adds to the archive that is there if it is given as `old`; null means that
    /// whatever is there is replaced.
    ZipWriter(const fileString& target, std::unique_ptr<ZipArchive> old);

    /// True as long as nothing has gone wrong.
    bool good() const noexcept { return good_; }
    /// True when an entry has been added.
    bool changed() const noexcept { return changed_; }

    /// Copies an entry of `source`, which must stay open until finish(). False when the entry is damaged,
    /// and after the first failed write.
    bool add(ZipArchive& source, const ZipEntry& entry, const fileString& name);

    /// Writes the old entries and the directory, and closes the old archive. False on failure.
    bool finish();
    /// Puts the finished archive in place. False on failure.
    bool commit();

private:
    struct Record
    {
        std::string text;         // as in the directory, except for the offset
        std::uint64_t begin = 0;  // of the local header, in the old archive until it is copied, then in the new one
        std::uint64_t end = 0;    // of the bytes to copy from the old archive
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
    Range pending_;             // still to be copied; grows by neighbouring entries
    std::uint64_t offset_ = 0;  // where the next byte goes, pending_ included
};

}  // namespace Velk::detail
