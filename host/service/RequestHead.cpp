#include "host/service/RequestHead.h"

#include <VelkCommon/Text/Ascii.h>

#include <boost/asio/buffer.hpp>
#include <boost/beast/core/string.hpp>
#include <boost/beast/http/empty_body.hpp>
#include <boost/beast/http/parser.hpp>
#include <boost/beast/http/status.hpp>

#include <algorithm>
#include <charconv>
#include <optional>

namespace VelkHost {

namespace http = boost::beast::http;
using Parser = http::request_parser<http::empty_body>;

namespace {

constexpr std::string_view lineEnd = "\r\n";
constexpr std::string_view blankLine = "\r\n\r\n";
constexpr unsigned oldestVersion = 10;
constexpr unsigned newestVersion = 11;

constexpr Refusal malformed{400, "This is not a request in HTTP/1.0 or HTTP/1.1.\n"};
constexpr Refusal folded{400, "A header field goes on in the next line.\n"};
constexpr Refusal noHost{400, "There must be one Host field.\n"};
constexpr Refusal oddLength{400, "The Content-Length must be one number.\n"};
constexpr Refusal encodedBody{400, "A body with a Transfer-Encoding is not taken.\n"};
constexpr Refusal tooMuchBody{413, "The body is too long.\n"};
constexpr Refusal longLine{414, "The request line is too long.\n"};
constexpr Refusal expectation{417, "No expectation is met.\n"};
constexpr Refusal longHead{431, "The header fields are too long or too many.\n"};

/// Every line ends with CR and LF, which stand nowhere else, and nothing goes on in the next line. Tabs may stand in
/// values.
std::optional<Refusal> refusalOfLines(std::string_view head)
{
    for (std::size_t i = 0; i < head.size(); ++i) {
        const char now = head[i];
        const char before = i == 0 ? '\0' : head[i - 1];
        if (before == '\n' && (now == ' ' || now == '\t'))
            return folded;
        if ((before == '\r') != (now == '\n') ||
            (Velk::Ascii::isControl(now) && now != '\r' && now != '\n' && now != '\t'))
            return malformed;
    }
    return std::nullopt;
}

/// The declared length of the body; nothing for a field that is not one number.
std::optional<std::uint64_t> bodyLength(std::string_view digits)
{
    std::uint64_t value = 0;
    const char* const end = digits.data() + digits.size();
    const auto [read, error] = std::from_chars(digits.data(), end, value);
    if (digits.empty() || error != std::errc() || read != end)
        return std::nullopt;
    return value;
}

/// What the library would read in one of several ways, or passes over.
std::optional<Refusal> refusalOfFields(const Parser::value_type& request, const HeadLimits& limits)
{
    if (request.version() < oldestVersion || request.version() > newestVersion)
        return malformed;
    if (request.count(http::field::host) > 1 ||
        (request.version() == newestVersion && request.count(http::field::host) == 0))
        return noHost;
    if (request.count(http::field::transfer_encoding) > 0)
        return encodedBody;
    if (request.count(http::field::content_length) > 1)
        return oddLength;
    if (request.count(http::field::expect) > 0)
        return expectation;
    const auto length = request.find(http::field::content_length);
    if (length == request.end())
        return std::nullopt;
    const std::optional<std::uint64_t> bytes = bodyLength({length->value().data(), length->value().size()});
    if (!bytes)
        return oddLength;
    return *bytes > limits.bodyBytes ? std::optional(tooMuchBody) : std::nullopt;
}

/// The refusal that tells best what the library complains of.
Refusal refusalOf(const boost::system::error_code& error)
{
    if (error == http::error::bad_content_length)
        return oddLength;
    if (error == http::error::bad_transfer_encoding)
        return encodedBody;
    return malformed;
}

std::string text(boost::beast::string_view view)
{
    return {view.data(), view.size()};
}

RequestHead headOf(const Parser::value_type& request)
{
    RequestHead head;
    head.method = text(request.method_string());
    head.target = text(request.target());
    for (const auto& field : request)
        head.fields.emplace_back(text(field.name_string()), text(field.value()));
    head.bodyBytes = bodyLength(head.field("Content-Length")).value_or(0);
    head.oldVersion = request.version() == oldestVersion;
    head.keepsConnection = request.keep_alive();
    return head;
}

}  // namespace

std::string_view RequestHead::field(std::string_view name) const noexcept
{
    const auto isNamed = [&](const auto& field) {
        return boost::beast::iequals({field.first.data(), field.first.size()}, {name.data(), name.size()});
    };
    const auto found = std::find_if(fields.begin(), fields.end(), isNamed);
    return found == fields.end() ? std::string_view() : std::string_view(found->second);
}

std::size_t headLength(std::string_view received, std::size_t searched) noexcept
{
    // Part of the blank line may have come before.
    const std::size_t begin = searched - std::min(searched, blankLine.size() - 1);
    const std::size_t end = received.find(blankLine, begin);
    return end == std::string_view::npos ? 0 : end + blankLine.size();
}

Refusal refusalOfBeginning(std::string_view received, const HeadLimits& limits) noexcept
{
    if (std::min(received.find(lineEnd), received.size()) > limits.line)
        return longLine;
    return received.size() > limits.bytes ? longHead : Refusal{0, {}};
}

std::variant<RequestHead, Refusal> readHead(std::string_view head, const HeadLimits& limits)
{
    if (const Refusal tooLong = refusalOfBeginning(head, limits); tooLong.status != 0)
        return tooLong;
    if (const auto refused = refusalOfLines(head))
        return *refused;
    // Beside the fields there are the request line and the blank one.
    if (static_cast<std::size_t>(std::count(head.begin(), head.end(), '\n')) > limits.fields + 2)
        return longHead;
    Parser parser;
    parser.header_limit(static_cast<std::uint32_t>(limits.bytes));
    // Its limit of the body and what it takes for one are not ours.
    parser.skip(true);
    boost::system::error_code error;
    parser.put(boost::asio::buffer(head.data(), head.size()), error);
    if (error)
        return refusalOf(error);
    if (!parser.is_header_done())
        return malformed;
    if (const auto refused = refusalOfFields(parser.get(), limits))
        return *refused;
    return headOf(parser.get());
}

std::string statusPhrase(int status)
{
    return text(http::obsolete_reason(http::int_to_status(static_cast<unsigned>(status))));
}

}  // namespace VelkHost
