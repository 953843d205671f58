// Rates any entries by any search all at once, and compares with the definition, which is tried place by place.
//
// The input is a byte of flags, then pieces separated by the byte FE: as many texts of entries as the flags say, and
// the terms. An item's keywords stand behind the byte FD in its text; a text that begins with "/" is a folder's name.
// A term that begins with "-" is excluded, and one that begins with "|" opens a new group.
#include <VelkCommon/Text/StringUtils.h>
#include <VelkLibrary/LibraryResultCategorizer.h>

#include "SearchInput.h"
#include "VelkLibrary/Search/PreparedEntries.h"
#include "VelkLibrary/Search/RatingOracle.h"

#include <algorithm>
#include <cstdint>
#include <cstdlib>
#include <iterator>
#include <string>
#include <vector>

namespace {

test::PreparedEntry entryFrom(const std::string& text)
{
    if (text.starts_with('/'))
        return test::folderEntry(text.substr(1));
    const std::size_t end = text.find('\xFD');
    return end == std::string::npos ? test::itemEntry(text)
                                    : test::itemEntry(text.substr(0, end), text.substr(end + 1));
}

/// Several times the same entries, so that there are enough of them for every way to look for a term.
Library::Search::PreparedNames prepare(const std::vector<test::PreparedEntry>& entries, std::size_t times)
{
    const Library::Search::PreparedNames once = test::prepared(entries);
    Library::Search::PreparedNames names;
    for (std::size_t i = 0; i < times; ++i)
        names.append(once);
    names.close();
    return names;
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    if (size == 0 || size > 2000)
        return 0;
    const std::string text(reinterpret_cast<const char*>(data) + 1, size - 1);
    const std::vector<std::string> pieces = StringUtils::tokenizeString(text, '\xFE');
    const std::size_t count = std::min<std::size_t>(pieces.size(), data[0] >> 4);
    std::vector<test::PreparedEntry> entries;
    std::transform(pieces.begin(), pieces.begin() + static_cast<std::ptrdiff_t>(count), std::back_inserter(entries),
                   entryFrom);
    const Library::Search::Info info = fuzz::searchFor(pieces, count, (data[0] & 1) != 0);
    const std::size_t times = (data[0] & 2) != 0 ? 20 : 1;
    const LibraryResultCategorizer categorizer(info);
    const auto ratings = test::ratingsInBulk(categorizer, prepare(entries, times), 0, count * times);
    const test::PlainOracle oracle(info);
    for (std::size_t i = 0; i < count; ++i) {
        const SearchPriority right = test::ratingByOracle(oracle, entries[i]);
        for (std::size_t j = i; j < ratings.size(); j += count) {
            if (ratings[j] != right)
                std::abort();
        }
    }
    return 0;
}
