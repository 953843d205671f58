#pragma once

#include <VelkCommon/Export.h>

#include <array>
#include <cstddef>
#include <cstdint>
#include <string_view>

namespace Velk::Platform {

/// Looks for a few short patterns of bytes at once. Where the processor can look up sixteen bytes by one instruction
/// (any x86-64 with AVX), that takes about as long as looking for two of them one after the other.
class VELKCOMMON_EXPORT BytePatterns
{
public:
    static constexpr std::size_t most = 8;
    static constexpr std::size_t longest = 3;  ///< bytes of a pattern
    static constexpr std::size_t blockSize = 16;
    static constexpr std::size_t readBehind = blockSize;  ///< so many bytes behind the last block must be readable

    /// A block in which patterns begin.
    struct Block
    {
        std::uint32_t number;                           ///< of the block
        std::uint32_t places;                           ///< bit i: some pattern begins at byte i of the block
        std::array<std::uint8_t, blockSize> beginning;  ///< for each byte: bit n tells whether pattern n begins there
    };

    /// Whether this processor has what makes find() quick; the results are the same on any.
    static bool isQuick() noexcept;

    /// Adds a pattern of at least one byte; bytes behind the first `longest` do not count. Its number is that of the
    /// patterns before it. Not more than `most` may be added.
    void add(std::string_view pattern) noexcept;
    void clear() noexcept { *this = {}; }
    std::size_t size() const noexcept { return size_; }

    /// Goes through `blockCount` blocks at `bytes`. Writes the blocks with patterns to `found`, which must have room
    /// for one more than there are, and returns their number. A pattern belongs to the block in which it begins.
    std::size_t find(const char* bytes, std::size_t blockCount, Block* found) const noexcept
    {
        return isQuick() ? findByShuffling(bytes, blockCount, found) : findByteByByte(bytes, blockCount, found);
    }

    /// find() for every processor.
    std::size_t findByteByByte(const char* bytes, std::size_t blockCount, Block* found) const noexcept;

private:
    std::size_t findByShuffling(const char* bytes, std::size_t blockCount, Block* found) const noexcept;

    /// By half a byte: bit n tells whether pattern n has it at this place.
    struct alignas(16) Halves
    {
        std::array<std::uint8_t, 16> low{};
        std::array<std::uint8_t, 16> high{};
    };

    std::array<Halves, longest> halves_{};
    std::size_t size_ = 0;
};

}  // namespace Velk::Platform
