#include <VelkCommon/Platform/PathText.h>

#include <algorithm>

namespace Velk::Platform {

std::size_t rootLength(std::string_view path) noexcept
{
    return std::min(path.find_first_not_of('/'), path.size());
}

bool isAbsolute(std::string_view path) noexcept
{
    return path.starts_with('/');
}

std::string shownPath(std::string_view path)
{
    return std::string(path);
}

std::wstring toNativePath(std::string_view path)
{
    const std::u32string points = toUnicodePath(path);
    return {points.begin(), points.end()};
}

std::string fromNativePath(std::wstring_view native)
{
    return fromUnicodePath(std::u32string(native.begin(), native.end()));
}

}  // namespace Velk::Platform
