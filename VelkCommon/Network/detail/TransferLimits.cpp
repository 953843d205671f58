#include <VelkCommon/Network/detail/TransferLimits.h>

#include <mutex>

namespace Velk::detail {
namespace {

// Never destroyed: transfers may run while the process ends.
struct Current
{
    std::mutex mutex;
    TransferLimits limits;
};

Current& currentLimits()
{
    static Current& state = *new Current;
    return state;
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
