#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

namespace Library::Search::detail {

/// A part of a term that can be looked for in a text as it was given: wherever the lowered text holds the
/// term, the given one holds these bytes, but for the bit that capitals lack. Most texts do not hold
/// a term, and to see it here takes a fraction of the time to lower them.
class PlainPart
{
public:
    /// `term` is in lower case.
    explicit PlainPart(std::string_view term) noexcept;

    /// Whether `text` may hold `term`, the one given to the constructor, once it is lowered.
    bool mayStandIn(std::string_view text) const noexcept;

    /// False if the answer is yes for most texts, as for a single letter, or for all.
    bool isSelective() const noexcept { return size_ > 1; }

private:
    bool standsAt(const char* place) const noexcept;
    bool mayStandInShort(std::string_view text) const noexcept;

    static constexpr std::size_t longest = 16;

    char bytes_[longest] = {};  // with the bit that capitals lack
    std::uint8_t size_ = 0;
    std::uint8_t probe_ = 0;     // the place of two neighbours, or of one byte, that are rare in names
    std::uint8_t distance_ = 0;  // 1 where there are two
};

}  // namespace Library::Search::detail
