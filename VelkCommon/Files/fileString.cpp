#include <VelkCommon/Files/fileString.h>

#include <VelkCommon/Files/PathUtils.h>
#include <VelkCommon/Files/detail/Folders.h>
#include <VelkCommon/Platform/Platform.h>

#include <algorithm>
#include <array>
#include <cstddef>
#include <ostream>
#include <stdexcept>
#include <utility>

using Velk::Platform::isSeparator;
using Velk::Platform::rootLength;

namespace {

constexpr char32_t oddByteBase = 0xDC00;
constexpr char32_t firstOddByte = 0xDC80;
constexpr char32_t lastOddByte = 0xDCFF;
constexpr char32_t lastCodePoint = 0x10FFFF;
constexpr char32_t replacement = 0xFFFD;
constexpr int temporaryNameAttempts = 100;

// ---- Bytes and UTF-32 ----------------------------------------------------------------------------
//
// The two forms hold the same names: odd bytes have a code point of their own, and the three-byte form
// of a lone surrogate (a name on Windows) is read as that surrogate. Only the surrogates that stand for
// odd bytes are not read so: their three bytes count as three odd ones, or two byte texts would share
// one UTF-32 text.

constexpr bool isOddByte(char32_t point) noexcept
{
    return point >= firstOddByte && point <= lastOddByte;
}

constexpr bool isContinuation(unsigned char byte) noexcept
{
    return (byte & 0xC0U) == 0x80U;
}

struct Decoded
{
    char32_t point;
    std::size_t length;
};

// How a lead byte begins: the length of its sequence (0: none), its value bits, and the least value
// that needs the length.
struct Lead
{
    std::size_t length;
    char32_t bits;
    char32_t least;
};

constexpr Lead readLead(unsigned char byte) noexcept
{
    if (byte < 0x80U)
        return {1, byte, 0};
    if (byte >= 0xC2U && byte <= 0xDFU)
        return {2, byte & 0x1FU, 0x80};
    if (byte >= 0xE0U && byte <= 0xEFU)
        return {3, byte & 0x0FU, 0x800};
    if (byte >= 0xF0U && byte <= 0xF4U)
        return {4, byte & 0x07U, 0x10000};
    return {0, 0, 0};
}

Decoded decode(std::string_view text) noexcept
{
    const auto first = static_cast<unsigned char>(text.front());
    const Decoded oddByte{oddByteBase + first, 1};
    const Lead lead = readLead(first);
    if (lead.length == 0 || lead.length > text.size())
        return oddByte;
    char32_t point = lead.bits;
    for (std::size_t i = 1; i < lead.length; ++i) {
        const auto byte = static_cast<unsigned char>(text[i]);
        if (!isContinuation(byte))
            return oddByte;
        point = point << 6U | (byte & 0x3FU);
    }
    if (point < lead.least || point > lastCodePoint || isOddByte(point))
        return oddByte;
    return {point, lead.length};
}

std::u32string decodeAll(std::string_view text)
{
    std::u32string points;
    points.reserve(text.size());
    while (!text.empty()) {
        const Decoded decoded = decode(text);
        points += decoded.point;
        text.remove_prefix(decoded.length);
    }
    return points;
}

void encode(std::string& text, char32_t point)
{
    const auto append = [&](char32_t byte) { text += static_cast<char>(byte); };
    const auto continuation = [&](unsigned shift) { append(0x80U | (point >> shift & 0x3FU)); };
    if (point > lastCodePoint)
        point = replacement;
    if (isOddByte(point)) {
        append(point - oddByteBase);
    } else if (point < 0x80) {
        append(point);
    } else if (point < 0x800) {
        append(0xC0U | point >> 6U);
        continuation(0);
    } else if (point < 0x10000) {
        append(0xE0U | point >> 12U);
        continuation(6);
        continuation(0);
    } else {
        append(0xF0U | point >> 18U);
        continuation(12);
        continuation(6);
        continuation(0);
    }
}

std::string encodeAll(std::u32string_view points)
{
    std::string text;
    text.reserve(points.size());
    for (const char32_t point : points)
        encode(text, point);
    return text;
}

// ---- Parts of a path -----------------------------------------------------------------------------

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

std::string Velk::detail::randomName()
{
    std::array<unsigned char, 16> bytes{};
    if (!Velk::Platform::fillRandom(bytes.data(), bytes.size()))
        throw std::runtime_error("the system gives no random numbers");
    constexpr std::string_view digits = "0123456789abcdef";
    std::string name;
    for (const unsigned char byte : bytes)
        name.append({digits[byte >> 4U], digits[byte & 0x0FU]});
    return name;
}

fileString::fileString(const std::u32string& text) : text_(encodeAll(text)) {}

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

std::u32string fileString::unicodeString() const
{
    return decodeAll(text_);
}

std::wstring fileString::toNativeString() const
{
    return Velk::Platform::toNativePath(unicodeString());
}

std::string fileString::humanReadableString() const
{
    return text_;
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
    // The separator is the folder's own where it has one.
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
    return out << path.text_;
}
