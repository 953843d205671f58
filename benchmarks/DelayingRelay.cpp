#include "DelayingRelay.h"

#include "support/Threads.h"

#include <boost/asio/io_context.hpp>
#include <boost/asio/ip/tcp.hpp>
#include <boost/asio/steady_timer.hpp>
#include <boost/asio/write.hpp>

#include <algorithm>
#include <array>
#include <deque>
#include <optional>
#include <string>
#include <utility>

namespace bench {
namespace {

namespace asio = boost::asio;
using boost::system::error_code;
using tcp = asio::ip::tcp;
using Clock = std::chrono::steady_clock;
using Socket = std::shared_ptr<tcp::socket>;

constexpr std::size_t onTheLine = 32 << 20;  // bytes; with more, reading waits

// One direction of a connection.
class Pipe : public std::enable_shared_from_this<Pipe>
{
public:
    Pipe(asio::io_context& context, Socket from, Socket to, Clock::duration delay, Clock::duration handshake,
         std::uint64_t bytesPerSecond)
        : from_(std::move(from)),
          to_(std::move(to)),
          delay_(delay),
          handshake_(handshake),
          bytesPerSecond_(bytesPerSecond),
          timer_(context)
    {}

    void read()
    {
        if (reading_ || queued_ > onTheLine)
            return;
        reading_ = true;
        from_->async_read_some(asio::buffer(block_), [self = shared_from_this()](error_code error, std::size_t size) {
            self->reading_ = false;
            self->push(error ? std::string() : std::string(self->block_.data(), size));
            if (!error)
                self->read();
        });
    }

private:
    struct Piece
    {
        Clock::time_point due;
        std::string bytes;  // empty at the end of the stream
    };

    void push(std::string bytes)
    {
        Clock::time_point due = Clock::now() + delay_ + std::exchange(handshake_, Clock::duration::zero());
        if (bytesPerSecond_ != 0)
            due = std::max(due, lineFree_ + std::chrono::nanoseconds(bytes.size() * 1000000000ULL / bytesPerSecond_));
        lineFree_ = due = std::max(due, lineFree_);
        queued_ += bytes.size();
        pieces_.push_back({due, std::move(bytes)});
        if (pieces_.size() == 1)
            wait();
    }

    void wait()
    {
        timer_.expires_at(pieces_.front().due);
        timer_.async_wait([self = shared_from_this()](error_code error) {
            if (!error)
                self->write();
        });
    }

    void write()
    {
        if (pieces_.front().bytes.empty()) {
            error_code ignored;
            to_->shutdown(tcp::socket::shutdown_send, ignored);
            return;
        }
        asio::async_write(*to_, asio::buffer(pieces_.front().bytes),
                          [self = shared_from_this()](error_code error, std::size_t size) {
                              if (error)
                                  return;
                              self->queued_ -= size;
                              self->pieces_.pop_front();
                              self->read();
                              if (!self->pieces_.empty())
                                  self->wait();
                          });
    }

    Socket from_;
    Socket to_;
    Clock::duration delay_;
    Clock::duration handshake_;
    std::uint64_t bytesPerSecond_;
    asio::steady_timer timer_;
    Clock::time_point lineFree_{};
    std::array<char, 64 << 10> block_{};
    bool reading_ = false;
    std::size_t queued_ = 0;
    std::deque<Piece> pieces_;
};

}  // namespace

struct DelayingRelay::Impl
{
    asio::io_context context;
    tcp::acceptor acceptor{context, tcp::endpoint(asio::ip::address_v4::loopback(), 0)};
    tcp::endpoint target;
    Clock::duration oneWay;
    std::uint64_t bytesPerSecond;
    std::optional<test::Thread> thread;

    Impl(std::uint16_t port, Clock::duration delay, std::uint64_t rate)
        : target(asio::ip::address_v4::loopback(), port), oneWay(delay), bytesPerSecond(rate)
    {}

    void accept()
    {
        auto client = std::make_shared<tcp::socket>(context);
        acceptor.async_accept(*client, [this, client](error_code error) {
            if (error)
                return;
            connect(client);
            accept();
        });
    }

    void connect(const Socket& client)
    {
        error_code error;
        auto server = std::make_shared<tcp::socket>(context);
        server->connect(target, error);
        if (error)
            return;
        client->set_option(tcp::no_delay(true), error);
        server->set_option(tcp::no_delay(true), error);
        std::make_shared<Pipe>(context, client, server, oneWay, 2 * oneWay, 0)->read();
        std::make_shared<Pipe>(context, server, client, oneWay, Clock::duration::zero(), bytesPerSecond)->read();
    }
};

DelayingRelay::DelayingRelay(std::uint16_t target, std::chrono::milliseconds oneWay, std::uint64_t bytesPerSecond)
    : impl_(std::make_unique<Impl>(target, oneWay, bytesPerSecond))
{
    impl_->accept();
    impl_->thread.emplace([this] { impl_->context.run(); });
}

DelayingRelay::~DelayingRelay()
{
    impl_->context.stop();
    impl_->thread.reset();
}

std::uint16_t DelayingRelay::port() const
{
    return impl_->acceptor.local_endpoint().port();
}

}  // namespace bench
