#include <VelkCommon/Reporting/ProgressSubject.h>

#include <algorithm>
#include <condition_variable>
#include <mutex>
#include <thread>
#include <utility>
#include <vector>

namespace {

constexpr double fullPosition = 100;

/// A part of the hundred that is covered in equal steps.
struct SubRange
{
    double begin = 0;
    double end = 0;
    std::uint64_t steps = 0;
    std::uint64_t taken = 0;

    /// The position after one more step. Computed from the number of steps, so that rounding errors do not add up.
    double advance()
    {
        taken = std::min(taken + 1, steps);
        const double share = static_cast<double>(taken) / static_cast<double>(steps);
        return taken == steps ? end : std::min(end, begin + (end - begin) * share);
    }
};

/// How much a sub-range may cover: `units`, but not less than nothing and not more than is left. NaN counts as
/// nothing.
double coverable(double units, double position)
{
    return units > 0 ? std::min(units, fullPosition - position) : 0;
}

}  // namespace

struct ProgressSubject::Data
{
    /// A running call to an observer.
    struct Call
    {
        std::thread::id thread;
        const Observer* observer = nullptr;
    };

    std::mutex mutex;
    std::condition_variable observerReturned;
    State state;
    SubRange range;
    Observer* observer = nullptr;
    std::vector<Call> calls;

    /// Changes the state by `change` and tells the observer, without holding the lock.
    template <typename Change>
    void update(Change change)
    {
        std::unique_lock lock(mutex);
        change();
        if (observer == nullptr)
            return;
        Observer& told = *observer;
        const State copy = state;
        calls.push_back({std::this_thread::get_id(), &told});
        lock.unlock();
        tell(told, copy);
        lock.lock();
        calls.erase(std::find_if(calls.begin(), calls.end(), isCallHere));
        observerReturned.notify_all();
    }

    static void tell(Observer& told, const State& news)
    {
        try {
            told.progressChanged(news);
        } catch (...) {
            // An observer's failure is not the failure of the work that it watches.
        }
    }

    static bool isCallHere(const Call& call) { return call.thread == std::this_thread::get_id(); }

    bool isCalling(const Observer* asked) const
    {
        return std::any_of(calls.begin(), calls.end(), [asked](const Call& call) { return call.observer == asked; });
    }
};

ProgressSubject::Observer::~Observer() = default;

ProgressSubject::ProgressSubject() : data_(std::make_unique<Data>()) {}

ProgressSubject::ProgressSubject(Observer& observer) : ProgressSubject()
{
    data_->observer = &observer;
}

ProgressSubject::~ProgressSubject() = default;

void ProgressSubject::setObserver(Observer* observer)
{
    std::unique_lock lock(data_->mutex);
    const Observer* const replaced = std::exchange(data_->observer, observer);
    // An observer that detaches itself would wait for its own return.
    if (replaced == observer || std::any_of(data_->calls.begin(), data_->calls.end(), Data::isCallHere))
        return;
    data_->observerReturned.wait(lock, [&] { return !data_->isCalling(replaced); });
}

void ProgressSubject::updateLabels(std::u32string mainLabel, std::u32string secondaryLabel)
{
    data_->update([&] {
        data_->state.mainLabel = std::move(mainLabel);
        data_->state.secondaryLabel = std::move(secondaryLabel);
    });
}

void ProgressSubject::increment(std::u32string mainLabel, std::u32string secondaryLabel)
{
    data_->update([&] {
        if (data_->range.steps > 0)
            data_->state.position = data_->range.advance();
        data_->state.mainLabel = std::move(mainLabel);
        data_->state.secondaryLabel = std::move(secondaryLabel);
    });
}

void ProgressSubject::openSubRange(std::uint64_t steps, double units)
{
    const std::lock_guard lock(data_->mutex);
    const double begin = data_->state.position;
    data_->range = {begin, begin + coverable(units, begin), steps, 0};
}

bool ProgressSubject::isCancelled() const
{
    const std::lock_guard lock(data_->mutex);
    return data_->state.cancelled;
}

void ProgressSubject::cancel()
{
    const std::lock_guard lock(data_->mutex);
    data_->state.cancelled = true;
}

ProgressSubject::State ProgressSubject::state() const
{
    const std::lock_guard lock(data_->mutex);
    return data_->state;
}
