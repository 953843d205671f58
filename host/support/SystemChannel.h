#pragma once

#include <VelkCommon/Files/fileString.h>

#include <chrono>
#include <cstddef>
#include <memory>
#include <string>
#include <string_view>

/// @file
/// Connections between the programs of one user on one machine; a source file per system stands behind it. Nobody else
/// gets a connection, and none leads to a program of somebody else. No operation throws anything but std::bad_alloc.

namespace VelkHost {

/// When a wait ends at the latest.
using WaitEnd = std::chrono::steady_clock::time_point;

/// One end of a connection. One thread at a time.
class Channel
{
public:
    Channel() = default;
    virtual ~Channel() = default;  ///< hangs up
    Channel(const Channel&) = delete;
    Channel& operator=(const Channel&) = delete;

    /// Sends all bytes. False when the other side has hung up, or has not taken them in time.
    virtual bool send(std::string_view bytes, WaitEnd end) = 0;
    /// Waits for bytes and reads at most `size` of them, which must not be 0. Returns how many; 0 when the other side
    /// has hung up, or when none have come in time.
    virtual std::size_t receive(char* bytes, std::size_t size, WaitEnd end) = 0;
};

/// Takes the connections to a name.
class ChannelListener
{
public:
    ChannelListener() = default;
    virtual ~ChannelListener() = default;  ///< gives the name back; no channel of it may be left
    ChannelListener(const ChannelListener&) = delete;
    ChannelListener& operator=(const ChannelListener&) = delete;

    /// Waits for a program that connects; null after stop(). The channel must be gone before the next call.
    virtual std::unique_ptr<Channel> next() = 0;
    /// Ends all waits in next() and in its channels, now and later. Any thread.
    virtual void stop() noexcept = 0;
};

/// What became of the wish to listen.
struct Listening
{
    std::unique_ptr<ChannelListener> listener;  ///< null when it cannot be had
    bool isTaken = false;                       ///< because a program has it that runs
};

/// Asks for the connections to a name, which is made of letters, digits and "-". One program has them at a time; how
/// ever it ends, the next one gets them.
Listening listenOnChannel(const std::string& name);

/// Connects to the program that listens on that name, and lets it bring its window to the front. Null when there is
/// none, or when it is busy with others until `end`.
std::unique_ptr<Channel> connectToChannel(const std::string& name, WaitEnd end);

/// The path of what is there, free of links and in the letters of the disk, so that it is the same however one gets
/// there; empty when nothing is there.
fileString pathWithoutLinks(const fileString& path);

}  // namespace VelkHost
