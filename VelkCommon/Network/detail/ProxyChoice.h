#pragma once

#include <VelkCommon/Export.h>

#include <functional>
#include <string>

namespace Velk::detail {

/// The proxy that a transfer must be told of for requests to `server`, as UrlText's serverOf() names it: that of the
/// system's settings. Empty where there is none, and where the environment has a variable about proxies, which libcurl
/// then follows by itself. May take seconds, see Platform::systemProxy() for this and for `goOn`. Any thread.
std::string proxyOfSystem(const std::string& server, const std::function<bool()>& goOn);

/// What is asked for the system's settings.
using ProxySource = std::string (*)(const std::string& server, const std::function<bool()>& goOn);
/// For tests: asks `source` from now on; null for the system itself. Any thread.
VELKCOMMON_EXPORT void setProxySource(ProxySource source) noexcept;

}  // namespace Velk::detail
