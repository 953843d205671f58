#include <VelkLibrary/Search/detail/LoweredTexts.h>

#include <VelkCommon/Platform/Bytes16.h>
#include <VelkCommon/Text/StringUtils.h>
#include <VelkLibrary/Search/detail/WordBytes.h>

#include <algorithm>

using Velk::Platform::Bytes16;
using Velk::Platform::lowestBit;

namespace Library::Search::detail {

std::size_t findBreak(const char* bytes, const Extent& extent) noexcept
{
    for (std::size_t at = extent.begin; at < extent.end; at += Bytes16::size) {
        const Bytes16 block = Bytes16::load(bytes + at);
        const std::uint32_t breaks = (equal(block, Bytes16('\n')) | equal(block, Bytes16('\r'))).mask();
        if (breaks != 0) {
            const std::size_t found = at + lowestBit(breaks);
            return found < extent.end ? found : std::string::npos;
        }
    }
    return std::string::npos;
}

std::size_t LoweredTexts::room(std::size_t nameSize, std::size_t keywordsSize) noexcept
{
    return 1 + StringUtils::lowerUtf8Room(nameSize) + 1 + StringUtils::lowerUtf8Room(keywordsSize) + readable;
}

LoweredTexts::LoweredTexts(char* buffer, std::string_view name, const std::string* keywords) noexcept
    : LoweredTexts(buffer + 1, StringUtils::toLowerUtf8Into(buffer + 1, name), keywords != nullptr)
{
    *buffer = guard;
    if (hasKeywords_ && keywords->size() < leastPending)
        append(*keywords);
    else if (hasKeywords_)
        pendingKeywords_ = *keywords;
    close();
}

LoweredTexts LoweredTexts::copyOf(char* buffer, std::string_view name,
                                  std::optional<std::string_view> keywords) noexcept
{
    LoweredTexts texts(buffer + 1, name.size(), keywords.has_value());
    *buffer = guard;
    std::copy(name.begin(), name.end(), texts.bytes_);
    if (keywords) {
        texts.bytes_[texts.name_.end] = guard;
        texts.keywords_ = {name.size() + 1, name.size() + 1 + keywords->size()};
        std::copy(keywords->begin(), keywords->end(), texts.bytes_ + texts.keywords_.begin);
    }
    texts.close();
    return texts;
}

void LoweredTexts::lowerKeywords() noexcept
{
    if (pendingKeywords_.empty())
        return;
    append(pendingKeywords_);
    pendingKeywords_ = {};
    breaks_[true] = Breaks::Unknown;
    close();
}

void LoweredTexts::append(std::string_view keywords) noexcept
{
    bytes_[name_.end] = guard;
    keywords_.begin = name_.end + 1;
    keywords_.end = keywords_.begin + StringUtils::toLowerUtf8Into(bytes_ + keywords_.begin, keywords);
}

void LoweredTexts::close() noexcept
{
    static_assert(readable == 2 * Bytes16::size);
    Bytes16(static_cast<std::uint8_t>(guard)).store(bytes_ + keywords_.end);
    Bytes16(static_cast<std::uint8_t>(guard)).store(bytes_ + keywords_.end + Bytes16::size);
}

bool LoweredTexts::hasBreak(bool inKeywords) const noexcept
{
    Breaks& breaks = breaks_[inKeywords];
    if (breaks == Breaks::Unknown)
        breaks = findBreak(bytes_, inKeywords ? keywords_ : name_) == std::string::npos ? Breaks::None : Breaks::Some;
    return breaks == Breaks::Some;
}

BytePairs::BytePairs(const LoweredTexts& texts) noexcept
{
    const char* const bytes = texts.bytes();
    for (std::size_t i = 1; i < texts.size(); ++i)
        held_[number(bytes[i - 1], bytes[i])] = true;
}

}  // namespace Library::Search::detail
