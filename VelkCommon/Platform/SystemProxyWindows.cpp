#include <VelkCommon/Platform/ProxySettings.h>
#include <VelkCommon/Platform/SystemProxy.h>

#include <VelkCommon/Platform/detail/Windows.h>
#include <VelkCommon/detail/NeverDestroyed.h>

#include <winhttp.h>

#include <atomic>
#include <chrono>
#include <future>
#include <map>
#include <memory>
#include <mutex>
#include <optional>
#include <thread>
#include <utility>

namespace Velk::Platform {
namespace {

using Clock = std::chrono::steady_clock;

constexpr std::chrono::seconds patience{5};
constexpr std::chrono::milliseconds pause{50};
constexpr std::chrono::seconds kept{30};
constexpr std::chrono::minutes withoutScript{1};  // after a search that has found none
constexpr std::size_t keptServers = 64;
constexpr int mostSearches = 4;  // that may hang at a time

// A text that WinHTTP has allocated.
class SystemText
{
public:
    SystemText() = default;
    SystemText(const SystemText&) = delete;
    SystemText& operator=(const SystemText&) = delete;
    ~SystemText() { ::GlobalFree(text_); }

    LPWSTR* place() noexcept { return &text_; }
    std::wstring wide() const { return text_ != nullptr ? text_ : L""; }
    std::string narrow() const { return fromNativePath(wide()); }

private:
    LPWSTR text_ = nullptr;
};

struct Settings
{
    bool detect = false;
    std::wstring script;
    ProxySettings fixed;
};

Settings userSettings()
{
    WINHTTP_CURRENT_USER_IE_PROXY_CONFIG config = {};
    if (::WinHttpGetIEProxyConfigForCurrentUser(&config) == 0)
        return {};
    SystemText script;
    SystemText proxies;
    SystemText bypass;
    *script.place() = config.lpszAutoConfigUrl;
    *proxies.place() = config.lpszProxy;
    *bypass.place() = config.lpszProxyBypass;
    return {config.fAutoDetect != 0, script.wide(), {proxies.narrow(), bypass.narrow()}};
}

class Session
{
public:
    Session() : handle_(::WinHttpOpen(L"velk", WINHTTP_ACCESS_TYPE_NO_PROXY, nullptr, nullptr, 0)) {}
    Session(const Session&) = delete;
    Session& operator=(const Session&) = delete;
    ~Session()
    {
        if (handle_ != nullptr)
            ::WinHttpCloseHandle(handle_);
    }

