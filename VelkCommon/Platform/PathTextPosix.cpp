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

std::wstring toNativePath(std::u32string_view path)
{
    return {path.begin(), path.end()};
}

std::u32string fromNativePath(std::wstring_view native)
{
    return {native.begin(), native.end()};
}

}  // namespace Velk::Platform
