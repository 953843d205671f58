#pragma once

/// @file
/// The proxy that the system's settings name. Any thread.

#include <VelkCommon/Export.h>

#include <functional>
#include <string>

namespace Velk::Platform {

/// The proxy for requests to `server`, which is "scheme://host:port", as proxyFor() has it; empty for none. Only
/// Windows has such settings: a proxy, or a script that names one, which the user or the network gives. Elsewhere the
/// result is always empty.
///
/// A script may have to be fetched. Meanwhile `goOn` is called every now and then on the calling thread, and the search
/// is given up when it returns false, or after five seconds at most; what was found is kept for half a minute, and
/// where no script was found, none is looked for in the next minute. Scripts are not asked about this machine itself,
/// and learn no more of a request than its server; nobody is told a name or password. `goOn` must not throw. Throws
/// only when memory runs out.
VELKCOMMON_EXPORT std::string systemProxy(const std::string& server, const std::function<bool()>& goOn);

}  // namespace Velk::Platform
