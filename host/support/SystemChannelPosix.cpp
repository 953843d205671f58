#include "host/support/SystemChannel.h"

#include <VelkCommon/Files/FileLock.h>
#include <VelkCommon/Files/FileUtils.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <cstdlib>
#include <cstring>
#include <fcntl.h>
#include <limits>
#include <optional>
#include <poll.h>
#include <sys/socket.h>
#include <sys/un.h>
#include <unistd.h>
#include <utility>

namespace VelkHost {
namespace {

constexpr int connectionsThatWait = 16;
constexpr std::chrono::milliseconds recovery{100};  // where the system has too little of something

/// A file descriptor that is closed at the end, and that programs which this one starts do not inherit.
class Descriptor
{
public:
    explicit Descriptor(int number = -1) noexcept : number_(number)
    {
        if (number_ >= 0)
            ::fcntl(number_, F_SETFD, FD_CLOEXEC);
    }
    ~Descriptor()
    {
        if (number_ >= 0)
            ::close(number_);
    }
    Descriptor(Descriptor&& other) noexcept : number_(std::exchange(other.number_, -1)) {}
    Descriptor& operator=(Descriptor&& other) noexcept
    {
        std::swap(number_, other.number_);
        return *this;
    }

    int number() const noexcept { return number_; }
    explicit operator bool() const noexcept { return number_ >= 0; }

private:
    int number_;
};

Descriptor newSocket()
{
    Descriptor made(::socket(AF_UNIX, SOCK_STREAM, 0));
    if (made)
        ::fcntl(made.number(), F_SETFL, O_NONBLOCK);
    return made;
}

/// Readable from stop() on, for all who wait.
class StopSign
{
public:
    StopSign()
    {
        std::array<int, 2> ends{-1, -1};
        if (::pipe(ends.data()) != 0)
            return;
        reader_ = Descriptor(ends[0]);
        writer_ = Descriptor(ends[1]);
    }

    explicit operator bool() const noexcept { return static_cast<bool>(reader_); }
    int number() const noexcept { return reader_.number(); }
    void stop() noexcept
    {
        const ssize_t written = ::write(writer_.number(), "x", 1);
        static_cast<void>(written);  // a second sign may find no room, and says nothing new
    }

private:
    Descriptor reader_;
    Descriptor writer_;
};

int millisecondsUntil(WaitEnd end)
{
    const auto left = std::chrono::ceil<std::chrono::milliseconds>(end - std::chrono::steady_clock::now()).count();
    return static_cast<int>(std::clamp<long long>(left, 0, std::numeric_limits<int>::max()));
}

/// Waits until something can be done with a socket. False at `end`, if there is one, and when the sign is given; -1 is
/// no sign.
bool isReady(int socket, short what, int stopSign, std::optional<WaitEnd> end)
{
    std::array<pollfd, 2> awaited{{{socket, what, 0}, {stopSign, POLLIN, 0}}};
    for (;;) {
        const int count = ::poll(awaited.data(), awaited.size(), end ? millisecondsUntil(*end) : -1);
        if (count >= 0 || errno != EINTR)
            return count > 0 && awaited[1].revents == 0;
    }
}

/// Whether the process at the other end is this user's.
bool isOwn(int socket)
{
#ifdef SO_PEERCRED
    ucred peer{};
    socklen_t size = sizeof peer;
    return ::getsockopt(socket, SOL_SOCKET, SO_PEERCRED, &peer, &size) == 0 && peer.uid == ::geteuid();
#else
    uid_t user = 0;
    gid_t group = 0;
    return ::getpeereid(socket, &user, &group) == 0 && user == ::geteuid();
#endif
}

class SocketChannel : public Channel
{
public:
    SocketChannel(Descriptor socket, int stopSign) : socket_(std::move(socket)), stopSign_(stopSign) {}

    bool send(std::string_view bytes, WaitEnd end) override
    {
        while (!bytes.empty()) {
            if (!isReady(socket_.number(), POLLOUT, stopSign_, end))
                return false;
            const ssize_t sent = ::send(socket_.number(), bytes.data(), bytes.size(), MSG_NOSIGNAL);
            if (sent < 0 && !isPassing())
                return false;
            bytes.remove_prefix(static_cast<std::size_t>(std::max<ssize_t>(sent, 0)));
        }
        return true;
    }

    std::size_t receive(char* bytes, std::size_t size, WaitEnd end) override
    {
        while (isReady(socket_.number(), POLLIN, stopSign_, end)) {
            const ssize_t received = ::recv(socket_.number(), bytes, size, 0);
            if (received >= 0)
                return static_cast<std::size_t>(received);
            if (!isPassing())
                return 0;
        }
        return 0;
    }

private:
    static bool isPassing() { return errno == EINTR || errno == EAGAIN || errno == EWOULDBLOCK; }

