#include "RawClient.h"

#include "support/Waiting.h"

#include <boost/asio/connect.hpp>
#include <boost/asio/io_context.hpp>
#include <boost/asio/ip/tcp.hpp>
#include <boost/asio/write.hpp>

#include <algorithm>
#include <array>
#include <optional>

namespace test {

namespace asio = boost::asio;
using boost::system::error_code;
using tcp = asio::ip::tcp;

struct RawClient::Implementation
{
    explicit Implementation(int port)
    {
        socket.connect({asio::ip::address_v4::loopback(), static_cast<std::uint16_t>(port)});
    }

    /// Reads for at most `limit`. The number of bytes; 0 when the connection has ended, and nothing when the time is
    /// over.
    std::optional<std::size_t> readSome(std::chrono::milliseconds limit)
    {
        if (ended)  // nobody tells it twice
            return 0;
        std::optional<std::size_t> got;
        socket.async_read_some(asio::buffer(block), [&](error_code error, std::size_t count) {
            if (error != asio::error::operation_aborted)
                got = error ? 0 : count;
        });
        context.restart();
        context.run_for(limit);
        if (!got) {
            socket.cancel();
            context.restart();
            context.run();
        }
        ended = got == std::size_t{0};
        return got;
    }

    asio::io_context context;
    tcp::socket socket{context};
    std::array<char, 64 << 10> block{};
    bool ended = false;
};

RawClient::RawClient(int port) : implementation_(std::make_unique<Implementation>(port)) {}
RawClient::~RawClient() = default;

bool RawClient::send(std::string_view bytes)
{
    bool sent = false;
    asio::async_write(implementation_->socket, asio::buffer(bytes.data(), bytes.size()),
                      [&](error_code error, std::size_t) { sent = !error; });
    implementation_->context.restart();
    implementation_->context.run_for(patience);
    if (!implementation_->context.stopped())
        giveUp("the server takes nothing");
    return sent;
}

void RawClient::endSending()
{
    implementation_->socket.shutdown(tcp::socket::shutdown_send);
}

std::string RawClient::read(std::size_t count)
{
    std::string received;
    while (received.size() < count) {
        const auto got = implementation_->readSome(patience);
        if (!got)
            giveUp("the server says nothing; so far: " + received.substr(0, 200));
        if (*got == 0)
            break;
        received.append(implementation_->block.data(), *got);
    }
    return received;
}

std::string RawClient::readToEnd()
{
    return read(std::string::npos);
}

std::size_t RawClient::dripUntilEnd(std::string_view bytes, std::chrono::milliseconds pause)
{
    std::size_t count = 0;
    repeatUntil([&] { return implementation_->readSome(pause) == std::size_t{0}; },
                [&] { count += send(bytes.substr(count % bytes.size(), 1)) ? 1 : 0; });
    return count;
}

std::vector<RawAnswer> answersIn(std::string_view received)
{
    constexpr std::string_view status = "HTTP/1.1 ";
    constexpr std::string_view length = "Content-Length: ";
    std::vector<RawAnswer> answers;
    while (!received.empty()) {
        const std::size_t end = std::min(received.find("\r\n\r\n"), received.size() - 4) + 4;
        RawAnswer answer;
        answer.head = received.substr(0, end);
        answer.status = std::stoi("0" + answer.head.substr(std::min(status.size(), answer.head.size())));
        const std::size_t at = answer.head.find(length);
        const std::size_t bytes = at == std::string::npos ? 0 : std::stoul(answer.head.substr(at + length.size()));
        received.remove_prefix(end);
        answer.body = received.substr(0, bytes);
        received.remove_prefix(answer.body.size());
        answers.push_back(std::move(answer));
    }
    return answers;
}

}  // namespace test
