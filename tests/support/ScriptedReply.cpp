#include "support/ScriptedServer.h"

#include "support/Waiting.h"

#include <algorithm>
#include <condition_variable>
#include <mutex>

namespace test {

struct Gate::State
{
    std::mutex mutex;
    std::condition_variable changed;
    std::size_t permits = 0;
    std::size_t arrivals = 0;
    bool forGood = false;
    bool ended = false;
};

namespace {

char lower(char c)
{
    return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c;
}

bool sameName(const std::string& a, const std::string& b)
{
    return std::equal(a.begin(), a.end(), b.begin(), b.end(), [](char x, char y) { return lower(x) == lower(y); });
}

std::string percentDecoded(const std::string& text)
{
    std::string result;
    for (std::size_t i = 0; i < text.size(); ++i) {
        if (text[i] == '%' && i + 2 < text.size()) {
            result += static_cast<char>(std::stoi(text.substr(i + 1, 2), nullptr, 16));
            i += 2;
        } else {
            result += text[i];
        }
    }
    return result;
}

// Without scheme and host.
std::string relativeTarget(const std::string& target)
{
    const std::size_t scheme = target.find("://");
    if (target.starts_with('/') || scheme == std::string::npos)
        return target;
    const std::size_t path = target.find('/', scheme + 3);
    return path == std::string::npos ? "/" : target.substr(path);
}

}  // namespace

Gate::Gate() : state_(std::make_shared<State>()) {}

void Gate::open(std::size_t times)
{
    const std::lock_guard lock(state_->mutex);
    state_->permits += times;
    state_->changed.notify_all();
}

void Gate::openForGood()
{
    const std::lock_guard lock(state_->mutex);
    state_->forGood = true;
    state_->changed.notify_all();
}

bool Gate::wait()
{
    std::unique_lock lock(state_->mutex);
    ++state_->arrivals;
    state_->changed.notify_all();
    if (!comesAbout(state_->changed, lock, [this] { return state_->permits > 0 || state_->forGood || state_->ended; }))
        giveUp("nobody opens the gate");
    if (state_->ended)
        return false;
    if (!state_->forGood)
        --state_->permits;
    return true;
}

std::size_t Gate::arrivals() const
{
    const std::lock_guard lock(state_->mutex);
    return state_->arrivals;
}

void Gate::waitForArrivals(std::size_t count) const
{
    std::unique_lock lock(state_->mutex);
    if (!comesAbout(state_->changed, lock, [&] { return state_->arrivals >= count; }))
        giveUp(std::to_string(state_->arrivals) + " of " + std::to_string(count) + " came to the gate");
}

void Gate::end()
{
    const std::lock_guard lock(state_->mutex);
    state_->ended = true;
    state_->changed.notify_all();
}

std::string SeenRequest::path() const
{
    const std::string relative = relativeTarget(target);
    return relative.substr(0, relative.find('?'));
}

std::string SeenRequest::parameter(const std::string& name) const
{
    for (std::size_t at = target.find('?'); at != std::string::npos; at = target.find('&', at + 1)) {
        if (target.compare(at + 1, name.size() + 1, name + "=") != 0)
            continue;
        const std::size_t value = at + name.size() + 2;
        return percentDecoded(target.substr(value, std::min(target.find('&', value), target.size()) - value));
    }
    return {};
}

std::string SeenRequest::header(const std::string& name) const
{
    const auto found = std::find_if(headers.rbegin(), headers.rend(),
                                    [&](const auto& header) { return sameName(header.first, name); });
    return found == headers.rend() ? std::string() : found->second;
}

bool SeenRequest::hasHeader(const std::string& name) const
{
    return std::any_of(headers.begin(), headers.end(),
                       [&](const auto& header) { return sameName(header.first, name); });
}

Reply Reply::file(std::string body, const std::string& tag)
{
    Reply reply;
    reply.headers = {{"ETag", '"' + tag + '"'}};
    reply.body = std::move(body);
    reply.conditionalTag = tag;
    return reply;
}

Reply Reply::redirect(const std::string& location, int status)
{
    Reply reply;
    reply.status = status;
    reply.headers = {{"Location", location}};
    return reply;
}

Reply Reply::never()
{
    Reply reply;
    reply.raw = "";
    reply.ending = Ending::hang;
    return reply;
}

Reply Reply::resetAtOnce()
{
    Reply reply;
    reply.raw = "";
    reply.ending = Ending::reset;
    return reply;
}

}  // namespace test
