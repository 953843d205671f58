#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

/// @file
/// The records of a zip archive: their signatures, sizes and the places of their fields. All numbers are
/// little-endian. Data of the entries comes first (each behind a local header, some with a descriptor
/// behind), then the directory with a record per entry, then the end record.

namespace Velk::detail::zip {

inline constexpr std::uint32_t full32 = 0xFFFFFFFF;  ///< the value stands in the zip64 extra field or record
inline constexpr std::uint16_t full16 = 0xFFFF;

namespace local {
inline constexpr std::uint32_t signature = 0x04034B50;
inline constexpr std::size_t size = 30;
inline constexpr std::size_t flags = 6;
inline constexpr std::size_t nameSize = 26;
inline constexpr std::size_t extraSize = 28;
}  // namespace local

namespace descriptor {
inline constexpr std::uint32_t signature = 0x08074B50;  // optional
inline constexpr std::size_t maximumSize = 24;
}  // namespace descriptor

namespace central {
inline constexpr std::uint32_t signature = 0x02014B50;
inline constexpr std::size_t size = 46;
inline constexpr std::size_t versionNeeded = 6;
inline constexpr std::size_t flags = 8;
inline constexpr std::size_t method = 10;
inline constexpr std::size_t crc = 16;
inline constexpr std::size_t compressedSize = 20;
inline constexpr std::size_t uncompressedSize = 24;
inline constexpr std::size_t nameSize = 28;
inline constexpr std::size_t extraSize = 30;
inline constexpr std::size_t commentSize = 32;
inline constexpr std::size_t disk = 34;
inline constexpr std::size_t offset = 42;
}  // namespace central

namespace end {
inline constexpr std::uint32_t signature = 0x06054B50;
inline constexpr std::size_t size = 22;
inline constexpr std::size_t disk = 4;
inline constexpr std::size_t directoryDisk = 6;
inline constexpr std::size_t countHere = 8;
inline constexpr std::size_t count = 10;
inline constexpr std::size_t directorySize = 12;
inline constexpr std::size_t directoryOffset = 16;
inline constexpr std::size_t commentSize = 20;
}  // namespace end

namespace locator64 {
inline constexpr std::uint32_t signature = 0x07064B50;
inline constexpr std::size_t size = 20;
inline constexpr std::size_t disk = 4;
inline constexpr std::size_t recordOffset = 8;
inline constexpr std::size_t disks = 16;
}  // namespace locator64

namespace end64 {
inline constexpr std::uint32_t signature = 0x06064B50;
inline constexpr std::size_t size = 56;
inline constexpr std::size_t remainingSize = 4;  // of the record, behind this field
inline constexpr std::size_t versionMadeBy = 12;
inline constexpr std::size_t versionNeeded = 14;
inline constexpr std::size_t disk = 16;
inline constexpr std::size_t directoryDisk = 20;
inline constexpr std::size_t countHere = 24;
inline constexpr std::size_t count = 32;
inline constexpr std::size_t directorySize = 40;
inline constexpr std::size_t directoryOffset = 48;
}  // namespace end64

namespace extra {
inline constexpr std::size_t headerSize = 4;  // number and size of the field
inline constexpr std::uint16_t zip64 = 0x0001;
}  // namespace extra

namespace flag {
inline constexpr std::uint16_t encrypted = 1U << 0U;
inline constexpr std::uint16_t descriptor = 1U << 3U;  // lengths and checksum stand behind the data
inline constexpr std::uint16_t utf8 = 1U << 11U;
}  // namespace flag

namespace method {
inline constexpr std::uint16_t stored = 0;
inline constexpr std::uint16_t deflated = 8;
}  // namespace method

inline constexpr std::uint16_t versionWithZip64 = 45;

/// The number at `position`; all its bytes lie in `text`.
template <typename Number>
Number read(std::string_view text, std::size_t position) noexcept
{
    std::uint64_t value = 0;
    for (std::size_t i = sizeof(Number); i > 0; --i)
        value = value << 8U | static_cast<unsigned char>(text[position + i - 1]);
    return static_cast<Number>(value);
}

inline std::uint16_t read16(std::string_view text, std::size_t position) noexcept
{
    return read<std::uint16_t>(text, position);
}

inline std::uint32_t read32(std::string_view text, std::size_t position) noexcept
{
    return read<std::uint32_t>(text, position);
}

inline std::uint64_t read64(std::string_view text, std::size_t position) noexcept
{
    return read<std::uint64_t>(text, position);
}

/// Writes `value` over the bytes at `position`, which lie in `text`.
template <typename Number>
void write(std::string& text, std::size_t position, Number value) noexcept
{
    std::uint64_t rest = value;
    for (std::size_t i = 0; i < sizeof(Number); ++i, rest >>= 8U)
        text[position + i] = static_cast<char>(static_cast<unsigned char>(rest & 0xFFU));
}

}  // namespace Velk::detail::zip
