#pragma once

#include "host/service/ServiceLimits.h"

#include <algorithm>
#include <chrono>
#include <cstddef>

namespace VelkHost {

/// Until when a client must have moved more bytes. Whoever keeps the pace is never late; time that is saved does not
/// count, so that a fast beginning does not pay for a long rest.
class Pace
{
public:
    using Clock = std::chrono::steady_clock;

    explicit Pace(const ServiceLimits& limits) : limits_(&limits), due_(Clock::now() + limits.behind) {}

    void moved(std::size_t bytes)
    {
        const std::chrono::duration<double> worth(static_cast<double>(bytes) /
                                                  static_cast<double>(limits_->bytesPerSecond));
        due_ = std::min(due_ + std::chrono::duration_cast<Clock::duration>(worth), Clock::now() + limits_->behind);
    }

    Clock::time_point due() const noexcept { return due_; }
    bool isLate() const noexcept { return Clock::now() >= due_; }

private:
    const ServiceLimits* limits_;
    Clock::time_point due_;
};

}  // namespace VelkHost
