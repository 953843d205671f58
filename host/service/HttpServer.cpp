#include "host/service/HttpServer.h"

#include "host/service/HttpSession.h"
#include "host/service/ServiceError.h"
#include "host/support/FileError.h"
#include "host/support/System.h"
#include "host/support/WholeFile.h"

#include <boost/asio/io_context.hpp>
#include <boost/asio/ip/tcp.hpp>
#include <boost/asio/post.hpp>
#include <boost/asio/ssl/context.hpp>
#include <boost/asio/steady_timer.hpp>

#include <algorithm>
#include <chrono>
#include <exception>
#include <set>
#include <thread>

namespace VelkHost {

namespace asio = boost::asio;
using boost::system::error_code;
using Tcp = asio::ip::tcp;

namespace {

constexpr std::size_t pemBytes = 1 << 20;
constexpr std::chrono::milliseconds betweenAttempts{100};

std::optional<asio::ssl::context> makeTls(const std::optional<ServiceCertificate>& files)
{
    if (!files)
        return std::nullopt;
    const std::string certificate = readWhole(files->certificate, pemBytes);
    const std::string key = readWhole(files->privateKey, pemBytes);
    try {
        asio::ssl::context tls(asio::ssl::context::tls_server);
        tls.set_options(asio::ssl::context::default_workarounds | asio::ssl::context::no_tlsv1 |
                        asio::ssl::context::no_tlsv1_1);
        // Nobody is there to be asked for a password.
        tls.set_password_callback([](std::size_t, asio::ssl::context::password_purpose) { return std::string(); });
        tls.use_certificate_chain(asio::buffer(certificate));
        tls.use_private_key(asio::buffer(key), asio::ssl::context::pem);
        return tls;
    } catch (const boost::system::system_error&) {
        throw FileError(files->certificate, "cannot be used with the key " + files->privateKey.humanReadableString() +
                                                "; both must be PEM files that belong together");
    }
}

}  // namespace

class HttpServer::Implementation final : public HttpSessionOwner
{
public:
    Implementation(const std::string& address, int port, const std::optional<ServiceCertificate>& tls,
                   const ServiceLimits& limits, Handler handler)
        : limits_(limits), handler_(std::move(handler)), tls_(makeTls(tls))
    {
        listen(address, port);
        port_ = acceptor_.local_endpoint().port();
        accept();
        thread_ = std::thread([this] { run(); });
    }

    ~Implementation()
    {
        asio::post(context_, [this] { end(); });
        thread_.join();
    }

    int port() const noexcept { return port_; }

private:
    const ServiceLimits& limits() const override { return limits_; }
    bool isEnding() const override { return ending_; }

    HttpAnswer answerTo(const RequestHead& head) override
    {
        try {
            return handler_(head);
        } catch (const std::exception&) {
            HttpAnswer answer;
            answer.status = 500;
            return answer;
        }
    }

    void forget(const std::shared_ptr<HttpSession>& session) override
    {
        sessions_.erase(session);
        if (ending_ && sessions_.empty())
            timer_.cancel();
    }

    void listen(const std::string& address, int port)
    {
        error_code error;
        Tcp::resolver resolver(context_);
        const auto flags = Tcp::resolver::passive | Tcp::resolver::numeric_service;
        for (const auto& place : resolver.resolve(address, std::to_string(port), flags, error)) {
            acceptor_.close(error);
            acceptor_.open(place.endpoint().protocol(), error);
            if (error)
                continue;
            allowQuickRestart(static_cast<std::intptr_t>(acceptor_.native_handle()));
            acceptor_.bind(place.endpoint(), error);
            if (!error)
                acceptor_.listen(Tcp::acceptor::max_listen_connections, error);
            if (!error)
                return;
        }
        throw ServiceError(address + ":" + std::to_string(port),
                           "cannot be listened on; is another program using the port?");
    }

    /// What fails for lack of memory is given up by its time limit, and the rest goes on.
    void run() noexcept
    {
        for (bool ended = false; !ended;) {
            try {
                context_.run();
                ended = true;
            } catch (const std::exception&) {
                continue;
            }
        }
    }

    void accept()
    {
        acceptor_.async_accept([this](error_code error, Tcp::socket socket) {
            if (ending_)
                return;
            if (error)
                return acceptLater();
            try {
                makeRoom();
                begin(std::move(socket));
            } catch (const std::exception&) {
                return acceptLater();
            }
            accept();
        });
    }

    /// The system has no more connections to give; one of ours may help.
    void acceptLater()
    {
        if (!sessions_.empty())
            leastImportant()->close();
        timer_.expires_after(betweenAttempts);
        timer_.async_wait([this](error_code error) {
            if (!error && !ending_)
                accept();
        });
    }

    void begin(Tcp::socket socket)
    {
        error_code ignored;
        socket.set_option(Tcp::no_delay(true), ignored);
        socket.set_option(Tcp::socket::send_buffer_size(static_cast<int>(limits_.sendBuffer)), ignored);
        const auto session = std::make_shared<HttpSession>(*this, std::move(socket), tls_ ? &*tls_ : nullptr);
        sessions_.insert(session);
        session->begin();
    }

    void makeRoom()
    {
        while (sessions_.size() >= limits_.connections)
            leastImportant()->close();
    }

    std::shared_ptr<HttpSession> leastImportant() const
    {
        return *std::min_element(sessions_.begin(), sessions_.end(), [](const auto& left, const auto& right) {
            return left->importance() < right->importance();
        });
    }

    void end()
    {
        ending_ = true;
        error_code ignored;
        acceptor_.close(ignored);
        timer_.cancel();
        // They leave the set while they end.
        for (const auto& session : std::set(sessions_))
            session->end();
        if (sessions_.empty())
            return;
        timer_.expires_after(limits_.ending);
        timer_.async_wait([this](error_code error) {
            if (!error)
                for (const auto& session : std::set(sessions_))
                    session->close();
        });
    }

    const ServiceLimits limits_;
    const Handler handler_;
    std::optional<asio::ssl::context> tls_;
    asio::io_context context_{1};
    Tcp::acceptor acceptor_{context_};
    asio::steady_timer timer_{context_};
    std::set<std::shared_ptr<HttpSession>> sessions_;
    bool ending_ = false;
    int port_ = 0;
    std::thread thread_;
};

HttpServer::HttpServer(const std::string& address, int port, const std::optional<ServiceCertificate>& tls,
                       const ServiceLimits& limits, Handler handler)
    : implementation_(std::make_unique<Implementation>(address, port, tls, limits, std::move(handler)))
{}

HttpServer::~HttpServer() = default;

int HttpServer::port() const noexcept
{
    return implementation_->port();
}

}  // namespace VelkHost
