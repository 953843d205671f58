#pragma once

#include "support/ZipFormat.h"

#include <VelkCommon/Files/fileString.h>

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

namespace test {

/// What follows an entry's data.
enum class ZipDescriptor { none, signedNarrow, plainNarrow, signedWide, plainWide };

/// An entry as a test wants it, sound unless told otherwise.
struct ZipItem
{
    std::string name;
    std::string data;
    bool deflated = false;
    std::uint16_t flags = 0;
    ZipDescriptor descriptor = ZipDescriptor::none;
    bool wide = false;            ///< sizes and offset are in zip64 extra fields
    std::uint16_t time = 0x6C32;  ///< 13:33:36
    std::uint16_t date = 0x5A21;  ///< 1 January 2025
    std::uint16_t madeBy = zip::madeByUnix;
    std::uint32_t externalAttributes = zip::readableFile;
    std::uint16_t internalAttributes = 0;
    std::string localExtra;
    std::string centralExtra;
    std::string comment;

    // In place of what follows from the data: another method (the data goes in as it is), and lies.
    std::optional<std::uint16_t> method;
    std::optional<std::uint32_t> crc;
    std::optional<std::uint64_t> size;
    std::optional<std::uint64_t> compressedSize;
    std::optional<std::uint64_t> offset;
};

/// Writes archives of every legal kind, and broken ones.
class ZipBuilder
{
public:
    ZipBuilder& add(ZipItem item);
    /// A stored entry.
    ZipBuilder& add(const std::string& name, const std::string& data);
    /// Bytes in front of the archive; offsets count from behind them unless `counted`.
    ZipBuilder& lead(std::string bytes, bool counted = false);
    ZipBuilder& comment(std::string text);
    /// Ends with zip64 records, needed or not.
    ZipBuilder& wideEnd();

    std::string bytes() const;
    void writeTo(const fileString& path) const;

private:
    std::vector<ZipItem> items_;
    std::string lead_;
    bool leadCounted_ = false;
    std::string comment_;
    bool wideEnd_ = false;
};

/// Raw deflated data.
std::string deflated(const std::string& data);
std::uint32_t crcOf(const std::string& data);
/// `bytes` bytes that do not compress, always the same for a seed.
std::string noise(std::size_t bytes, unsigned seed = 1);

}  // namespace test
