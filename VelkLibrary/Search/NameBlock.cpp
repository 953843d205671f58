#include <VelkLibrary/Search/detail/NameBlock.h>

#include <VelkCommon/Text/LowerCase.h>
#include <VelkLibrary/Search/detail/LoweredTexts.h>
#include <VelkLibrary/Search/detail/WordBytes.h>

#include <algorithm>
#include <cstring>
#include <limits>
#include <stdexcept>

using Velk::Platform::Bytes16;

namespace Library::Search::detail {
namespace {

constexpr std::size_t bitsPerWord = 64;
constexpr std::size_t mostCells = std::numeric_limits<std::uint32_t>::max();

// What the texts of an entry take up beyond their sizes, on average.
constexpr std::size_t usualPadding = 9;

// Memory that has been asked for and is not used is given back when it is more than this part of the whole.
constexpr std::size_t slackPart = 8;

template <typename Value>
void makeRoomFor(std::vector<Value>& values, std::size_t count)
{
    if (values.capacity() - values.size() < count)
        values.reserve(std::max(values.size() + count, values.size() + values.size() / 2));
}

template <typename Value>
void giveBackSlack(std::vector<Value>& values)
{
    if (values.capacity() - values.size() > values.capacity() / slackPart)
        values.shrink_to_fit();
}

}  // namespace

void NameBlock::reserve(std::size_t entries, std::size_t bytes)
{
    const std::size_t needed = usedBytes() + bytes + entries * usualPadding + readable;
    if (needed > capacity_)
        setCapacity(needed);
    cells_.reserve(size_ + entries + 1);
    names_.reserve(size_ + entries);
}

// Room for so many bytes behind the used ones, and for what must be readable behind those.
void NameBlock::makeRoom(std::size_t bytes)
{
    const std::size_t needed = usedBytes() + bytes + readable;
    if (needed > capacity_)
        setCapacity(std::max(needed, capacity_ + capacity_ / 2));
}

void NameBlock::setCapacity(std::size_t capacity)
{
    auto larger = std::make_unique_for_overwrite<char[]>(capacity);
    if (bytes_)
        std::memcpy(larger.get(), bytes_.get(), usedBytes());
    else
        std::memset(larger.get(), guard, cellSize);
    bytes_ = std::move(larger);
    capacity_ = capacity;
}

// The first cell holds only the byte before the first text.
void NameBlock::makeRoomForEntries(std::size_t count)
{
    makeRoomFor(cells_, count + 1);
    makeRoomFor(names_, count);
    if (cells_.empty())
        cells_.push_back(1);
}

// Writes a text in lower case to the block, or to `aside` if it has a line break. Returns its size in the block.
std::size_t NameBlock::put(std::string_view text, std::size_t at, std::string& aside, bool& isAside)
{
    char* const to = bytes_.get() + at;
    const std::size_t size = StringUtils::toLowerUtf8Into(to, text);
    isAside = findBreak(to, {0, size}) != std::string::npos;
    if (isAside)
        aside.assign(to, size);
    const std::size_t kept = isAside ? 0 : size;
    std::memset(to + kept, guard, cellSize);
    return kept;
}

void NameBlock::add(std::string_view name, std::optional<std::string_view> keywords, bool isFolder)
{
    if (name.size() > largestName)
        throw std::length_error("the name of an entry is too large");
    const std::string_view words = keywords.value_or(std::string_view());
    makeRoomForEntries(1);
    makeRoom(StringUtils::lowerUtf8Room(name.size()) + StringUtils::lowerUtf8Room(words.size()) + 2 * cellSize);
    Aside aside{static_cast<std::uint32_t>(names_.size()), {}, {}};
    bool nameIsAside = false;
    bool wordsAreAside = false;
    const std::size_t nameSize = put(name, usedBytes(), aside.name, nameIsAside);
    const std::size_t wordsCell = cells_.back() + nameCells(nameSize);
    const std::size_t wordsSize = put(words, wordsCell * cellSize, aside.keywords, wordsAreAside);
    const std::size_t end = wordsCell + keywordCells(wordsSize);
    if (nameSize > largestName || end > mostCells)
        throw std::length_error("too many names for one block");
    if (nameIsAside || wordsAreAside)
        asides_.push_back(std::move(aside));
    names_.push_back(static_cast<std::uint32_t>(nameSize) | (isFolder ? folderFlag : 0U) |
                     (keywords ? keywordsFlag : 0U) | (nameIsAside ? nameAsideFlag : 0U) |
                     (wordsAreAside ? keywordsAsideFlag : 0U));
    cells_.push_back(static_cast<std::uint32_t>(end));
}

void NameBlock::append(const NameBlock& other)
{
    const std::size_t count = other.size_;
    if (count == 0)
        return;
    const std::size_t bytes = (other.cells_[count] - 1) * cellSize;
    if (usedBytes() / cellSize + bytes / cellSize > mostCells)
        throw std::length_error("too many names for one block");
    const auto isBefore = [](const Aside& aside, std::size_t number) { return aside.entry < number; };
    const auto asidesEnd = std::lower_bound(other.asides_.begin(), other.asides_.end(), count, isBefore);
    std::vector<Aside> asides(other.asides_.begin(), asidesEnd);
    makeRoomFor(asides_, asides.size());
    makeRoomForEntries(count);
    makeRoom(bytes);  // nothing throws any more
    for (Aside& aside : asides) {
        aside.entry += static_cast<std::uint32_t>(names_.size());
        asides_.push_back(std::move(aside));
    }
    std::memcpy(bytes_.get() + usedBytes(), other.bytes_.get() + cellSize, bytes);
    const std::uint32_t shift = cells_.back() - 1;
    for (std::size_t i = 0; i < count; ++i) {
        cells_.push_back(other.cells_[i + 1] + shift);
        names_.push_back(other.names_[i]);
    }
}

void NameBlock::close()
{
    makeRoomForEntries(0);
    makeRoom(0);
    if (capacity_ - usedBytes() - readable > capacity_ / slackPart)
        setCapacity(usedBytes() + readable);
    giveBackSlack(cells_);
    giveBackSlack(names_);
    std::memset(bytes_.get() + usedBytes(), guard, readable);
    const std::size_t words = usedBytes() / bitsPerWord + 1;
    const std::size_t firstNew = size_ == 0 ? 0 : cells_[size_] * cellSize / bitsPerWord;
    wordBits_.resize(words + 2);
    giveBackSlack(wordBits_);
    for (std::size_t word = firstNew; word < words; ++word) {
        const char* const bytes = bytes_.get() + word * bitsPerWord;
        std::uint64_t bits = 0;
        for (std::size_t i = 0; i < bitsPerWord; i += Bytes16::size)
            bits |= std::uint64_t{areWord(bytes + i).mask()} << i;
        wordBits_[word + 1] = bits;
    }
    size_ = names_.size();
}

std::size_t NameBlock::memory() const noexcept
{
    std::size_t bytes = capacity_ + cells_.capacity() * sizeof(std::uint32_t) +
                        names_.capacity() * sizeof(std::uint32_t) + wordBits_.capacity() * sizeof(std::uint64_t) +
                        asides_.capacity() * sizeof(Aside);
    for (const Aside& aside : asides_)
        bytes += aside.name.capacity() + aside.keywords.capacity();
    return bytes;
}

const NameBlock::Aside& NameBlock::aside(std::size_t entry) const noexcept
{
    const auto isBefore = [](const Aside& aside, std::size_t number) { return aside.entry < number; };
    return *std::lower_bound(asides_.begin(), asides_.end(), entry, isBefore);
}

std::string_view NameBlock::name(std::size_t entry) const noexcept
{
    if ((names_[entry] & nameAsideFlag) != 0)
        return aside(entry).name;
    return {bytes_.get() + cell(entry) * cellSize, nameSize(entry)};
}

// The size of keywords is not kept. Bytes at their end that look like those behind them do not matter to any term.
std::optional<std::string_view> NameBlock::keywords(std::size_t entry) const noexcept
{
    if ((names_[entry] & keywordsFlag) == 0)
        return std::nullopt;
    if ((names_[entry] & keywordsAsideFlag) != 0)
        return aside(entry).keywords;
    const char* const begin = bytes_.get() + keywordsCell(entry) * cellSize;
    const char* end = bytes_.get() + cell(entry + 1) * cellSize;
    while (end > begin && end[-1] == guard)
        --end;
    return std::string_view(begin, static_cast<std::size_t>(end - begin));
}

}  // namespace Library::Search::detail
