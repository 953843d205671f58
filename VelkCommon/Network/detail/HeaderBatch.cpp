#include <VelkCommon/Network/detail/HeaderBatch.h>

#include <VelkCommon/Network/detail/Requests.h>
#include <VelkCommon/Network/detail/Session.h>
#include <VelkCommon/Network/detail/TransferLimits.h>

#include <algorithm>
#include <deque>
#include <memory>
#include <utility>

namespace Velk::detail {
namespace {

// Answers that wait for one before them; each may be as large as a header can get.
constexpr std::size_t waitingLimit = 64;

class HeaderBatch
{
public:
    HeaderBatch(Session& session, const std::vector<Curl::HeaderRequest>& requests)
        : session_(session), requests_(requests)
    {}

    Curl::HeaderAnswer next()
    {
        startMore();
        while (!transfers_.front()->done()) {
            session_.turn();
            startMore();
        }
        const std::unique_ptr<Transfer> transfer = std::move(transfers_.front());
        transfers_.pop_front();
        if (!transfer->answered())
            return {};
        return {true, std::move(transfer->header()), transfer->status()};
    }

private:
    void startMore()
    {
        while (started_ < requests_.size() && transfers_.size() < waitingLimit && inFlight() < requestsInFlight) {
            const Curl::HeaderRequest& request = requests_[started_++];
            transfers_.push_back(std::make_unique<Transfer>(headerRequest(request.url, request.headers), body_));
            session_.start(*transfers_.back());
        }
    }

    std::size_t inFlight() const
    {
        return static_cast<std::size_t>(std::count_if(transfers_.begin(), transfers_.end(),
                                                      [](const auto& transfer) { return !transfer->done(); }));
    }

    Session& session_;
    const std::vector<Curl::HeaderRequest>& requests_;
    NoBody body_;
    std::size_t started_ = 0;
    std::deque<std::unique_ptr<Transfer>> transfers_;
};

}  // namespace

void requestHeaders(const std::vector<Curl::HeaderRequest>& requests, const HeaderAnswered& answered)
{
    const SessionLease session;
    HeaderBatch batch(*session, requests);
    for (std::size_t i = 0; i < requests.size(); ++i)
        answered(i, batch.next());
}

}  // namespace Velk::detail
