#include "host/service/HttpServer.h"

#include "host/service/ServiceError.h"
#include "host/support/FileError.h"
#include "host/support/System.h"
#include "host/support/WholeFile.h"

#include <boost/asio/io_context.hpp>
#include <boost/asio/ip/tcp.hpp>
#include <boost/asio/post.hpp>
#include <boost/asio/ssl/context.hpp>
#include <boost/asio/ssl/stream.hpp>
#include <boost/asio/steady_timer.hpp>

#include <algorithm>
#include <array>
#include <set>
#include <thread>
#include <tuple>

namespace VelkHost {

namespace asio = boost::asio;
using boost::system::error_code;
using Tcp = asio::ip::tcp;
using Clock = std::chrono::steady_clock;

namespace {

constexpr std::size_t readAtATime = 16 << 10;
constexpr std::size_t sentAtATime = 64 << 10;
constexpr std::size_t pemBytes = 1 << 20;
constexpr int notModified = 304;
constexpr std::chrono::milliseconds betweenAttempts{100};

/// Until when a client must have moved more bytes. Whoever keeps the pace is never late; time that is saved does not
/// count, so that a fast beginning does not pay for a long rest.
class Pace
{
public:
    explicit Pace(const ServiceLimits& limits) : limits_(&limits), due_(Clock::now() + limits.behind) {}

    void moved(std::size_t bytes)
    {
        const std::chrono::duration<double> worth(static_cast<double>(bytes) /
                                                  static_cast<double>(limits_->bytesPerSecond));
        due_ = std::min(due_ + std::chrono::duration_cast<Clock::duration>(worth), Clock::now() + limits_->behind);
    }

    Clock::time_point due() const noexcept { return due_; }
    bool isLate() const noexcept { return Clock::now() >= due_; }

private:
    const ServiceLimits* limits_;
    Clock::time_point due_;
};

/// A connection's bytes, plain or over TLS.
class Wire
{
public:
    Wire(Tcp::socket socket, asio::ssl::context* tls) : socket_(std::move(socket))
    {
        if (tls != nullptr)
            tls_.emplace(socket_, *tls);
    }

    bool hasTls() const noexcept { return tls_.has_value(); }

    /// The beginning of TLS.
    template <typename Handler>
    void beginTls(Handler handler)
    {
        tls_->async_handshake(asio::ssl::stream_base::server, std::move(handler));
    }

    template <typename Handler>
    void read(asio::mutable_buffer buffer, Handler handler)
    {
        if (tls_)
            tls_->async_read_some(buffer, std::move(handler));
        else
            socket_.async_read_some(buffer, std::move(handler));
    }

    template <typename Handler>
    void write(asio::const_buffer buffer, Handler handler)
    {
        if (tls_)
            tls_->async_write_some(buffer, std::move(handler));
        else
            socket_.async_write_some(buffer, std::move(handler));
    }

    /// The end of TLS.
    template <typename Handler>
    void endTls(Handler handler)
    {
        tls_->async_shutdown(std::move(handler));
    }

