#include "host/catalog/Properties.h"

#include <VelkCommon/Text/StringConvert.h>
#include <VelkCommon/Text/Utf16.h>

#include <algorithm>
#include <charconv>
#include <cstdint>

namespace VelkHost {
namespace {

bool isBlank(char c)
{
    return c == ' ' || c == '\t' || c == '\f';
}

std::string_view withoutLeadingBlanks(std::string_view line)
{
    while (!line.empty() && isBlank(line.front()))
        line.remove_prefix(1);
    return line;
}

/// Takes one line off `rest`, without its end: LF, CR or CR LF.
std::string_view takeLine(std::string_view& rest)
{
    const std::size_t end = std::min(rest.find_first_of("\r\n"), rest.size());
    const std::string_view line = rest.substr(0, end);
    rest.remove_prefix(end);
    if (rest.starts_with("\r\n"))
        rest.remove_prefix(2);
    else if (!rest.empty())
        rest.remove_prefix(1);
    return withoutLeadingBlanks(line);
}

bool goesOn(std::string_view line)
{
    const std::size_t last = line.find_last_not_of('\\');
    const std::size_t backslashes = line.size() - (last == std::string_view::npos ? 0 : last + 1);
    return backslashes % 2 == 1;
}

/// Takes one entry off `rest`, its continuation lines joined and its escapes kept; empty for a comment
/// or a blank line.
std::string takeEntry(std::string_view& rest)
{
    std::string_view line = takeLine(rest);
    if (line.starts_with('#') || line.starts_with('!'))
        return {};
    std::string entry(line);
    while (goesOn(line)) {
        entry.pop_back();
        line = rest.empty() ? std::string_view() : takeLine(rest);
        entry += line;
    }
    return entry;
}

/// The four hexadecimal digits at the beginning of `text`.
bool readUnit(std::string_view text, char32_t& unit)
{
    std::uint32_t value = 0;
    if (text.size() < 4 || text.front() == '-')
        return false;
    const auto [end, error] = std::from_chars(text.data(), text.data() + 4, value, 16);
    unit = value;
    return error == std::errc() && end == text.data() + 4;
}

char32_t controlOf(char letter)
{
    switch (letter) {
        case 't':
            return U'\t';
        case 'n':
            return U'\n';
        case 'r':
            return U'\r';
        case 'f':
            return U'\f';
        default:
            return static_cast<unsigned char>(letter);
    }
}

/// Appends a UTF-16 unit; a low surrogate behind a high one completes its character.
void appendUnit(std::u32string& text, char32_t unit)
{
    if (Velk::Utf16::isTrail(unit) && !text.empty() && Velk::Utf16::isLead(text.back()))
        text.back() = Velk::Utf16::joined(text.back(), unit);
    else
        text += unit;
}

std::string unescaped(std::string_view raw)
{
    std::u32string text;
    for (std::size_t i = 0; i < raw.size(); ++i) {
        char32_t unit = 0;
        if (raw[i] != '\\') {
            text += static_cast<unsigned char>(raw[i]);
        } else if (++i == raw.size()) {
            break;
        } else if (raw[i] == 'u' && readUnit(raw.substr(i + 1), unit)) {
            appendUnit(text, unit);
            i += 4;
        } else {
            text += controlOf(raw[i]);
        }
    }
    return StringConvert::toStdUtf8String(text);
}

/// Where the key of an entry ends: at the first separator that is not escaped.
std::size_t keyEnd(std::string_view entry)
{
    std::size_t end = 0;
    while (end < entry.size() && entry[end] != '=' && entry[end] != ':' && !isBlank(entry[end]))
        end += entry[end] == '\\' ? 2 : 1;
    return std::min(end, entry.size());
}

}  // namespace

Properties parseProperties(std::string_view bytes)
{
    Properties properties;
    while (!bytes.empty()) {
        const std::string entry = takeEntry(bytes);
        if (entry.empty())
            continue;
        const std::size_t end = keyEnd(entry);
        std::string_view value = withoutLeadingBlanks(std::string_view(entry).substr(end));
        if (value.starts_with('=') || value.starts_with(':'))
            value = withoutLeadingBlanks(value.substr(1));
        properties.insert_or_assign(unescaped(entry.substr(0, end)), unescaped(value));
    }
    return properties;
}

std::string_view propertyOf(const Properties& properties, std::string_view key)
{
    const auto found = properties.find(key);
    return found == properties.end() ? std::string_view() : std::string_view(found->second);
}

}  // namespace VelkHost
