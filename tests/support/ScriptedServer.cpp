#include "support/ScriptedServer.h"

#include "support/Threads.h"

#include <boost/asio/connect.hpp>
#include <boost/asio/io_context.hpp>
#include <boost/asio/ip/tcp.hpp>
#include <boost/asio/read_until.hpp>
#include <boost/asio/ssl.hpp>
#include <boost/asio/streambuf.hpp>
#include <boost/asio/write.hpp>

#include <algorithm>
#include <atomic>
#include <condition_variable>
#include <cstdio>
#include <list>
#include <map>
#include <mutex>

namespace test {

namespace asio = boost::asio;
using boost::system::error_code;
using tcp = asio::ip::tcp;

namespace {

constexpr std::size_t requestLimit = 1 << 20;
constexpr std::size_t endlessBlock = 64 << 10;

SeenRequest parse(const std::string& text)
{
    SeenRequest request;
    const std::string first = text.substr(0, text.find("\r\n"));
    const std::size_t blank = first.find(' ');
    request.method = first.substr(0, blank);
    request.target = first.substr(blank + 1, first.rfind(' ') - blank - 1);
    for (std::size_t at = first.size() + 2; at < text.size();) {
        const std::size_t end = text.find("\r\n", at);
        const std::string line = text.substr(at, end - at);
        at = end + 2;
        const std::size_t colon = line.find(':');
        if (colon == std::string::npos)
            continue;
        const std::size_t value = line.find_first_not_of(' ', colon + 1);
        request.headers.emplace_back(line.substr(0, colon), value == std::string::npos ? "" : line.substr(value));
    }
    return request;
}

bool isUnmodified(const SeenRequest& request, const Reply& reply)
{
    return reply.conditionalTag &&
           request.header("If-None-Match").find('"' + *reply.conditionalTag + '"') != std::string::npos;
}

std::string headerText(const Reply& reply, int status)
{
    std::string text = "HTTP/1.1 " + std::to_string(status) + " Scripted\r\n";
    for (const auto& [name, value] : reply.headers)
        text += name + ": " + value + "\r\n";
    if (reply.chunked)
        text += "Transfer-Encoding: chunked\r\n";
    else if (reply.length)
        text += "Content-Length: " + *reply.length + "\r\n";
    else if (reply.withLength && status != 304)
        text += "Content-Length: " + std::to_string(reply.body.size()) + "\r\n";
    return text + "\r\n";
}

std::string chunk(const std::string& bytes)
{
    char size[20];
    static_cast<void>(std::snprintf(size, sizeof size, "%zx\r\n", bytes.size()));
    return size + bytes + "\r\n";
}

// A connection, as far as stop() is concerned.
class Wire
{
public:
    explicit Wire(tcp::socket& socket) : socket_(&socket) {}

    void cut()
    {
        const std::lock_guard lock(mutex_);
        if (socket_ == nullptr)
            return;
#ifdef _WIN32
        // Nothing else wakes a thread there that waits for bytes. It finds the object closed then.
        error_code ignored;
        socket_->close(ignored);
#else
        // The native call: the thread of the connection uses the object at the same time.
        ::shutdown(socket_->native_handle(), 2);
#endif
    }
    void close(bool inOrder)
    {
        const std::lock_guard lock(mutex_);
        error_code ignored;
        if (inOrder)
            socket_->shutdown(tcp::socket::shutdown_both, ignored);
        else
            socket_->set_option(asio::socket_base::linger(true, 0), ignored);
        socket_->close(ignored);
        socket_ = nullptr;
    }

private:
    std::mutex mutex_;
    tcp::socket* socket_;
};

}  // namespace

struct ScriptedServer::Impl
{
    asio::io_context context;
    tcp::acceptor acceptor{context, tcp::endpoint(asio::ip::address_v4::loopback(), 0)};
    std::uint16_t port = acceptor.local_endpoint().port();
    std::unique_ptr<asio::ssl::context> tls;
    std::optional<Thread> accepting;
    std::atomic<bool> stopping = false;
    std::atomic<bool> oneAtATime = false;
    std::mutex turn;  // held by the connection being served, when only one is at a time

