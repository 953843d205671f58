#include "host/service/SiteService.h"

#include "host/service/ServiceError.h"
#include "host/service/SiteAnswer.h"
#include "host/support/FileError.h"
#include "host/support/System.h"

#include <VelkCommon/Files/LockingFStream.h>

#include <httplib.h>

#include <algorithm>
#include <atomic>
#include <mutex>
#include <thread>
#include <vector>

namespace VelkHost {
namespace {

constexpr std::size_t connections = 32;
constexpr int idleSeconds = 2;
constexpr int stalledSeconds = 10;
constexpr std::size_t requestsPerConnection = 100'000;
constexpr std::size_t requestBodyBytes = 64 << 10;
constexpr std::size_t sentAtATime = 64 << 10;
constexpr int notFound = 404;

/// Keeps the edition in force in memory.
class EditionWatch
{
public:
    explicit EditionWatch(fileString site) : site_(std::move(site)) { current(); }

    /// The edition in force now; while its switch or table is damaged, the last one that could be read.
    std::shared_ptr<const SiteEdition> current()
    {
        const std::lock_guard lock(mutex_);
        try {
            const std::string name = currentTable(site_);
            if (name.empty())
                throw FileError(site_, "is not a published site; see \"velk publish --help\"");
            if (name != name_) {
                edition_ = std::make_shared<SiteEdition>(readTable(site_, name));
                name_ = name;
            }
        } catch (const FileError&) {
            if (!edition_)
                throw;
        }
        return edition_;
    }

private:
    fileString site_;
    std::mutex mutex_;
    std::string name_;
    std::shared_ptr<const SiteEdition> edition_;
};

SiteRequest siteRequest(const httplib::Request& request)
{
    return {request.method, request.target, request.get_header_value("If-None-Match"),
            request.get_header_value("If-Range"), request.get_header_value("Range")};
}

using Counter = std::shared_ptr<std::atomic<std::uint64_t>>;

/// Sends a part of an open file, and counts what was sent: of this answer, and of all.
class FileBody
{
public:
    FileBody(std::shared_ptr<LockingFStream> file, std::uint64_t offset, Counter sent, Counter allSent)
        : file_(std::move(file)), offset_(offset), sent_(std::move(sent)), allSent_(std::move(allSent))
    {}

    bool operator()(std::size_t position, std::size_t length, httplib::DataSink& sink) const
    {
        std::vector<char> block(std::min(length, sentAtATime));
        file_->seekg(static_cast<std::streamoff>(offset_ + position));
        file_->read(block.data(), static_cast<std::streamsize>(block.size()));
        const auto got = static_cast<std::size_t>(file_->gcount());
        if (got == 0)
            return false;
        // Counted before it is sent, so that whoever has received it finds it counted.
        *sent_ += got;
        *allSent_ += got;
        return sink.write(block.data(), got);
    }

private:
    std::shared_ptr<LockingFStream> file_;
    std::uint64_t offset_;
    Counter sent_;
    Counter allSent_;
};

}  // namespace

class SiteService::Implementation
{
public:
    explicit Implementation(ServiceOptions options)
        : options_(std::move(options)), editions_(options_.site), server_(makeServer())
    {
        configure();
        bind();
        thread_ = std::thread([this] {
            server_->listen_after_bind();
            ended_ = true;
        });
        // Stopping has no effect before the server runs.
        while (!server_->is_running() && !ended_)
            std::this_thread::yield();
    }

    ~Implementation()
    {
        server_->stop();
        thread_.join();
    }

    int port() const noexcept { return port_; }
    ServiceTraffic traffic() const { return {requests_, notModified_, *bodyBytes_}; }

    std::string origin() const
    {
        const bool ipv6 = options_.address.find(':') != std::string::npos;
        return std::string(options_.tls ? "https" : "http") + "://" +
               (ipv6 ? "[" + options_.address + "]" : options_.address) + ":" + std::to_string(port_);
    }

private:
    std::unique_ptr<httplib::Server> makeServer() const
    {
        if (!options_.tls)
            return std::make_unique<httplib::Server>();
        auto server = std::make_unique<httplib::SSLServer>(options_.tls->certificate.utf8().c_str(),
                                                           options_.tls->privateKey.utf8().c_str());
        if (!server->is_valid())
            throw FileError(options_.tls->certificate, "cannot be used with the key " +
                                                           options_.tls->privateKey.humanReadableString() +
                                                           "; both must be PEM files that belong together");
        return server;
    }

