#pragma once

#include <VelkCommon/Export.h>

#include <compare>
#include <iosfwd>
#include <string>
#include <string_view>

/// The path of a file or folder. Empty means that no path is set.
///
/// A plain value that holds a text and nothing else: nothing is normalised; no member but
/// pathExists(), modificationTime() and generateAsTempName() looks at the disk. Equality and order
/// are those of the exact text (by code point), the same on every system, so letter case counts.
/// Narrow path text is UTF-8. A name on disk that is not valid text (odd bytes on Linux, a lone
/// surrogate on Windows) survives the way through every form: such a byte stands in UTF-32 as
/// U+DC80 to U+DCFF.
///
/// The folder separator is "/"; on Windows "\" counts as well. Not synchronised; copies share nothing.
class VELKCOMMON_EXPORT fileString
{
public:
    /// No path.
    fileString() = default;
    /// From UTF-32 text. Implicit, as names become paths everywhere.
    fileString(const std::u32string& text);  // NOLINT(google-explicit-constructor)
    /// From UTF-8 text; the bytes are kept as they are.
    fileString(const std::string& text);  // NOLINT(google-explicit-constructor)
    /// From the system's form, the reverse of toNativeString().
    static fileString fromNative(std::wstring_view native);

    /// No path is set.
    bool empty() const noexcept { return text_.empty(); }
    /// A file or folder exists at the path (a link counts by its target). False for the empty path.
    bool pathExists() const;
    /// Seconds since 1970-01-01 UTC of the last modification, comparable with `time()`; 0 when the
    /// path cannot be read.
    long long modificationTime() const;

    /// The containing folder without trailing separator: everything before the last separator.
    /// "/a/b" and "/a/b/" give "/a" and "/a/b"; a root stays a root ("/", "C:\"); "b" gives no path.
    fileString parentPath() const;
    /// parentPath() with one trailing separator; no path stays no path.
    fileString parentPathWithSeparator() const;
    /// The path without its extension.
    fileString pathAndName() const;
    /// The file name without folder and extension.
    fileString stem() const;
    /// The file name with its extension, without folder.
    fileString stemWithExtension() const;
    /// The extension with its leading "."; none for "name", ".name", "." and "..". Of several dots the
    /// last one counts.
    fileString extension() const;
    /// extension() is `wanted`; letter case counts. Without a copy.
    bool hasExtension(std::string_view wanted) const noexcept;
    /// extension() is `wanted`, given in lower case, whatever letter case the path has (see
    /// StringUtils::toLowerUtf8()).
    bool hasExtensionInAnyCase(std::string_view wanted) const;

    /// The path as UTF-32.
    std::u32string unicodeString() const;
    /// The form that the operating system takes: wide characters; on Windows with "\" as the separator
    /// and, for absolute paths that are too long for its older limit, the long-path prefix.
    std::wstring toNativeString() const;
    /// The path for people and logs: UTF-8, with the bytes of odd names as they are.
    std::string humanReadableString() const;
    /// The path as UTF-8 text, without a copy. Valid until the object changes.
    const std::string& utf8() const noexcept { return text_; }

    /// Becomes a fresh, unguessable file name in the temporary folder (which is made when missing) that
    /// ends with `extension` and that no file has yet. Nothing is created. Returns the object. Throws
    /// std::runtime_error when the system gives no random numbers; the path stays then.
    fileString& generateAsTempName(const fileString& extension);

    /// Plain concatenation of the two texts; no separator is added.
    friend VELKCOMMON_EXPORT fileString operator+(const fileString& left, const fileString& right);
    /// `folder` joined with `name` by exactly one separator, whatever the two end and begin with. An
    /// absolute `name` never wins over the folder. An empty side gives the other one.
    friend VELKCOMMON_EXPORT fileString operator/(const fileString& folder, const fileString& name);
    /// The same, so that a literal can be joined.
    friend VELKCOMMON_EXPORT fileString operator/(const fileString& folder, const std::u32string& name);

    /// The texts are equal, byte by byte.
    friend bool operator==(const fileString& left, const fileString& right) noexcept = default;
    /// The order of the texts, by code point.
    friend std::strong_ordering operator<=>(const fileString& left, const fileString& right) noexcept = default;

    /// Writes humanReadableString().
    friend VELKCOMMON_EXPORT std::ostream& operator<<(std::ostream& out, const fileString& path);

private:
    std::string text_;  // UTF-8; bytes that are not, as found
};

namespace StringConvert {

/// The path's text as UTF-8; the bytes of odd names as they are.
inline std::string toStdUtf8String(const fileString& path)
{
    return path.utf8();
}

}  // namespace StringConvert
