// Rates any name and keywords by any search, and compares with the definition, which is tried place by place.
//
// The input is a byte of flags, then pieces separated by the byte FE: the name, the keywords, and the terms. A term
// that begins with "-" is excluded, and one that begins with "|" opens a new group.
#include <VelkCommon/Text/StringUtils.h>
#include <VelkLibrary/LibraryResultCategorizer.h>

#include "SearchInput.h"
#include "VelkLibrary/Search/RatingOracle.h"

#include <algorithm>
#include <cstdint>
#include <cstdlib>
#include <string>
#include <vector>

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    if (size == 0 || size > 2000)
        return 0;
    const std::string text(reinterpret_cast<const char*>(data) + 1, size - 1);
    std::vector<std::string> pieces = StringUtils::tokenizeString(text, '\xFE');
    pieces.resize(std::max<std::size_t>(pieces.size(), 2));
    const Library::Search::Info info = fuzz::searchFor(pieces, 2, (data[0] & 1) != 0);
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
