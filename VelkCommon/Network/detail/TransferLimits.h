#pragma once

/// @file
/// How long a transfer may take and how much it may bring. The process has one set of limits, which tests can
/// change so that they need not wait for minutes.

#include <VelkCommon/Export.h>

#include <chrono>
#include <cstdint>

namespace Velk::detail {

inline constexpr int redirectLimit = 10;
inline constexpr std::size_t requestsInFlight = 8;         // of a batch
inline constexpr std::size_t progressBlock = 4096;         // bytes
inline constexpr std::uint64_t discardedBytes = 64 << 10;  // of an unwanted body, read to keep the connection

struct TransferLimits
{
    /// For DNS, TCP and TLS together, a little short of the 15 s within which a failing first request must end.
    std::chrono::milliseconds connect{14800};
    /// Without a byte, for transfers without a progress callback.
    std::chrono::milliseconds silence{60000};
    /// In all, for transfers without a progress callback.
    std::chrono::milliseconds total{120000};
    /// In all, for requests of headers.
    std::chrono::milliseconds header{30000};
    /// Between calls of the progress callback while nothing arrives.
    std::chrono::milliseconds tick{250};
    /// How long overlapping requests may stay silent after others have been answered.
    std::chrono::milliseconds overlap{1000};
    /// How long a run leaves a server alone that could not be reached.
    std::chrono::milliseconds unreachable{30000};

    std::uint64_t headerBytes = 256ULL << 10;
    std::uint64_t textBytes = 8ULL << 20;
    std::uint64_t shortFormBytes = 64ULL << 20;
    /// For files of any size, `total` grows by a second for every so many bytes received.
    std::uint64_t slowest = 64ULL << 10;
};

/// The limits of transfers that start now. Any thread.
VELKCOMMON_EXPORT TransferLimits transferLimits();
/// For tests. Any thread.
VELKCOMMON_EXPORT void setTransferLimits(const TransferLimits& limits);

}  // namespace Velk::detail
