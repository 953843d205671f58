#pragma once

#include <chrono>
#include <map>
#include <optional>
#include <string>

namespace Velk::detail {

/// Why a transfer failed.
struct TransferFailure
{
    unsigned int code = 0;  ///< libcurl's
    std::string reason;     ///< for people
};

/// Servers that could not be reached in a run of transfers, by UrlText's serverOf(). One thread.
class UnreachableServers
{
public:
    /// That of the calling thread's run; null outside of one.
    static UnreachableServers* current() noexcept;
    /// `servers` is that of the calling thread from now on.
    static void setCurrent(UnreachableServers* servers) noexcept;

    void remember(const std::string& server, TransferFailure failure);
    /// The failure to repeat instead of asking `server` again.
    std::optional<TransferFailure> recall(const std::string& server) const;

private:
    using Clock = std::chrono::steady_clock;
    struct Entry
    {
        Clock::time_point until;
        TransferFailure failure;
    };

    std::map<std::string, Entry> entries_;  // never more than the servers that were asked
};

}  // namespace Velk::detail
