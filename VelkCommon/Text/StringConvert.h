#pragma once

#include <VelkCommon/Export.h>
#include <VelkCommon/Text/Windows1252.h>

#include <QString>

#include <string>
#include <string_view>
#include <vector>

/// Conversions between the encodings in use: UTF-32 for what users see and for paths, UTF-8 for URLs,
/// JSON, logs and names to be rated, Windows-1252 for the content service, wide text for calls of the
/// operating system, `QString` in widgets.
///
/// No conversion throws on malformed input, and none truncates: each maximal ill-formed sequence of
/// UTF-8, each lone surrogate and each value above U+10FFFF becomes one U+FFFD. Zero bytes and
/// zero code points are ordinary characters. Any thread.
namespace StringConvert {

/// The encoding of a narrow text.
enum Method : int {
    Default = 0,     ///< for logs and consoles; UTF-8, so that no name is lost in a log
    Utf8 = 1,        ///< UTF-8
    Windows1252 = 2  ///< Windows-1252, see toWin1252()
};

/// `text` in the encoding that `method` names; an unknown method counts as `Default`.
VELKCOMMON_EXPORT std::string toStdString(std::u32string_view text, Method method);

/// `text` as UTF-8. A lone surrogate or a value above U+10FFFF becomes U+FFFD.
VELKCOMMON_EXPORT std::string toStdUtf8String(std::u32string_view text);
/// The same. The parameter matches exactly, so that the overload for paths (fileString.h) never competes.
inline std::string toStdUtf8String(const std::u32string& text)
{
    return toStdUtf8String(std::u32string_view(text));
}
/// The same for a zero-terminated text.
inline std::string toStdUtf8String(const char32_t* text)
{
    return toStdUtf8String(std::u32string_view(text));
}

/// UTF-32 from narrow text in the encoding that `method` names.
VELKCOMMON_EXPORT std::u32string toUnicode(std::string_view text, Method method);
/// UTF-32 from the system's wide text: UTF-16 where `wchar_t` has 16 bits (surrogate pairs are joined),
/// UTF-32 where it has 32.
VELKCOMMON_EXPORT std::u32string toUnicode(std::wstring_view text);
/// UTF-32 from Qt's text.
VELKCOMMON_EXPORT std::u32string toUnicode(const QString& text);
/// Each element of `texts` converted by itself, in order.
VELKCOMMON_EXPORT std::vector<std::u32string> toUnicode(const std::vector<std::string>& texts, Method method = Utf8);

/// UTF-32 from UTF-8. `ok`, when given, receives whether the text was well-formed. The text is converted
/// in either case, with U+FFFD for what is malformed.
VELKCOMMON_EXPORT std::u32string toUnicodeFromUtf8(std::string_view text, bool* ok = nullptr);

/// Whether `text` is well-formed UTF-8.
VELKCOMMON_EXPORT bool isUtf8(std::string_view text) noexcept;

/// The system's wide text: UTF-16 or UTF-32, depending on the size of `wchar_t`.
VELKCOMMON_EXPORT std::wstring toWide(std::u32string_view text);

/// Qt's text from UTF-32.
VELKCOMMON_EXPORT QString toQString(std::u32string_view text);
/// Qt's text from narrow text in the encoding that `method` names.
VELKCOMMON_EXPORT QString toQString(std::string_view text, Method method);

}  // namespace StringConvert
