#include <VelkCommon/Text/FormatText.h>

#include <VelkCommon/Text/Ascii.h>

#include <algorithm>
#include <charconv>

namespace Velk::detail {
namespace {

constexpr std::size_t longestNumber = 6;

std::size_t leadingDigits(std::string_view text)
{
    std::size_t count = 0;
    while (count < text.size() && Ascii::isDigit(text[count]))
        ++count;
    return count;
}

/// The length of the "%1%" or "%%" at the beginning of `pattern`; 0 when there is none.
std::size_t placeholderLength(std::string_view pattern)
{
    if (pattern.empty() || pattern[0] != '%')
        return 0;
    const std::size_t end = 1 + leadingDigits(pattern.substr(1));
    return end < pattern.size() && pattern[end] == '%' ? end + 1 : 0;
}

bool hasLongNumber(std::string_view pattern)
{
    std::size_t digits = 0;
    for (const char character : pattern) {
        digits = Ascii::isDigit(character) ? digits + 1 : 0;
        if (digits > longestNumber)
            return true;
    }
    return false;
}

/// A "%" stands before a blank or a character beyond ASCII.
bool hasPlainPercent(std::string_view pattern)
{
    for (std::size_t at = pattern.find('%'); at != std::string_view::npos; at = pattern.find('%')) {
        pattern.remove_prefix(at);
        const auto next = static_cast<unsigned char>(pattern.size() > 1 ? pattern[1] : 0);
        if (next == ' ' || next >= 0x80)
            return true;
        pattern.remove_prefix(std::max<std::size_t>(placeholderLength(pattern), 1));
    }
    return false;
}

/// The argument of that number, counted from 1; empty when there is none.
std::string_view argumentOf(std::string_view digits, const std::vector<std::string>& arguments)
{
    std::size_t number = 0;
    const auto read = std::from_chars(digits.data(), digits.data() + digits.size(), number);
    const bool known = read.ec == std::errc() && number >= 1 && number <= arguments.size();
    return known ? std::string_view(arguments[number - 1]) : std::string_view();
}

}  // namespace

bool confusesBoostFormat(std::string_view pattern) noexcept
{
    return hasLongNumber(pattern) || hasPlainPercent(pattern);
}

std::string replacePlaceholders(std::string_view pattern, const std::vector<std::string>& arguments)
{
    std::string text;
    while (!pattern.empty()) {
        const std::size_t length = placeholderLength(pattern);
        if (length == 0)
            text += pattern[0];
        else if (length == 2)
            text += '%';
        else
            text += argumentOf(pattern.substr(1, length - 2), arguments);
        pattern.remove_prefix(std::max<std::size_t>(length, 1));
    }
    return text;
}

std::string joinTexts(const std::vector<std::string>& texts)
{
    std::string joined;
    for (const std::string& text : texts) {
        if (!joined.empty() && !text.empty())
            joined += ' ';
        joined += text;
    }
    return joined;
}

}  // namespace Velk::detail
