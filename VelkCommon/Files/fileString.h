#pragma once

#include <VelkCommon/Export.h>

#include <compare>
#include <iosfwd>
#include <string>
#include <string_view>

/// The path of a file or folder. Empty means that no path is set.
///
/// A plain value that holds a text and nothing else: nothing is normalised, and only pathExists(),
/// modificationTime() and generateAsTempName() look at the disk. Equality and order are those of the
/// exact text (by code point) on every system, so letter case counts. Narrow path text is UTF-8. A name
/// on disk that is not valid text (odd bytes on Linux, a lone surrogate on Windows) survives conversion
/// to every form and back: in UTF-32, U+DC80 to U+DCFF stand for odd bytes.
///
/// The folder separator is "/"; on Windows "\" counts as well. Not synchronised; copies share nothing.
class VELKCOMMON_EXPORT fileString
{
public:
    /// No path.
    fileString() = default;
    /// From UTF-32 text. Implicit, because names become paths everywhere.
    fileString(const std::u32string& text);  // NOLINT(google-explicit-constructor)
    /// From UTF-8 text; the bytes are kept as they are.
    fileString(const std::string& text);  // NOLINT(google-explicit-constructor)
    /// From the system's form, the reverse of toNativeString().
    static fileString fromNative(std::wstring_view native);

    /// Whether no path is set.
    bool empty() const noexcept { return text_.empty(); }
    /// Whether a file or folder exists at the path; for a link, its target is looked at. False for the empty path.
    bool pathExists() const;
    /// Seconds since 1970-01-01 UTC of the last modification, comparable with `time()`; 0 when the
    /// path cannot be read.
    long long modificationTime() const;

    /// The containing folder without trailing separator: everything before the last separator.
    /// "/a/b" and "/a/b/" give "/a" and "/a/b"; a root stays a root ("/", "C:\"); "b" gives the empty path.
    fileString parentPath() const;
    /// parentPath() with one trailing separator; empty when parentPath() is.
    fileString parentPathWithSeparator() const;
    /// The path without its extension.
    fileString pathAndName() const;
    /// The file name without folder and extension.
    fileString stem() const;
    /// The file name with its extension, without folder.
    fileString stemWithExtension() const;
    /// The extension with its leading "."; empty for "name", ".name", "." and "..". Of several dots, the
    /// last one counts.
    fileString extension() const;
    /// Whether extension() is `wanted`; letter case counts. Makes no copy.
    bool hasExtension(std::string_view wanted) const noexcept;
    /// Whether extension() is `wanted` in any letter case (see StringUtils::toLowerUtf8()); `wanted` must be
    /// in lower case.
    bool hasExtensionInAnyCase(std::string_view wanted) const;

    /// The path as UTF-32.
    std::u32string unicodeString() const;
    /// The form that the operating system takes: wide characters; on Windows with "\" as the separator
    /// and, for absolute paths that are too long for its older limit, the long-path prefix.
    std::wstring toNativeString() const;
    /// The path for users and logs: UTF-8, with odd bytes as they are.
    std::string humanReadableString() const;
    /// The path as UTF-8 text, without a copy. Valid until the object changes.
    const std::string& utf8() const noexcept { return text_; }

    /// Sets the path to a fresh, unguessable file name in the temporary folder (which is created when missing)
    /// that ends with `extension` and that no file has yet. The file is not created. Returns the object.
    /// Throws std::runtime_error when the system gives no random numbers; then the path stays as it was.
    fileString& generateAsTempName(const fileString& extension);

    /// Plain concatenation of the two texts; no separator is added.
    friend VELKCOMMON_EXPORT fileString operator+(const fileString& left, const fileString& right);
    /// `folder` and `name` joined by exactly one separator, whether or not they already have one there. An
    /// absolute `name` does not replace the folder. When one of them is empty, the result is the other.
    friend VELKCOMMON_EXPORT fileString operator/(const fileString& folder, const fileString& name);
    /// The same for text, so that a literal can be joined.
    friend VELKCOMMON_EXPORT fileString operator/(const fileString& folder, const std::u32string& name);

    /// Whether the texts are equal, byte by byte.
    friend bool operator==(const fileString& left, const fileString& right) noexcept = default;
    /// The order of the texts, by code point.
    friend std::strong_ordering operator<=>(const fileString& left, const fileString& right) noexcept = default;

    /// Writes humanReadableString().
    friend VELKCOMMON_EXPORT std::ostream& operator<<(std::ostream& out, const fileString& path);

private:
    std::string text_;  // UTF-8; odd bytes as they were found
};

namespace StringConvert {

/// The path's text as UTF-8, with odd bytes as they are.
inline std::string toStdUtf8String(const fileString& path)
{
    return path.utf8();
}

}  // namespace StringConvert
