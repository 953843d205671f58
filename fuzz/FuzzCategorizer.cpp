// Rates any name and keywords by any search, and compares with the definition, which is tried place by place.
//
// The input is a byte of flags, then pieces separated by the byte FE: the name, the keywords, and the terms. A term
// that begins with "-" is excluded, and one that begins with "|" opens a new group.
#include <VelkCommon/Text/StringConvert.h>
#include <VelkCommon/Text/StringUtils.h>
#include <VelkLibrary/LibraryResultCategorizer.h>

#include "VelkLibrary/Search/RatingOracle.h"

#include <cstdint>
#include <cstdlib>
#include <string>
#include <string_view>
#include <vector>

namespace {

Library::Search::Info searchFor(const std::vector<std::string>& pieces, bool wholeWords)
{
    Library::Search::Info info(std::set<libType>{});
    info.legacySearch = wholeWords;
    info.parseTree.groups.emplace_back();
    for (std::size_t i = 2; i < pieces.size(); ++i) {
        std::string_view term = pieces[i];
        if (term.starts_with('|')) {
            info.parseTree.groups.emplace_back();
            term.remove_prefix(1);
        }
        const bool excluded = term.starts_with('-');
        if (excluded)
            term.remove_prefix(1);
        auto& group = info.parseTree.groups.back();
        (excluded ? group.excludedTerms : group.terms).push_back(StringConvert::toUnicode(term, StringConvert::Utf8));
    }
    return info;
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    if (size == 0 || size > 2000)
        return 0;
    const std::string text(reinterpret_cast<const char*>(data) + 1, size - 1);
    std::vector<std::string> pieces = StringUtils::tokenizeString(text, '\xFE');
    pieces.resize(std::max<std::size_t>(pieces.size(), 2));
    const Library::Search::Info info = searchFor(pieces, (data[0] & 1) != 0);
    const LibraryResultCategorizer categorizer(info);
    const test::PlainOracle oracle(info);
    const std::string& name = pieces[0];
    const std::string& keywords = pieces[1];
    if (categorizer.categorizeItemResult(name) != oracle.item(name) ||
        categorizer.categorizeItemResult(name, keywords) != oracle.item(name, keywords) ||
        categorizer.categorizeFolderResult(name) != oracle.folder(name))
        std::abort();
    return 0;
}
