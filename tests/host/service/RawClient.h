#pragma once

#include <chrono>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

namespace test {

/// A client that says what it likes, when it likes. Every wait for the server has a limit, after which the program
/// gives up.
class RawClient
{
public:
    /// Connects to a port of 127.0.0.1.
    explicit RawClient(int port);
    ~RawClient();
    RawClient(const RawClient&) = delete;
    RawClient& operator=(const RawClient&) = delete;

    /// Sends all of it. False when the server has gone.
    bool send(std::string_view bytes);
    /// No more will be sent, but answers are still read.
    void endSending();
    /// Reads at least `count` more bytes; fewer only when the server ends the connection.
    std::string read(std::size_t count);
    /// Reads until the server ends the connection.
    std::string readToEnd();
    /// Sends `bytes` one by one, over and over, one in each `pause`, until the server ends the connection. Returns how
    /// many were sent.
    std::size_t dripUntilEnd(std::string_view bytes, std::chrono::milliseconds pause);

private:
    struct Implementation;
    std::unique_ptr<Implementation> implementation_;
};

/// An answer as it was received.
struct RawAnswer
{
    int status = 0;
    std::string head;
    std::string body;
};

/// The answers that were received on one connection; a last one may be cut.
std::vector<RawAnswer> answersIn(std::string_view received);

}  // namespace test
