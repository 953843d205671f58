#include "host/support/DisplayText.h"

#include <VelkCommon/Text/StringConvert.h>
#include <VelkCommon/Text/StringUtils.h>

#include <QChar>

#include <algorithm>
#include <array>
#include <utility>

namespace VelkHost {
namespace {

constexpr std::string_view boldOn = "\x1b[1m";
constexpr std::string_view boldOff = "\x1b[0m";

// Blocks that terminals show two columns wide (East Asian Width W and F, in whole blocks).
constexpr std::array<std::pair<char32_t, char32_t>, 10> wideBlocks{{{0x1100, 0x115F},
                                                                    {0x2E80, 0x303E},
                                                                    {0x3041, 0xA4CF},
                                                                    {0xA960, 0xA97C},
                                                                    {0xAC00, 0xD7A3},
                                                                    {0xF900, 0xFAFF},
                                                                    {0xFE30, 0xFE6F},
                                                                    {0xFF00, 0xFF60},
                                                                    {0x1F300, 0x1FAFF},
                                                                    {0x20000, 0x3FFFD}}};

std::size_t widthOf(char32_t character)
{
    switch (QChar::category(static_cast<uint>(character))) {
        case QChar::Mark_NonSpacing:
        case QChar::Mark_Enclosing:
        case QChar::Other_Format:
            return 0;
        default:
            break;
    }
    const bool wide = std::any_of(wideBlocks.begin(), wideBlocks.end(), [&](const auto& block) {
        return character >= block.first && character <= block.second;
    });
    return wide ? 2 : 1;
}

}  // namespace

bool isUnsafeCharacter(char32_t character) noexcept
{
    return character < 0x20 || (character >= 0x7F && character <= 0x9F) || character == 0x061C || character == 0x200E ||
           character == 0x200F || (character >= 0x2028 && character <= 0x202E) ||
           (character >= 0x2066 && character <= 0x2069) || character == 0xFEFF;
}

std::u32string printable(std::string_view text)
{
    std::u32string characters = StringConvert::toUnicodeFromUtf8(text);
    std::replace_if(characters.begin(), characters.end(), isUnsafeCharacter, U'\uFFFD');
    return characters;
}

std::string printableUtf8(std::string_view text)
{
    return StringConvert::toStdUtf8String(printable(text));
}

std::size_t displayWidth(std::u32string_view text)
{
    std::size_t width = 0;
    for (const char32_t character : text)
        width += widthOf(character);
    return width;
}

StyledText highlighted(std::string_view text, const std::vector<std::u32string>& lowerTerms)
{
    StyledText styled;
    styled.text = printable(text);
    styled.bold.resize(styled.text.size());
    // Lower-casing maps code point by code point, so positions agree.
    const std::u32string lower = StringUtils::toLower(styled.text);
    for (const std::u32string& term : lowerTerms) {
        if (term.empty())
            continue;
        for (std::size_t at = lower.find(term); at != std::u32string::npos; at = lower.find(term, at + term.size()))
            std::fill_n(styled.bold.begin() + static_cast<std::ptrdiff_t>(at), term.size(), true);
    }
    return styled;
}

StyledText cutToWidth(StyledText text, std::size_t width)
{
    if (displayWidth(text.text) <= width)
        return text;
    std::size_t used = 0;
    std::size_t kept = 0;
    // One column is left for the ellipsis.
    while (kept < text.text.size() && used + widthOf(text.text[kept]) < width)
        used += widthOf(text.text[kept++]);
    text.text.resize(kept);
    text.bold.resize(kept);
    if (width > 0) {
        text.text += U'\u2026';
        text.bold.push_back(false);
    }
    return text;
}

std::string render(const StyledText& text, bool styles)
{
    if (!styles)
        return StringConvert::toStdUtf8String(text.text);
    std::string rendered;
    for (std::size_t start = 0; start < text.text.size();) {
        const auto end =
            std::find(text.bold.begin() + static_cast<std::ptrdiff_t>(start), text.bold.end(), !text.bold[start]);
        const auto stop = static_cast<std::size_t>(end - text.bold.begin());
        const std::string run = StringConvert::toStdUtf8String(text.text.substr(start, stop - start));
        rendered += text.bold[start] ? std::string(boldOn) + run + std::string(boldOff) : run;
        start = stop;
    }
    return rendered;
}

}  // namespace VelkHost
