#include <VelkCommon/Network/detail/UnreachableServers.h>

#include <VelkCommon/Network/detail/TransferLimits.h>

#include <utility>

namespace Velk::detail {

UnreachableServers& UnreachableServers::get()
{
    // Never destroyed: transfers may run while the process ends.
    static UnreachableServers& servers = *new UnreachableServers;
    return servers;
}

void UnreachableServers::remember(const std::string& server, TransferFailure failure)
{
    const Clock::time_point now = Clock::now();
    const std::lock_guard lock(mutex_);
    std::erase_if(entries_, [&](const auto& entry) { return entry.second.until <= now; });
    entries_[server] = {now + transferLimits().unreachable, std::move(failure)};
}

std::optional<TransferFailure> UnreachableServers::recall(const std::string& server)
{
    const std::lock_guard lock(mutex_);
    const auto found = entries_.find(server);
    if (found == entries_.end() || found->second.until <= Clock::now())
        return std::nullopt;
    return found->second.failure;
}

void UnreachableServers::forget()
{
    const std::lock_guard lock(mutex_);
    entries_.clear();
}

}  // namespace Velk::detail
