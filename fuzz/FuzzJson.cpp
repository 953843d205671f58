// Reads any bytes as JSON, and compares with a strict reader: what that one accepts, ours accepts and reads the same.
#include "VelkLibrary/Data/JsonOracle.h"

#include "Check.h"

#include <cstddef>
#include <cstdint>

namespace {

// Ten digits in a row may be an integer beyond 32 bits, which an equal key further on can hide.
bool mayHoldWideInteger(const std::string& text)
{
    std::size_t digits = 0;
    for (const char character : text) {
        digits = character >= '0' && character <= '9' ? digits + 1 : 0;
        if (digits >= 10)
            return true;
    }
    return false;
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    const std::string text(reinterpret_cast<const char*>(data), size);
    if (test::isShallow(text))
        fuzz::check(test::disagreement(text, !mayHoldWideInteger(text)).empty(), "both read the same");
    else
        json::read(text);
    return 0;
}
