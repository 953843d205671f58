#include <VelkCommon/Network/detail/UrlText.h>

#include <VelkCommon/Text/Ascii.h>
#include <VelkCommon/Text/PercentEncoding.h>

#include <curl/curl.h>

#include <algorithm>
#include <memory>
#include <new>

namespace Velk::detail {
namespace {

// `prefix` is in lower case.
bool startsWithIgnoringCase(std::string_view text, std::string_view prefix) noexcept
{
    return text.size() >= prefix.size() && std::equal(prefix.begin(), prefix.end(), text.begin(),
                                                      [](char wanted, char c) { return wanted == Ascii::lower(c); });
}

using Url = std::unique_ptr<CURLU, decltype(&curl_url_cleanup)>;

// What is no URL, and lack of memory, must not be taken for each other.
bool isFine(CURLUcode code)
{
    if (code == CURLUE_OUT_OF_MEMORY)
        throw std::bad_alloc();
    return code == CURLUE_OK;
}

Url parsed(const std::string& address)
{
    Url url(curl_url(), &curl_url_cleanup);
    if (!url)
        throw std::bad_alloc();
    if (!isFine(curl_url_set(url.get(), CURLUPART_URL, wireForm(address).c_str(), 0)))
        url.reset();
    return url;
}

std::string part(const Url& url, CURLUPart which, unsigned int flags = 0)
{
    char* text = nullptr;
    if (!isFine(curl_url_get(url.get(), which, &text, flags)))
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
    return std::any_of(text.begin(), text.end(), Ascii::isControl<char>);
}

bool isHeaderLine(std::string_view line) noexcept
{
    return std::none_of(line.begin(), line.end(), [](char c) { return Ascii::isControl(c) && c != '\t'; });
}

std::string serverOf(const std::string& address)
{
    const Url url = parsed(address);
    if (!url)
        return {};
    std::string server = part(url, CURLUPART_SCHEME) + "://" + part(url, CURLUPART_HOST) + ":" +
                         part(url, CURLUPART_PORT, CURLU_DEFAULT_PORT);
    std::transform(server.begin(), server.end(), server.begin(), Ascii::lower<char>);
    return server;
}

std::string resolved(const std::string& base, const std::string& reference)
{
    const Url url = parsed(base);
    if (!url || !isFine(curl_url_set(url.get(), CURLUPART_URL, wireForm(reference).c_str(), CURLU_NON_SUPPORT_SCHEME)))
        return {};
    return part(url, CURLUPART_URL);
}

}  // namespace Velk::detail
