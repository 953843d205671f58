#include <VelkCommon/Text/xl8.h>

#include <VelkCommon/HostServices.h>
#include <VelkCommon/Text/StringConvert.h>
#include <VelkCommon/detail/AskHost.h>

namespace {

/// Empty when there is no translation.
std::u32string translation(std::u32string_view literal)
{
    return Velk::detail::askHost(Velk::host()->translate, literal).value_or(std::u32string());
}

}  // namespace

std::u32string xl8(const char32_t* text)
{
    const std::u32string_view literal = text != nullptr ? text : U"";
    std::u32string translated = translation(literal);
    return translated.empty() ? std::u32string(literal) : translated;
}

std::string xl8(const char* text)
{
    const std::string_view literal = text != nullptr ? text : "";
    const std::u32string translated = translation(StringConvert::toUnicodeFromUtf8(literal));
    return translated.empty() ? std::string(literal) : StringConvert::toStdUtf8String(translated);
}
