#include <VelkLibrary/Data/PlainFileName.h>

#include <VelkCommon/Text/Ascii.h>

#include <algorithm>
#include <array>
#include <cstddef>

namespace Library {
namespace {

constexpr std::size_t longestName = 255;
constexpr std::string_view forbidden = "/\\:*?\"<>|";

constexpr char upper(char letter)
{
    return letter >= 'a' && letter <= 'z' ? static_cast<char>(letter - 'a' + 'A') : letter;
}

bool equalsIgnoringCase(std::string_view text, std::string_view upperCase)
{
    return std::equal(text.begin(), text.end(), upperCase.begin(), upperCase.end(),
                      [](char left, char right) { return upper(left) == right; });
}

// A digit from 1 on; of the superscript ones, only those that old code pages have count.
bool isDeviceNumber(std::string_view text)
{
    constexpr std::array<std::string_view, 3> superscripts{"\u00B9", "\u00B2", "\u00B3"};
    if (text.size() == 1)
        return text[0] >= '1' && text[0] <= '9';
    return std::find(superscripts.begin(), superscripts.end(), text) != superscripts.end();
}

// "CON", "nul.txt", "Com1.tar.gz": Windows opens the device, whatever the extension.
bool namesDevice(std::string_view name)
{
    constexpr std::array<std::string_view, 6> devices{"CON", "PRN", "AUX", "NUL", "CONIN$", "CONOUT$"};
    constexpr std::array<std::string_view, 2> numbered{"COM", "LPT"};
    std::string_view base = name.substr(0, name.find('.'));
    base = base.substr(0, base.find_last_not_of(' ') + 1);
    const auto isBase = [&](std::string_view device) { return equalsIgnoringCase(base, device); };
    if (std::any_of(devices.begin(), devices.end(), isBase))
        return true;
    if (base.size() <= 3 || !isDeviceNumber(base.substr(3)))
        return false;
    base = base.substr(0, 3);
    return std::any_of(numbered.begin(), numbered.end(), isBase);
}

}  // namespace

bool isPlainFileName(std::string_view name) noexcept
{
    return !name.empty() && name.size() <= longestName && !name.ends_with('.') && !name.ends_with(' ') &&
           name.find_first_of(forbidden) == std::string_view::npos && !holdsControlCharacter(name) &&
           !namesDevice(name);
}

bool holdsControlCharacter(std::string_view text) noexcept
{
    return std::any_of(text.begin(), text.end(), Velk::Ascii::isControl<char>);
}

}  // namespace Library
