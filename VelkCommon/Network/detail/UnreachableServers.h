#pragma once

#include <chrono>
#include <map>
#include <mutex>
#include <optional>
#include <string>

namespace Velk::detail {

/// Why a transfer failed.
struct TransferFailure
{
    unsigned int code = 0;  ///< libcurl's
    std::string reason;     ///< for people
};

/// Servers that could not be reached a moment ago, by UrlText's serverOf(). Any thread.
class UnreachableServers
{
public:
    /// The process-wide instance.
    static UnreachableServers& get();

    void remember(const std::string& server, TransferFailure failure);
    /// The failure to repeat instead of asking `server` again.
    std::optional<TransferFailure> recall(const std::string& server);
    void forget();

private:
    using Clock = std::chrono::steady_clock;
    struct Entry
    {
        Clock::time_point until;
        TransferFailure failure;
    };

    std::mutex mutex_;
    std::map<std::string, Entry> entries_;  // never more than the servers that were asked lately
};

}  // namespace Velk::detail
