#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

/// @file
/// Text for terminals: nothing that a library holds can steer the terminal, columns keep their width,
/// and matched words stand out.

namespace VelkHost {

/// A text with the characters that are to stand out.
struct StyledText
{
    std::u32string text;     ///< safe to print, one line
    std::vector<bool> bold;  ///< per code point of `text`
};

/// A character that must not reach a terminal or a list as it is: controls, separators of lines and
/// paragraphs, and marks that reorder the text around them.
bool isUnsafeCharacter(char32_t character) noexcept;

/// UTF-8 as printable text: malformed bytes and unsafe characters become U+FFFD.
std::u32string printable(std::string_view text);
/// The same as UTF-8.
std::string printableUtf8(std::string_view text);

/// How many columns a terminal gives to the text: none for combining marks, two for wide East Asian
/// characters and pictographs, otherwise one.
std::size_t displayWidth(std::u32string_view text);

/// The printable text with every occurrence of every term marked, compared in lower case as the rating
/// does. `lowerTerms` are in lower case; empty ones mark nothing.
StyledText highlighted(std::string_view text, const std::vector<std::u32string>& lowerTerms);

/// The text cut to `width` columns, with an ellipsis where something was cut.
StyledText cutToWidth(StyledText text, std::size_t width);

/// As UTF-8, marked characters in bold when `styles` is set.
std::string render(const StyledText& text, bool styles);

}  // namespace VelkHost