    mutable std::mutex mutex;
    mutable std::condition_variable changed;
    std::map<std::pair<std::string, std::string>, Handler> scripts;  // by method ("" for all) and path
    Handler otherwise = [](const SeenRequest&) { return Reply{.status = 404, .body = "not scripted"}; };
    std::vector<SeenRequest> requests;
    std::size_t connections = 0;
    std::vector<std::string> offered;
    std::list<std::shared_ptr<Wire>> wires;
    std::list<Thread> threads;
    std::vector<Gate> gates;  // that requests have waited at

    void accept();
    void serve(tcp::socket socket, std::size_t number);
    template <typename Stream>
    bool exchange(Stream& stream, asio::streambuf& input, std::size_t number, Reply::Ending& ending);
    template <typename Stream>
    void converse(Stream& stream, Wire& wire, std::size_t number);
    template <typename Stream>
    bool send(Stream& stream, const SeenRequest& request, const Reply& reply);
    template <typename Stream>
    bool sendBody(Stream& stream, const Reply& reply);
    bool pass(const std::optional<Gate>& gate);
    Handler handlerFor(const SeenRequest& request) const;
    void useTls(const Certificate& certificate);
    void stop();
    static int chooseProtocol(SSL*, const unsigned char** chosen, unsigned char* length, const unsigned char* offered,
                              unsigned int size, void* self);
};

void ScriptedServer::Impl::accept()
{
    for (;;) {
        error_code error;
        tcp::socket socket(context);
        acceptor.accept(socket, error);
        const std::lock_guard lock(mutex);
        if (stopping)
            return;
        if (error)
            continue;
        const std::size_t number = ++connections;
        socket.set_option(tcp::no_delay(true), error);
        threads.remove_if([](const Thread& thread) { return thread.hasEnded(); });  // or they keep their stacks
        threads.emplace_back([this, number, moved = std::move(socket)]() mutable { serve(std::move(moved), number); });
    }
}

void ScriptedServer::Impl::serve(tcp::socket socket, std::size_t number)
{
    std::unique_lock lock(turn, std::defer_lock);
    if (oneAtATime)
        lock.lock();
    if (!tls) {
        Wire wire(socket);
        converse(socket, wire, number);
        return;
    }
    asio::ssl::stream<tcp::socket> stream(std::move(socket), *tls);
    Wire wire(stream.next_layer());
    converse(stream, wire, number);
}

// The requests of one connection, one after the other.
template <typename Stream>
void ScriptedServer::Impl::converse(Stream& stream, Wire& wire, std::size_t number)
{
    const auto mine = std::shared_ptr<Wire>(&wire, [](Wire*) {});
    {
        const std::lock_guard lock(mutex);
        wires.push_back(mine);
        if (stopping)
            wire.cut();
    }
    constexpr bool secure = !std::is_same_v<Stream, tcp::socket>;
    error_code error;
    if constexpr (secure)
        stream.handshake(asio::ssl::stream_base::server, error);
    asio::streambuf input(requestLimit);
    auto ending = Reply::Ending::close;
    while (!error && exchange(stream, input, number, ending)) {
    }
    if constexpr (secure) {
        if (!error && ending == Reply::Ending::close)
            stream.shutdown(error);
    }
    {
        const std::lock_guard lock(mutex);
        wires.remove(mine);
    }
    wire.close(ending != Reply::Ending::reset);
}

// One request with its answer; false when the connection ends as `ending` says.
template <typename Stream>
bool ScriptedServer::Impl::exchange(Stream& stream, asio::streambuf& input, std::size_t number, Reply::Ending& ending)
{
    error_code error;
    const std::size_t size = asio::read_until(stream, input, "\r\n\r\n", error);
    if (error)
        return false;
    SeenRequest request = parse(
        {asio::buffers_begin(input.data()), asio::buffers_begin(input.data()) + static_cast<std::ptrdiff_t>(size)});
    input.consume(size);
    request.connection = number;
    Handler handler;
    {
        const std::lock_guard lock(mutex);
        requests.push_back(request);
        changed.notify_all();
        handler = handlerFor(request);
    }
    const Reply reply = handler(request);
    const bool sent = send(stream, request, reply);
    ending = reply.ending;
    if (reply.ending == Reply::Ending::keep) {
        const bool delimited = reply.chunked || reply.withLength || reply.length || request.method == "HEAD";
        ending = Reply::Ending::close;
        return sent && !reply.cutAfter && delimited;
    }
    if (reply.ending == Reply::Ending::hang) {
        char byte = 0;
        while (!error)
            stream.read_some(asio::buffer(&byte, 1), error);
    }
    return false;
}

template <typename Stream>
bool ScriptedServer::Impl::send(Stream& stream, const SeenRequest& request, const Reply& reply)
{
    error_code error;
    if (!pass(reply.beforeHeader))
        return false;
    if (reply.raw) {
        asio::write(stream, asio::buffer(*reply.raw), error);
        return !error;
    }
    const int status = isUnmodified(request, reply) ? 304 : reply.status;
    const bool bodiless = request.method == "HEAD" || status == 304;
    std::string first = headerText(reply, status);
    // Header and body are sent in one piece where nothing comes between them, as servers do.
    const bool whole =
        !bodiless && !reply.chunked && !reply.cutAfter && !reply.endless && !reply.beforeBlock && reply.block == 0;
    if (whole)
        first += reply.body;
    asio::write(stream, asio::buffer(first), error);
    return !error && (whole || bodiless || sendBody(stream, reply));
}

template <typename Stream>
bool ScriptedServer::Impl::sendBody(Stream& stream, const Reply& reply)
{
    std::string body = reply.body.substr(0, reply.cutAfter.value_or(reply.body.size()));
    std::size_t block = reply.block == 0 ? body.size() : reply.block;
    if (reply.endless) {
        while (body.size() < endlessBlock && reply.block == 0)
            body += reply.body;
        block = reply.block == 0 ? body.size() : reply.block;
    }
    error_code error;
    do {
        for (std::size_t at = 0; at < body.size(); at += block) {
            if (!pass(reply.beforeBlock))
                return false;
            const std::string bytes = body.substr(at, block);
            asio::write(stream, asio::buffer(reply.chunked ? chunk(bytes) : bytes), error);
            if (error)
                return false;
        }
    } while (reply.endless);
    if (reply.chunked && !reply.cutAfter)
        asio::write(stream, asio::buffer("0\r\n\r\n", 5), error);
    return !error;
}

bool ScriptedServer::Impl::pass(const std::optional<Gate>& gate)
{
    if (!gate)
        return true;
    {
        const std::lock_guard lock(mutex);
        if (stopping)
            return false;
        if (std::none_of(gates.begin(), gates.end(), [&](const Gate& known) { return known.state_ == gate->state_; }))
            gates.push_back(*gate);
    }
    return Gate(*gate).wait();
}

ScriptedServer::Handler ScriptedServer::Impl::handlerFor(const SeenRequest& request) const
{
    for (const std::string& method : {request.method, std::string()}) {
        const auto found = scripts.find({method, request.path()});
        if (found != scripts.end())
            return found->second;
    }
    return otherwise;
}

void ScriptedServer::Impl::useTls(const Certificate& certificate)
{
    tls = std::make_unique<asio::ssl::context>(asio::ssl::context::tls_server);
    tls->use_certificate_chain(asio::buffer(certificate.chain));
    tls->use_private_key(asio::buffer(certificate.key), asio::ssl::context::pem);
    SSL_CTX_set_alpn_select_cb(tls->native_handle(), &Impl::chooseProtocol, this);
}

int ScriptedServer::Impl::chooseProtocol(SSL*, const unsigned char** chosen, unsigned char* length,
                                         const unsigned char* offered, unsigned int size, void* self)
{
    auto& impl = *static_cast<Impl*>(self);
    const std::lock_guard lock(impl.mutex);
    impl.offered.clear();
    bool found = false;
    for (unsigned int at = 0; at < size; at += 1U + offered[at]) {
        impl.offered.emplace_back(reinterpret_cast<const char*>(offered + at + 1), offered[at]);
        if (impl.offered.back() != "http/1.1")
            continue;
        *chosen = offered + at + 1;
        *length = offered[at];
        found = true;
    }
    return found ? SSL_TLSEXT_ERR_OK : SSL_TLSEXT_ERR_NOACK;
}

void ScriptedServer::Impl::stop()
{
    if (!accepting)
        return;
    {
        const std::lock_guard lock(mutex);
        stopping = true;
        for (const auto& wire : wires)
            wire->cut();
        for (Gate& gate : gates)
            gate.end();
    }
    {
        // This wakes the accepting thread on every system.
        error_code ignored;
        asio::io_context own;
        tcp::socket knock(own);
        knock.connect({asio::ip::address_v4::loopback(), port}, ignored);
        accepting.reset();
    }
    error_code ignored;
    acceptor.close(ignored);
    // Nobody adds to them any more. Their ends need the lock, so it is free while they are joined.
    std::list<Thread> all;
    {
        const std::lock_guard lock(mutex);
        all.swap(threads);
    }
}

ScriptedServer::ScriptedServer() : impl_(std::make_shared<Impl>())
{
    impl_->accepting.emplace([impl = impl_.get()] { impl->accept(); });
}

ScriptedServer::ScriptedServer(const Certificate& certificate) : impl_(std::make_shared<Impl>())
{
    impl_->useTls(certificate);
    impl_->accepting.emplace([impl = impl_.get()] { impl->accept(); });
}

ScriptedServer::~ScriptedServer()
{
    impl_->stop();
}

void ScriptedServer::on(const std::string& path, Reply reply)
{
    onMethod("", path, std::move(reply));
}

void ScriptedServer::on(const std::string& path, Handler handler)
{
    onMethod("", path, std::move(handler));
}

void ScriptedServer::onMethod(const std::string& method, const std::string& path, Handler handler)
{
    const std::lock_guard lock(impl_->mutex);
    impl_->scripts[{method, path}] = std::move(handler);
}

void ScriptedServer::onMethod(const std::string& method, const std::string& path, Reply reply)
{
    onMethod(method, path,
             [shared = std::make_shared<const Reply>(std::move(reply))](const SeenRequest&) { return *shared; });
}

void ScriptedServer::otherwise(Handler handler)
{
    const std::lock_guard lock(impl_->mutex);
    impl_->otherwise = std::move(handler);
}

std::uint16_t ScriptedServer::port() const
{
    return impl_->port;
}

std::string ScriptedServer::url(const std::string& pathAndQuery) const
{
    return (impl_->tls ? "https://127.0.0.1:" : "http://127.0.0.1:") + std::to_string(port()) + pathAndQuery;
}

std::vector<SeenRequest> ScriptedServer::requests() const
{
    const std::lock_guard lock(impl_->mutex);
    return impl_->requests;
}

std::vector<SeenRequest> ScriptedServer::requests(const std::string& path) const
{
    std::vector<SeenRequest> all = requests();
    std::erase_if(all, [&](const SeenRequest& request) { return request.path() != path; });
    return all;
}

std::size_t ScriptedServer::connections() const
{
    const std::lock_guard lock(impl_->mutex);
    return impl_->connections;
}

std::vector<std::string> ScriptedServer::offeredProtocols() const
{
    const std::lock_guard lock(impl_->mutex);
    return impl_->offered;
}

void ScriptedServer::waitForRequests(std::size_t count) const
{
    std::unique_lock lock(impl_->mutex);
    if (!comesAbout(impl_->changed, lock, [&] { return impl_->requests.size() >= count; }))
        giveUp(std::to_string(impl_->requests.size()) + " of " + std::to_string(count) + " requests came");
}

void ScriptedServer::forgetRequests()
{
    const std::lock_guard lock(impl_->mutex);
    impl_->requests.clear();
}

void ScriptedServer::serveOneConnectionAtATime()
{
    impl_->oneAtATime = true;
}

void ScriptedServer::stop()
{
    impl_->stop();
}

}  // namespace test
