#pragma once

#include <VelkCommon/Files/fileString.h>

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace Velk::Platform {
class File;
}

namespace Velk::detail {

/// What an archive's directory says of an entry. Offsets count from the file's beginning.
struct ZipEntry
{
    std::size_t record = 0;      ///< where its record begins in the directory
    std::size_t recordSize = 0;  ///< in bytes
    std::uint64_t begin = 0;     ///< of the local header
    std::uint64_t limit = 0;     ///< where something else begins
    std::uint64_t compressedSize = 0;
    std::uint64_t size = 0;
    std::uint32_t crc = 0;
    std::uint16_t method = 0;
    std::uint16_t flags = 0;
};

/// The directory of a readable archive. Everything in it has been checked against the file's size, and no two
/// entries share bytes.
class ZipDirectory
{
public:
    /// Reads and checks the directory. Nothing when the archive is not readable.
    static std::optional<ZipDirectory> read(Platform::File& file);

    const std::vector<ZipEntry>& entries() const noexcept { return entries_; }
    /// The entry's record, unchanged.
    std::string_view record(const ZipEntry& entry) const;
    /// The bytes of the entry's name.
    std::string_view rawName(const ZipEntry& entry) const;
    /// The entry's name, see ZipUtils.
    fileString name(const ZipEntry& entry) const;
    /// The archive's comment.
    const std::string& comment() const noexcept { return comment_; }

private:
    struct End;
    struct Place;

    static std::optional<ZipDirectory> readBefore(Platform::File& file, const End& end);
    static std::optional<End> readEnd(Platform::File& file, std::string_view tail, std::size_t position,
                                      std::uint64_t tailBegin);
    static bool readEnd64(Platform::File& file, std::string_view before, End& end);
    static std::optional<ZipDirectory> readAt(Platform::File& file, const End& end, const Place& place);
    bool parseRecords(const Place& place);
    bool parseRecord(std::size_t position, const Place& place);
    bool setLimits(std::uint64_t directoryBegin);

    std::string records_;
    std::vector<ZipEntry> entries_;
    std::string comment_;
};

/// Where in a record of the directory its zip64 extra field lies, without the field's header.
struct ZipWideValues
{
    std::size_t begin = 0;
    std::size_t end = 0;
};
/// Nothing when the record has no such field.
std::optional<ZipWideValues> findWideValues(std::string_view record);

}  // namespace Velk::detail
