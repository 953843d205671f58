// Reads any bytes as what Windows' settings say about proxies: a server, the proxies and the exceptions, a line each.
// Whatever they are, the proxy is one that can be used, and the same whatever the letter case of the server.
#include <VelkCommon/Platform/ProxySettings.h>

#include "Check.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

namespace {

std::string takeLine(std::string_view& text)
{
    const std::string_view line = text.substr(0, text.find('\n'));
    text.remove_prefix(std::min(line.size() + 1, text.size()));
    return std::string(line);
}

void checkProxy(std::string_view proxy)
{
    const bool socks = proxy.starts_with("socks4://");
    fuzz::check(socks || proxy.starts_with("http://"), "the way to it is named");
    proxy.remove_prefix(socks ? 9 : 7);
    fuzz::check(proxy.find_first_of("@/\\ \t\r\n%\"'?#") == std::string_view::npos, "no password, no path");
    const std::string_view port = proxy.substr(proxy.rfind(':') + 1);
    fuzz::check(!port.empty() && port.find_first_not_of("0123456789") == std::string_view::npos, "it has a port");
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    std::string_view text(reinterpret_cast<const char*>(data), size);
    std::string server = takeLine(text);
    Velk::Platform::ProxySettings settings;
    settings.proxies = takeLine(text);
    settings.bypass = text;
    const std::string proxy = Velk::Platform::proxyFor(settings, server);
    if (!proxy.empty())
        checkProxy(proxy);
    for (char& c : server)
        if (c >= 'A' && c <= 'Z')
            c = static_cast<char>(c - 'A' + 'a');
    fuzz::check(Velk::Platform::proxyFor(settings, server) == proxy, "letter case makes no difference");
    settings.bypass += " *";
    fuzz::check(Velk::Platform::proxyFor(settings, server).empty(), "all servers can be spared");
    return 0;
}
