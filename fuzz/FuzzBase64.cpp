#include <VelkLibrary/Base64.h>

#include "Check.h"

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace {

using fuzz::check;

constexpr std::string_view symbols = "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+/";

/// The position of the first character that is not accepted.
std::optional<std::size_t> firstFault(std::string_view text)
{
    for (std::size_t i = 0; i < text.size(); ++i) {
        if (text[i] != '=' && symbols.find(text[i]) == std::string_view::npos)
            return i;
    }
    return std::nullopt;
}

/// The decoder's rules, one character at a time, for a text without faults.
std::vector<unsigned char> decodeSlowly(std::string_view text)
{
    const auto at = [&](std::size_t i) { return i < text.size() ? text[i] : 'A'; };
    const auto value = [&](std::size_t i) { return at(i) == '=' ? 63U : static_cast<unsigned>(symbols.find(at(i))); };
    std::vector<unsigned char> bytes;
    for (std::size_t i = 0; i < text.size(); i += 4) {
        bytes.push_back(static_cast<unsigned char>(value(i) << 2 | value(i + 1) >> 4));
        if (at(i + 2) != '=')
            bytes.push_back(static_cast<unsigned char>(value(i + 1) << 4 | value(i + 2) >> 2));
        if (at(i + 3) != '=')
            bytes.push_back(static_cast<unsigned char>(value(i + 2) << 6 | value(i + 3)));
    }
    return bytes;
}

void checkDecoder(const std::string& text)
{
    const std::optional<std::size_t> fault = firstFault(text);
    try {
        const std::vector<unsigned char> bytes = Base64::decode(text);
        check(!fault, "a fault throws");
        check(bytes == decodeSlowly(text), "the decoder follows its rules");
    } catch (const Base64::InvalidCharacterException& exception) {
        check(fault.has_value(), "only a fault throws");
        const std::string message =
            std::string("Invalid character '") + text[*fault] + "' at position " + std::to_string(*fault) + ".";
        check(std::string_view(exception.what()) == message.c_str(), "the message names the first fault");
    }
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    const std::vector<unsigned char> bytes(data, data + size);
    const std::string encoded = Base64::encode(bytes);
    check(encoded.size() == (size + 2) / 3 * 4, "four characters for three bytes");
    check(Base64::decode(encoded) == bytes, "round trip");
    checkDecoder(std::string(bytes.begin(), bytes.end()));

    std::string accepted;  // the same input, as characters that the decoder accepts
    for (const unsigned char byte : bytes)
        accepted.push_back(byte >= 0xC0 ? '=' : symbols[byte & 63]);
    checkDecoder(accepted);
    return 0;
}
