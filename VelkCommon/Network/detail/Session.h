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

    /// Begins `transfer`, which turn() then moves on. On an exception it has not begun.
    void start(Transfer& transfer);
    /// Moves all transfers on. When there is nothing to do, waits briefly for the network. A transfer that gets no
    /// memory has failed; the others do not notice.
    void turn() noexcept;
    /// Moves all transfers on until `transfer`, which was started, is done.
    void finish(const Transfer& transfer) noexcept;
    /// Gives `transfer` up.
    void remove(Transfer& transfer) noexcept;

    /// True while a turn is under way. Then the caller is inside a callback, and must use another session.
    bool busy() const noexcept { return busy_; }

private:
    CURL* takeHandle();
    void keepHandle(CURL* handle) noexcept;
    void ask(Transfer& transfer) noexcept;
    bool moveOn() noexcept;
    bool collectFinished() noexcept;
    void tick() noexcept;

    CURLM* multi_;
    std::vector<CURL*> spare_;
    std::vector<Transfer*> running_;
    bool busy_ = false;
};

/// A session for the calling thread, from the process's pool. Nested calls share one, so that the transfers
/// that the outer call has started go on, and connections are reused.
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
