#pragma once

/// @file
/// What Windows' settings say about proxies, as text. It is read here on every system, so that it can be tried on every
/// system. The settings come from users, administrators and scripts: whatever they hold, the result is a proxy that can
/// be used or none. Any thread. Throws only when memory runs out.

#include <VelkCommon/Export.h>

#include <string>
#include <string_view>

namespace Velk::Platform {

/// Proxies that are the same for all time, as opposed to those that a script names.
struct ProxySettings
{
    /// One proxy for all ("a:8080"), or one for each scheme ("http=a:80;https=b:81;socks=c:1080"). Several for one
    /// scheme are tried by the system in their order; here the first counts.
    std::string proxies;
    /// Servers that are asked directly, such as "*.example.com;10.*;<local>". "<local>" are names without a dot. This
    /// machine itself belongs to them, too, unless "<-loopback>" is there.
    std::string bypass;
};

/// The proxy for requests to `server`, which is "scheme://host:port": "http://host:port", or "socks4://host:port".
/// Empty where the server is to be asked directly, or the settings name no proxy that can be used. A proxy with a
/// user's name or password is none: nobody has said that we may send them.
VELKCOMMON_EXPORT std::string proxyFor(const ProxySettings& settings, std::string_view server);

}  // namespace Velk::Platform
