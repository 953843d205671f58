#pragma once

#include <VelkCommon/Export.h>
#include <VelkCommon/Text/Hexadecimal.h>

#include <string>
#include <string_view>

/// The percent-encoding of addresses. Throws only when memory runs out. Any thread.
namespace Velk {

/// `text` with "%XX" in place of each byte for which `stays` is false.
template <typename Predicate>
std::string percentEncoded(std::string_view text, Predicate stays)
{
    std::string result;
    result.reserve(text.size());
    for (const char c : text) {
        if (stays(c)) {
            result += c;
            continue;
        }
        const auto byte = static_cast<unsigned char>(c);
        result.append({'%', Hexadecimal::capitalDigits[byte >> 4U], Hexadecimal::capitalDigits[byte & 0x0FU]});
    }
    return result;
}

/// `address`, or a part of one, as transfers send it: the bytes that a URL cannot carry are
/// percent-encoded, which are blanks, controls, bytes above 0x7E and " < > \ ^ ` { | }. All other bytes
/// stay, including "%" and "#".
VELKCOMMON_EXPORT std::string wireForm(std::string_view address);

}  // namespace Velk
