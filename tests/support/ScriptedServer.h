#pragma once

/// @file
/// A real HTTP/1.1 server inside the test program, scripted per path, that remembers what it was asked:
///
///     test::ScriptedServer server;
///     server.on("/a.calib", test::Reply::file("bytes", "etag"));   // GET and HEAD, 304 for If-None-Match
///     server.on("/page", test::Reply{.status = 503, .body = "later"});
///     server.onMethod("HEAD", "/odd", test::Reply{.status = 405});
///     ... server.url("/a.calib") ...
///     EXPECT_EQ(server.requests("/a.calib").front().header("If-None-Match"), "\"etag\"");
///
/// Requests without a script are answered 404 with the body "not scripted". It listens on 127.0.0.1 on a port
/// that the system chooses, serves every connection on a thread of its own, keeps connections open, and
/// ends all of them in its destructor, whatever they wait for. All members may be called from any thread at
/// any time.

#include <cstddef>
#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <utility>
#include <vector>

namespace test {

/// Holds a server's thread back until the test lets it go on.
class Gate
{
public:
    Gate();
    /// Lets `times` more waits return.
    void open(std::size_t times = 1);
    /// Lets every wait return from now on.
    void openForGood();
    /// Waits to be let through; false when the server ends. Gives up when neither happens.
    bool wait();
    /// How many waits have begun so far.
    std::size_t arrivals() const;
    /// Returns when at least `count` waits have begun; gives up when they do not.
    void waitForArrivals(std::size_t count) const;

private:
    friend class ScriptedServer;
    void end();

    struct State;
    std::shared_ptr<State> state_;
};

/// A request as it came.
struct SeenRequest
{
    std::string method;  ///< "GET"
    std::string target;  ///< as on the wire: "/a?library=K%C3%BCche.calib"; "http://host/..." at a proxy
    std::vector<std::pair<std::string, std::string>> headers;  ///< names as they came
    std::size_t connection = 0;                                ///< counts from 1 in the order of connecting

    /// The target up to its query, without scheme and host.
    std::string path() const;
    /// The decoded value of a parameter of the query; empty when there is none.
    std::string parameter(const std::string& name) const;
    /// The value of a header in any letter case, the last of several; empty when there is none.
    std::string header(const std::string& name) const;
    bool hasHeader(const std::string& name) const;
};

/// How to answer. HEAD gets the same header without the body.
struct Reply
{
    /// What happens to the connection after the answer.
    enum class Ending {
        keep,   ///< it waits for the next request
        close,  ///< it is closed properly
        reset,  ///< it is torn down
        hang    ///< nothing more happens on it
    };

    int status = 200;
    std::vector<std::pair<std::string, std::string>> headers = {};  ///< beside Content-Length
    std::string body = {};

    bool chunked = false;                                      ///< in pieces, without Content-Length
    bool withLength = true;                                    ///< Content-Length is sent
    std::optional<std::string> length = std::nullopt;          ///< the Content-Length to claim, right or not
    std::optional<std::size_t> cutAfter = std::nullopt;        ///< only this many bytes of the body are sent
    bool endless = false;                                      ///< the body is repeated until the client goes
    std::size_t block = 0;                                     ///< bytes per write of the body; 0: all at once
    std::optional<Gate> beforeHeader = std::nullopt;           ///< waited for before anything is sent
    std::optional<Gate> beforeBlock = std::nullopt;            ///< waited for before each block of the body
    std::optional<std::string> raw = std::nullopt;             ///< sent unchanged, instead of all of the above
    std::optional<std::string> conditionalTag = std::nullopt;  ///< 304 when If-None-Match holds it in quotes
    Ending ending = Ending::keep;

    /// A file with its entity tag (without quotes), also for conditional requests.
    static Reply file(std::string body, const std::string& tag);
    /// A redirect.
    static Reply redirect(const std::string& location, int status = 302);
    /// The connection is accepted and the request read, but nothing is ever sent.
    static Reply never();
    /// The connection is torn down instead of being answered.
    static Reply resetAtOnce();
};

/// A certificate with its private key, both PEM.
struct Certificate
{
    std::string chain;
    std::string key;
};

/// An authority that signs certificates of servers, made up on the spot.
class TestAuthority
{
public:
    TestAuthority();
    ~TestAuthority();
    TestAuthority(const TestAuthority&) = delete;
    TestAuthority& operator=(const TestAuthority&) = delete;

    /// Its own certificate, PEM: for HostServices::certificateFile.
    std::string certificate() const;
    /// A certificate for a host name or IPv4 address; `daysLeft` may be negative.
    Certificate issue(const std::string& host = "127.0.0.1", int daysLeft = 1) const;

private:
    struct Keys;
    std::unique_ptr<Keys> keys_;
};

class ScriptedServer
{
public:
    using Handler = std::function<Reply(const SeenRequest& request)>;

    /// Plain HTTP.
    ScriptedServer();
    /// HTTPS.
    explicit ScriptedServer(const Certificate& certificate);
    ~ScriptedServer();
    ScriptedServer(const ScriptedServer&) = delete;
    ScriptedServer& operator=(const ScriptedServer&) = delete;

    /// Answers requests of any method for `path` (no query). A later script replaces an earlier one.
    void on(const std::string& path, Reply reply);
    /// The same with a function, which runs on the connection's thread.
    void on(const std::string& path, Handler handler);
    /// Answers requests of one method only; takes precedence over the scripts for any method.
    void onMethod(const std::string& method, const std::string& path, Handler handler);
    void onMethod(const std::string& method, const std::string& path, Reply reply);
    /// Answers every request that has no script.
    void otherwise(Handler handler);

    std::uint16_t port() const;
    /// "http://127.0.0.1:PORT" or "https://...", followed by `pathAndQuery`.
    std::string url(const std::string& pathAndQuery = "/") const;

    /// All requests so far, in the order in which they were read.
    std::vector<SeenRequest> requests() const;
    /// Those for one path.
    std::vector<SeenRequest> requests(const std::string& path) const;
    /// How many connections were accepted so far.
    std::size_t connections() const;
    /// The protocols that the last client over TLS offered, such as "h2"; empty when it offered none.
    std::vector<std::string> offeredProtocols() const;
    /// Returns when at least `count` requests were read; gives up when they do not come.
    void waitForRequests(std::size_t count) const;
    /// Forgets the requests so far; the scripts stay.
    void forgetRequests();
    /// From now on a connection is served only when those before it have ended.
    void serveOneConnectionAtATime();
    /// Ends all connections and refuses new ones, as if the machine had gone.
    void stop();

private:
    struct Impl;
    std::shared_ptr<Impl> impl_;
};

/// A port of 127.0.0.1 where nobody listens; it stays reserved while the object lives.
class RefusingPort
{
public:
    RefusingPort();
    ~RefusingPort();
    RefusingPort(const RefusingPort&) = delete;
    RefusingPort& operator=(const RefusingPort&) = delete;

    std::string url(const std::string& pathAndQuery = "/") const;

private:
    struct Impl;
    std::unique_ptr<Impl> impl_;
};

/// A port of 127.0.0.1 that neither accepts nor refuses connections, because packets to it are dropped.
/// On Linux.
class DeafPort
{
public:
    DeafPort();
    ~DeafPort();
    DeafPort(const DeafPort&) = delete;
    DeafPort& operator=(const DeafPort&) = delete;

    std::string url(const std::string& pathAndQuery = "/") const;

private:
    struct Impl;
    std::unique_ptr<Impl> impl_;
};

}  // namespace test
