#include <VelkCommon/Network/detail/Session.h>

#include <VelkCommon/Network/detail/TransferLimits.h>
#include <VelkCommon/detail/NeverDestroyed.h>

#include <algorithm>
#include <memory>
#include <mutex>
#include <new>

namespace Velk::detail {
namespace {

constexpr long keptConnections = 16;
constexpr std::size_t keptSessions = 8;

struct Pool
{
    std::mutex mutex;
    std::vector<std::unique_ptr<Session>> sessions;
};

Pool& pool()
{
    static NeverDestroyed<Pool> sessions;
    return *sessions;
}

// Sets a flag for the length of a block.
class Mark
{
public:
    explicit Mark(bool& flag) noexcept : flag_(flag) { flag_ = true; }
    ~Mark() { flag_ = false; }
    Mark(const Mark&) = delete;
    Mark& operator=(const Mark&) = delete;

private:
    bool& flag_;
};

// The thread's session of the innermost call that has one.
thread_local Session* current = nullptr;

// Takes the session that was given back last, because its connections are the freshest.
std::unique_ptr<Session> fromPool()
{
    const std::lock_guard lock(pool().mutex);
    if (pool().sessions.empty())
        return nullptr;
    std::unique_ptr<Session> session = std::move(pool().sessions.back());
    pool().sessions.pop_back();
    return session;
}

void backToPool(std::unique_ptr<Session> session) noexcept
{
    const std::lock_guard lock(pool().mutex);
    try {
        if (pool().sessions.size() < keptSessions)
            pool().sessions.push_back(std::move(session));
    } catch (...) {
        // The session is destroyed instead; another one is made when needed.
    }
}

// Throws when there is too little memory to begin with; the next call tries again.
bool initializeLibrary()
{
    if (curl_global_init(CURL_GLOBAL_DEFAULT) != CURLE_OK)
        throw std::bad_alloc();
    return true;
}

CURLM* newMulti()
{
    [[maybe_unused]] static const bool initialized = initializeLibrary();
    CURLM* const multi = curl_multi_init();
    if (multi == nullptr)
        throw std::bad_alloc();
    return multi;
}

}  // namespace

Session::Session() : multi_(newMulti())
{
    curl_multi_setopt(multi_, CURLMOPT_MAX_HOST_CONNECTIONS, static_cast<long>(requestsInFlight));
    curl_multi_setopt(multi_, CURLMOPT_MAXCONNECTS, keptConnections);
}

Session::~Session()
{
    for (CURL* const handle : spare_)
        curl_easy_cleanup(handle);
    curl_multi_cleanup(multi_);
}

void Session::start(Transfer& transfer)
{
    running_.reserve(running_.size() + 1);
    CURL* const handle = takeHandle();
    if (!transfer.begin(*this, handle)) {
        keepHandle(handle);
        return;
    }
    running_.push_back(&transfer);
    ask(transfer);
}

// Sends the request for which the transfer's handle is set up.
void Session::ask(Transfer& transfer) noexcept
{
    if (curl_multi_add_handle(multi_, transfer.handle_) == CURLM_OK)
        return;
    transfer.failWithoutMemory();
    remove(transfer);
}

void Session::turn() noexcept
{
    if (!moveOn() && !running_.empty())
        curl_multi_poll(multi_, nullptr, 0, static_cast<int>(transferLimits().tick.count()), nullptr);
}

// Returns whether a request has ended.
bool Session::moveOn() noexcept
{
    const Mark mark(busy_);
    int stillRunning = 0;
    curl_multi_perform(multi_, &stillRunning);
    const bool finished = collectFinished();
    tick();
    return finished;
}

void Session::finish(const Transfer& transfer) noexcept
{
    while (!transfer.done())
        turn();
}

bool Session::collectFinished() noexcept
{
    bool any = false;
    int left = 0;
    while (const CURLMsg* const message = curl_multi_info_read(multi_, &left)) {
        const CURLcode code = message->data.result;
        CURL* const handle = message->easy_handle;
        char* owner = nullptr;
        curl_easy_getinfo(handle, CURLINFO_PRIVATE, &owner);
        auto& transfer = *reinterpret_cast<Transfer*>(owner);
        curl_multi_remove_handle(multi_, handle);
        if (transfer.goOn(code))
            ask(transfer);
        else
            remove(transfer);
        any = true;
    }
    return any;
}

void Session::tick() noexcept
{
    const auto now = Transfer::Clock::now();
    for (std::size_t i = 0; i < running_.size();) {
        if (running_[i]->tick(now))
            ++i;
        else
            remove(*running_[i]);
    }
}

void Session::remove(Transfer& transfer) noexcept
{
    curl_multi_remove_handle(multi_, transfer.handle_);
    std::erase(running_, &transfer);
    keepHandle(transfer.handle_);
    transfer.handle_ = nullptr;
    transfer.session_ = nullptr;
}

CURL* Session::takeHandle()
{
    spare_.reserve(spare_.size() + running_.size() + 1);
    if (!spare_.empty()) {
        CURL* const handle = spare_.back();
        spare_.pop_back();
        return handle;
    }
    CURL* const handle = curl_easy_init();
    if (handle == nullptr)
        throw std::bad_alloc();
    return handle;
}

void Session::keepHandle(CURL* handle) noexcept
{
    // The handle must not keep pointers to what is destroyed with the transfer.
    curl_easy_reset(handle);
    spare_.push_back(handle);  // takeHandle() has made room
}

SessionLease::SessionLease() : outer_(current), session_(current)
{
    if (session_ != nullptr && !session_->busy())
        return;
    std::unique_ptr<Session> session = fromPool();
    if (!session)
        session = std::make_unique<Session>();
    session_ = current = session.release();
}

SessionLease::~SessionLease()
{
    if (session_ == outer_)
        return;
    current = outer_;
    backToPool(std::unique_ptr<Session>(session_));
}

void run(Transfer& transfer)
{
    const SessionLease session;
    session->start(transfer);
    session->finish(transfer);
}

}  // namespace Velk::detail
