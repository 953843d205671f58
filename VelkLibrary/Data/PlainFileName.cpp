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

// "CON", "nul.txt", "Com1.tar.gz": Windows opens the device, whatever the extension.
bool namesDevice(std::string_view name)
{
    constexpr std::array<std::string_view, 4> devices{"CON", "PRN", "AUX", "NUL"};
    constexpr std::array<std::string_view, 2> numbered{"COM", "LPT"};
    std::string_view base = name.substr(0, name.find('.'));
    base = base.substr(0, base.find_last_not_of(' ') + 1);
    const auto isBase = [&](std::string_view device) { return equalsIgnoringCase(base, device); };
    if (std::any_of(devices.begin(), devices.end(), isBase))
        return true;
    if (base.size() != 4 || base[3] < '1' || base[3] > '9')
        return false;
    base.remove_suffix(1);
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
