#include "host/catalog/CleanText.h"

#include "host/catalog/Catalog.h"
#include "host/support/DisplayText.h"

#include <VelkCommon/Text/StringConvert.h>
#include <VelkCommon/Text/StringUtils.h>

#include <unordered_set>

namespace VelkHost {
namespace {

bool isBlank(char32_t character)
{
    return character == U' ' || character == U'\u00A0' || isUnsafeCharacter(character);
}

}  // namespace

std::string cleanText(std::string_view text, std::size_t maximumCharacters)
{
    std::u32string clean;
    for (const char32_t character : StringConvert::toUnicodeFromUtf8(text)) {
        if (clean.size() == maximumCharacters)
            break;
        if (!isBlank(character))
            clean += character;
        else if (!clean.empty() && clean.back() != U' ')
            clean += U' ';
    }
    if (!clean.empty() && clean.back() == U' ')
        clean.pop_back();
    return StringConvert::toStdUtf8String(clean);
}

std::string joinKeywords(const std::vector<std::string_view>& texts)
{
    std::string joined;
    std::unordered_set<std::string> seen;
    for (const std::string_view text : texts) {
        for (const std::string& piece : StringUtils::tokenizeString(text.substr(0, limits::keywordBytes), ',')) {
            const std::string keyword = cleanText(piece, limits::nameCharacters);
            if (keyword.empty() || !seen.insert(StringUtils::toLowerUtf8(keyword)).second)
                continue;
            if (joined.size() + keyword.size() + 2 > limits::keywordBytes)
                return joined;
            joined += (joined.empty() ? "" : ", ") + keyword;
        }
    }
    return joined;
}

}  // namespace VelkHost
