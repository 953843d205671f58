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

// The names and passwords in the addresses of a text.
class UserInfos
{
public:
    explicit UserInfos(std::string_view text) noexcept : text_(text) {}

    // Where the host of the next address begins, from `position` on; npos when there is no other address.
    std::size_t nextAuthority(std::size_t position) const noexcept
    {
        constexpr std::string_view separator = "://";
        for (std::size_t found = text_.find(separator, position); found != std::string_view::npos;
             found = text_.find(separator, found + 1)) {
            if (found >= 2 && isOfScheme(text_[found - 1]) && isOfScheme(text_[found - 2]))
                return std::min(text_.find_first_not_of('/', found + 1), text_.size());
        }
        return std::string_view::npos;
    }

    // The end of what stands there before the host, "@" included; `authority` when nothing does.
    std::size_t endOfUserInfo(std::size_t authority)
    {
        const std::size_t end = endOf(authority, [](char c) { return isOneOf(c, "/?#") || Velk::Ascii::isControl(c); });
        std::size_t at = lastAt(authority, end);
        // Where no host ends there, the password holds what should end it.
        if (at == std::string_view::npos && !isHostWithPort(text_.substr(authority, end - authority)))
            at = lastAtOfWord(end);
        return at == std::string_view::npos ? authority : at + 1;
    }

private:
    static bool isOneOf(char c, std::string_view characters) noexcept { return characters.find(c) < characters.size(); }

    static bool isOfScheme(char c) noexcept
    {
        return Velk::Ascii::isLetter(c) || Velk::Ascii::isDigit(c) || isOneOf(c, "+-.");
    }

    static bool isHostWithPort(std::string_view text) noexcept
    {
        const std::size_t colon = text.find(':', text.starts_with('[') ? std::min(text.find(']'), text.size()) : 0);
        return colon == std::string_view::npos || std::all_of(text.begin() + static_cast<std::ptrdiff_t>(colon) + 1,
                                                              text.end(), Velk::Ascii::isDigit<char>);
    }

    template <typename Ends>
    std::size_t endOf(std::size_t begin, Ends ends) const
    {
        const auto from = text_.begin() + static_cast<std::ptrdiff_t>(begin);
        return static_cast<std::size_t>(std::find_if(from, text_.end(), ends) - text_.begin());
    }

    std::size_t lastAt(std::size_t begin, std::size_t end) const noexcept
    {
        const std::size_t at = text_.substr(begin, end - begin).rfind('@');
        return at == std::string_view::npos ? at : begin + at;
    }

    // The last "@" between `begin` and the next blank. Each word is looked through once, however many addresses it has.
    std::size_t lastAtOfWord(std::size_t begin)
    {
        if (begin >= wordEnd_) {
            wordEnd_ = endOf(begin, [](char c) { return c == ' ' || Velk::Ascii::isControl(c); });
            wordAt_ = lastAt(begin, wordEnd_);
        }
        return wordAt_ != std::string_view::npos && wordAt_ >= begin ? wordAt_ : std::string_view::npos;
    }

    std::string_view text_;
    std::size_t wordEnd_ = 0;
    std::size_t wordAt_ = std::string_view::npos;
};

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
    detail::TransferFailure failure;
    std::string address = finalAddress(url, failure);
    reason = std::move(failure.reason);
    code = failure.code;
    return address;
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

std::string withoutUserInfo(const std::string& text)
{
    UserInfos infos(text);
    std::string shown;
    std::size_t done = 0;
    for (std::size_t authority = infos.nextAuthority(0); authority != std::string::npos;
         authority = infos.nextAuthority(done)) {
        shown.append(text, done, authority - done);
        done = infos.endOfUserInfo(authority);
    }
    return shown.append(text, done);
}

}  // namespace WebUtils