    /// The connection below TLS.
    Tcp::socket& socket() noexcept { return socket_; }

private:
    Tcp::socket socket_;
    std::optional<asio::ssl::stream<Tcp::socket&>> tls_;
};

/// What a connection is doing, in the order in which connections have to make room for others.
enum class State { Leaving, Idle, Asking, Answering };

/// What a session needs of its server.
class SessionOwner
{
public:
    virtual const ServiceLimits& limits() const = 0;
    virtual HttpAnswer answerTo(const RequestHead& head) = 0;
    virtual bool isEnding() const = 0;
    virtual void forget(const std::shared_ptr<class Session>& session) = 0;

protected:
    ~SessionOwner() = default;
};

/// What comes before the body. Clients of HTTP/1.0 have to be told when the connection stays, others when it does not.
std::string answerHead(const HttpAnswer& answer, bool oldVersion, bool keepsConnection)
{
    std::string text = "HTTP/1.1 " + std::to_string(answer.status) + " " + statusPhrase(answer.status) + "\r\n";
    for (const auto& [name, value] : answer.fields)
        text.append(name).append(": ").append(value).append("\r\n");
    if (answer.status != notModified)
        text += "Content-Length: " + std::to_string(answer.source ? answer.length : answer.text.size()) + "\r\n";
    if (!keepsConnection)
        text += "Connection: close\r\n";
    else if (oldVersion)
        text += "Connection: keep-alive\r\n";
    return text + "\r\n";
}

/// One connection, from its first byte to its last. Whatever it waits for, it waits until a certain time only, and is
/// closed then.
class Session : public std::enable_shared_from_this<Session>
{
public:
    Session(SessionOwner& owner, Tcp::socket socket, asio::ssl::context* tls)
        : owner_(owner), timer_(socket.get_executor()), wire_(std::move(socket), tls), pace_(owner.limits())
    {}

    void begin()
    {
        if (!wire_.hasTls())
            return awaitRequest();
        wait(State::Asking, Clock::now() + owner_.limits().asking);
        wire_.beginTls([self = shared_from_this()](error_code error) { error ? self->close() : self->awaitRequest(); });
    }

    void close()
    {
        if (closed_)
            return;
        closed_ = true;
        timer_.cancel();
        error_code ignored;
        wire_.socket().close(ignored);
        owner_.forget(shared_from_this());
    }

    /// Closes the connection now, or after the answer that is being sent.
    void end()
    {
        keepsConnection_ = false;
        if (state_ != State::Answering)
            close();
    }

    /// The smallest makes room first.
    std::pair<State, Clock::time_point> importance() const noexcept { return {state_, due_}; }

private:
    void wait(State state, Clock::time_point due)
    {
        state_ = state;
        due_ = due;
        timer_.expires_at(due);
        timer_.async_wait([weak = weak_from_this()](error_code error) {
            const std::shared_ptr<Session> self = weak.lock();
            // Where it was too late to cancel it, another wait has begun.
            if (!error && self && Clock::now() >= self->due_)
                self->close();
        });
    }

    /// Reads more bytes, and goes on with `next` unless the connection ends.
    void readMore(void (Session::*next)(std::size_t count))
    {
        wire_.read(asio::buffer(block_), [self = shared_from_this(), next](error_code error, std::size_t count) {
            if (error || self->closed_)
                return self->close();
            self->received_.append(self->block_.data(), count);
            (self.get()->*next)(count);
        });
    }

    void awaitRequest()
    {
        if (owner_.isEnding())
            return close();
        if (received_.empty())
            wait(State::Idle, Clock::now() + owner_.limits().idle);
        else
            wait(State::Asking, Clock::now() + owner_.limits().asking);
        searched_ = 0;
        readHead();
    }

    void readHead()
    {
        if (const std::size_t length = headLength(received_, searched_); length > 0)
            return takeHead(length);
        if (const Refusal refusal = refusalOfBeginning(received_, owner_.limits().head); refusal.status != 0)
            return refuse(refusal);
        searched_ = received_.size();
        readMore(&Session::headGrew);
    }

    void headGrew(std::size_t)
    {
        if (state_ == State::Idle)
            wait(State::Asking, Clock::now() + owner_.limits().asking);
        readHead();
    }

    void takeHead(std::size_t length)
    {
        auto read = VelkHost::readHead(std::string_view(received_).substr(0, length), owner_.limits().head);
        if (const auto* refusal = std::get_if<Refusal>(&read))
            return refuse(*refusal);
        head_ = std::get<RequestHead>(std::move(read));
        received_.erase(0, length);
        pace_ = Pace(owner_.limits());
        dropBody();
    }

