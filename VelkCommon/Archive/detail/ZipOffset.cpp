#include <VelkCommon/Archive/detail/ZipOffset.h>

#include <VelkCommon/Archive/detail/ZipDirectory.h>
#include <VelkCommon/Archive/detail/ZipFormat.h>

#include <algorithm>

namespace Velk::detail {
namespace {

/// Puts the offset into a new zip64 field, or behind the lengths in an existing one. False when there is no room.
bool addWideOffset(std::string& record, std::uint64_t offset)
{
    namespace central = zip::central;
    std::string value(8, '\0');
    zip::write(value, 0, offset);
    std::size_t position = 0;
    if (const auto wide = findWideValues(record)) {
        const bool hasSize = zip::read32(record, central::uncompressedSize) == zip::full32;
        const bool hasCompressedSize = zip::read32(record, central::compressedSize) == zip::full32;
        position = wide->begin + (hasSize ? 8 : 0) + (hasCompressedSize ? 8 : 0);
        const auto size = static_cast<std::uint16_t>(wide->end - wide->begin + value.size());
        zip::write(record, wide->begin - 2, size);
    } else {
        position = central::size + zip::read16(record, central::nameSize) + zip::read16(record, central::extraSize);
        value.insert(0, zip::extra::headerSize, '\0');
        zip::write(value, 0, zip::extra::zip64);
        zip::write(value, 2, std::uint16_t{8});
    }
    const std::size_t extraSize = zip::read16(record, central::extraSize) + value.size();
    if (extraSize > zip::full16)
        return false;
    record.insert(position, value);
    zip::write(record, central::extraSize, static_cast<std::uint16_t>(extraSize));
    zip::write(record, central::offset, zip::full32);
    const std::uint16_t version = zip::read16(record, central::versionNeeded);
    zip::write(record, central::versionNeeded, std::max(version, zip::versionWithZip64));
    return true;
}

}  // namespace

bool setOffset(std::string& record, std::uint64_t offset)
{
    namespace central = zip::central;
    if (zip::read32(record, central::offset) == zip::full32) {
        if (const auto wide = findWideValues(record)) {
            const bool hasSize = zip::read32(record, central::uncompressedSize) == zip::full32;
            const bool hasCompressedSize = zip::read32(record, central::compressedSize) == zip::full32;
            zip::write(record, wide->begin + (hasSize ? 8 : 0) + (hasCompressedSize ? 8 : 0), offset);
            return true;
        }
    }
    if (offset >= zip::full32)
        return addWideOffset(record, offset);
    zip::write(record, central::offset, static_cast<std::uint32_t>(offset));
    return true;
}

}  // namespace Velk::detail
