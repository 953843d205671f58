#include <VelkCommon/Platform/PathText.h>
#include <VelkCommon/Platform/detail/Windows.h>
#include <VelkCommon/detail/Utf8.h>

#include <algorithm>

namespace Velk::Platform {
namespace {

bool isDriveLetter(char letter) noexcept
{
    return (letter >= 'A' && letter <= 'Z') || (letter >= 'a' && letter <= 'z');
}

// The place after the piece of `path` at `begin` and the separators that follow it.
std::size_t behindPiece(std::string_view path, std::size_t begin) noexcept
{
    while (begin < path.size() && !isSeparator(path[begin]))
        ++begin;
    while (begin < path.size() && isSeparator(path[begin]))
        ++begin;
    return begin;
}

std::wstring toUtf16(std::u32string_view text)
{
    std::wstring wide;
    wide.reserve(text.size());
    for (const char32_t point : text)
        if (point < detail::firstSupplementary) {
            wide += static_cast<wchar_t>(point);
        } else {
            const char32_t rest = point - detail::firstSupplementary;
            wide += static_cast<wchar_t>(0xD800U + (rest >> 10U));
            wide += static_cast<wchar_t>(0xDC00U + (rest & 0x3FFU));
        }
    return wide;
}

std::u32string fromUtf16(std::wstring_view text)
{
    std::u32string points;
    points.reserve(text.size());
    for (std::size_t i = 0; i < text.size(); ++i) {
        const char32_t unit = text[i];
        const char32_t next = i + 1 < text.size() ? text[i + 1] : U'\0';
        if (unit >= 0xD800 && unit <= 0xDBFF && next >= 0xDC00 && next <= 0xDFFF) {
            points += detail::firstSupplementary + ((unit - 0xD800) << 10U) + (next - 0xDC00);
            ++i;
        } else {
            points += unit;
        }
    }
    return points;
}

}  // namespace

std::size_t rootLength(std::string_view path) noexcept
{
    if (path.size() >= 2 && isDriveLetter(path[0]) && path[1] == ':')
        return path.size() > 2 && isSeparator(path[2]) ? 3 : 2;
    if (path.size() > 2 && isSeparator(path[0]) && isSeparator(path[1]) && !isSeparator(path[2]))
        return behindPiece(path, behindPiece(path, 2));
    return behindPiece(path.substr(0, path.find_first_not_of("/\\")), 0);
}

bool isAbsolute(std::string_view path) noexcept
{
    const std::size_t root = rootLength(path);
    return root >= 3 && (path[1] == ':' || isSeparator(path[1]));
}

std::string shownPath(std::string_view path)
{
    std::string shown(path);
    // What may be a path or an address, and is an address.
    if (path.find("://") != std::string_view::npos)
        return shown;
    std::replace(shown.begin(), shown.end(), '/', '\\');
    return shown;
}

std::wstring toNativePath(std::string_view path)
{
    std::wstring wide = toUtf16(toUnicodePath(path));
    if (wide.starts_with(longPrefix))
        return wide;
    std::replace(wide.begin(), wide.end(), L'/', L'\\');
    if (wide.size() <= longestPlainPath)
        return wide;
    if (wide.starts_with(L"\\\\"))
        return std::wstring(longShare) + resolved(std::wstring_view(wide).substr(2));
    if (wide[1] == L':' && wide[2] == L'\\')
        return std::wstring(longPrefix) + wide.substr(0, 3) + resolved(std::wstring_view(wide).substr(3));
    return wide;
}

std::string fromNativePath(std::wstring_view native)
{
    if (!native.starts_with(longShare))
        return fromUnicodePath(fromUtf16(native.substr(native.starts_with(longPrefix) ? longPrefix.size() : 0)));
    return "\\\\" + fromUnicodePath(fromUtf16(native.substr(longShare.size())));
}

}  // namespace Velk::Platform
