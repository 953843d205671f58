#pragma once

/// @file
/// How long a transfer may take and how much it may bring. One set for the process, so that tests need
/// not wait for minutes.

#include <VelkCommon/Export.h>

#include <chrono>
#include <cstdint>

namespace Velk::detail {

inline constexpr int redirectLimit = 10;
inline constexpr std::size_t requestsInFlight = 8;         // of a batch
inline constexpr std::size_t progressBlock = 4096;         // bytes
inline constexpr std::uint64_t discardedBytes = 64 << 10;  // of a body that nobody wants, to keep the connection

struct TransferLimits
{
    /// DNS, TCP and TLS together; with what surrounds them a failing first request ends within 15 s.
    std::chrono::milliseconds connect{14800};
    /// Without a byte, for transfers without progress callback.
    std::chrono::milliseconds silence{60000};
    /// In all, for transfers without progress callback.
    std::chrono::milliseconds total{120000};
    /// In all, for requests of headers.
    std::chrono::milliseconds header{30000};
    /// Between calls of the progress callback while nothing arrives.
    std::chrono::milliseconds tick{250};
    /// How long requests may overlap while some are answered and nothing comes of the others.
    std::chrono::milliseconds overlap{1000};
    /// How long a run does not ask a server again that could not be reached.
    std::chrono::milliseconds unreachable{30000};

    std::uint64_t headerBytes = 256ULL << 10;
    std::uint64_t textBytes = 8ULL << 20;
    std::uint64_t shortFormBytes = 64ULL << 20;
    /// Bytes a second on average that lengthen `total` for a file of any size.
    std::uint64_t slowest = 64ULL << 10;
};

/// The limits of transfers that start now. Any thread.
VELKCOMMON_EXPORT TransferLimits transferLimits();
/// For tests. Any thread.
VELKCOMMON_EXPORT void setTransferLimits(const TransferLimits& limits);

}  // namespace Velk::detail
