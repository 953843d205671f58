#pragma once

#include <VelkCommon/Network/detail/Transfer.h>

#include <curl/curl.h>

#include <vector>

namespace Velk::detail {

/// A set of connections and the transfers that use them. One thread at a time.
class Session
{
public:
    Session();
    ~Session();
    Session(const Session&) = delete;
    Session& operator=(const Session&) = delete;

    /// Lets `transfer` begin; it goes on in turn().
    void start(Transfer& transfer);
    /// Moves all transfers on; waits for the network when there is nothing to do, though not for long.
    void turn();
    /// Until `transfer`, which was started, is done.
    void finish(const Transfer& transfer);
    /// Gives `transfer` up.
    void remove(Transfer& transfer) noexcept;

    /// A turn is under way: it is a callback that asks, and it must take another session.
    bool busy() const noexcept { return busy_; }

private:
    CURL* takeHandle();
    void keepHandle(CURL* handle);
    bool moveOn();
    bool collectFinished();
    void tick();

    CURLM* multi_;
    std::vector<CURL*> spare_;
    std::vector<Transfer*> running_;
    bool busy_ = false;
};

/// A session for the calling thread, from the process's pool. Calls within calls share one, so that what
/// the outer call has started goes on, and connections are used again.
class SessionLease
{
public:
    SessionLease();
    ~SessionLease();
    SessionLease(const SessionLease&) = delete;
    SessionLease& operator=(const SessionLease&) = delete;

    Session& operator*() const noexcept { return *session_; }
    Session* operator->() const noexcept { return session_; }

private:
    Session* outer_;
    Session* session_;
};

/// Runs one transfer to its end.
void run(Transfer& transfer);

}  // namespace Velk::detail
