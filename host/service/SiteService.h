#pragma once

#include "host/service/HttpServer.h"

#include <VelkCommon/Files/fileString.h>

#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <string>

namespace VelkHost {

/// A request that was answered.
struct ServedRequest
{
    std::string method;
    std::string target;  ///< as it came over the wire
    int status = 0;
    std::uint64_t bodyBytes = 0;  ///< sent, without headers
};

/// What a service has done so far. A client that has got an answer finds it counted.
struct ServiceTraffic
{
    std::uint64_t requests = 0;
    std::uint64_t notModified = 0;  ///< of these, answered 304: the client has it already
    std::uint64_t bodyBytes = 0;    ///< sent, without headers
};

struct ServiceOptions
{
    fileString site;                    ///< a published site
    std::string address = "127.0.0.1";  ///< to listen on; reaches this machine only, unless changed
    int port = 0;                       ///< 0 for any free one
    std::optional<ServiceCertificate> tls;
    /// Told of each request once it is answered, on the service's thread.
    std::function<void(const ServedRequest&)> served;
    ServiceLimits limits;
};

/// The content service within a program: for development, demonstrations and tests. It answers as soon as it
/// is constructed and ends with the destructor, which waits for running answers (see HttpServer).
///
/// A newly published edition is served from the next request on. A request sees one edition, and a file
/// that is being sent is sent to its end.
///
/// Slow and silent clients do not keep others waiting: see ServiceLimits. Standing up to the internet is a web
/// server's task all the same.
class SiteService
{
public:
    /// Throws FileError when nothing is published in the site or the certificate cannot be used, and ServiceError
    /// when the address cannot be listened on.
    explicit SiteService(ServiceOptions options);
    ~SiteService();
    SiteService(const SiteService&) = delete;
    SiteService& operator=(const SiteService&) = delete;

    int port() const noexcept;
    /// The service address for clients, "http://127.0.0.1:8080/".
    std::string address() const;
    /// The addresses of the manufacturers' data and the logos.
    std::string manufacturersAddress() const;
    std::string logoAddress() const;
    ServiceTraffic traffic() const;

private:
    class Implementation;
    std::unique_ptr<Implementation> implementation_;
};

}  // namespace VelkHost
