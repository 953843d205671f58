#include <VelkCommon/Text/Windows1252.h>

#include <algorithm>
#include <array>

namespace StringConvert {
namespace {

// The characters of 80 to 9F; all other bytes are the code points of the same number. The five unassigned bytes
// (81 8D 8F 90 9D) stand for the C1 controls of their number, so that every byte survives a round trip.
constexpr std::array<char16_t, 32> upperControls = {
    0x20AC, 0x0081, 0x201A, 0x0192, 0x201E, 0x2026, 0x2020, 0x2021,  //
    0x02C6, 0x2030, 0x0160, 0x2039, 0x0152, 0x008D, 0x017D, 0x008F,  //
    0x0090, 0x2018, 0x2019, 0x201C, 0x201D, 0x2022, 0x2013, 0x2014,  //
    0x02DC, 0x2122, 0x0161, 0x203A, 0x0153, 0x009D, 0x017E, 0x0178,
};
constexpr unsigned char firstUpperControl = 0x80;
constexpr unsigned char lastUpperControl = 0x9F;

char32_t characterOf(unsigned char byte)
{
    if (byte < firstUpperControl || byte > lastUpperControl)
        return byte;
    return upperControls[byte - firstUpperControl];
}

char byteOf(char32_t character)
{
    if (character < firstUpperControl || (character > lastUpperControl && character <= 0xFF))
        return static_cast<char>(character);
    const auto found = std::find(upperControls.begin(), upperControls.end(), character);
    return found == upperControls.end() ? '?' : static_cast<char>(firstUpperControl + (found - upperControls.begin()));
}

}  // namespace

std::string toWin1252(std::u32string_view text)
{
    std::string result(text.size(), '\0');
    std::transform(text.begin(), text.end(), result.begin(), byteOf);
    return result;
}

std::u32string fromWin1252(std::string_view text)
{
    std::u32string result(text.size(), U'\0');
    std::transform(text.begin(), text.end(), result.begin(),
                   [](char byte) { return characterOf(static_cast<unsigned char>(byte)); });
    return result;
}

}  // namespace StringConvert
