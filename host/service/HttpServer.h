#pragma once

#include "host/service/RequestHead.h"

#include <VelkCommon/Files/fileString.h>

#include <chrono>
#include <cstddef>
#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <utility>
#include <vector>

namespace VelkHost {

/// A certificate and its private key, as PEM files.
struct ServiceCertificate
{
    fileString certificate;  ///< the service's own, followed by the intermediate ones
    fileString privateKey;
};

/// What clients may use up.
struct ServiceLimits
{
    HeadLimits head;
    /// At a time. One more takes the place of the one that has been idle for the longest time; where none is idle, of
    /// the one that has asked for the longest time without having said all, and only then of the slowest reader.
    std::size_t connections = 256;
    std::size_t requestsPerConnection = 100'000;
    std::chrono::milliseconds idle = std::chrono::seconds(2);     ///< until a request begins
    std::chrono::milliseconds asking = std::chrono::seconds(10);  ///< for a whole head, or for the beginning of TLS
    /// Slowest pace at which a client must send a body and take an answer.
    std::uint64_t bytesPerSecond = 4 << 10;
    std::chrono::milliseconds behind = std::chrono::seconds(30);  ///< how far it may fall behind that pace
    std::chrono::milliseconds leaving = std::chrono::seconds(2);  ///< for the client to hang up after the last answer
    std::chrono::milliseconds ending = std::chrono::seconds(10);  ///< for the answers that run when the server ends
    std::size_t sendBuffer = 128 << 10;  ///< bytes that the system keeps for a client who does not take them
};

/// A body that is read while it is sent. It is destroyed when all is sent, or the connection has ended.
class BodySource
{
public:
    BodySource() = default;
    virtual ~BodySource() = default;
    BodySource(const BodySource&) = delete;
    BodySource& operator=(const BodySource&) = delete;

    /// The next bytes, at most `most`; empty when they cannot be read, which ends the connection.
    virtual std::string next(std::size_t most) = 0;
};

struct HttpAnswer
{
    int status = 200;
    std::vector<std::pair<std::string, std::string>> fields;  ///< beside those about length and connection
    std::string text;                                         ///< the body, unless there is a source
    std::unique_ptr<BodySource> source;                       ///< gives `length` bytes
    std::uint64_t length = 0;
};

/// An HTTP/1.1 server, plain or over TLS: one thread serves all connections, so a slow client takes nothing from the
/// others but its place. Requests on a connection are answered one after the other, in their order.
class HttpServer
{
public:
    /// Makes the answer to a request, whose body is dropped, on the server's thread. Nobody else is served
    /// meanwhile. What it throws becomes the status 500. To HEAD it answers as to GET.
    using Handler = std::function<HttpAnswer(const RequestHead&)>;

    /// Listens on `port`, 0 for any free one, of an address of this machine. Throws FileError for a certificate that
    /// cannot be used, and ServiceError where it cannot listen.
    HttpServer(const std::string& address, int port, const std::optional<ServiceCertificate>& tls,
               const ServiceLimits& limits, Handler handler);
    /// Closes all connections; those with a running answer when it is sent or `ServiceLimits::ending` is over.
    ~HttpServer();
    HttpServer(const HttpServer&) = delete;
    HttpServer& operator=(const HttpServer&) = delete;

    int port() const noexcept;

private:
    class Implementation;
    std::unique_ptr<Implementation> implementation_;
};

}  // namespace VelkHost
