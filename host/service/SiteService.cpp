#include "host/service/SiteService.h"

#include "host/service/SiteAnswer.h"
#include "host/support/FileError.h"

#include <VelkCommon/Files/LockingFStream.h>

#include <atomic>

namespace VelkHost {
namespace {

/// Keeps the edition in force in memory. One thread.
class EditionWatch
{
public:
    explicit EditionWatch(fileString site) : site_(std::move(site)) { current(); }

    /// The edition in force now; while its switch or table is damaged, the last one that could be read.
    std::shared_ptr<const SiteEdition> current()
    {
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
    std::string name_;
    std::shared_ptr<const SiteEdition> edition_;
};

SiteRequest siteRequest(const RequestHead& head)
{
    return {head.method, head.target, std::string(head.field("If-None-Match")), std::string(head.field("If-Range")),
            std::string(head.field("Range"))};
}

/// A part of an open file. Tells of the request when it has been sent, as far as it was.
class FileBody : public BodySource
{
public:
    FileBody(std::unique_ptr<LockingFStream> file, std::atomic<std::uint64_t>& allSent, ServedRequest served,
             const std::function<void(const ServedRequest&)>& report)
        : file_(std::move(file)), allSent_(allSent), served_(std::move(served)), report_(report)
    {}

    ~FileBody() override
    {
        try {
            if (report_)
                report_(served_);
        } catch (const std::exception&) {
            // A request that cannot be told of was answered all the same.
            return;
        }
    }

    std::string next(std::size_t most) override
    {
        std::string block(most, '\0');
        file_->read(block.data(), static_cast<std::streamsize>(most));
        block.resize(static_cast<std::size_t>(file_->gcount()));
        // Counted before it is sent, so that whoever has received it finds it counted.
        served_.bodyBytes += block.size();
        allSent_ += block.size();
        return block;
    }

private:
    std::unique_ptr<LockingFStream> file_;
    std::atomic<std::uint64_t>& allSent_;
    ServedRequest served_;
    const std::function<void(const ServedRequest&)>& report_;
};

}  // namespace

class SiteService::Implementation
{
public:
    explicit Implementation(ServiceOptions options)
        : options_(std::move(options)),
          editions_(options_.site),
          server_(options_.address, options_.port, options_.tls, options_.limits,
                  [this](const RequestHead& head) { return answer(siteRequest(head)); })
    {}

    int port() const noexcept { return server_.port(); }
    ServiceTraffic traffic() const { return {requests_, notModified_, bodyBytes_}; }

    std::string origin() const
    {
        const bool ipv6 = options_.address.find(':') != std::string::npos;
        return std::string(options_.tls ? "https" : "http") + "://" +
               (ipv6 ? "[" + options_.address + "]" : options_.address) + ":" + std::to_string(port());
    }

private:
    HttpAnswer answer(const SiteRequest& asked)
    {
        const SiteAnswer found = editions_.current()->answer(asked);
        ++requests_;
        if (found.status == 304)
            ++notModified_;
        if (!found.file.empty())
            return fileAnswer(found, asked);
        HttpAnswer answer;
        answer.status = found.status;
        answer.fields = found.headers;
        if (!found.type.empty())
            answer.fields.emplace_back("Content-Type", found.type);
        answer.text = found.body;
        const std::uint64_t bytes = asked.method == "HEAD" ? 0 : found.body.size();
        bodyBytes_ += bytes;
        report({asked.method, asked.target, found.status, bytes});
        return answer;
    }

    /// Opens the file now, so that it can be sent to its end whatever is published meanwhile.
    HttpAnswer fileAnswer(const SiteAnswer& found, const SiteRequest& asked)
    {
        HttpAnswer answer;
        auto file = std::make_unique<LockingFStream>(storedFile(options_.site, found.file),
                                                     LockingFStream::in | LockingFStream::binary);
        if (!file->isOpen()) {
            answer.status = 500;
            answer.fields = {{"Content-Type", std::string(textType)}};
            answer.text = "The site is damaged.\n";
            report({asked.method, asked.target, answer.status, 0});
            return answer;
        }
        file->seekg(static_cast<std::streamoff>(found.offset));
        answer.status = found.status;
        answer.fields = found.headers;
        answer.fields.emplace_back("Content-Type", found.type);
        answer.length = found.length;
        answer.source = std::make_unique<FileBody>(
            std::move(file), bodyBytes_, ServedRequest{asked.method, asked.target, found.status, 0}, options_.served);
        return answer;
    }

    void report(const ServedRequest& served) const
    {
        if (options_.served)
            options_.served(served);
    }

    ServiceOptions options_;
    EditionWatch editions_;
    std::atomic<std::uint64_t> requests_ = 0;
    std::atomic<std::uint64_t> notModified_ = 0;
    std::atomic<std::uint64_t> bodyBytes_ = 0;
    HttpServer server_;  // last, as its thread uses the others
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
