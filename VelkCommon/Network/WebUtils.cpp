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

// Where an address leads to; empty after a failure.
std::string finalAddress(const std::string& url, detail::TransferFailure& failure)
{
    constexpr long firstErrorStatus = 400;
    detail::NoBody body;
    detail::TransferRequest request = detail::headerRequest(url, {});
    detail::Transfer head(request, body);
    detail::run(head);
    if (head.answered() && head.status() < firstErrorStatus)
        return head.address();
    failure = head.failure();
    // Some servers support only GET at such an address, and answer anything else with an error or not at all.
    if (!head.answered() && failure.code != CURLE_GOT_NOTHING)
        return {};
    request.method = detail::TransferRequest::Method::get;
    request.url = head.address();
    detail::Transfer get(request, body);
    detail::run(get);
    if (!get.answered() && !head.answered()) {
        failure = get.failure();
        return {};
    }
    failure = {};
    return get.answered() ? get.address() : head.address();
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
    std::string reason;
    unsigned int code = 0;
    return getUrlAfterRedirects(url, reason, code);
}

std::string getUrlAfterRedirects(const std::string& url, std::string& reason, unsigned int& code)
{
    reason.clear();
    code = CURLE_OK;
    try {
        detail::TransferFailure failure;
        std::string address = finalAddress(url, failure);
        reason = std::move(failure.reason);
        code = failure.code;
        return address;
    } catch (...) {
        code = CURLE_OUT_OF_MEMORY;
        return {};
    }
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
