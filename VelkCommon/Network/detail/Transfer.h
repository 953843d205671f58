#pragma once

#include <VelkCommon/Network/Curl.h>
#include <VelkCommon/Network/detail/Body.h>

#include <curl/curl.h>

#include <chrono>
#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace Velk::detail {

class Session;

/// What to ask for, and how long it may take.
struct TransferRequest
{
    enum class Method { head, get };
    /// The answers whose body is wanted; that of a redirect never is.
    enum class Wanted { none, success, all };

    std::string url;
    std::vector<std::string> headers;
    Method method = Method::get;
    Wanted wanted = Wanted::none;
    bool compressed = false;
    Curl::Progress progress = nullptr;
    void* progressData = nullptr;
    std::optional<std::chrono::milliseconds> silence;
    std::optional<std::chrono::milliseconds> total;
    std::optional<std::uint64_t> slowest;  ///< `total` grows by a second for every so many bytes received
};

/// A request with its redirects up to the complete answer, or to a failure. A session runs it; it must not
/// outlive the session while it runs.
class Transfer
{
public:
    using Clock = std::chrono::steady_clock;

    /// `body` must outlive the transfer.
    Transfer(TransferRequest request, Body& body);
    ~Transfer();
    Transfer(const Transfer&) = delete;
    Transfer& operator=(const Transfer&) = delete;

    bool done() const noexcept { return done_; }
    /// When it began.
    Clock::time_point started() const noexcept { return started_; }
    /// True while nothing has been received yet.
    bool isSilent() const noexcept { return redirects_ == 0 && headerBytes_ == 0; }

    // Valid once the transfer is done:
    /// True when there is a complete answer, whatever its status.
    bool answered() const noexcept { return failure_.code == CURLE_OK; }
    const TransferFailure& failure() const noexcept { return failure_; }
    long status() const noexcept { return status_; }
    /// True when the status is 2xx and the answer holds the whole file, not a part.
    bool succeeded() const noexcept { return answered() && isSuccess(status_); }
    /// The last answer's header block.
    std::string& header() noexcept { return header_; }
    /// The address after all redirects.
    const std::string& address() const noexcept { return address_; }

private:
    friend class Session;

    // For the session:
    /// Sets `handle` up for the first request. False when no request can be made; the transfer is done then.
    bool begin(Session& session, CURL* handle) noexcept;
    /// The request has ended with `code`. True when the handle is set up for the next one.
    bool goOn(CURLcode code) noexcept;
    /// Ends the transfer, which could not get the memory that it needs. Always returns false.
    bool failWithoutMemory() noexcept;
    /// Calls the progress callback when it is due, and checks the time-outs. False when the transfer must
    /// end; it is done then.
    bool tick(Clock::time_point now) noexcept;

    static bool isSuccess(long status) noexcept;
    bool isRedirect() const;
    bool wantsBody() const;

    template <typename Step>
    bool orFailWithoutMemory(Step step) noexcept;

    bool prepare();
    bool setOptions();
    bool setProxy();
    bool setHeaders();
    bool setCertificates();

    static std::size_t headerArrived(char* bytes, std::size_t, std::size_t size, void* self) noexcept;
    static std::size_t bodyArrived(char* bytes, std::size_t, std::size_t size, void* self) noexcept;
    bool takeHeader(std::string_view line);
    bool takeBody(std::string_view bytes);
    bool discard(std::size_t size);
    bool beginBody();
    bool reportProgress();

    bool takeEnd(CURLcode code);
    bool checkTimes(Clock::time_point now);
    bool follow(const std::string& location);
    void finish();
    bool fail(unsigned int code, std::string reason);
    bool failFrom(CURLcode code);
    bool failLate(const char* reason);

    TransferRequest request_;
    Body& body_;
    std::string address_;
    std::string server_;
    int redirects_ = 0;
    std::uint64_t headerLimit_;

    Session* session_ = nullptr;
    CURL* handle_ = nullptr;
    std::unique_ptr<curl_slist, decltype(&curl_slist_free_all)> headerList_{nullptr, &curl_slist_free_all};
    char errorText_[CURL_ERROR_SIZE] = "";

    Clock::time_point started_;
    Clock::time_point lastByte_;
    Clock::time_point lastReport_;

    // Of the answer that is arriving:
    std::string header_;
    std::uint64_t headerBytes_ = 0;  // of all its header blocks
    bool headerEnded_ = false;
    std::optional<bool> wanted_;  // whether its body is, once one arrives
    bool bodyBegun_ = false;
    bool enough_ = false;  // nobody needs the rest of the body
    double declared_ = 0;
    std::uint64_t received_ = 0;
    std::uint64_t discarded_ = 0;

    bool aborted_ = false;
    bool done_ = false;
    long status_ = 0;
    TransferFailure failure_;
};

}  // namespace Velk::detail
