#include <VelkCommon/Text/PercentEncoding.h>

namespace {

bool canTravel(char c) noexcept
{
    constexpr std::string_view refused = "\"<>\\^`{|}";
    const auto byte = static_cast<unsigned char>(c);
    return byte > 0x20 && byte < 0x7F && refused.find(c) == std::string_view::npos;
}

}  // namespace

std::string Velk::wireForm(std::string_view address)
{
    return percentEncoded(address, canTravel);
}
