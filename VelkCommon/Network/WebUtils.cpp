#include <VelkCommon/Network/WebUtils.h>

#include <VelkCommon/Network/detail/Requests.h>
#include <VelkCommon/Network/detail/Session.h>
#include <VelkCommon/Text/Ascii.h>
#include <VelkCommon/Text/StringUtils.h>

#include <algorithm>
#include <string_view>

namespace detail = Velk::detail;

namespace {

std::string_view trimmed(std::string_view text)
{
    return StringUtils::trimmed(text, " \t\r\n");
}

// Cuts the first line off `text` and returns it without its end.
std::string_view takeLine(std::string_view& text)
{
    const std::size_t end = std::min(text.find('\n'), text.size());
    std::string_view line = text.substr(0, end);
    text.remove_prefix(std::min(end + 1, text.size()));
    if (line.ends_with('\r'))
        line.remove_suffix(1);
    return line;
}

void continueValue(std::string& value, std::string_view line)
{
    const std::string_view more = trimmed(line);
    if (!value.empty() && !more.empty())
        value += ' ';
    value += more;
}

}  // namespace

namespace WebUtils {

bool HeaderNameCompare::operator()(const std::string& left, const std::string& right) const
{
    return std::lexicographical_compare(
        left.begin(), left.end(), right.begin(), right.end(),
        [](unsigned char a, unsigned char b) { return Velk::Ascii::lower(a) < Velk::Ascii::lower(b); });
}

std::string getUrlAfterRedirects(const std::string& url)
{
    constexpr long firstErrorStatus = 400;
    detail::NoBody body;
    detail::TransferRequest request = detail::headerRequest(url, {});
    detail::Transfer head(request, body);
    detail::run(head);
    if (head.answered() && head.status() < firstErrorStatus)
        return head.address();
    // Some servers support only GET at such an address, and answer anything else with an error or not at all.
    if (!head.answered() && head.failure().code != CURLE_GOT_NOTHING)
        return {};
    request.method = detail::TransferRequest::Method::get;
    request.url = head.address();
    detail::Transfer get(request, body);
    detail::run(get);
    if (get.answered())
        return get.address();
    return head.answered() ? head.address() : std::string();
}

void parseReturnHeader(const std::string& header,
                       std::map<std::string, std::vector<std::string>, HeaderNameCompare>& out)
{
    out.clear();
    std::string* value = nullptr;  // of the previous line
    for (std::string_view rest = header; !rest.empty();) {
        const std::string_view line = takeLine(rest);
        if (line.starts_with(' ') || line.starts_with('\t')) {
            if (value != nullptr)
                continueValue(*value, line);
            continue;
        }
        value = nullptr;
        const std::size_t colon = line.find(':');
        const std::string_view name = trimmed(line.substr(0, std::min(colon, line.size())));
        if (colon == std::string_view::npos || name.empty() || line.starts_with("HTTP/"))
            continue;
        value = &out[std::string(name)].emplace_back(trimmed(line.substr(colon + 1)));
    }
}

}  // namespace WebUtils
