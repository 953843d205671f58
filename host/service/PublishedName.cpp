#include "host/service/PublishedName.h"

#include <VelkCommon/Text/StringConvert.h>
#include <VelkCommon/Text/StringUtils.h>

#include <algorithm>
#include <array>

namespace VelkHost {
namespace {

constexpr std::size_t nameBytes = 255;  // what file systems take
constexpr std::string_view downloadSuffix = ".download";
constexpr std::string_view deviceNames[] = {"con", "prn", "aux", "nul"};

bool isControl(char character)
{
    const auto byte = static_cast<unsigned char>(character);
    return byte < 0x20 || byte == 0x7F;
}

// Windows takes "con" and "con.txt" for the console, also "lpt1" and "com9".
bool isDevice(std::string_view name)
{
    const std::string base = lookupKey(name.substr(0, name.find('.')));
    if (std::find(std::begin(deviceNames), std::end(deviceNames), base) != std::end(deviceNames))
        return true;
    return base.size() == 4 && (base.starts_with("com") || base.starts_with("lpt")) && base[3] >= '1' && base[3] <= '9';
}

bool isUtf8(std::string_view text)
{
    bool ok = true;
    StringConvert::toUnicodeFromUtf8(text, &ok);
    return ok;
}

std::string holds(char character)
{
    return std::string("holds the character \"") + character + "\"";
}

/// The same name after the way through Windows-1252.
bool survivesWindows1252(std::string_view name)
{
    const std::u32string text = StringConvert::toUnicodeFromUtf8(name);
    return StringConvert::fromWin1252(StringConvert::toWin1252(text)) == text;
}

}  // namespace

std::string whyNoFileName(std::string_view name)
{
    if (name.empty() || name == "." || name == "..")
        return "is no name for a file";
    if (!isUtf8(name))
        return "has a name that is not valid UTF-8";
    if (std::any_of(name.begin(), name.end(), isControl))
        return "has a control character in its name";
    if (const std::size_t at = name.find_first_of("/\\:*?\"<>|"); at != std::string_view::npos)
        return holds(name[at]) + " in its name, which not every system can store";
    if (name.back() == '.' || name.back() == ' ')
        return "has a name that ends with a dot or a blank, which Windows cuts off";
    if (isDevice(name))
        return "has the name of a device on Windows";
    if (name.size() > nameBytes)
        return "has a name of more than 255 bytes";
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
    if (name.stem().utf8().size() + downloadSuffix.size() > nameBytes)
        return "has a name of more than 246 bytes before its extension; clients store its download as \"....download\"";
    return whyNoQueryValue(name.utf8());
}

std::string whyNoLogoName(std::string_view name)
{
    for (std::size_t start = 0;;) {
        const std::size_t end = std::min(name.find('/', start), name.size());
        if (std::string reason = whyNoFileName(name.substr(start, end - start)); !reason.empty())
            return reason;
        if (end == name.size())
            break;
        start = end + 1;
    }
    const std::string last = lookupKey(name.substr(name.rfind('/') + 1));
    if (last == "manufacturer_data.json" || last == "manufacturer_data_temp.json")
        return "has the name of a client's own data file";
    if (!survivesWindows1252(name))
        return "has a name with characters beyond Windows-1252, in which clients ask for logos";
    return whyNoQueryValue(name);
}

std::string onTheWire(std::string_view bytes)
{
    constexpr std::string_view digits = "0123456789ABCDEF";
    constexpr std::string_view encoded = " \"<>\\^`{|}";
    std::string wire;
    for (const char character : bytes) {
        const auto byte = static_cast<unsigned char>(character);
        if (byte <= 0x20 || byte >= 0x7F || encoded.find(character) != std::string_view::npos)
            wire.append({'%', digits[byte >> 4], digits[byte & 0xF]});
        else
            wire += character;
    }
    return wire;
}

std::string lookupKey(std::string_view valueOnTheWire)
{
    std::string key(valueOnTheWire);
    const auto lower = [](char c) { return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c; };
    std::transform(key.begin(), key.end(), key.begin(), lower);
    return key;
}

std::u32string caseless(std::string_view name)
{
    return StringUtils::toLower(StringConvert::toUnicodeFromUtf8(name));
}

}  // namespace VelkHost
