#include <VelkCommon/Archive/detail/ZipDirectory.h>

#include <VelkCommon/Archive/detail/ZipFormat.h>
#include <VelkCommon/Archive/detail/ZipNames.h>
#include <VelkCommon/Platform/File.h>

#include <algorithm>
#include <numeric>

namespace Velk::detail {
namespace {

constexpr std::uint64_t maximumDirectorySize = std::uint64_t{1} << 30;  // in bytes; it is held in memory
constexpr std::size_t maximumTail = zip::locator64::size + zip::end::size + zip::full16;
// A comment may hold bytes that look like an end record. A file with more of them than this was made to waste time.
constexpr int maximumEndRecords = 8;

std::optional<std::string> readBlock(Platform::File& file, std::uint64_t begin, std::uint64_t size)
{
    std::string block(static_cast<std::size_t>(size), '\0');
    const long long got = file.readAt(static_cast<long long>(begin), block.data(), block.size());
    if (got != static_cast<long long>(block.size()))
        return std::nullopt;
    return block;
}

/// Reads those values of a record that may be in the zip64 extra field instead, in the order of that field.
class WideReader
{
public:
    explicit WideReader(std::string_view record) : record_(record), values_(findWideValues(record)) {}

    /// `narrow` unless it says that the value is in the extra field.
    template <typename Narrow, typename Wide>
    Wide value(Narrow narrow)
    {
        if (narrow != static_cast<Narrow>(-1))
            return narrow;
        if (!values_ || values_->end - values_->begin < sizeof(Wide)) {
            missing_ = true;
            return 0;
        }
        values_->begin += sizeof(Wide);
        return zip::read<Wide>(record_, values_->begin - sizeof(Wide));
    }

