#include <VelkCommon/Platform/PathText.h>

#include <VelkCommon/detail/Utf8.h>

namespace Velk::Platform {
namespace {

constexpr char32_t oddByteBase = 0xDC00;
constexpr char32_t firstOddByte = 0xDC80;
constexpr char32_t lastOddByte = 0xDCFF;

constexpr bool isOddByte(char32_t point) noexcept
{
    return point >= firstOddByte && point <= lastOddByte;
}

}  // namespace

std::u32string toUnicodePath(std::string_view path)
{
    std::u32string points;
    points.reserve(path.size());
    while (!path.empty()) {
        const auto decoded = detail::decodeUtf8(path, detail::Surrogates::allowed);
        const bool isText = decoded.wellFormed && !isOddByte(decoded.value);
        points += isText ? decoded.value : oddByteBase + static_cast<unsigned char>(path[0]);
        path.remove_prefix(isText ? decoded.length : 1);
    }
    return points;
}

std::string fromUnicodePath(std::u32string_view points)
{
    std::string path;
    path.reserve(points.size());
    for (const char32_t point : points)
        if (isOddByte(point))
            path += static_cast<char>(point - oddByteBase);
        else
            detail::appendUtf8(path, point <= detail::lastCodePoint ? point : detail::replacementCharacter);
    return path;
}

}  // namespace Velk::Platform
