#pragma once

/// @file
/// A line with a round trip, on one machine: what goes through the relay arrives later, and no faster than
/// the line is.

#include <chrono>
#include <cstdint>
#include <memory>

namespace bench {

class DelayingRelay
{
public:
    /// Passes connections to 127.0.0.1:`target` on. Bytes need `oneWay` in each direction; the first ones of
    /// a connection as long again for its handshake, once there and back. The way back carries
    /// `bytesPerSecond`, 0 for any number.
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
