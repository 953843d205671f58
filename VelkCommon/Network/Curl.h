#pragma once

#include <VelkCommon/Export.h>
#include <VelkCommon/Files/fileString.h>

#include <cstddef>
#include <functional>
#include <memory>
#include <stop_token>
#include <string>
#include <vector>

namespace Velk::detail {
class UnreachableServers;
}

/// Transfers over HTTP and HTTPS: one process-wide instance, Curl::get(), for any number of threads.
///
/// Connections are kept and used again, by HTTP/2 where the server has it; a thread's calls one after
/// the other to one server need one connection. Certificates and host names are verified against the
/// system's certificates or those of HostServices::certificateFile. Proxies come from the environment
/// (http_proxy, https_proxy, all_proxy, no_proxy). At most 10 redirects are followed, to http and https
/// only, and never from https to http. There are no cookies and no stored passwords.
///
/// Addresses may hold what a URL cannot carry (blanks, umlauts, quotes): such bytes are percent-encoded
/// on the wire, all others, "%", "&", "#" and "+" included, stay. An address or header line with a
/// control character is refused: nothing is sent, the call fails.
///
/// Every call asks anew, but for those of a Curl::Run, which ends in seconds when there is no network.
///
/// Nothing throws, but what a caller's function throws passes through where it says so. Output
/// parameters are replaced. Codes of failures are those of libcurl; in use are in particular 22 (the
/// answer's HTTP status is no success; the reason is "HTTP status N") and 42 (the progress callback
/// ended the transfer).
class VELKCOMMON_EXPORT Curl
{
public:
    /// Called during a transfer with the caller's data, the bytes to receive (0 when unknown), the bytes
    /// received so far, and twice 0 (nothing is sent). A result other than 0 ends the transfer. Called
    /// on the thread of the transfer for each block of at most 4 KiB, and four times a second while
    /// nothing arrives, also before the connection stands. Must not throw; one that does ends the transfer.
    using Progress = int (*)(void* data, double toReceive, double received, double toSend, double sent);

    /// One request of getURLHeaders().
    struct HeaderRequest
    {
        std::string url;                   ///< the address
        std::vector<std::string> headers;  ///< complete lines without line ends
    };
    /// What came of it; the meaning of the three is that of getURLHeader().
    struct HeaderAnswer
    {
        bool received = false;  ///< a complete answer came, whatever its status
        std::string header;     ///< the last answer's header block as it came
        long responseCode = 0;  ///< the HTTP status
    };

    /// The shared instance.
    static const Curl& get();

    /// `text` is an address that the operations below can fetch: "http://" or "https://" in any letter
    /// case, followed by a host. Asks nobody.
    static bool downloadable(const std::string& text);

    /// Fetches the body into a new file in the temporary folder and returns its path; empty on failure.
    /// The caller deletes the file. It keeps the extension of the address, when that has a plain one.
    /// Ends after 60 s without a byte, and after 120 s when fewer than 64 KiB a second came since.
    fileString download(const std::string& url) const;

    /// Fetches the body into the file `target`. True when the answer is a success (2xx) and complete. The
    /// body goes to a sibling that is renamed over `target` at the end; on failure the sibling is removed
    /// and `target` is as it was. On failure `reason` and `code` say why; otherwise they are empty and 0.
    ///
    /// `headers` are complete lines without line ends. `progress` may be null, then the time-outs of the
    /// short form hold; with it only connecting has one (15 s), and the callback decides what a stall is.
    /// Ends (code 23) when less than 256 MiB of the disk would remain.
    bool download_to_location(const std::string& url, const fileString& target, const std::vector<std::string>& headers,
                              void* data, int (*progress)(void*, double, double, double, double), std::string& reason,
                              unsigned int& code) const;

    /// The same for small files: without headers and progress, at most 64 MiB, 60 s without a byte and
    /// 120 s in all.
    bool download_to_location(const std::string& url, const fileString& target, std::string& reason) const;

    /// Asks for the header alone (HEAD) and returns true for any complete answer, whatever its status;
    /// `header` is then the raw header block (the last one, after redirects), status line included, and
    /// `responseCode` the HTTP status. On failure they are empty and 0. At most 30 s and 256 KiB.
    bool getURLHeader(const std::string& url, const std::vector<std::string>& headers, std::string& header,
                      long& responseCode) const;

    /// getURLHeader() for many requests that overlap: at most 8 are on their way at a time, over at most 8
    /// connections to a server, as a Run of their own. `answered` is called once for each request, in the order of
    /// `requests`, on the calling thread, as soon as its answer and those before it are there; it may use this class
    /// (the other requests go on meanwhile). What it throws passes through, and the remaining requests are given up.
    void getURLHeaders(const std::vector<HeaderRequest>& requests,
                       const std::function<void(std::size_t index, const HeaderAnswer& answer)>& answered) const;

    /// Fetches a text (GET), compressed on the way where the server can. True when the answer is a
    /// success (2xx); `body` holds the body of any complete answer, also of another status, and is empty
    /// otherwise. At most 8 MiB, 60 s without a byte and 120 s in all. The last two arguments have no
    /// effect.
    bool browseURL(const std::string& url, const std::vector<std::string>& headers, std::string& body, bool,
                   long) const;

    /// Many transfers that belong together: while it lives, a server that cannot be found, refuses the connection
    /// or does not answer to it within 15 s is not asked again by the thread for 30 s. Calls that need it fail at
    /// once, for the same reason. Destroyed by the thread that made it; a run within a run belongs to the outer
    /// one. May throw `std::bad_alloc`.
    class VELKCOMMON_EXPORT Run
    {
    public:
        /// Begins one, or joins that of the thread.
        Run();
        ~Run();
        Run(const Run&) = delete;
        Run& operator=(const Run&) = delete;

    private:
        std::unique_ptr<Velk::detail::UnreachableServers> unreachable_;
    };

    /// While it lives, transfers of the thread without a progress callback can be stopped: within a second of the
    /// request they fail (code 42), and so do those that begin later. Destroyed by the thread that made it; within
    /// another one, the inner one counts.
    class VELKCOMMON_EXPORT Stoppable
    {
    public:
        /// They stop when `stop` is requested to.
        explicit Stoppable(std::stop_token stop);
        ~Stoppable();
        Stoppable(const Stoppable&) = delete;
        Stoppable& operator=(const Stoppable&) = delete;

        /// The thread's transfers are to stop.
        static bool isStopped();

    private:
        std::stop_token stop_;
        const Stoppable* outer_;
    };

private:
    Curl();
};
