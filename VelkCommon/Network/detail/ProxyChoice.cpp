#include <VelkCommon/Network/detail/ProxyChoice.h>

#include <VelkCommon/Platform/SystemProxy.h>

#include <QtGlobal>

#include <algorithm>
#include <atomic>
#include <iterator>

namespace Velk::detail {
namespace {

std::atomic<ProxySource> source{nullptr};

// The variables that libcurl looks at. There is no HTTP_PROXY among them, which requests to a web server can set.
bool environmentDecides()
{
    constexpr const char* names[] = {"http_proxy", "https_proxy", "HTTPS_PROXY", "all_proxy",
                                     "ALL_PROXY",  "no_proxy",    "NO_PROXY"};
    return std::any_of(std::begin(names), std::end(names),
                       [](const char* name) { return qEnvironmentVariableIsSet(name); });
}

}  // namespace

std::string proxyOfSystem(const std::string& server, const std::function<bool()>& goOn)
{
    if (environmentDecides())
        return {};
    const ProxySource asked = source;
    return asked != nullptr ? asked(server, goOn) : Platform::systemProxy(server, goOn);
}

void setProxySource(ProxySource asked) noexcept
{
    source = asked;
}

}  // namespace Velk::detail
