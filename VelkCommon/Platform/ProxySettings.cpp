#include <VelkCommon/Platform/ProxySettings.h>

#include <algorithm>
#include <optional>

namespace Velk::Platform {
namespace {

constexpr std::size_t longestHost = 253;  // as in the domain name system

char lower(char c) noexcept
{
    return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c;
}

bool isDigit(char c) noexcept
{
    return c >= '0' && c <= '9';
}

std::string lowered(std::string_view text)
{
    std::string result(text);
    std::transform(result.begin(), result.end(), result.begin(), lower);
    return result;
}

// Takes the next word of a list; empty at its end.
std::string nextWord(std::string_view& list)
{
    constexpr std::string_view between = "; \t\r\n";
    list.remove_prefix(std::min(list.find_first_not_of(between), list.size()));
    const std::string_view word = list.substr(0, list.find_first_of(between));
    list.remove_prefix(word.size());
    return lowered(word);
}

// Takes what stands before `mark`, and the mark; nothing where there is none.
std::optional<std::string> takeBefore(std::string& word, std::string_view mark)
{
    const std::size_t place = word.find(mark);
    if (place == std::string::npos)
        return std::nullopt;
    std::string before = word.substr(0, place);
    word.erase(0, place + mark.size());
    return before;
}

struct HostAndPort
{
    std::string host;  // an IPv6 address in brackets
    std::string port;  // empty without one
};

HostAndPort divided(std::string_view word)
{
    const std::size_t bracket = word.rfind(']');
    const std::size_t colon = word.rfind(':');
    if (colon == std::string_view::npos || (bracket != std::string_view::npos && colon < bracket))
        return {std::string(word), ""};
    return {std::string(word.substr(0, colon)), std::string(word.substr(colon + 1))};
}

bool isHost(std::string_view host)
{
    const auto isIn = [](std::string_view others) {
        return [others](char c) {
            return isDigit(c) || (c >= 'a' && c <= 'z') || others.find(c) != std::string_view::npos;
        };
    };
    if (host.empty() || host.size() > longestHost)
        return false;
    if (host.front() != '[')
        return std::all_of(host.begin(), host.end(), isIn("-._"));
    const std::string_view address = host.substr(1, host.size() - 2);
    return host.size() > 3 && host.back() == ']' && std::all_of(address.begin(), address.end(), isIn(":."));
}

bool isPort(std::string_view port)
{
    constexpr std::size_t mostDigits = 5;
    constexpr int last = 65535;
    if (port.empty() || port.size() > mostDigits || !std::all_of(port.begin(), port.end(), isDigit))
        return false;
    const int number = std::stoi(std::string(port));
    return number > 0 && number <= last;
}

// The address of a proxy as "kind://host:port"; empty for what is no proxy that we can use.
std::string proxyAddress(std::string word, std::string_view kind)
{
    // What is written before a proxy is the way to it.
    if (const auto scheme = takeBefore(word, "://"); scheme && *scheme != "http")
        return {};
    if (word.ends_with('/'))
        word.pop_back();
    HostAndPort proxy = divided(word);
    if (proxy.port.empty() && !word.ends_with(':'))
        proxy.port = kind == "http" ? "80" : "1080";
    if (!isHost(proxy.host) || !isPort(proxy.port))
        return {};
    return std::string(kind) + "://" + proxy.host + ":" + proxy.port;
}

// The first proxy that the list has for the scheme. One for all schemes stands there alone; what is only for SOCKS
// serves where nothing else does.
std::string firstProxy(std::string_view list, std::string_view scheme)
{
    std::string socks;
    for (std::string word = nextWord(list); !word.empty(); word = nextWord(list)) {
        const std::optional<std::string> wanted = takeBefore(word, "=");
        if (wanted == "socks") {
            if (socks.empty())
                socks = proxyAddress(word, "socks4");
        } else if (!wanted || wanted == scheme) {
            if (std::string proxy = proxyAddress(word, "http"); !proxy.empty())
                return proxy;
        }
    }
    return socks;
}

// Whether the text is what the pattern says, in which each "*" stands for any text. Linear but for the last "*", which
// is what moves on.
bool matches(std::string_view pattern, std::string_view text)
{
    std::size_t p = 0;
    std::size_t t = 0;
    std::size_t star = std::string_view::npos;
    std::size_t retry = 0;
    while (t < text.size()) {
        if (p < pattern.size() && pattern[p] == '*') {
            star = p++;
            retry = t;
        } else if (p < pattern.size() && pattern[p] == text[t]) {
            ++p;
            ++t;
        } else if (star != std::string_view::npos) {
            p = star + 1;
            t = ++retry;
        } else {
            return false;
        }
    }
    return std::all_of(pattern.begin() + static_cast<std::ptrdiff_t>(p), pattern.end(),
                       [](char c) { return c == '*'; });
}

struct Server
{
    std::string scheme;
    std::string host;
    std::string port;

    bool isLocal() const { return host.find('.') == std::string::npos && host.front() != '['; }
    bool isThisMachine() const { return host == "localhost" || host == "[::1]" || matches("127.*.*.*", host); }
};

std::optional<Server> parsed(std::string_view server)
{
    std::string rest = lowered(server);
    const std::optional<std::string> scheme = takeBefore(rest, "://");
    HostAndPort place = divided(rest);
    if (!scheme || !isHost(place.host))
        return std::nullopt;
    return Server{*scheme, std::move(place.host), std::move(place.port)};
}

bool isMeant(std::string word, const Server& server)
{
    if (const auto scheme = takeBefore(word, "://"); scheme && *scheme != server.scheme)
        return false;
    const HostAndPort wanted = divided(word);
    return (wanted.port.empty() || wanted.port == "*" || wanted.port == server.port) &&
           matches(wanted.host, server.host);
}

bool isBypassed(std::string_view list, const Server& server)
{
    bool direct = false;
    bool sparesThisMachine = true;
    for (std::string word = nextWord(list); !word.empty(); word = nextWord(list)) {
        if (word == "<-loopback>")
            sparesThisMachine = false;
        else if (word == "<local>")
            direct = direct || server.isLocal();
        else
            direct = direct || isMeant(std::move(word), server);
    }
    return direct || (sparesThisMachine && server.isThisMachine());
}

}  // namespace

std::string proxyFor(const ProxySettings& settings, std::string_view server)
{
    const std::optional<Server> wanted = parsed(server);
    if (!wanted || isBypassed(settings.bypass, *wanted))
        return {};
    return firstProxy(settings.proxies, wanted->scheme);
}

}  // namespace Velk::Platform
