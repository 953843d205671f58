#pragma once

#include <boost/asio/buffer.hpp>
#include <boost/asio/ip/tcp.hpp>
#include <boost/asio/ssl/context.hpp>
#include <boost/asio/ssl/stream.hpp>

#include <optional>
#include <utility>

namespace VelkHost {

/// A connection's bytes, plain or over TLS.
class Wire
{
public:
    using Socket = boost::asio::ip::tcp::socket;
    using TlsContext = boost::asio::ssl::context;

    /// Over TLS where there is a context for it, which must outlive the wire.
    Wire(Socket socket, TlsContext* tls) : socket_(std::move(socket))
    {
        if (tls != nullptr)
            tls_.emplace(socket_, *tls);
    }

    bool hasTls() const noexcept { return tls_.has_value(); }

    /// The beginning of TLS.
    template <typename Handler>
    void beginTls(Handler handler)
    {
        tls_->async_handshake(boost::asio::ssl::stream_base::server, std::move(handler));
    }

    template <typename Handler>
    void read(boost::asio::mutable_buffer buffer, Handler handler)
    {
        onStream([&](auto& stream) { stream.async_read_some(buffer, std::move(handler)); });
    }

    template <typename Handler>
    void write(boost::asio::const_buffer buffer, Handler handler)
    {
        onStream([&](auto& stream) { stream.async_write_some(buffer, std::move(handler)); });
    }

    /// The end of TLS.
    template <typename Handler>
    void endTls(Handler handler)
    {
        tls_->async_shutdown(std::move(handler));
    }

    /// The connection below TLS.
    Socket& socket() noexcept { return socket_; }

private:
    template <typename Use>
    void onStream(Use use)
    {
        if (tls_)
            use(*tls_);
        else
            use(socket_);
    }

    Socket socket_;
    std::optional<boost::asio::ssl::stream<Socket&>> tls_;
};

}  // namespace VelkHost
