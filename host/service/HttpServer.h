#pragma once

#include "host/service/HttpAnswer.h"
#include "host/service/RequestHead.h"
#include "host/service/ServiceLimits.h"

#include <VelkCommon/Files/fileString.h>

#include <functional>
#include <memory>
#include <optional>
#include <string>

namespace VelkHost {

/// A certificate and its private key, as PEM files.
struct ServiceCertificate
{
    fileString certificate;  ///< the service's own, followed by the intermediate ones
    fileString privateKey;
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
