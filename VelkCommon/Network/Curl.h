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
/// Connections are kept and reused, with HTTP/2 where the server supports it; successive calls of a thread
/// to the same server share one connection. Certificates and host names are verified against the
/// system's certificates or those of HostServices::certificateFile. Proxies come from the environment
/// (http_proxy, https_proxy, all_proxy, no_proxy); where it has none of these, on Windows from the system's settings,
/// in which a script may name them. At most 10 redirects are followed, to http and https
/// only, and never from https to http. There are no cookies and no stored passwords.
///
/// Addresses may hold what a URL cannot carry (blanks, umlauts, quotes): such bytes are percent-encoded
/// on the wire; all others, including "%", "&", "#" and "+", are sent unchanged. An address or header line
/// with a control character is refused: nothing is sent, and the call fails.
///
/// Every call asks the server again. Only within a Curl::Run is a server that could not be reached, or never
/// answers, left alone for a while, so that a run of many calls ends soon when there is no network.
///
/// No operation throws, except where it says so. Output parameters are replaced. Failure codes are those of libcurl,
/// in particular 22 (the answer's HTTP status is not a success; the reason is "HTTP status N"), 27 (there was too
/// little memory) and 42 (the progress callback ended the transfer). No reason holds a user's name or password that
/// is part of an address.
class VELKCOMMON_EXPORT Curl
{
public:
    /// Called during a transfer with the caller's data, the bytes to receive (0 when unknown), the bytes
    /// received so far, and 0 twice (nothing is sent). A result other than 0 ends the transfer. Called
    /// on the thread of the transfer for each block of at most 4 KiB, and four times a second while
    /// nothing arrives, even before the connection is established. Must not throw; an exception ends the
    /// transfer.
    using Progress = int (*)(void* data, double toReceive, double received, double toSend, double sent);

    /// One request of getURLHeaders().
    struct HeaderRequest
    {
        std::string url;                   ///< the address
        std::vector<std::string> headers;  ///< complete lines without line ends
    };
    /// The outcome of one request of getURLHeaders(), with the same meanings as in getURLHeader().
    struct HeaderAnswer
    {
        bool received = false;  ///< a complete answer came, whatever its status
        std::string header;     ///< the last answer's header block as it came
        long responseCode = 0;  ///< the HTTP status
        std::string reason;     ///< why no complete answer came; empty when one did
        unsigned int code = 0;  ///< the failure's code; 0 when a complete answer came
    };

    /// The shared instance.
    static const Curl& get();

    /// `text` is an address that the operations below can fetch: "http://" or "https://" in any letter
    /// case, followed by a host. Sends nothing.
    static bool downloadable(const std::string& text);

    /// Fetches the body into a new file in the temporary folder and returns its path; empty on failure.
    /// The caller deletes the file. It has the same extension as the address, if that is a plain one.
    /// Gives up after 60 s without a byte, and after 120 s in all plus a second for every 64 KiB received.
    fileString download(const std::string& url) const;

    /// Fetches the body into the file `target`. True when the answer is a success (2xx) and complete. The
    /// body goes to a sibling that is renamed over `target` at the end; on failure the sibling is removed
    /// and `target` is unchanged. On failure `reason` and `code` say why; otherwise they are empty and 0.
    ///
    /// `headers` are complete lines without line ends. `progress` may be null; then the time-outs of the
    /// short form apply. With a callback only connecting has a time-out (15 s), and the callback decides what
    /// counts as a stall. Fails (code 23) when less than 256 MiB of the disk would remain free.
    bool download_to_location(const std::string& url, const fileString& target, const std::vector<std::string>& headers,
                              void* data, int (*progress)(void*, double, double, double, double), std::string& reason,
                              unsigned int& code) const;

    /// The same for small files: without headers or progress, with at most 64 MiB, 60 s without a byte and
    /// 120 s in all.
    bool download_to_location(const std::string& url, const fileString& target, std::string& reason) const;

    /// Asks for the header alone (HEAD) and returns true for any complete answer, whatever its status;
    /// `header` is then the raw header block (the last one, after redirects), status line included, and
    /// `responseCode` the HTTP status. On failure they are empty and 0. At most 30 s and 256 KiB.
    bool getURLHeader(const std::string& url, const std::vector<std::string>& headers, std::string& header,
                      long& responseCode) const;

    /// getURLHeader() for many requests that overlap: at most 8 are under way at a time, over at most 8
    /// connections to a server, and together they form a Run. `answered` is called once for each request, in the order
    /// of `requests`, on the calling thread, as soon as its answer and those before it have arrived; it may use this
    /// class (the other requests go on meanwhile). Its exceptions pass through, and the remaining requests are
    /// given up. May throw `std::bad_alloc`, with the same consequence.
    void getURLHeaders(const std::vector<HeaderRequest>& requests,
                       const std::function<void(std::size_t index, const HeaderAnswer& answer)>& answered) const;

    /// Fetches a text (GET), compressed in transit where the server supports it. True when the answer is a
    /// success (2xx); `body` holds the body of any complete answer, whatever its status, and is empty
    /// otherwise. At most 8 MiB, 60 s without a byte and 120 s in all. The last two arguments have no
    /// effect.
    bool browseURL(const std::string& url, const std::vector<std::string>& headers, std::string& body, bool,
                   long) const;

    /// The same, and says why there is no success: `reason` and `code` as for download_to_location(); otherwise they
    /// are empty and 0.
    bool browseURL(const std::string& url, const std::vector<std::string>& headers, std::string& body,
                   std::string& reason, unsigned int& code) const;

    /// Many transfers that belong together. While the object lives, the thread does not ask a server again for
    /// 30 s if the server could not be found, refused the connection or did not accept it within 15 s, or if a
    /// transfer timed out without a byte from a server that has answered nothing at all in this run. Calls that
    /// need this server fail at once, for the same reason. Must be destroyed by the thread that made it; a run
    /// within a run joins the outer one. May throw `std::bad_alloc`.
    class VELKCOMMON_EXPORT Run
    {
    public:
        /// Begins a run, or joins the one that the thread is in.
        Run();
        ~Run();
        Run(const Run&) = delete;
        Run& operator=(const Run&) = delete;

    private:
        std::unique_ptr<Velk::detail::UnreachableServers> unreachable_;
    };

    /// While the object lives, the thread's transfers without a progress callback can be stopped: within a second
    /// of the request they fail (code 42), and so do those that begin later. Must be destroyed by the thread that
    /// made it. When such objects are nested, the inner one counts.
    class VELKCOMMON_EXPORT Stoppable
    {
    public:
        /// Lets a stop request to `stop` stop the transfers.
        explicit Stoppable(std::stop_token stop);
        ~Stoppable();
        Stoppable(const Stoppable&) = delete;
        Stoppable& operator=(const Stoppable&) = delete;

        /// True when the thread's transfers have been asked to stop.
        static bool isStopped();

    private:
        std::stop_token stop_;
        const Stoppable* outer_;
    };

private:
    Curl();
};
