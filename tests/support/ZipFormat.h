#pragma once

#include <cstddef>
#include <cstdint>
#include <string_view>

/// The numbers of the zip format, written down independently of the product's own.
namespace test::zip {

/// What each record begins with.
namespace signature {
inline constexpr std::string_view local = "PK\x03\x04";
inline constexpr std::string_view descriptor = "PK\x07\x08";
inline constexpr std::string_view central = "PK\x01\x02";
inline constexpr std::string_view end = "PK\x05\x06";
inline constexpr std::string_view wideEnd = "PK\x06\x06";
inline constexpr std::string_view wideLocator = "PK\x06\x07";
}  // namespace signature

/// A record of the directory: its size without the parts that vary, and the position of one field.
inline constexpr std::size_t centralSize = 46;
inline constexpr std::size_t centralExtraSize = 30;
inline constexpr std::size_t extraHeaderSize = 4;  ///< number and size of an extra field

/// In place of a number that stands in a wide field.
inline constexpr std::uint64_t full32 = 0xFFFFFFFF;
inline constexpr std::uint16_t full16 = 0xFFFF;

inline constexpr std::uint16_t wideField = 1;      ///< the number of the extra field with wide numbers
inline constexpr std::uint16_t usualVersion = 20;  ///< of the format, that a reader must know
inline constexpr std::uint16_t wideVersion = 45;   ///< the one with wide numbers
inline constexpr std::uint16_t stored = 0;         ///< methods
inline constexpr std::uint16_t deflated = 8;
inline constexpr std::uint16_t unknownMethod = 97;
inline constexpr std::uint16_t encrypted = 1;      ///< flags
inline constexpr std::uint16_t hasDescriptor = 8;  ///< sizes and checksum follow the data
inline constexpr std::uint16_t utf8Names = 0x800;
inline constexpr std::uint16_t madeByUnix = 0x031E;
inline constexpr std::uint16_t madeByDos = 0x0014;
inline constexpr std::uint32_t readableFile = 0x81A40000;  ///< attributes: a file that its owner may write
inline constexpr std::uint32_t folder = 0x41ED0010;        ///< attributes
inline constexpr std::uint16_t firstDate = 0x0021;         ///< 1 January 1980

}  // namespace test::zip
