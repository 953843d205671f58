#pragma once

#include <VelkCommon/Files/fileString.h>

#include <QProcess>

#include <string>
#include <vector>

namespace test {

/// A request that was answered.
struct NginxRequest
{
    std::string connection;  ///< its number
    std::string protocol;    ///< "HTTP/1.1"
};

/// A web server for one test, run by this user in a temporary folder, on a port that the system chooses.
class NginxServer
{
public:
    /// Keeps its files in `folder`. Serves "velk-maps.conf" and "velk-locations.conf" of `configuration`; with
    /// a `certificate` and its key (PEM files) it serves over TLS, and then speaks HTTP/2 as well. Answers as soon
    /// as it is constructed.
    NginxServer(const fileString& folder, const fileString& configuration, const fileString& certificate = {},
                const fileString& key = {});
    ~NginxServer();
    NginxServer(const NginxServer&) = delete;
    NginxServer& operator=(const NginxServer&) = delete;

    int port() const noexcept { return port_; }
    std::string origin() const;
    /// Makes it read the configuration again, as "nginx -s reload" does; returns before that is done.
    void reload() const;
    /// What it complained about so far.
    std::string complaints() const;
    /// Ends the server, and returns all requests in the order of their answers.
    std::vector<NginxRequest> stop();

private:
    void end();
    void writeConfiguration(const fileString& configuration, const fileString& certificate,
                            const fileString& key) const;

    fileString folder_;
    bool secure_;
    int port_ = 0;
    int socket_ = -1;
    QProcess process_;
};

}  // namespace test