    HINTERNET get() const noexcept { return handle_; }

private:
    HINTERNET handle_;
};

// What the script says, which may be that there is no proxy; nothing where there is no script, or none that works.
std::optional<std::string> askScript(HINTERNET session, const std::wstring& script, const std::string& server)
{
    WINHTTP_AUTOPROXY_OPTIONS options = {};
    options.dwFlags = script.empty() ? WINHTTP_AUTOPROXY_AUTO_DETECT : WINHTTP_AUTOPROXY_CONFIG_URL;
    options.dwAutoDetectFlags = script.empty() ? WINHTTP_AUTO_DETECT_TYPE_DHCP | WINHTTP_AUTO_DETECT_TYPE_DNS_A : 0;
    options.lpszAutoConfigUrl = script.empty() ? nullptr : script.c_str();
    options.fAutoLogonIfChallenged = FALSE;  // the user's name and password are for nobody
    WINHTTP_PROXY_INFO info = {};
    if (::WinHttpGetProxyForUrl(session, toNativePath(server + "/").c_str(), &options, &info) == 0)
        return std::nullopt;
    SystemText proxies;
    SystemText bypass;
    *proxies.place() = info.lpszProxy;
    *bypass.place() = info.lpszProxyBypass;
    if (info.dwAccessType != WINHTTP_ACCESS_TYPE_NAMED_PROXY)
        return std::string();
    return proxyFor({proxies.narrow(), bypass.narrow()}, server);
}

std::optional<std::string> askScripts(const Settings& settings, const std::string& server)
{
    const Session session;
    if (session.get() == nullptr)
        return std::nullopt;
    const auto limit = static_cast<int>(std::chrono::milliseconds(patience).count());
    ::WinHttpSetTimeouts(session.get(), limit, limit, limit, limit);
    std::optional<std::string> proxy;
    if (settings.detect)
        proxy = askScript(session.get(), {}, server);
    if (!proxy && !settings.script.empty())
        proxy = askScript(session.get(), settings.script, server);
    return proxy;
}

// A thread that nobody waits for must not find its code unloaded.
void keepCodeLoaded()
{
    HMODULE module = nullptr;
    ::GetModuleHandleExW(GET_MODULE_HANDLE_EX_FLAG_FROM_ADDRESS | GET_MODULE_HANDLE_EX_FLAG_PIN,
                         reinterpret_cast<LPCWSTR>(&keepCodeLoaded), &module);
}

std::atomic<int> searches{0};

// The system offers no limit for all of the search, so a thread does it, and is left behind where it takes too long.
std::optional<std::string> askScriptsForAWhile(const Settings& settings, const std::string& server,
                                               const std::function<bool()>& goOn)
try {
    if (searches.fetch_add(1) >= mostSearches) {
        --searches;
        return std::nullopt;
    }
    keepCodeLoaded();
    std::packaged_task<std::optional<std::string>()> search([settings, server] {
        std::optional<std::string> proxy;
        try {
            proxy = askScripts(settings, server);
        } catch (...) {
            // Too little memory: there is no answer.
        }
        --searches;
        return proxy;
    });
    std::future<std::optional<std::string>> found = search.get_future();
    try {
        std::thread(std::move(search)).detach();
    } catch (...) {
        --searches;
        throw;
    }
    for (const auto end = Clock::now() + patience; Clock::now() < end && goOn();)
        if (found.wait_for(pause) == std::future_status::ready)
            return found.get();
    return std::nullopt;
} catch (const std::exception&) {
    return std::nullopt;  // there is no thread to be had
}

struct Kept
{
    std::string proxy;
    Clock::time_point until;
};

struct Memory
{
    std::mutex mutex;
    std::map<std::string, Kept> servers;
    Clock::time_point nextSearch;
};

Memory& memory()
{
    static detail::NeverDestroyed<Memory> known;
    return *known;
}

std::optional<std::string> recall(const std::string& server)
{
    const std::lock_guard lock(memory().mutex);
    const auto found = memory().servers.find(server);
    if (found == memory().servers.end() || found->second.until <= Clock::now())
        return std::nullopt;
    return found->second.proxy;
}

void remember(const std::string& server, const std::string& proxy)
{
    const std::lock_guard lock(memory().mutex);
    if (memory().servers.size() >= keptServers)
        memory().servers.clear();
    memory().servers[server] = {proxy, Clock::now() + kept};
}

// What the scripts say, if they may be asked now. A search that ends without a script would take as long for the next
// server.
std::optional<std::string> byScript(const Settings& settings, const std::string& server,
                                    const std::function<bool()>& goOn)
{
    if (!settings.detect && settings.script.empty())
        return std::nullopt;
    {
        const std::lock_guard lock(memory().mutex);
        if (Clock::now() < memory().nextSearch)
            return std::nullopt;
    }
    bool wanted = true;
    std::optional<std::string> proxy = askScriptsForAWhile(settings, server, [&] { return wanted = goOn(); });
    if (!proxy && wanted) {
        const std::lock_guard lock(memory().mutex);
        memory().nextSearch = Clock::now() + withoutScript;
    }
    return proxy;
}

bool isThisMachine(const std::string& server)
{
    return proxyFor({"proxy", ""}, server).empty();
}

}  // namespace

std::string systemProxy(const std::string& server, const std::function<bool()>& goOn)
{
    if (std::optional<std::string> known = recall(server))
        return *std::move(known);
    const Settings settings = userSettings();
    std::optional<std::string> proxy;
    bool wanted = true;
    if (!isThisMachine(server))  // scripts are for others
        proxy = byScript(settings, server, [&] { return wanted = goOn(); });
    if (!proxy)
        proxy = proxyFor(settings.fixed, server);
    if (wanted)
        remember(server, *proxy);
    return *std::move(proxy);
}

}  // namespace Velk::Platform
