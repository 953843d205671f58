#include <VelkCommon/Network/Curl.h>

#include <VelkCommon/Network/detail/HeaderBatch.h>
#include <VelkCommon/Network/detail/Requests.h>
#include <VelkCommon/Network/detail/Session.h>
#include <VelkCommon/Network/detail/UnreachableServers.h>
#include <VelkCommon/Network/detail/UrlText.h>
#include <VelkCommon/Text/Ascii.h>
#include <VelkCommon/detail/Guarded.h>

#include <algorithm>
#include <utility>

namespace detail = Velk::detail;

namespace {

using detail::Transfer;
using detail::TransferRequest;
using Wanted = TransferRequest::Wanted;

constexpr std::size_t extensionLimit = 16;

thread_local const Curl::Stoppable* stoppable = nullptr;

// The extension of the address's path, if every system accepts it in a file name; otherwise "".
std::string extensionOf(const std::string& url)
{
    const std::string path = url.substr(0, url.find_first_of("?#"));
    const std::size_t dot = path.find_last_of("./");
    const std::size_t host = path.find("//");
    if (dot == std::string::npos || path[dot] != '.' || path.find('/', host + 2) > dot)
        return {};
    std::string extension = path.substr(dot);
    const auto isPlain = [](char c) { return Velk::Ascii::isDigit(c) || Velk::Ascii::isLetter(c); };
    if (extension.size() < 2 || extension.size() > extensionLimit ||
        !std::all_of(extension.begin() + 1, extension.end(), isPlain))
        return {};
    return extension;
}

// Whether and why an ended transfer is no success.
detail::TransferFailure failureIn(const Transfer& transfer)
{
    if (!transfer.answered() || transfer.succeeded())
        return transfer.failure();
    return {CURLE_HTTP_RETURNED_ERROR, "HTTP status " + std::to_string(transfer.status())};
}

// Runs `request` with the file as its destination, and says whether and why it failed.
detail::TransferFailure fetch(TransferRequest request, detail::FileBody body)
{
    Transfer transfer(std::move(request), body);
    detail::run(transfer);
    return failureIn(transfer);
}

// How `transfer` failed, if it did: the failure that it returns, or lack of memory, its only exception.
template <typename Operation>
detail::TransferFailure failureOf(Operation transfer) noexcept
{
    return Velk::guarded(transfer, detail::TransferFailure{CURLE_OUT_OF_MEMORY, "Out of memory"});
}

}  // namespace

Curl::Curl() = default;

const Curl& Curl::get()
{
    static const Curl instance;
    return instance;
}

bool Curl::downloadable(const std::string& text)
{
    return detail::isWebAddress(text);
}

fileString Curl::download(const std::string& url) const
{
    try {
        fileString target;
        target.generateAsTempName(extensionOf(url));
        TransferRequest request = detail::bodyRequest(url, {}, Wanted::success);
        request.slowest = detail::transferLimits().slowest;
        if (fetch(std::move(request), {target, std::nullopt}).code != CURLE_OK)
            return {};
        return target;  // moved: a copy that fails would leave the file behind
    } catch (...) {
        return {};
    }
}

bool Curl::download_to_location(const std::string& url, const fileString& target,
                                const std::vector<std::string>& headers, void* data, Progress progress,
                                std::string& reason, unsigned int& code) const
{
    detail::TransferFailure failure = failureOf([&] {
        TransferRequest request = detail::bodyRequest(url, headers, Wanted::success);
        if (progress != nullptr) {
            request.progress = progress;
            request.progressData = data;
            request.silence = request.total = std::nullopt;
        }
        return fetch(std::move(request), {target, std::nullopt});
    });
    reason = std::move(failure.reason);
    code = failure.code;
    return code == CURLE_OK;
}

bool Curl::download_to_location(const std::string& url, const fileString& target, std::string& reason) const
{
    detail::TransferFailure failure = failureOf([&] {
        return fetch(detail::bodyRequest(url, {}, Wanted::success), {target, detail::transferLimits().shortFormBytes});
    });
    reason = std::move(failure.reason);
    return failure.code == CURLE_OK;
}

bool Curl::getURLHeader(const std::string& url, const std::vector<std::string>& headers, std::string& header,
                        long& responseCode) const
{
    header.clear();
    responseCode = 0;
    const detail::TransferFailure failure = failureOf([&] {
        detail::NoBody body;
        Transfer transfer(detail::headerRequest(url, headers), body);
        detail::run(transfer);
        if (transfer.answered()) {
            header = std::move(transfer.header());
            responseCode = transfer.status();
        }
        return transfer.failure();
    });
    return failure.code == CURLE_OK;
}

void Curl::getURLHeaders(const std::vector<HeaderRequest>& requests,
                         const std::function<void(std::size_t index, const HeaderAnswer& answer)>& answered) const
{
    detail::requestHeaders(requests, answered);
}

bool Curl::browseURL(const std::string& url, const std::vector<std::string>& headers, std::string& body, bool,
                     long) const
{
    std::string reason;
    unsigned int code = 0;
    return browseURL(url, headers, body, reason, code);
}

bool Curl::browseURL(const std::string& url, const std::vector<std::string>& headers, std::string& body,
                     std::string& reason, unsigned int& code) const
{
    body.clear();
    detail::TransferFailure failure = failureOf([&] {
        detail::TextBody text(detail::transferLimits().textBytes);
        TransferRequest request = detail::bodyRequest(url, headers, Wanted::all);
        request.compressed = true;
        Transfer transfer(std::move(request), text);
        detail::run(transfer);
        if (transfer.answered())
            body = std::move(text.text());
        return failureIn(transfer);
    });
    reason = std::move(failure.reason);
    code = failure.code;
    return code == CURLE_OK;
}

Curl::Run::Run()
{
    if (detail::UnreachableServers::current() != nullptr)
        return;
    unreachable_ = std::make_unique<detail::UnreachableServers>();
    detail::UnreachableServers::setCurrent(unreachable_.get());
}

Curl::Run::~Run()
{
    if (unreachable_ != nullptr)
        detail::UnreachableServers::setCurrent(nullptr);
}

Curl::Stoppable::Stoppable(std::stop_token stop) : stop_(std::move(stop)), outer_(std::exchange(stoppable, this)) {}

Curl::Stoppable::~Stoppable()
{
    stoppable = outer_;
}

bool Curl::Stoppable::isStopped()
{
    return stoppable != nullptr && stoppable->stop_.stop_requested();
}
