#pragma once

#include "host/service/HttpAnswer.h"
#include "host/service/Pace.h"
#include "host/service/RequestHead.h"
#include "host/service/ServiceLimits.h"
#include "host/service/Wire.h"

#include <boost/asio/steady_timer.hpp>

#include <array>
#include <chrono>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <string>
#include <utility>

namespace VelkHost {

class HttpSession;

/// What a session needs of its server, which outlives it.
class HttpSessionOwner
{
public:
    virtual const ServiceLimits& limits() const = 0;
    /// Throws nothing: what goes wrong has an answer as well.
    virtual HttpAnswer answerTo(const RequestHead& head) = 0;
    /// Whether no more requests are to be awaited.
    virtual bool isEnding() const = 0;
    /// The session is closed.
    virtual void forget(const std::shared_ptr<HttpSession>& session) = 0;

protected:
    ~HttpSessionOwner() = default;
};

/// One connection, from its first byte to its last. Whatever it waits for, it waits until a certain time only, and is
/// closed then. All of it happens on the thread that runs the socket's context.
class HttpSession : public std::enable_shared_from_this<HttpSession>
{
public:
    /// What a connection is doing, in the order in which connections have to make room for others.
    enum class State { Leaving, Idle, Asking, Answering };

    using Clock = Pace::Clock;

    /// Over TLS where there is a context for it, which must outlive the session.
    HttpSession(HttpSessionOwner& owner, Wire::Socket socket, Wire::TlsContext* tls);

    void begin();
    void close();
    /// Closes the connection now, or after the answer that is being sent.
    void end();

    /// The smallest makes room first.
    std::pair<State, Clock::time_point> importance() const noexcept { return {state_, due_}; }

private:
    static constexpr std::size_t readAtATime = 16 << 10;

    void wait(State state, Clock::time_point due);
    /// Reads more bytes, and goes on with `next` unless the connection ends.
    void readMore(void (HttpSession::*next)(std::size_t count));
    void awaitRequest();
    void readHead();
    void headGrew(std::size_t count);
    void takeHead(std::size_t length);
    void dropBody();
    void bodyGrew(std::size_t count);
    void answer();
    void refuse(const Refusal& refusal);
    void send(HttpAnswer answer, bool headOnly, bool keepsConnection);
    void sendMore();
    void wasSent();
    void leave();
    void hangUp();
    void dropRest();

    HttpSessionOwner& owner_;
    boost::asio::steady_timer timer_;
    Wire wire_;
    State state_ = State::Idle;
    Clock::time_point due_;
    Pace pace_;
    bool closed_ = false;

    std::array<char, readAtATime> block_{};
    std::string received_;  // and not yet used
    std::size_t searched_ = 0;
    RequestHead head_;
    std::size_t requests_ = 0;

    bool keepsConnection_ = true;
    std::string outgoing_;
    std::size_t sent_ = 0;
    std::unique_ptr<BodySource> source_;
    std::uint64_t unread_ = 0;  // of the source
};

}  // namespace VelkHost
