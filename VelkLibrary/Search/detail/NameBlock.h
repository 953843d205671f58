#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace Library::Search::detail {

/// The names and keywords of many entries in lower case, one after the other in one block of memory, so that a
/// search runs through all of them without a stop. Each text begins at a multiple of `cellSize` bytes; a byte that
/// is part of no term stands before and behind each, and fills its last cell.
///
/// A text with a line break is kept aside, and the block has an empty one in its place: no term without a line break
/// is found in it.
///
/// One thread at a time may change it; what is const may be called by many.
class NameBlock
{
public:
    static constexpr std::size_t cellSize = 8;
    /// How far behind the last text the bytes can be read.
    static constexpr std::size_t readable = 192;
    static constexpr std::size_t largestName = (std::size_t{1} << 28) - 1;

    /// The cells that a name takes up, with at least one byte behind it.
    static constexpr std::size_t nameCells(std::size_t size) noexcept { return size / cellSize + 1; }
    /// The cells that keywords take up: none at all if they are empty.
    static constexpr std::size_t keywordCells(std::size_t size) noexcept { return size == 0 ? 0 : size / cellSize + 1; }

    void reserve(std::size_t entries, std::size_t bytes);

    /// Adds an entry; either all of it or, when an exception is thrown, nothing. Throws std::length_error if the name
    /// is larger than `largestName` or the block too large for its cells to be counted in 32 bits.
    void add(std::string_view name, std::optional<std::string_view> keywords, bool isFolder);

    /// Adds the entries that `other` (which may be this one) had when it was last closed.
    void append(const NameBlock& other);

    /// What was added counts from now on.
    void close();

    std::size_t size() const noexcept { return size_; }
    std::size_t memory() const noexcept;

    /// The texts, kept aside or not.
    std::string_view name(std::size_t entry) const noexcept;
    std::optional<std::string_view> keywords(std::size_t entry) const noexcept;

    bool isFolder(std::size_t entry) const noexcept { return (names_[entry] & folderFlag) != 0; }

    /// The block: readable from one byte before the first text. `cell(size())` is behind the last text.
    const char* bytes() const noexcept { return bytes_.get(); }
    std::size_t cell(std::size_t entry) const noexcept { return cells_[entry]; }
    const std::uint32_t* cells() const noexcept { return cells_.data(); }
    /// The size of the name in the block.
    std::size_t nameSize(std::size_t entry) const noexcept
    {
        const std::uint32_t name = names_[entry];
        return (name & nameAsideFlag) != 0 ? 0 : name & sizeBits;
    }
    std::size_t keywordsCell(std::size_t entry) const noexcept { return cell(entry) + nameCells(nameSize(entry)); }

    /// Bit i of word n tells whether byte 64 n + i is a word character. Readable from one word before the first to
    /// one behind the last.
    const std::uint64_t* wordBits() const noexcept { return wordBits_.data() + 1; }

private:
    struct Aside
    {
        std::uint32_t entry;
        std::string name;
        std::string keywords;
    };

    static constexpr std::uint32_t folderFlag = 1U << 31;
    static constexpr std::uint32_t keywordsFlag = 1U << 30;
    static constexpr std::uint32_t nameAsideFlag = 1U << 29;
    static constexpr std::uint32_t keywordsAsideFlag = 1U << 28;
    static constexpr std::uint32_t sizeBits = keywordsAsideFlag - 1;

    void makeRoom(std::size_t bytes);
    void setCapacity(std::size_t capacity);
    void makeRoomForEntries(std::size_t count);
    std::size_t put(std::string_view text, std::size_t at, std::string& aside, bool& isAside);
    std::size_t usedBytes() const noexcept { return (cells_.empty() ? 1 : cells_.back()) * cellSize; }
    const Aside& aside(std::size_t entry) const noexcept;

    std::unique_ptr<char[]> bytes_;
    std::size_t capacity_ = 0;
    std::size_t size_ = 0;              // of the entries that count
    std::vector<std::uint32_t> cells_;  // where entries begin, and where the next one will
    std::vector<std::uint32_t> names_;  // sizes and flags
    std::vector<std::uint64_t> wordBits_;
    std::vector<Aside> asides_;  // in the order of their entries
};

}  // namespace Library::Search::detail
