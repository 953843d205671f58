#pragma once

/// @file
/// A line with a long round trip, simulated on one machine: bytes that go through the relay arrive later, and no faster
/// than the line allows.

#include <chrono>
#include <cstdint>
#include <memory>

namespace bench {

class DelayingRelay
{
public:
    /// Passes connections on to 127.0.0.1:`target`. Bytes take `oneWay` in each direction. The first bytes of a
    /// connection also wait for its handshake, once there and back. The way back carries `bytesPerSecond`; 0 is no
    /// limit.
    DelayingRelay(std::uint16_t target, std::chrono::milliseconds oneWay, std::uint64_t bytesPerSecond);
    ~DelayingRelay();
    DelayingRelay(const DelayingRelay&) = delete;
    DelayingRelay& operator=(const DelayingRelay&) = delete;

    std::uint16_t port() const;

private:
    struct Impl;
    std::unique_ptr<Impl> impl_;
};

}  // namespace bench
