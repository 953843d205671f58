#include "host/catalog/Properties.h"

#include "Check.h"

#include <VelkCommon/Text/StringConvert.h>

#include <cstddef>
#include <cstdint>

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    for (const auto& [key, value] : VelkHost::parseProperties({reinterpret_cast<const char*>(data), size})) {
        bool keyIsText = false;
        bool valueIsText = false;
        StringConvert::toUnicodeFromUtf8(key, &keyIsText);
        StringConvert::toUnicodeFromUtf8(value, &valueIsText);
        fuzz::check(keyIsText && valueIsText, "keys and values are UTF-8");
        fuzz::check(key.size() + value.size() <= 3 * size, "texts do not grow beyond their escapes");
    }
    return 0;
}
