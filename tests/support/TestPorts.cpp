#include "support/ScriptedServer.h"

#include <boost/asio/io_context.hpp>
#include <boost/asio/ip/tcp.hpp>

#include <list>

namespace test {

namespace asio = boost::asio;
using boost::system::error_code;
using tcp = asio::ip::tcp;

namespace {

std::string urlOf(const tcp::endpoint& endpoint, const std::string& pathAndQuery)
{
    return "http://127.0.0.1:" + std::to_string(endpoint.port()) + pathAndQuery;
}

}  // namespace

// Bound, but not listening.
struct RefusingPort::Impl
{
    asio::io_context context;
    tcp::socket socket{context, tcp::endpoint(asio::ip::address_v4::loopback(), 0)};
};

RefusingPort::RefusingPort() : impl_(std::make_unique<Impl>()) {}
RefusingPort::~RefusingPort() = default;

std::string RefusingPort::url(const std::string& pathAndQuery) const
{
    return urlOf(impl_->socket.local_endpoint(), pathAndQuery);
}

// Linux drops packets to a listener whose queue is full.
struct DeafPort::Impl
{
    asio::io_context context;
    tcp::acceptor acceptor{context, tcp::v4()};
    std::list<tcp::socket> queued;

    Impl()
    {
        acceptor.bind({asio::ip::address_v4::loopback(), 0});
        acceptor.listen(0);
        constexpr int enough = 4;
        for (int i = 0; i < enough; ++i) {
            // Begins at once; nobody waits for its end.
            queued.emplace_back(context, tcp::v4()).async_connect(acceptor.local_endpoint(), [](error_code) {});
        }
    }
};

DeafPort::DeafPort() : impl_(std::make_unique<Impl>()) {}
DeafPort::~DeafPort() = default;

std::string DeafPort::url(const std::string& pathAndQuery) const
{
    return urlOf(impl_->acceptor.local_endpoint(), pathAndQuery);
}

}  // namespace test