    Descriptor socket_;
    int stopSign_;
};

/// The name's files: the lock of the program that listens, and the socket. Sockets of programs that were killed stay
/// behind; who has the lock may remove one.
class SocketListener : public ChannelListener
{
public:
    SocketListener(FileLock lock, fileString path, Descriptor socket)
        : lock_(std::move(lock)), path_(std::move(path)), socket_(std::move(socket))
    {}
    ~SocketListener() override { ::unlink(path_.utf8().c_str()); }

    bool canStop() const noexcept { return static_cast<bool>(stopSign_); }

    std::unique_ptr<Channel> next() override
    {
        while (isReady(socket_.number(), POLLIN, stopSign_.number(), std::nullopt)) {
            Descriptor accepted(::accept(socket_.number(), nullptr, nullptr));
            if (!accepted) {
                recover();
                continue;
            }
            ::fcntl(accepted.number(), F_SETFL, O_NONBLOCK);
            if (isOwn(accepted.number()))
                return std::make_unique<SocketChannel>(std::move(accepted), stopSign_.number());
        }
        return nullptr;
    }

    void stop() noexcept override { stopSign_.stop(); }

private:
    // The connection that could not be accepted is still there, and would be asked for again at once.
    void recover() const
    {
        if (errno == EMFILE || errno == ENFILE || errno == ENOBUFS || errno == ENOMEM)
            isReady(-1, 0, stopSign_.number(), std::chrono::steady_clock::now() + recovery);
    }

    FileLock lock_;  // first, as it is given back last
    fileString path_;
    Descriptor socket_;
    StopSign stopSign_;
};

/// A folder that nobody else can look into; empty when there is none.
fileString socketFolder()
{
    const char* const runtime = std::getenv("XDG_RUNTIME_DIR");
    fileString usual = fileString(std::string(runtime != nullptr && *runtime == '/' ? runtime : "")) / U"velk";
    if (runtime != nullptr && *runtime == '/' && FileUtils::createPrivateDirectory(usual))
        return usual;
    const fileString other("/tmp/velk-channels-" + std::to_string(::geteuid()));
    return FileUtils::createPrivateDirectory(other) ? other : fileString();
}

/// The address of a socket; empty when the path is too long for one.
std::optional<sockaddr_un> addressOf(const fileString& path)
{
    sockaddr_un address{};
    address.sun_family = AF_UNIX;
    if (path.utf8().size() >= sizeof address.sun_path)
        return std::nullopt;
    std::memcpy(address.sun_path, path.utf8().c_str(), path.utf8().size() + 1);
    return address;
}

fileString socketPath(const fileString& folder, const std::string& name)
{
    return folder / fileString(name + ".socket");
}

}  // namespace

Listening listenOnChannel(const std::string& name)
{
    const fileString folder = socketFolder();
    if (folder.empty())
        return {};
    const fileString path = socketPath(folder, name);
    const std::optional<sockaddr_un> address = addressOf(path);
    if (!address)
        return {};
    FileLock lock(folder / fileString(name + ".lock"), std::chrono::milliseconds(0), "velk-browser");
    if (!lock)
        return {nullptr, lock.isBusy()};
    ::unlink(path.utf8().c_str());
    Descriptor socket = newSocket();
    if (!socket || ::bind(socket.number(), reinterpret_cast<const sockaddr*>(&*address), sizeof *address) != 0 ||
        ::listen(socket.number(), connectionsThatWait) != 0)
        return {};
    auto listener = std::make_unique<SocketListener>(std::move(lock), path, std::move(socket));
    if (!listener->canStop())
        return {};
    return {std::move(listener), false};
}

std::unique_ptr<Channel> connectToChannel(const std::string& name, WaitEnd)
{
    const fileString folder = socketFolder();
    const std::optional<sockaddr_un> address = addressOf(socketPath(folder, name));
    if (folder.empty() || !address)
        return nullptr;
    Descriptor socket = newSocket();
    if (!socket || ::connect(socket.number(), reinterpret_cast<const sockaddr*>(&*address), sizeof *address) != 0 ||
        !isOwn(socket.number()))
        return nullptr;
    return std::make_unique<SocketChannel>(std::move(socket), -1);
}

fileString pathWithoutLinks(const fileString& path)
{
    const std::unique_ptr<char, decltype(&std::free)> found(::realpath(path.utf8().c_str(), nullptr), &std::free);
    return found == nullptr ? fileString() : fileString(std::string(found.get()));
}

}  // namespace VelkHost
