#include <VelkCommon/Network/detail/TransferLimits.h>

#include <VelkCommon/detail/NeverDestroyed.h>

#include <mutex>

namespace Velk::detail {
namespace {

struct Current
{
    std::mutex mutex;
    TransferLimits limits;
};

Current& currentLimits()
{
    static NeverDestroyed<Current> state;
    return *state;
}

}  // namespace

TransferLimits transferLimits()
{
    const std::lock_guard lock(currentLimits().mutex);
    return currentLimits().limits;
}

void setTransferLimits(const TransferLimits& limits)
{
    const std::lock_guard lock(currentLimits().mutex);
    currentLimits().limits = limits;
}

}  // namespace Velk::detail
