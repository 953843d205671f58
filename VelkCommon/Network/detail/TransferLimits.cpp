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

Current& current()
{
    static Current& state = *new Current;
    return state;
}

}  // namespace

TransferLimits transferLimits()
{
    const std::lock_guard lock(current().mutex);
    return current().limits;
}

void setTransferLimits(const TransferLimits& limits)
{
    const std::lock_guard lock(current().mutex);
    current().limits = limits;
}

}  // namespace Velk::detail
