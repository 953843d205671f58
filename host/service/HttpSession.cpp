#include "host/service/HttpSession.h"

#include <algorithm>
#include <string_view>
#include <variant>

namespace VelkHost {

namespace asio = boost::asio;
using boost::system::error_code;
using Tcp = asio::ip::tcp;

namespace {

constexpr std::size_t sentAtATime = 64 << 10;
constexpr int notModified = 304;

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

}  // namespace

HttpSession::HttpSession(HttpSessionOwner& owner, Wire::Socket socket, Wire::TlsContext* tls)
    : owner_(owner), timer_(socket.get_executor()), wire_(std::move(socket), tls), pace_(owner.limits())
{}

void HttpSession::begin()
{
    if (!wire_.hasTls())
        return awaitRequest();
    wait(State::Asking, Clock::now() + owner_.limits().asking);
    wire_.beginTls([self = shared_from_this()](error_code error) { error ? self->close() : self->awaitRequest(); });
}

void HttpSession::close()
{
    if (closed_)
        return;
    closed_ = true;
    timer_.cancel();
    error_code ignored;
    wire_.socket().close(ignored);
    owner_.forget(shared_from_this());
}

void HttpSession::end()
{
    keepsConnection_ = false;
    if (state_ != State::Answering)
        close();
}

void HttpSession::wait(State state, Clock::time_point due)
{
    state_ = state;
    due_ = due;
    timer_.expires_at(due);
    timer_.async_wait([weak = weak_from_this()](error_code error) {
        const std::shared_ptr<HttpSession> self = weak.lock();
        // Where it was too late to cancel it, another wait has begun.
        if (!error && self && Clock::now() >= self->due_)
            self->close();
    });
}

void HttpSession::readMore(void (HttpSession::*next)(std::size_t count))
{
    wire_.read(asio::buffer(block_), [self = shared_from_this(), next](error_code error, std::size_t count) {
        if (error || self->closed_)
            return self->close();
        self->received_.append(self->block_.data(), count);
        (self.get()->*next)(count);
    });
}

void HttpSession::awaitRequest()
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

void HttpSession::readHead()
{
    if (const std::size_t length = headLength(received_, searched_); length > 0)
        return takeHead(length);
    if (const Refusal refusal = refusalOfBeginning(received_, owner_.limits().head); refusal.status != 0)
        return refuse(refusal);
    searched_ = received_.size();
    readMore(&HttpSession::headGrew);
}

void HttpSession::headGrew(std::size_t)
{
    if (state_ == State::Idle)
        wait(State::Asking, Clock::now() + owner_.limits().asking);
    readHead();
}

void HttpSession::takeHead(std::size_t length)
{
    auto read = VelkHost::readHead(std::string_view(received_).substr(0, length), owner_.limits().head);
    if (const auto* refusal = std::get_if<Refusal>(&read))
        return refuse(*refusal);
    head_ = std::get<RequestHead>(std::move(read));
    received_.erase(0, length);
    pace_ = Pace(owner_.limits());
    dropBody();
}

void HttpSession::dropBody()
{
    const std::size_t here = static_cast<std::size_t>(std::min<std::uint64_t>(head_.bodyBytes, received_.size()));
    received_.erase(0, here);
    head_.bodyBytes -= here;
    if (head_.bodyBytes == 0)
        return answer();
    wait(State::Asking, pace_.due());
    readMore(&HttpSession::bodyGrew);
}

void HttpSession::bodyGrew(std::size_t count)
{
    pace_.moved(count);
    if (pace_.isLate())
        return close();
    dropBody();
}

void HttpSession::answer()
{
    HttpAnswer answer = owner_.answerTo(head_);
    ++requests_;
    const bool more = requests_ < owner_.limits().requestsPerConnection;
    send(std::move(answer), head_.method == "HEAD", head_.keepsConnection && more && !owner_.isEnding());
}

void HttpSession::refuse(const Refusal& refusal)
{
    HttpAnswer answer;
    answer.status = refusal.status;
    answer.fields = {{"Content-Type", "text/plain; charset=utf-8"}};
    answer.text = refusal.text;
    send(std::move(answer), false, false);
}

void HttpSession::send(HttpAnswer answer, bool headOnly, bool keepsConnection)
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

void HttpSession::sendMore()
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

void HttpSession::wasSent()
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

// The client still has to read the last answer, which would be lost if the connection was closed while unread
// bytes come in.
void HttpSession::leave()
{
    wait(State::Leaving, Clock::now() + owner_.limits().leaving);
    if (wire_.hasTls())
        wire_.endTls([self = shared_from_this()](error_code) { self->hangUp(); });
    else
        hangUp();
}

void HttpSession::hangUp()
{
    error_code ignored;
    wire_.socket().shutdown(Tcp::socket::shutdown_send, ignored);
    dropRest();
}

void HttpSession::dropRest()
{
    if (closed_)
        return;
    wire_.socket().async_read_some(asio::buffer(block_), [self = shared_from_this()](error_code error, std::size_t) {
        error ? self->close() : self->dropRest();
    });
}

}  // namespace VelkHost
