#include <VelkCommon/Network/detail/HeaderBatch.h>

#include <VelkCommon/Network/detail/Requests.h>
#include <VelkCommon/Network/detail/Session.h>
#include <VelkCommon/Network/detail/TransferLimits.h>

#include <algorithm>
#include <deque>
#include <memory>
#include <optional>
#include <utility>

namespace Velk::detail {
namespace {

// How many answers may wait for an earlier one; limited because each can be as large as a header may be.
constexpr std::size_t waitingLimit = 64;
// A server that takes this many times as long as for its slowest answer so far is not merely slow.
constexpr int muchSlower = 10;

// Requests overlap until it turns out that the server serves one connection after the other. The requests on the
// connections that it does not serve would then wait for ever, so they are made again, one at a time.
class HeaderBatch
{
public:
    HeaderBatch(Session& session, const std::vector<Curl::HeaderRequest>& requests)
        : session_(session), requests_(requests)
    {}

    Curl::HeaderAnswer next()
    {
        startMore();
        while (!asked_.front().transfer || !asked_.front().transfer->done()) {
            session_.turn();
            noteFinished();
            if (servesOneConnection())
                askOneByOne();
            startMore();
        }
        const std::unique_ptr<Transfer> transfer = std::move(asked_.front().transfer);
        asked_.pop_front();
        if (!transfer->answered())
            return {false, {}, 0, transfer->failure().reason, transfer->failure().code};
        return {true, std::move(transfer->header()), transfer->status(), {}, 0};
    }

private:
    using Clock = Transfer::Clock;

    struct Asked
    {
        const Curl::HeaderRequest* request;
        std::unique_ptr<Transfer> transfer;  // null until it is started
        bool noted = false;                  // noteFinished() has seen its end

        bool inFlight() const { return transfer && !transfer->done(); }
    };

    void startMore()
    {
        for (Asked& asked : asked_)
            if (!asked.transfer && inFlight() < limit_)
                start(asked);
        while (taken_ < requests_.size() && asked_.size() < waitingLimit && inFlight() < limit_)
            start(asked_.emplace_back(Asked{&requests_[taken_++], nullptr}));
    }

    void start(Asked& asked)
    {
        asked.transfer = std::make_unique<Transfer>(headerRequest(asked.request->url, asked.request->headers), body_);
        session_.start(*asked.transfer);
    }

    std::size_t inFlight() const
    {
        return static_cast<std::size_t>(
            std::count_if(asked_.begin(), asked_.end(), [](const Asked& asked) { return asked.inFlight(); }));
    }

    void noteFinished()
    {
        for (Asked& asked : asked_) {
            if (asked.noted || !asked.transfer || !asked.transfer->done())
                continue;
            asked.noted = true;
            lastEnd_ = Clock::now();
            if (asked.transfer->answered())
                slowest_ = std::max(slowest_.value_or(Clock::duration::zero()), lastEnd_ - asked.transfer->started());
            else if (limit_ == 1)
                limit_ = requestsInFlight;  // asking one at a time did not help
        }
    }

    // Some requests were answered, but those under way have received nothing at all for too long.
    bool servesOneConnection() const
    {
        if (triedOneByOne_ || !slowest_)
            return false;
        Clock::time_point since = lastEnd_;
        for (const Asked& asked : asked_) {
            if (!asked.inFlight())
                continue;
            if (!asked.transfer->isSilent())
                return false;
            since = std::max(since, asked.transfer->started());
        }
        return Clock::now() - since > std::max<Clock::duration>(transferLimits().overlap, muchSlower * *slowest_);
    }

    void askOneByOne()
    {
        triedOneByOne_ = true;
        limit_ = 1;
        for (Asked& asked : asked_) {
            if (!asked.inFlight())
                continue;
            session_.remove(*asked.transfer);
            asked.transfer.reset();
        }
    }

    Session& session_;
    const std::vector<Curl::HeaderRequest>& requests_;
    NoBody body_;
    std::size_t taken_ = 0;
    std::deque<Asked> asked_;
    std::size_t limit_ = requestsInFlight;
    bool triedOneByOne_ = false;
    std::optional<Clock::duration> slowest_;  // of the answers
    Clock::time_point lastEnd_;
};

}  // namespace

void requestHeaders(const std::vector<Curl::HeaderRequest>& requests, const HeaderAnswered& answered)
{
    const Curl::Run run;
    const SessionLease session;
    HeaderBatch batch(*session, requests);
    for (std::size_t i = 0; i < requests.size(); ++i)
        answered(i, batch.next());
}

}  // namespace Velk::detail
