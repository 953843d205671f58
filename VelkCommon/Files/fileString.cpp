#include <VelkCommon/Files/fileString.h>

#include <VelkCommon/Files/PathUtils.h>
#include <VelkCommon/Files/detail/RandomName.h>
#include <VelkCommon/Platform/FileSystem.h>
#include <VelkCommon/Platform/PathText.h>
#include <VelkCommon/Text/LowerCase.h>

#include <algorithm>
#include <cstddef>
#include <ostream>
#include <stdexcept>
#include <utility>

using Velk::Platform::isSeparator;
using Velk::Platform::rootLength;

namespace {

constexpr int temporaryNameAttempts = 100;

// Where the file name begins: behind the last separator, and never within the root.
std::size_t nameBegin(std::string_view path) noexcept
{
    const std::size_t root = rootLength(path);
    std::size_t begin = path.size();
    while (begin > root && !isSeparator(path[begin - 1]))
        --begin;
    return begin;
}

// Where the extension begins; the end of the path when it has none.
std::size_t extensionBegin(std::string_view path) noexcept
{
    const std::string_view name = path.substr(nameBegin(path));
    const std::size_t dot = name.rfind('.');
    if (dot == std::string_view::npos || dot == 0 || name == "..")
        return path.size();
    return path.size() - name.size() + dot;
}

}  // namespace

fileString::fileString(const std::u32string& text) : text_(Velk::Platform::fromUnicodePath(text)) {}

fileString::fileString(const std::string& text) : text_(text) {}

fileString fileString::fromNative(std::wstring_view native)
{
    return Velk::Platform::fromNativePath(native);
}

bool fileString::pathExists() const
{
    return Velk::Platform::fileStatus(text_).has_value();
}

long long fileString::modificationTime() const
{
    const auto status = Velk::Platform::fileStatus(text_);
    return status ? status->modified : 0;
}

fileString fileString::parentPath() const
{
    const std::size_t root = rootLength(text_);
    std::size_t end = nameBegin(text_);
    while (end > root && isSeparator(text_[end - 1]))
        --end;
    return text_.substr(0, end);
}

fileString fileString::parentPathWithSeparator() const
{
    std::string parent = parentPath().text_;
    if (!parent.empty() && !isSeparator(parent.back()))
        parent += Velk::Platform::separator;
    return parent;
}

fileString fileString::pathAndName() const
{
    return text_.substr(0, extensionBegin(text_));
}

fileString fileString::stem() const
{
    const std::size_t begin = nameBegin(text_);
    return text_.substr(begin, extensionBegin(text_) - begin);
}

fileString fileString::stemWithExtension() const
{
    return text_.substr(nameBegin(text_));
}

fileString fileString::extension() const
{
    return text_.substr(extensionBegin(text_));
}

bool fileString::hasExtension(std::string_view wanted) const noexcept
{
    return std::string_view(text_).substr(extensionBegin(text_)) == wanted;
}

bool fileString::hasExtensionInAnyCase(std::string_view wanted) const
{
    return StringUtils::toLowerUtf8(std::string_view(text_).substr(extensionBegin(text_))) == wanted;
}

std::u32string fileString::unicodeString() const
{
    return Velk::Platform::toUnicodePath(text_);
}

std::wstring fileString::toNativeString() const
{
    return Velk::Platform::toNativePath(text_);
}

std::string fileString::humanReadableString() const
{
    return Velk::Platform::shownPath(text_);
}

fileString& fileString::generateAsTempName(const fileString& extension)
{
    const fileString folder = PathUtils::getObject().getTempPath();
    for (int attempt = 0; attempt < temporaryNameAttempts; ++attempt) {
        fileString candidate = folder + fileString(Velk::detail::randomName()) + extension;
        if (Velk::Platform::nameTaken(candidate.text_))
            continue;
        *this = std::move(candidate);
        return *this;
    }
    throw std::runtime_error("no free temporary name");
}

fileString operator+(const fileString& left, const fileString& right)
{
    return left.text_ + right.text_;
}

fileString operator/(const fileString& folder, const fileString& name)
{
    if (folder.empty())
        return name;
    if (name.empty())
        return folder;
    const std::string& left = folder.text_;
    const std::string& right = name.text_;
    std::size_t end = left.size();
    while (end > 0 && isSeparator(left[end - 1]))
        --end;
    const auto begin = std::find_if_not(right.begin(), right.end(), isSeparator);
    // When the folder ends with a separator, that one is kept.
    std::string joined = left.substr(0, end);
    joined += end < left.size() ? left[end] : Velk::Platform::separator;
    return joined.append(begin, right.end());
}

fileString operator/(const fileString& folder, const std::u32string& name)
{
    return folder / fileString(name);
}

std::ostream& operator<<(std::ostream& out, const fileString& path)
{
    return out << path.humanReadableString();
}
