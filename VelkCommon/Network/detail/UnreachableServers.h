#pragma once

#include <chrono>
#include <map>
#include <optional>
#include <set>
#include <string>

namespace Velk::detail {

/// Why a transfer failed.
struct TransferFailure
{
    unsigned int code = 0;  ///< libcurl's
    std::string reason;     ///< for people
};

/// The servers that a run of transfers could not reach, or that never answer, named by UrlText's serverOf(). One
/// thread.
class UnreachableServers
{
public:
    /// The servers of the calling thread's run; null outside a run.
    static UnreachableServers* current() noexcept;
    /// Makes `servers` the calling thread's from now on.
    static void setCurrent(UnreachableServers* servers) noexcept;

    /// Something came from `server`, so it may be asked.
    void noteAnswer(const std::string& server);
    bool hasAnswered(const std::string& server) const { return answered_.contains(server); }
    void remember(const std::string& server, TransferFailure failure);
    /// The failure to report instead of asking `server` again; nothing when it may be asked.
    std::optional<TransferFailure> recall(const std::string& server) const;

private:
    using Clock = std::chrono::steady_clock;
    struct Entry
    {
        Clock::time_point until;
        TransferFailure failure;
    };

    // Never more than the servers that were asked:
    std::map<std::string, Entry> entries_;
    std::set<std::string> answered_;
};

}  // namespace Velk::detail