    void dropBody()
    {
        const std::size_t here = static_cast<std::size_t>(std::min<std::uint64_t>(head_.bodyBytes, received_.size()));
        received_.erase(0, here);
        head_.bodyBytes -= here;
        if (head_.bodyBytes == 0)
            return answer();
        wait(State::Asking, pace_.due());
        readMore(&Session::bodyGrew);
    }

    void bodyGrew(std::size_t count)
    {
        pace_.moved(count);
        if (pace_.isLate())
            return close();
        dropBody();
    }

    void answer()
    {
        HttpAnswer answer = owner_.answerTo(head_);
        ++requests_;
        const bool more = requests_ < owner_.limits().requestsPerConnection;
        send(std::move(answer), head_.method == "HEAD", head_.keepsConnection && more && !owner_.isEnding());
    }

    void refuse(const Refusal& refusal)
    {
        HttpAnswer answer;
        answer.status = refusal.status;
        answer.fields = {{"Content-Type", "text/plain; charset=utf-8"}};
        answer.text = refusal.text;
        send(std::move(answer), false, false);
    }

    void send(HttpAnswer answer, bool headOnly, bool keepsConnection)
    {
        keepsConnection_ = keepsConnection;
        outgoing_ = answerHead(answer, head_.oldVersion, keepsConnection);
        sent_ = 0;
        unread_ = 0;
        if (!headOnly && answer.status != notModified) {
            outgoing_ += answer.text;
            source_ = std::move(answer.source);
            unread_ = source_ ? answer.length : 0;
        }
        pace_ = Pace(owner_.limits());
        sendMore();
    }

    void sendMore()
    {
        wait(State::Answering, pace_.due());
        wire_.write(asio::buffer(outgoing_) + sent_, [self = shared_from_this()](error_code error, std::size_t count) {
            if (error || self->closed_)
                return self->close();
            self->pace_.moved(count);
            // The timer alone is not enough: while bytes go out without a pause, each wait replaces the one before.
            if (self->pace_.isLate())
                return self->close();
            self->sent_ += count;
            self->wasSent();
        });
    }

    void wasSent()
    {
        if (sent_ < outgoing_.size())
            return sendMore();
        if (unread_ > 0) {
            outgoing_ = source_->next(static_cast<std::size_t>(std::min<std::uint64_t>(unread_, sentAtATime)));
            sent_ = 0;
            unread_ -= std::min<std::uint64_t>(unread_, outgoing_.size());
            return outgoing_.empty() ? close() : sendMore();
        }
        source_.reset();
        if (keepsConnection_)
            awaitRequest();
        else
            leave();
    }

    /// The client still has to read the last answer, which would be lost if the connection was closed while unread
    /// bytes come in.
    void leave()
    {
        wait(State::Leaving, Clock::now() + owner_.limits().leaving);
        if (wire_.hasTls())
            wire_.endTls([self = shared_from_this()](error_code) { self->hangUp(); });
        else
            hangUp();
    }

    void hangUp()
    {
        error_code ignored;
        wire_.socket().shutdown(Tcp::socket::shutdown_send, ignored);
        dropRest();
    }

    void dropRest()
    {
        if (closed_)
            return;
        wire_.socket().async_read_some(
            asio::buffer(block_),
            [self = shared_from_this()](error_code error, std::size_t) { error ? self->close() : self->dropRest(); });
    }

    SessionOwner& owner_;
    asio::steady_timer timer_;
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

class HttpServer::Implementation final : public SessionOwner
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

    void forget(const std::shared_ptr<Session>& session) override
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
        const auto session = std::make_shared<Session>(*this, std::move(socket), tls_ ? &*tls_ : nullptr);
        sessions_.insert(session);
        session->begin();
    }

    void makeRoom()
    {
        while (sessions_.size() >= limits_.connections)
            leastImportant()->close();
    }

    std::shared_ptr<Session> leastImportant() const
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
    std::set<std::shared_ptr<Session>> sessions_;
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
