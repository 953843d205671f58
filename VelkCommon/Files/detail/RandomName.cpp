#include <VelkCommon/Files/detail/RandomName.h>

#include <VelkCommon/Platform/Process.h>
#include <VelkCommon/Text/Hexadecimal.h>

#include <array>
#include <stdexcept>

std::string Velk::detail::randomName()
{
    std::array<char, 16> bytes{};
    if (!Platform::fillRandom(bytes.data(), bytes.size()))
        throw std::runtime_error("the system gives no random numbers");
    return Hexadecimal::textOf({bytes.data(), bytes.size()});
}
