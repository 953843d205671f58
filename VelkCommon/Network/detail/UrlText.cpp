#include <VelkCommon/Network/detail/UrlText.h>

#include <curl/curl.h>

#include <algorithm>
#include <memory>

namespace Velk::detail {
namespace {

constexpr char lower(char c) noexcept
{
    return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c;
}

// `prefix` is in lower case.
bool startsWithIgnoringCase(std::string_view text, std::string_view prefix) noexcept
{
    return text.size() >= prefix.size() && std::equal(prefix.begin(), prefix.end(), text.begin(),
                                                      [](char wanted, char c) { return wanted == lower(c); });
}

constexpr bool isControl(char c) noexcept
{
    return static_cast<unsigned char>(c) < 0x20 || c == 0x7F;
}

bool needsEncoding(char c) noexcept
{
    const auto byte = static_cast<unsigned char>(c);
    return byte <= 0x20 || byte >= 0x7F || std::string_view("\"<>\\^`{|}").find(c) != std::string_view::npos;
}

using Url = std::unique_ptr<CURLU, decltype(&curl_url_cleanup)>;

Url parsed(const std::string& address)
{
    Url url(curl_url(), &curl_url_cleanup);
    if (url && curl_url_set(url.get(), CURLUPART_URL, wireForm(address).c_str(), 0) != CURLUE_OK)
        url.reset();
    return url;
}

std::string part(const Url& url, CURLUPart which, unsigned int flags = 0)
{
    char* text = nullptr;
    if (curl_url_get(url.get(), which, &text, flags) != CURLUE_OK)
        return {};
    const std::unique_ptr<char, decltype(&curl_free)> owner(text, &curl_free);
    return text;
}

}  // namespace

bool isWebAddress(std::string_view text) noexcept
{
    for (const std::string_view scheme : {"http://", "https://"}) {
        if (startsWithIgnoringCase(text, scheme)) {
            text.remove_prefix(scheme.size());
            return !text.empty() && std::string_view("/?#\\").find(text.front()) == std::string_view::npos;
        }
    }
    return false;
}

bool isSecure(std::string_view address) noexcept
{
    return startsWithIgnoringCase(address, "https:");
}

bool hasControlCharacter(std::string_view text) noexcept
{
    return std::any_of(text.begin(), text.end(), isControl);
}

bool isHeaderLine(std::string_view line) noexcept
{
    return std::none_of(line.begin(), line.end(), [](char c) { return isControl(c) && c != '\t'; });
}

std::string wireForm(std::string_view address)
{
    constexpr char digits[] = "0123456789ABCDEF";
    std::string result;
    result.reserve(address.size());
    for (const char c : address) {
        if (!needsEncoding(c)) {
            result += c;
            continue;
        }
        const auto byte = static_cast<unsigned char>(c);
        result += {'%', digits[byte >> 4U], digits[byte & 0xFU]};
    }
    return result;
}

std::string serverOf(const std::string& address)
{
    const Url url = parsed(address);
    if (!url)
        return {};
    std::string server = part(url, CURLUPART_SCHEME) + "://" + part(url, CURLUPART_HOST) + ":" +
                         part(url, CURLUPART_PORT, CURLU_DEFAULT_PORT);
    std::transform(server.begin(), server.end(), server.begin(), lower);
    return server;
}

std::string resolved(const std::string& base, const std::string& reference)
{
    const Url url = parsed(base);
    if (!url ||
        curl_url_set(url.get(), CURLUPART_URL, wireForm(reference).c_str(), CURLU_NON_SUPPORT_SCHEME) != CURLUE_OK)
        return {};
    return part(url, CURLUPART_URL);
}

}  // namespace Velk::detail
