#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace Library::Search::detail {

/// Part of the bytes of LoweredTexts.
struct Extent
{
    std::size_t begin = 0;
    std::size_t end = 0;
    std::size_t size() const noexcept { return end - begin; }
};

/// The place of the first line break in the extent, std::string::npos if there is none. Reads blocks of 16
/// bytes to their end.
std::size_t findBreak(const char* bytes, const Extent& extent) noexcept;

/// A name, and the keywords if there are any, in lower case. They lie one after the other in a buffer, with a
/// byte that occurs in no term before, between and behind them. So one search finds what is in either, and the
/// ends of both need no special care. Long keywords are lowered only when asked for, since most hold no term.
/// Lives for one rating, on the thread of that rating.
class LoweredTexts
{
public:
    /// The size of the buffer that the constructor needs.
    static std::size_t room(std::size_t nameSize, std::size_t keywordsSize) noexcept;

    /// Writes to `buffer`, which must outlive this, as must `keywords`. Null stands for no keywords.
    LoweredTexts(char* buffer, std::string_view name, const std::string* keywords) noexcept;

    /// The same of texts that are in lower case already, without pending keywords.
    static LoweredTexts copyOf(char* buffer, std::string_view name, std::optional<std::string_view> keywords) noexcept;

    /// The keywords as they were given, as long as they have not been lowered; otherwise empty. Pending
    /// keywords are at least `leastPending` bytes long. Until lowerKeywords(), everything else is as if there
    /// were no keywords.
    std::string_view pendingKeywords() const noexcept { return pendingKeywords_; }
    void lowerKeywords() noexcept;
    static constexpr std::size_t leastPending = 32;

    /// Readable from one byte before the name to `readable` bytes behind the end.
    const char* bytes() const noexcept { return bytes_; }
    std::size_t size() const noexcept { return keywords_.end; }
    const Extent& name() const noexcept { return name_; }
    /// Empty, and at the end of the name, when there are no keywords.
    const Extent& keywords() const noexcept { return keywords_; }
    bool hasKeywords() const noexcept { return hasKeywords_; }
    std::string_view nameText() const noexcept { return {bytes_, name_.end}; }

    /// Whether the name or the keywords hold a line break. Looked up once for each.
    bool hasBreak(bool inKeywords) const noexcept;

    static constexpr std::size_t readable = 32;

private:
    enum class Breaks : std::uint8_t { Unknown, None, Some };

    LoweredTexts(char* bytes, std::size_t nameSize, bool hasKeywords) noexcept
        : bytes_(bytes), name_{0, nameSize}, keywords_{nameSize, nameSize}, hasKeywords_(hasKeywords)
    {}

    void append(std::string_view keywords) noexcept;
    void close() noexcept;

    char* bytes_;
    std::string_view pendingKeywords_;
    Extent name_;
    Extent keywords_;
    bool hasKeywords_ = false;
    mutable Breaks breaks_[2] = {Breaks::Unknown, Breaks::Unknown};
};

/// Which pairs of neighbouring bytes the texts may hold: one look at the texts that saves most of the searches
/// for many terms. It may name a pair that the texts do not hold, but never misses one that they do.
class BytePairs
{
public:
    /// A pair's number; different pairs of small letters have different numbers.
    static std::uint16_t number(char first, char second) noexcept
    {
        return static_cast<std::uint16_t>((first & 31) << 5 | (second & 31));
    }

    explicit BytePairs(const LoweredTexts& texts) noexcept;

    /// How many numbers there are.
    static constexpr std::size_t count = 1024;

    bool mayHold(std::uint16_t number) const noexcept { return held_[number]; }

    /// Texts larger than this hold nearly all pairs.
    static constexpr std::size_t largestUseful = 1024;

private:
    bool held_[count] = {};
};

}  // namespace Library::Search::detail
