#pragma once

#include <VelkCommon/Export.h>

#include <boost/format.hpp>

#include <locale>
#include <sstream>
#include <string>
#include <string_view>
#include <vector>

namespace Velk {

/// `pattern` with "%1%", "%2%" ... replaced by the arguments and "%%" by "%", for texts that come from a
/// host. All of Boost.Format's placeholders work. A pattern with too few, too many or broken placeholders
/// still yields a readable text: a placeholder without an argument vanishes, a "%" that does not begin a
/// placeholder stays, and where nothing at all would be left, the result is the non-empty arguments,
/// separated by blanks. Numbers are written without thousands separators, whatever the global locale.
/// Throws only when memory runs out. Any thread.
template <typename... Arguments>
std::string formatText(const std::string& pattern, const Arguments&... arguments);

namespace detail {

/// Whether Boost.Format would misread the pattern: it has a "%" before a blank or before a character beyond
/// ASCII, or a row of digits so long that it overflows Boost.Format's numbers.
VELKCOMMON_EXPORT bool confusesBoostFormat(std::string_view pattern) noexcept;

/// `pattern` with "%1%", "%2%" ... and "%%" replaced; every other "%" stays.
VELKCOMMON_EXPORT std::string replacePlaceholders(std::string_view pattern, const std::vector<std::string>& arguments);

/// The non-empty texts, separated by blanks.
VELKCOMMON_EXPORT std::string joinTexts(const std::vector<std::string>& texts);

template <typename Argument>
std::string plainText(const Argument& argument)
{
    std::ostringstream text;
    text.imbue(std::locale::classic());
    text << argument;
    return text.str();
}

template <typename... Arguments>
std::string tryBoostFormat(const std::string& pattern, const Arguments&... arguments)
{
    boost::format text("", std::locale::classic());
    text.exceptions(boost::io::bad_format_string_bit);
    text.parse(pattern);
    static_cast<void>((text % ... % arguments));
    return text.str();
}

template <typename... Arguments>
std::string formatWithFallback(const std::string& pattern, const Arguments&... arguments)
{
    if (!confusesBoostFormat(pattern)) {
        try {
            return tryBoostFormat(pattern, arguments...);
        } catch (const boost::io::format_error&) {
            // The pattern is broken; the lenient reading below takes over.
        }
    }
    return replacePlaceholders(pattern, {plainText(arguments)...});
}

}  // namespace detail

template <typename... Arguments>
std::string formatText(const std::string& pattern, const Arguments&... arguments)
{
    const std::string text = detail::formatWithFallback(pattern, arguments...);
    return text.empty() ? detail::joinTexts({detail::plainText(arguments)...}) : text;
}

}  // namespace Velk
