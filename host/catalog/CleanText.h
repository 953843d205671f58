#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

namespace VelkHost {

/// Text from a source as catalogs hold it: well-formed UTF-8 (malformed bytes become U+FFFD) on one
/// line. Each control character, line or paragraph separator and direction override becomes a blank,
/// runs of blanks become one, blanks at the ends go, and a text of more than `maximumCharacters` code
/// points is cut. Any thread; throws only std::bad_alloc.
std::string cleanText(std::string_view text, std::size_t maximumCharacters);

/// The keywords in `texts`, each a list separated by ",", as one text separated by ", ". They are cleaned;
/// empty ones and repetitions are left out (compared in lower case; the first spelling stays). The text
/// ends before the keyword that would exceed limits::keywordBytes.
std::string joinKeywords(const std::vector<std::string_view>& texts);

}  // namespace VelkHost
