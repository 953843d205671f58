#pragma once

#include <VelkCommon/Archive/detail/ZipArchive.h>

#include <cstddef>
#include <cstdint>
#include <memory>
#include <optional>
#include <vector>

namespace Velk::detail {

/// Reads the data of one entry, stored or deflated, in pieces. Never gives more than the declared size.
/// One thread at a time.
class ZipEntryReader
{
public:
    /// `archive` must stay open while the reader is used.
    ZipEntryReader(std::shared_ptr<ZipArchive> archive, const ZipEntry& entry);
    ~ZipEntryReader();
    ZipEntryReader(const ZipEntryReader&) = delete;
    ZipEntryReader& operator=(const ZipEntryReader&) = delete;

    /// Reads at most `size` bytes; fewer only at the end or at a failure.
    std::size_t read(unsigned char* bytes, std::size_t size);
    /// The bytes that the archive still promises.
    std::uint64_t remaining() const noexcept { return entry_.size - done_; }

    /// True when the entry cannot be read, or not any further.
    bool failed() const noexcept { return state_ == State::failed; }
    /// True when the entry was read to its end, with the declared length and checksum.
    bool whole() const noexcept { return state_ == State::whole; }

private:
    enum class State { reading, whole, failed };
    struct Inflater;

    bool start();
    std::size_t produce(unsigned char* bytes, std::size_t size);
    bool isAtEnd();
    void fillInput();

    std::shared_ptr<ZipArchive> archive_;
    ZipEntry entry_;
    State state_ = State::reading;
    std::uint64_t position_ = 0;  // of the next compressed byte in the file
    std::uint64_t dataEnd_ = 0;
    std::uint64_t done_ = 0;  // bytes given
    std::uint32_t crc_ = 0;
    std::unique_ptr<Inflater> inflater_;  // null for stored data
};

/// Reads the whole of an entry that is small enough to be held in memory. Nothing when it is damaged or cannot
/// be read. Throws std::bad_alloc.
std::optional<std::vector<unsigned char>> readWholeEntry(ZipArchive& archive, const ZipEntry& entry);

}  // namespace Velk::detail
