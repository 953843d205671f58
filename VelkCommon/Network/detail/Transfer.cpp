#include <VelkCommon/Network/detail/Transfer.h>

#include <VelkCommon/HostServices.h>
#include <VelkCommon/Network/WebUtils.h>
#include <VelkCommon/Network/detail/ProxyChoice.h>
#include <VelkCommon/Network/detail/Session.h>
#include <VelkCommon/Network/detail/TransferLimits.h>
#include <VelkCommon/Network/detail/UrlText.h>
#include <VelkCommon/Platform/File.h>
#include <VelkCommon/Platform/Process.h>
#include <VelkCommon/Text/PercentEncoding.h>

#include <algorithm>
#include <utility>

namespace Velk::detail {
namespace {

constexpr long receiveBuffer = 128 << 10;
constexpr long partialContent = 206;

using HeaderMap = std::map<std::string, std::vector<std::string>, WebUtils::HeaderNameCompare>;

// The last value of the header `name`; empty when there is none.
std::string headerValue(const std::string& block, const char* name)
{
    HeaderMap headers;
    WebUtils::parseReturnHeader(block, headers);
    const auto found = headers.find(name);
    return found == headers.end() ? std::string() : found->second.back();
}

// Whether another server, which a redirect leads to, must not see the header line.
bool isSecret(const std::string& line)
{
    static const HeaderMap secrets = {{"authorization", {}}, {"cookie", {}}, {"proxy-authorization", {}}};
    return secrets.count(line.substr(0, line.find(':'))) != 0;
}

std::optional<std::string> contentsOf(const fileString& path)
{
    Platform::File file = Platform::File::open(path.utf8(), Platform::File::Mode::read);
    const long long size = file.isOpen() ? file.size() : -1;
    constexpr long long limit = 64 << 20;  // many times the size of any system's bundle
    if (size < 0 || size > limit)
        return std::nullopt;
    std::string bytes(static_cast<std::size_t>(size), '\0');
    if (file.read(bytes.data(), bytes.size()) != size)
        return std::nullopt;
    return bytes;
}

}  // namespace

Transfer::Transfer(TransferRequest request, Body& body)
    : request_(std::move(request)), body_(body), address_(request_.url), headerLimit_(transferLimits().headerBytes)
{}

Transfer::~Transfer()
{
    if (session_ != nullptr)
        session_->remove(*this);
}

bool Transfer::begin(Session& session, CURL* handle) noexcept
{
    handle_ = handle;
    started_ = lastByte_ = lastReport_ = Clock::now();
    if (orFailWithoutMemory([this] { return prepare(); })) {
        session_ = &session;
        return true;
    }
    handle_ = nullptr;
    return false;
}

// Does a step. Neither libcurl, which calls for some of them, nor the other transfers of the session must see an
// exception, and lack of memory is the only one there is.
template <typename Step>
bool Transfer::orFailWithoutMemory(Step step) noexcept
{
    try {
        return step();
    } catch (...) {
        return failWithoutMemory();
    }
}

bool Transfer::failWithoutMemory() noexcept
{
    failure_.code = CURLE_OUT_OF_MEMORY;
    failure_.reason = "Out of memory";  // short enough for a string to hold it without allocating
    done_ = true;
    return false;
}

// Sets the handle up for the next request; redirects may lead to several.
bool Transfer::prepare()
{
    if (hasControlCharacter(address_))
        return fail(CURLE_URL_MALFORMAT, "The address holds a control character");
    if (!isWebAddress(address_))
        return fail(CURLE_UNSUPPORTED_PROTOCOL, "The address is neither http nor https");
    const std::string before = std::exchange(server_, serverOf(address_));
    if (server_.empty())
        return fail(CURLE_URL_MALFORMAT, "The address is no URL");
    if (!before.empty() && before != server_)
        std::erase_if(request_.headers, isSecret);
    const UnreachableServers* const unreachable = UnreachableServers::current();
    if (const auto failure = unreachable != nullptr ? unreachable->recall(server_) : std::nullopt)
        return fail(failure->code, failure->reason);
    header_.clear();
    headerBytes_ = received_ = discarded_ = 0;
    headerEnded_ = bodyBegun_ = enough_ = false;
    wanted_.reset();
    declared_ = 0;
    return setOptions() && setProxy() && setHeaders() && setCertificates();
}

bool Transfer::setOptions()
{
    curl_easy_reset(handle_);
    bool enoughMemory = true;  // an option that libcurl was built without does not matter
    const auto set = [&](CURLoption option, auto value) {
        enoughMemory = curl_easy_setopt(handle_, option, value) != CURLE_OUT_OF_MEMORY && enoughMemory;
    };
    set(CURLOPT_URL, wireForm(address_).c_str());
    set(CURLOPT_PROTOCOLS_STR, "http,https");
    if (request_.method == TransferRequest::Method::head)
        set(CURLOPT_NOBODY, 1L);
    if (request_.compressed)
        set(CURLOPT_ACCEPT_ENCODING, "gzip");
    set(CURLOPT_USERAGENT, "velk");
    set(CURLOPT_CONNECTTIMEOUT_MS, static_cast<long>(transferLimits().connect.count()));
    set(CURLOPT_HTTP_VERSION, static_cast<long>(CURL_HTTP_VERSION_2TLS));
    // Wait for a connection that is being established and can be shared, rather than open another one. Without TLS
    // this would mean waiting for the first answer, only to learn that the connection cannot be shared.
    set(CURLOPT_PIPEWAIT, isSecure(address_) ? 1L : 0L);
    set(CURLOPT_BUFFERSIZE, receiveBuffer);
    set(CURLOPT_TCP_KEEPALIVE, 1L);
    // On a machine that cannot reach the revocation lists, Schannel would otherwise refuse every certificate.
    set(CURLOPT_SSL_OPTIONS, static_cast<long>(CURLSSLOPT_REVOKE_BEST_EFFORT));
    set(CURLOPT_SUPPRESS_CONNECT_HEADERS, 1L);
    set(CURLOPT_NOSIGNAL, 1L);
    // A cancelled transfer must not wait for a name server.
    set(CURLOPT_QUICK_EXIT, 1L);
    set(CURLOPT_PRIVATE, static_cast<void*>(this));
    set(CURLOPT_ERRORBUFFER, static_cast<char*>(errorText_));
    set(CURLOPT_HEADERFUNCTION, &Transfer::headerArrived);
    set(CURLOPT_HEADERDATA, static_cast<void*>(this));
    set(CURLOPT_WRITEFUNCTION, &Transfer::bodyArrived);
    set(CURLOPT_WRITEDATA, static_cast<void*>(this));
    errorText_[0] = '\0';
    return enoughMemory || failWithoutMemory();
}

bool Transfer::setProxy()
{
    const std::string proxy = proxyOfSystem(server_, [this] { return tick(Clock::now()); });
    if (done_)
        return false;
    return proxy.empty() || curl_easy_setopt(handle_, CURLOPT_PROXY, proxy.c_str()) != CURLE_OUT_OF_MEMORY ||
           failWithoutMemory();
}

bool Transfer::setHeaders()
{
    headerList_.reset();
    for (const std::string& line : request_.headers) {
        if (!isHeaderLine(line))
            return fail(CURLE_BAD_FUNCTION_ARGUMENT, "A header line holds a control character");
        curl_slist* const longer = curl_slist_append(headerList_.get(), line.c_str());
        if (longer == nullptr)
            return failWithoutMemory();
        static_cast<void>(headerList_.release());
        headerList_.reset(longer);
    }
    curl_easy_setopt(handle_, CURLOPT_HTTPHEADER, headerList_.get());
    return true;
}

bool Transfer::setCertificates()
{
    const fileString file = host()->certificateFile;
    if (file.empty() || !isSecure(address_))
        return true;
    // The certificates are passed as bytes, because libcurl does not take UTF-8 paths on every system.
    std::optional<std::string> bytes = contentsOf(file);
    if (!bytes)
        return fail(CURLE_SSL_CACERT_BADFILE, "Cannot read the certificates " + file.humanReadableString());
    curl_blob blob{bytes->data(), bytes->size(), CURL_BLOB_COPY};
    // Without them libcurl would take those of the system.
    return curl_easy_setopt(handle_, CURLOPT_CAINFO_BLOB, &blob) != CURLE_OUT_OF_MEMORY || failWithoutMemory();
}

std::size_t Transfer::headerArrived(char* bytes, std::size_t, std::size_t size, void* self) noexcept
{
    auto& transfer = *static_cast<Transfer*>(self);
    return transfer.orFailWithoutMemory([&] { return transfer.takeHeader({bytes, size}); }) ? size : 0;
}

std::size_t Transfer::bodyArrived(char* bytes, std::size_t, std::size_t size, void* self) noexcept
{
    auto& transfer = *static_cast<Transfer*>(self);
    const bool taken = transfer.orFailWithoutMemory([&] { return transfer.takeBody({bytes, size}); });
    return taken ? size : CURL_WRITEFUNC_ERROR;
}

bool Transfer::takeHeader(std::string_view line)
{
    lastByte_ = Clock::now();
    if (UnreachableServers* const servers = UnreachableServers::current(); headerBytes_ == 0 && servers != nullptr)
        servers->noteAnswer(server_);
    // A second header block belongs to the final answer, which follows an interim one.
    if (headerEnded_ && line.starts_with("HTTP/")) {
        header_.clear();
        headerEnded_ = false;
    }
    headerBytes_ += line.size();
    if (headerBytes_ > headerLimit_)
        return fail(CURLE_RECV_ERROR, "The header is larger than " + std::to_string(headerLimit_) + " bytes");
    if (headerEnded_)
        return true;  // trailers of a chunked body are not part of the header
    header_ += line;
    headerEnded_ = line == "\r\n" || line == "\n";
    return true;
}

bool Transfer::takeBody(std::string_view bytes)
{
    lastByte_ = Clock::now();
    if (!wanted_)
        wanted_ = wantsBody();
    if (!*wanted_)
        return discard(bytes.size());
    if (!bodyBegun_ && !beginBody())
        return false;
    while (!bytes.empty()) {
        const std::string_view block = bytes.substr(0, progressBlock);
        if (!body_.take(block))
            return false;
        received_ += block.size();
        if (!reportProgress())
            return false;
        bytes.remove_prefix(block.size());
    }
    return true;
}

bool Transfer::discard(std::size_t size)
{
    discarded_ += size;
    enough_ = discarded_ > discardedBytes;
    return !enough_;
}

bool Transfer::beginBody()
{
    curl_off_t length = -1;
    curl_easy_getinfo(handle_, CURLINFO_CONTENT_LENGTH_DOWNLOAD_T, &length);
    bodyBegun_ = true;
    declared_ = length > 0 ? static_cast<double>(length) : 0;
    return body_.begin(length >= 0 ? std::optional(static_cast<std::uint64_t>(length)) : std::nullopt);
}

bool Transfer::reportProgress()
{
    if (request_.progress == nullptr)
        return true;
    try {
        aborted_ = request_.progress(request_.progressData, declared_, static_cast<double>(received_), 0, 0) != 0;
    } catch (...) {
        aborted_ = true;
    }
    lastReport_ = lastByte_;
    return !aborted_;
}

bool Transfer::isSuccess(long status) noexcept
{
    // Partial content was never asked for, and would pass for the whole file.
    return status >= 200 && status < 300 && status != partialContent;
}

bool Transfer::isRedirect() const
{
    long status = 0;
    curl_easy_getinfo(handle_, CURLINFO_RESPONSE_CODE, &status);
    const bool leadsOn = status == 301 || status == 302 || status == 303 || status == 307 || status == 308;
    return leadsOn && !headerValue(header_, "Location").empty();
}

bool Transfer::wantsBody() const
{
    long status = 0;
    curl_easy_getinfo(handle_, CURLINFO_RESPONSE_CODE, &status);
    switch (request_.wanted) {
        case TransferRequest::Wanted::success:
            return isSuccess(status);
        case TransferRequest::Wanted::all:
            return !isRedirect();
        default:
            return false;
    }
}

bool Transfer::goOn(CURLcode code) noexcept
{
    return orFailWithoutMemory([&] { return takeEnd(code); });
}

bool Transfer::takeEnd(CURLcode code)
{
    if (done_)
        return false;
    if (aborted_)
        return fail(CURLE_ABORTED_BY_CALLBACK, curl_easy_strerror(CURLE_ABORTED_BY_CALLBACK));
    if (body_.failure().code != 0)
        return fail(body_.failure().code, body_.failure().reason);
    if (code != CURLE_OK && !enough_)
        return failFrom(code);
    if (!headerEnded_)
        return fail(CURLE_PARTIAL_FILE, "The header is incomplete");
    if (isRedirect())
        return follow(headerValue(header_, "Location"));
    finish();
    return false;
}

bool Transfer::follow(const std::string& location)
{
    if (++redirects_ > redirectLimit)
        return fail(CURLE_TOO_MANY_REDIRECTS, "More than " + std::to_string(redirectLimit) + " redirects");
    if (hasControlCharacter(location))
        return fail(CURLE_URL_MALFORMAT, "A redirect's address holds a control character");
    const std::string next = resolved(address_, location);
    if (!isWebAddress(next))
        return fail(CURLE_UNSUPPORTED_PROTOCOL,
                    "A redirect leads to what is neither http nor https: " + WebUtils::withoutUserInfo(location));
    if (isSecure(address_) && !isSecure(next))
        return fail(CURLE_UNSUPPORTED_PROTOCOL,
                    "A redirect leads from https to http: " + WebUtils::withoutUserInfo(location));
    address_ = next;
    return prepare();
}

void Transfer::finish()
{
    curl_easy_getinfo(handle_, CURLINFO_RESPONSE_CODE, &status_);
    if (wantsBody() && ((!bodyBegun_ && !beginBody()) || !body_.end())) {
        fail(body_.failure().code, body_.failure().reason);
        return;
    }
    done_ = true;
}

bool Transfer::tick(Clock::time_point now) noexcept
{
    return orFailWithoutMemory([&] { return checkTimes(now); });
}

bool Transfer::checkTimes(Clock::time_point now)
{
    const auto tick = transferLimits().tick;
    if (request_.progress != nullptr && now - lastReport_ >= tick) {
        if (!reportProgress())
            return fail(CURLE_ABORTED_BY_CALLBACK, curl_easy_strerror(CURLE_ABORTED_BY_CALLBACK));
        lastReport_ = now;
    }
    if (request_.progress == nullptr && Curl::Stoppable::isStopped())
        return fail(CURLE_ABORTED_BY_CALLBACK, curl_easy_strerror(CURLE_ABORTED_BY_CALLBACK));
    if (request_.silence && now - lastByte_ > *request_.silence)
        return failLate("Nothing arrived for too long");
    if (request_.total) {
        const std::chrono::seconds more(request_.slowest ? received_ / *request_.slowest : 0);
        if (now - started_ > *request_.total + more)
            return failLate("The transfer took too long");
    }
    return true;
}

bool Transfer::fail(unsigned int code, std::string reason)
{
    failure_ = {code, std::move(reason)};
    done_ = true;
    return false;
}

bool Transfer::failFrom(CURLcode code)
{
    // libcurl passes on what the system says.
    const std::string reason = WebUtils::withoutUserInfo(
        Platform::utf8OfSystemText(errorText_[0] != '\0' ? errorText_ : curl_easy_strerror(code)));
    curl_off_t untilRequest = 0;
    curl_easy_getinfo(handle_, CURLINFO_PRETRANSFER_TIME_T, &untilRequest);
    const bool neverConnected = code == CURLE_OPERATION_TIMEDOUT && untilRequest == 0;
    const bool unreachable = neverConnected || code == CURLE_COULDNT_RESOLVE_HOST ||
                             code == CURLE_COULDNT_RESOLVE_PROXY || code == CURLE_COULDNT_CONNECT;
    if (UnreachableServers* const servers = UnreachableServers::current(); unreachable && servers != nullptr)
        servers->remember(server_, {code, reason});
    return fail(code, reason);
}

// A time-out has ended the transfer. A server that has answered other requests of the run is merely slow with this one.
bool Transfer::failLate(const char* reason)
{
    UnreachableServers* const servers = UnreachableServers::current();
    if (servers != nullptr && headerBytes_ == 0 && !servers->hasAnswered(server_))
        servers->remember(server_, {CURLE_OPERATION_TIMEDOUT, reason});
    return fail(CURLE_OPERATION_TIMEDOUT, reason);
}

}  // namespace Velk::detail