    bool complete() const noexcept { return !missing_; }

private:
    std::string_view record_;
    std::optional<ZipWideValues> values_;
    bool missing_ = false;
};

}  // namespace

/// What the end records say.
struct ZipDirectory::End
{
    std::uint64_t position = 0;  ///< of the first end record, where the directory ends
    std::uint64_t count = 0;
    bool wideCount = false;  ///< else only the lower 16 bits are known
    std::uint64_t directorySize = 0;
    std::uint64_t directoryOffset = 0;
    std::string comment;
};

/// One interpretation of the end record: where the directory begins, and how far the stated offsets are off.
struct ZipDirectory::Place
{
    std::uint64_t begin = 0;
    std::uint64_t shift = 0;
};

std::optional<ZipDirectory> ZipDirectory::read(Platform::File& file)
{
    const long long size = file.size();
    if (size < static_cast<long long>(zip::end::size))
        return std::nullopt;
    const auto fileSize = static_cast<std::uint64_t>(size);
    const std::uint64_t tailSize = std::min<std::uint64_t>(fileSize, maximumTail);
    const auto tail = readBlock(file, fileSize - tailSize, tailSize);
    if (!tail)
        return std::nullopt;
    // Searched backwards from the end, as other readers do, since a comment may hold bytes that look like an end
    // record.
    int records = 0;
    for (std::size_t position = tail->size() - zip::end::size + 1; position-- > 0 && records < maximumEndRecords;)
        if (const auto end = readEnd(file, *tail, position, fileSize - tailSize)) {
            ++records;
            if (auto directory = readBefore(file, *end))
                return directory;
        }
    return std::nullopt;
}

// With bytes in front of the archive, offsets may count from the archive's beginning or from the file's, so both
// are tried. Only the end of the directory is certain.
std::optional<ZipDirectory> ZipDirectory::readBefore(Platform::File& file, const End& end)
{
    const std::uint64_t begin = end.position - end.directorySize;
    if (begin < end.directoryOffset)
        return std::nullopt;
    if (auto directory = readAt(file, end, {begin, begin - end.directoryOffset}))
        return directory;
    return begin > end.directoryOffset ? readAt(file, end, {end.directoryOffset, 0}) : std::nullopt;
}

std::optional<ZipDirectory::End> ZipDirectory::readEnd(Platform::File& file, std::string_view tail,
                                                       std::size_t position, std::uint64_t tailBegin)
{
    const std::string_view record = tail.substr(position);
    if (zip::read32(record, 0) != zip::end::signature)
        return std::nullopt;
    const std::size_t commentSize = zip::read16(record, zip::end::commentSize);
    // If anything follows, this end record may belong to an archive that is stored as the last entry of another one.
    if (record.size() - zip::end::size != commentSize)
        return std::nullopt;
    End end;
    end.position = tailBegin + position;
    end.count = zip::read16(record, zip::end::count);
    end.directorySize = zip::read32(record, zip::end::directorySize);
    end.directoryOffset = zip::read32(record, zip::end::directoryOffset);
    end.comment = record.substr(zip::end::size, commentSize);
    if (!readEnd64(file, tail.substr(0, position), end))
        return std::nullopt;
    const bool fits = end.directorySize <= std::min(end.position, maximumDirectorySize);
    return fits ? std::optional(std::move(end)) : std::nullopt;
}

bool ZipDirectory::readEnd64(Platform::File& file, std::string_view before, End& end)
{
    namespace locator = zip::locator64;
    if (before.size() < locator::size)
        return true;
    const std::string_view record = before.substr(before.size() - locator::size);
    if (zip::read32(record, 0) != locator::signature)
        return true;
    const std::uint64_t locatorPosition = end.position - locator::size;
    if (locatorPosition < zip::end64::size)
        return false;
    // Bytes in front of the archive make the offset wrong by their number; then the record is right before the locator.
    for (const std::uint64_t position :
         {zip::read64(record, locator::recordOffset), locatorPosition - zip::end64::size}) {
        if (position > locatorPosition - zip::end64::size)
            continue;
        const auto end64 = readBlock(file, position, zip::end64::size);
        if (!end64 || zip::read32(*end64, 0) != zip::end64::signature)
            continue;
        end.position = position;
        end.count = zip::read64(*end64, zip::end64::count);
        end.wideCount = true;
        end.directorySize = zip::read64(*end64, zip::end64::directorySize);
        end.directoryOffset = zip::read64(*end64, zip::end64::directoryOffset);
        return true;
    }
    return false;
}

std::optional<ZipDirectory> ZipDirectory::readAt(Platform::File& file, const End& end, const Place& place)
{
    auto records = readBlock(file, place.begin, end.directorySize);
    if (!records)
        return std::nullopt;
    ZipDirectory directory;
    directory.records_ = std::move(*records);
    directory.comment_ = end.comment;
    const auto hasCount = [&](std::uint64_t count) {
        return count == end.count || (!end.wideCount && (count & zip::full16) == end.count);
    };
    if (!directory.parseRecords(place) || !hasCount(directory.entries_.size()) || !directory.setLimits(place.begin))
        return std::nullopt;
    return directory;
}

bool ZipDirectory::parseRecords(const Place& place)
{
    while (true) {
        const std::size_t position = entries_.empty() ? 0 : entries_.back().record + entries_.back().recordSize;
        if (position == records_.size())
            return true;
        if (!parseRecord(position, place))
            return false;
    }
}

bool ZipDirectory::parseRecord(std::size_t position, const Place& place)
{
    namespace central = zip::central;
    std::string_view record = std::string_view(records_).substr(position);
    if (record.size() < central::size || zip::read32(record, 0) != central::signature)
        return false;
    const std::size_t size = central::size + zip::read16(record, central::nameSize) +
                             zip::read16(record, central::extraSize) + zip::read16(record, central::commentSize);
    if (record.size() < size)
        return false;
    record = record.substr(0, size);
    WideReader wide(record);
    ZipEntry entry;
    entry.record = position;
    entry.recordSize = size;
    entry.size = wide.value<std::uint32_t, std::uint64_t>(zip::read32(record, central::uncompressedSize));
    entry.compressedSize = wide.value<std::uint32_t, std::uint64_t>(zip::read32(record, central::compressedSize));
    const auto offset = wide.value<std::uint32_t, std::uint64_t>(zip::read32(record, central::offset));
    const auto disk = wide.value<std::uint16_t, std::uint32_t>(zip::read16(record, central::disk));
    if (!wide.complete() || disk != 0 || offset > place.begin)
        return false;
    entry.begin = offset + place.shift;
    entry.crc = zip::read32(record, central::crc);
    entry.method = zip::read16(record, central::method);
    entry.flags = zip::read16(record, central::flags);
    entries_.push_back(entry);
    return true;
}

bool ZipDirectory::setLimits(std::uint64_t directoryBegin)
{
    std::vector<ZipEntry*> inFile(entries_.size());
    std::transform(entries_.begin(), entries_.end(), inFile.begin(), [](ZipEntry& entry) { return &entry; });
    const auto liesBefore = [](const ZipEntry* left, const ZipEntry* right) { return left->begin < right->begin; };
    if (!std::is_sorted(inFile.begin(), inFile.end(), liesBefore))
        std::sort(inFile.begin(), inFile.end(), liesBefore);
    std::uint64_t limit = directoryBegin;
    for (auto entry = inFile.rbegin(); entry != inFile.rend(); ++entry) {
        ZipEntry& found = **entry;
        if (found.begin > limit || limit - found.begin < zip::local::size ||
            limit - found.begin - zip::local::size < found.compressedSize)
            return false;
        found.limit = limit;
        limit = found.begin;
    }
    return true;
}

std::string_view ZipDirectory::record(const ZipEntry& entry) const
{
    return std::string_view(records_).substr(entry.record, entry.recordSize);
}

std::string_view ZipDirectory::rawName(const ZipEntry& entry) const
{
    const std::string_view whole = record(entry);
    return whole.substr(zip::central::size, zip::read16(whole, zip::central::nameSize));
}

fileString ZipDirectory::name(const ZipEntry& entry) const
{
    return decodeZipName(rawName(entry), (entry.flags & zip::flag::utf8) != 0);
}

std::optional<ZipWideValues> findWideValues(std::string_view record)
{
    namespace central = zip::central;
    std::size_t position = central::size + zip::read16(record, central::nameSize);
    const std::size_t end = position + zip::read16(record, central::extraSize);
    while (end - position >= zip::extra::headerSize) {
        const std::size_t begin = position + zip::extra::headerSize;
        const std::size_t size = zip::read16(record, position + 2);
        if (end - begin < size)
            return std::nullopt;
        if (zip::read16(record, position) == zip::extra::zip64)
            return ZipWideValues{begin, begin + size};
        position = begin + size;
    }
    return std::nullopt;
}

}  // namespace Velk::detail
