#include "host/browser/opening/OpenRequests.h"

#include "host/browser/opening/OneWindow.h"
#include "host/browser/opening/OpenMessage.h"

#include <condition_variable>
#include <exception>
#include <mutex>
#include <optional>
#include <utility>

namespace VelkHost {
namespace {

/// What the window answers, and the worker that waits for it.
struct WindowAnswer
{
    std::mutex mutex;
    std::condition_variable_any given;
    std::optional<bool> answer;
};

std::optional<QStringList> receiveFiles(Channel& channel, WaitEnd end)
{
    const std::optional<std::string> head = receiveAll(channel, headSize, end);
    const std::optional<std::size_t> length = head ? lengthInHead(*head) : std::nullopt;
    const std::optional<std::string> text = length ? receiveAll(channel, *length, end) : std::nullopt;
    return text ? filesInMessage(*text) : std::nullopt;
}

}  // namespace

OpenRequests::OpenRequests(std::unique_ptr<ChannelListener> listener, Question mayOpen,
                           std::chrono::milliseconds patience, QObject* parent)
    : QObject(parent), listener_(std::move(listener)), mayOpen_(std::move(mayOpen)), patience_(patience)
{
    listening_ = std::thread([this] { listen(); });
}

OpenRequests::~OpenRequests()
{
    stop_.request_stop();
    listener_->stop();
    listening_.join();
}

// On the thread, like the functions below. A request that there is too little memory for is not answered.
void OpenRequests::listen()
{
    for (;;)
        try {
            const std::unique_ptr<Channel> channel = listener_->next();
            if (channel == nullptr)
                return;
            answer(*channel);
        } catch (const std::exception&) {
            continue;
        }
}

void OpenRequests::answer(Channel& channel)
{
    const auto soon = [this] { return std::chrono::steady_clock::now() + patience_; };
    const std::optional<QStringList> files = receiveFiles(channel, soon());
    if (!files)
        return;
    const auto count = static_cast<std::size_t>(files->size());
    const bool isReady = onWindow([this, count] { return mayOpen_(count); });
    if (!isReady || !channel.send(readyAnswer, soon()) || !receives(channel, goAnswer, soon()))
        return;
    const bool isTaken = onWindow([this, files] {
        Q_EMIT started(*files);
        return true;
    });
    if (!isTaken || !channel.send(doneAnswer, soon()))
        return;
    char more = 0;
    channel.receive(&more, 1, soon());  // until it has hung up: not every system keeps what was sent
}

// The window may do it after nobody waits any more.
bool OpenRequests::onWindow(std::function<bool()> work)
{
    const auto shared = std::make_shared<WindowAnswer>();
    const auto ask = [shared, work = std::move(work)] {
        const bool answer = work();
        const std::lock_guard lock(shared->mutex);
        shared->answer = answer;
        shared->given.notify_all();
    };
    QMetaObject::invokeMethod(this, ask, Qt::QueuedConnection);
    std::unique_lock lock(shared->mutex);
    shared->given.wait_until(lock, stop_.get_token(), std::chrono::steady_clock::now() + openWindowPatience,
                             [&] { return shared->answer.has_value(); });
    return shared->answer.value_or(false);
}

}  // namespace VelkHost
