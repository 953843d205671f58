#include "host/service/PublishedName.h"

#include <VelkCommon/Text/Ascii.h>
#include <VelkCommon/Text/StringConvert.h>
#include <VelkCommon/Text/StringUtils.h>
#include <VelkLibrary/Data/FileExtensions.h>
#include <VelkLibrary/Data/PlainFileName.h>
#include <VelkLibrary/Manufacturer/LogoName.h>

#include <algorithm>

namespace VelkHost {
namespace {

constexpr std::size_t nameBytes = 255;  // what file systems take

std::string holds(char character)
{
    return std::string("holds the character \"") + character + "\"";
}

/// Whether a name is the same after its way through Windows-1252.
bool survivesWindows1252(std::string_view name)
{
    const std::u32string text = StringConvert::toUnicodeFromUtf8(name);
    return StringConvert::fromWin1252(StringConvert::toWin1252(text)) == text;
}

}  // namespace

std::string whyNoFileName(std::string_view name)
{
    if (name.empty() || name == "." || name == "..")
        return "is not a file name";
    if (!StringConvert::isUtf8(name))
        return "has a name that is not valid UTF-8";
    if (Library::holdsControlCharacter(name))
        return "has a control character in its name";
    if (const std::size_t at = name.find_first_of("/\\:*?\"<>|"); at != std::string_view::npos)
        return holds(name[at]) + " in its name, which not every system can store";
    if (name.back() == '.' || name.back() == ' ')
        return "has a name that ends with a dot or a blank, which Windows cuts off";
    if (name.size() > nameBytes)
        return "has a name of more than 255 bytes";
    // What clients refuse beyond the above.
    if (!Library::isPlainFileName(name))
        return "has the name of a device on Windows";
    return {};
}

std::string whyNoQueryValue(std::string_view name)
{
    if (const std::size_t at = name.find_first_of("%&#+"); at != std::string_view::npos)
        return holds(name[at]) + " in its name, which does not survive in the address that a client asks for";
    return {};
}

std::string whyNoLibraryName(const fileString& name)
{
    if (std::string reason = whyNoFileName(name.utf8()); !reason.empty())
        return reason;
    if (name.stem().utf8().size() + std::string_view(Library::extensions::download).size() > nameBytes)
        return "has a name of more than 246 bytes before its extension; clients store its download as \"....download\"";
    return whyNoQueryValue(name.utf8());
}

std::string whyNoLogoName(std::string_view name)
{
    for (std::size_t begin = 0; begin <= name.size();) {
        const std::size_t end = std::min(name.find('/', begin), name.size());
        if (std::string reason = whyNoFileName(name.substr(begin, end - begin)); !reason.empty())
            return reason;
        begin = end + 1;
    }
    if (name.size() > Library::longestLogoName)
        return "has a name of more than 1024 bytes, its folders included";
    if (!Library::isSafeLogoName(fileString(std::string(name))))
        return "has the name of one of a client's own files";
    if (!survivesWindows1252(name))
        return "has a name with characters beyond Windows-1252, in which clients ask for logos";
    return whyNoQueryValue(name);
}

std::string lookupKey(std::string_view valueOnTheWire)
{
    std::string key(valueOnTheWire);
    std::transform(key.begin(), key.end(), key.begin(), Velk::Ascii::lower<char>);
    return key;
}

std::u32string caseless(std::string_view name)
{
    return StringUtils::toLower(StringConvert::toUnicodeFromUtf8(name));
}

}  // namespace VelkHost
