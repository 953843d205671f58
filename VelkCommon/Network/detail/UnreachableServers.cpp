#include <VelkCommon/Network/detail/UnreachableServers.h>

#include <VelkCommon/Network/detail/TransferLimits.h>

#include <utility>

namespace Velk::detail {
namespace {

thread_local UnreachableServers* ofThisThread = nullptr;

}  // namespace

UnreachableServers* UnreachableServers::current() noexcept
{
    return ofThisThread;
}

void UnreachableServers::setCurrent(UnreachableServers* servers) noexcept
{
    ofThisThread = servers;
}

void UnreachableServers::noteAnswer(const std::string& server)
{
    answered_.insert(server);
    entries_.erase(server);
}

void UnreachableServers::remember(const std::string& server, TransferFailure failure)
{
    entries_[server] = {Clock::now() + transferLimits().unreachable, std::move(failure)};
}

std::optional<TransferFailure> UnreachableServers::recall(const std::string& server) const
{
    const auto found = entries_.find(server);
    if (found == entries_.end() || found->second.until <= Clock::now())
        return std::nullopt;
    return found->second.failure;
}

}  // namespace Velk::detail
