#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

namespace Library::Search::detail {

/// A part of a term that can be looked for in a text as it was given: wherever the lowered text holds the
/// term, the given text holds these bytes, apart from the bit that capitals lack. Most texts do not hold a
/// term, and finding that out here takes a fraction of the time that lowering them would.
class PlainPart
{
public:
    /// `term` is in lower case.
    explicit PlainPart(std::string_view term) noexcept;

    /// Whether `text`, once it is lowered, may hold the term that was given to the constructor.
    bool mayStandIn(std::string_view text) const noexcept;

    /// False if mayStandIn() is true of most texts, as for a single letter, or of all.
    bool isSelective() const noexcept { return size_ > 1; }

private:
    bool standsAt(const char* place) const noexcept;
    bool mayStandInShort(std::string_view text) const noexcept;

    static constexpr std::size_t longest = 16;

    char bytes_[longest] = {};  // with the bit that capitals lack
    std::uint8_t size_ = 0;
    std::uint8_t probe_ = 0;     // the place of two neighbouring bytes, or of one, rare in names
    std::uint8_t distance_ = 0;  // 1 if there are two, else 0
};

}  // namespace Library::Search::detail
