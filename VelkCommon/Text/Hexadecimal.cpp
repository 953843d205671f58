#include <VelkCommon/Text/Hexadecimal.h>

std::string Velk::Hexadecimal::textOf(std::string_view bytes)
{
    std::string text;
    text.reserve(2 * bytes.size());
    for (const char c : bytes) {
        const auto byte = static_cast<unsigned char>(c);
        text.append({smallDigits[byte >> 4U], smallDigits[byte & 0x0FU]});
    }
    return text;
}