    void configure()
    {
        server_->new_task_queue = [] { return new httplib::ThreadPool(connections); };
        server_->set_socket_options([](socket_t socket) { allowQuickRestart(static_cast<std::intptr_t>(socket)); });
        server_->set_tcp_nodelay(true);
        server_->set_keep_alive_max_count(requestsPerConnection);
        server_->set_keep_alive_timeout(idleSeconds);
        server_->set_read_timeout(stalledSeconds);
        server_->set_write_timeout(stalledSeconds);
        server_->set_payload_max_length(requestBodyBytes);
        server_->set_pre_routing_handler([this](const httplib::Request& request, httplib::Response& response) {
            if (request.method != "GET" && request.method != "HEAD")
                return httplib::Server::HandlerResponse::Unhandled;
            handle(request, response);
            return httplib::Server::HandlerResponse::Handled;
        });
        // The server has read the body of any other request by then, which would count as the next request
        // otherwise.
        server_->set_error_handler([this](const httplib::Request& request, httplib::Response& response) {
            if (response.status == notFound && request.method != "GET" && request.method != "HEAD")
                handle(request, response);
        });
    }

    void bind()
    {
        if (options_.port == 0)
            port_ = server_->bind_to_any_port(options_.address);
        else
            port_ = server_->bind_to_port(options_.address, options_.port) ? options_.port : -1;
        if (port_ <= 0)
            throw ServiceError(options_.address + ":" + std::to_string(options_.port),
                               "cannot be listened on; is another program using the port?");
    }

    void handle(const httplib::Request& request, httplib::Response& response)
    {
        // Ranges are answered here; the server must not cut what is a part already. The object behind the
        // reference is the server's own and not constant.
        const_cast<httplib::Request&>(request).ranges.clear();  // NOLINT
        const SiteRequest asked = siteRequest(request);
        const SiteAnswer answer = editions_.current()->answer(asked);
        ++requests_;
        if (answer.status == 304)
            ++notModified_;
        if (!answer.file.empty() && !openBody(answer, asked, response))
            return;
        response.status = answer.status;
        for (const auto& [name, value] : answer.headers)
            response.set_header(name, value);
        if (answer.file.empty()) {
            if (answer.status != 304)
                response.set_content(answer.body, answer.type);
            const std::uint64_t bytes = asked.method == "HEAD" ? 0 : answer.body.size();
            *bodyBytes_ += bytes;
            report({asked.method, asked.target, answer.status, bytes});
        }
    }

    /// Opens the file of an answer now, so that it can be sent to its end whatever is published meanwhile.
    bool openBody(const SiteAnswer& answer, const SiteRequest& asked, httplib::Response& response)
    {
        auto file = std::make_shared<LockingFStream>(storedFile(options_.site, answer.file),
                                                     LockingFStream::in | LockingFStream::binary);
        if (!file->isOpen()) {
            response.status = 500;
            response.set_content("The site is damaged.\n", std::string(textType));
            report({asked.method, asked.target, response.status, 0});
            return false;
        }
        const auto sent = std::make_shared<std::atomic<std::uint64_t>>(0);
        const auto done = [this, asked, status = answer.status, sent](bool) {
            report({asked.method, asked.target, status, *sent});
        };
        if (answer.length == 0) {
            response.set_content("", answer.type);
            done(true);
        } else
            response.set_content_provider(answer.length, answer.type,
                                          FileBody(std::move(file), answer.offset, sent, bodyBytes_), done);
        return true;
    }

    void report(const ServedRequest& served) const
    {
        if (options_.served)
            options_.served(served);
    }

    ServiceOptions options_;
    EditionWatch editions_;
    std::unique_ptr<httplib::Server> server_;
    int port_ = -1;
    std::atomic<bool> ended_ = false;
    std::atomic<std::uint64_t> requests_ = 0;
    std::atomic<std::uint64_t> notModified_ = 0;
    const Counter bodyBytes_ = std::make_shared<std::atomic<std::uint64_t>>(0);
    std::thread thread_;
};

SiteService::SiteService(ServiceOptions options) : implementation_(std::make_unique<Implementation>(std::move(options)))
{}

SiteService::~SiteService() = default;

int SiteService::port() const noexcept
{
    return implementation_->port();
}

std::string SiteService::address() const
{
    return implementation_->origin() + std::string(paths::service);
}

std::string SiteService::manufacturersAddress() const
{
    return implementation_->origin() + std::string(paths::manufacturers);
}

std::string SiteService::logoAddress() const
{
    return implementation_->origin() + std::string(paths::logo) + "?v=1";
}

ServiceTraffic SiteService::traffic() const
{
    return implementation_->traffic();
}

}  // namespace VelkHost
