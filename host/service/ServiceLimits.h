#pragma once

#include "host/service/RequestHead.h"

#include <chrono>
#include <cstddef>
#include <cstdint>

namespace VelkHost {

/// What clients may use up.
struct ServiceLimits
{
    HeadLimits head;
    /// At a time. One more takes the place of the one that has been idle for the longest time; where none is idle, of
    /// the one that has asked for the longest time without having said all, and only then of the slowest reader.
    std::size_t connections = 256;
    std::size_t requestsPerConnection = 100'000;
    std::chrono::milliseconds idle = std::chrono::seconds(2);     ///< until a request begins
    std::chrono::milliseconds asking = std::chrono::seconds(10);  ///< for a whole head, or for the beginning of TLS
    /// Slowest pace at which a client must send a body and take an answer.
    std::uint64_t bytesPerSecond = 4 << 10;
    std::chrono::milliseconds behind = std::chrono::seconds(30);  ///< how far it may fall behind that pace
    std::chrono::milliseconds leaving = std::chrono::seconds(2);  ///< for the client to hang up after the last answer
    std::chrono::milliseconds ending = std::chrono::seconds(10);  ///< for the answers that run when the server ends
    std::size_t sendBuffer = 128 << 10;  ///< bytes that the system keeps for a client who does not take them
};

}  // namespace VelkHost
