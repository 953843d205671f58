#pragma once

#include <boost/format.hpp>

#include <string>

namespace Velk {

/// `pattern` with "%1%", "%2%" ... replaced by the arguments, for texts that come from a host: a
/// pattern with too few, too many or broken placeholders still yields something readable, and no
/// exception. An empty pattern yields the arguments, separated by blanks. Any thread.
template <typename... Arguments>
std::string formatText(const std::string& pattern, const Arguments&... arguments);

namespace detail {

template <typename... Arguments>
std::string joinArguments(const Arguments&... arguments)
{
    boost::format joined;
    joined.exceptions(boost::io::no_error_bits);
    std::string pattern;
    for (std::size_t i = 1; i <= sizeof...(arguments); ++i)
        pattern += (i == 1 ? "%" : " %") + std::to_string(i) + "%";
    joined.parse(pattern);
    (joined % ... % arguments);
    return joined.str();
}

}  // namespace detail

template <typename... Arguments>
std::string formatText(const std::string& pattern, const Arguments&... arguments)
{
    if (pattern.empty())
        return detail::joinArguments(arguments...);
    boost::format text;
    text.exceptions(boost::io::no_error_bits);
    text.parse(pattern);
    static_cast<void>((text % ... % arguments));
    return text.str();
}

}  // namespace Velk
