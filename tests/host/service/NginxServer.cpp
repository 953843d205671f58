#include "NginxServer.h"

#include "support/QtProcesses.h"
#include "support/TestHost.h"

#include <VelkCommon/Files/FileUtils.h>

#include <arpa/inet.h>
#include <netinet/in.h>
#include <sys/socket.h>
#include <unistd.h>

#include <csignal>
#include <sstream>

namespace test {
namespace {

/// A socket that listens on a free port of this machine. The server takes it over, so the port cannot be
/// lost to another program, and requests wait until it is ready.
int listeningSocket(int& port)
{
    const int socket = ::socket(AF_INET, SOCK_STREAM, 0);
    sockaddr_in address{};
    address.sin_family = AF_INET;
    address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
    socklen_t size = sizeof address;
    EXPECT_EQ(::bind(socket, reinterpret_cast<sockaddr*>(&address), size), 0);
    EXPECT_EQ(::listen(socket, 64), 0);
    EXPECT_EQ(::getsockname(socket, reinterpret_cast<sockaddr*>(&address), &size), 0);
    port = ntohs(address.sin_port);
    return socket;
}

}  // namespace

NginxServer::NginxServer(const fileString& folder, const fileString& configuration, const fileString& certificate,
                         const fileString& key)
    : folder_(folder), secure_(!certificate.empty()), socket_(listeningSocket(port_))
{
    FileUtils::createDirectoriesWithPerm(folder_);
    writeConfiguration(configuration, certificate, key);
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    environment.insert(QStringLiteral("NGINX"), QString::number(socket_) + QStringLiteral(";"));
    process_.setProcessEnvironment(environment);
    process_.setProcessChannelMode(QProcess::MergedChannels);
    const QString home = QString::fromStdString(folder_.utf8());
    process_.start(QStringLiteral(NGINX_PROGRAM),
                   {QStringLiteral("-p"), home, QStringLiteral("-e"), home + QStringLiteral("/error.log"),
                    QStringLiteral("-c"), home + QStringLiteral("/nginx.conf")});
    waitForStart(process_);
    ::close(socket_);
}

NginxServer::~NginxServer()
{
    end();
}

std::string NginxServer::origin() const
{
    return std::string(secure_ ? "https" : "http") + "://127.0.0.1:" + std::to_string(port_);
}

void NginxServer::reload() const
{
    EXPECT_EQ(::kill(static_cast<pid_t>(process_.processId()), SIGHUP), 0);
}

std::string NginxServer::complaints() const
{
    std::istringstream log(readFile(folder_ / U"error.log"));
    std::string complaints;
    for (std::string line; std::getline(log, line);)
        if (line.find("[notice]") == std::string::npos)
            complaints += line + "\n";
    return complaints;
}

std::vector<NginxRequest> NginxServer::stop()
{
    end();
    std::istringstream log(readFile(folder_ / U"access.log"));
    std::vector<NginxRequest> requests;
    for (NginxRequest request; log >> request.connection >> request.protocol;)
        requests.push_back(request);
    return requests;
}

void NginxServer::end()
{
    process_.terminate();
    waitForEnd(process_);
}

void NginxServer::writeConfiguration(const fileString& configuration, const fileString& certificate,
                                     const fileString& key) const
{
    const std::string home = folder_.utf8();
    std::string text = "daemon off;\nworker_processes 1;\npid \"" + home + "/nginx.pid\";\n";
    // Its workers must run as this user too, since no other user can read the temporary folder.
    if (::geteuid() == 0)
        text += "user root;\n";
    text += "events {}\nhttp {\n";
    for (const char* kind : {"client_body", "proxy", "fastcgi", "uwsgi", "scgi"})
        text += std::string(kind) + "_temp_path \"" + home + "/" + kind + "\";\n";
    text += "log_format test \"$connection $server_protocol\";\naccess_log \"" + home + "/access.log\" test;\n";
    // Compression is on, as in many installations; catalogs must not be compressed all the same.
    text += "gzip on;\ngzip_types *;\ngzip_min_length 1;\n";
    text += "include \"" + configuration.utf8() + "/velk-maps.conf\";\nserver {\n";
    text += "listen 127.0.0.1:" + std::to_string(port_) + (secure_ ? " ssl http2" : "") + ";\n";
    if (secure_)
        text += "ssl_certificate \"" + certificate.utf8() + "\";\nssl_certificate_key \"" + key.utf8() + "\";\n";
    text += "include \"" + configuration.utf8() + "/velk-locations.conf\";\n}\n}\n";
    writeFile(folder_ / U"nginx.conf", text);
}

}  // namespace test
