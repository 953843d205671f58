#include "host/support/SystemChannel.h"

#include <VelkCommon/Files/FileState.h>

#include <algorithm>
#include <array>
#include <optional>
#include <utility>

#include <windows.h>

#include <aclapi.h>
#include <sddl.h>

namespace VelkHost {
namespace {

constexpr DWORD blockBytes = 1 << 16;

struct HandleEnd
{
    void operator()(HANDLE handle) const noexcept { ::CloseHandle(handle); }
};
using OwnedHandle = std::unique_ptr<void, HandleEnd>;

OwnedHandle owned(HANDLE handle)
{
    return OwnedHandle(handle == INVALID_HANDLE_VALUE ? nullptr : handle);
}

OwnedHandle newEvent()
{
    return owned(::CreateEventW(nullptr, TRUE, FALSE, nullptr));
}

struct LocalEnd
{
    void operator()(void* memory) const noexcept { ::LocalFree(memory); }
};

DWORD millisecondsUntil(WaitEnd end)
{
    const auto left = std::chrono::ceil<std::chrono::milliseconds>(end - std::chrono::steady_clock::now()).count();
    return static_cast<DWORD>(std::clamp<long long>(left, 0, INFINITE - 1));
}

/// This process's user.
class User
{
public:
    User()
    {
        HANDLE opened = nullptr;
        if (!::OpenProcessToken(::GetCurrentProcess(), TOKEN_QUERY, &opened))
            return;
        const OwnedHandle token(opened);
        DWORD size = 0;
        isKnown_ = ::GetTokenInformation(opened, TokenUser, data_.data(), static_cast<DWORD>(data_.size()), &size);
    }

    explicit operator bool() const noexcept { return isKnown_; }
    PSID id() const noexcept { return reinterpret_cast<const TOKEN_USER*>(data_.data())->User.Sid; }
    /// Empty when the system cannot tell it.
    std::wstring text() const
    {
        LPWSTR made = nullptr;
        if (!isKnown_ || !::ConvertSidToStringSidW(id(), &made))
            return {};
        const std::unique_ptr<wchar_t, LocalEnd> held(made);
        return held.get();
    }

private:
    alignas(TOKEN_USER) std::array<char, sizeof(TOKEN_USER) + SECURITY_MAX_SID_SIZE> data_{};
    bool isKnown_ = false;
};

/// A user's pipes are apart from those of others, and those of a session from those of another, whose windows one
/// does not see.
std::wstring pipeName(const std::string& name, const User& user)
{
    DWORD session = 0;
    ::ProcessIdToSessionId(::GetCurrentProcessId(), &session);
    return L"\\\\.\\pipe\\velk-" + user.text() + L"-" + std::to_wstring(session) + L"-" +
           std::wstring(name.begin(), name.end());
}

/// Waits for what has begun on a pipe, and returns the number of bytes; empty when it failed, was not done in time, or
/// the sign to stop came first. Null is no sign.
std::optional<DWORD> resultOf(bool hasBegun, HANDLE pipe, OVERLAPPED& work, HANDLE stopSign, DWORD patience)
{
    if (!hasBegun && ::GetLastError() != ERROR_IO_PENDING)
        return std::nullopt;
    const std::array<HANDLE, 2> awaited{work.hEvent, stopSign};
    if (::WaitForMultipleObjects(stopSign == nullptr ? 1 : 2, awaited.data(), FALSE, patience) != WAIT_OBJECT_0)
        ::CancelIoEx(pipe, &work);
    DWORD count = 0;
    // The system uses the caller's memory until then.
    if (!::GetOverlappedResult(pipe, &work, &count, TRUE))
        return std::nullopt;
    return count;
}

/// An end of a pipe that somebody else closes.
class PipeChannel : public Channel
{
public:
    PipeChannel(HANDLE pipe, HANDLE stopSign) : pipe_(pipe), stopSign_(stopSign), done_(newEvent()) {}

    bool send(std::string_view bytes, WaitEnd end) override
    {
        while (!bytes.empty()) {
            OVERLAPPED work{};
            work.hEvent = done_.get();
            const auto size = static_cast<DWORD>(std::min<std::size_t>(bytes.size(), blockBytes));
            const bool hasBegun = ::WriteFile(pipe_, bytes.data(), size, nullptr, &work) != 0;
            const std::optional<DWORD> sent = resultOf(hasBegun, pipe_, work, stopSign_, millisecondsUntil(end));
            if (!sent)
                return false;
            bytes.remove_prefix(*sent);
        }
        return true;
    }

    std::size_t receive(char* bytes, std::size_t size, WaitEnd end) override
    {
        OVERLAPPED work{};
        work.hEvent = done_.get();
        const auto block = static_cast<DWORD>(std::min<std::size_t>(size, blockBytes));
        const bool hasBegun = ::ReadFile(pipe_, bytes, block, nullptr, &work) != 0;
        return resultOf(hasBegun, pipe_, work, stopSign_, millisecondsUntil(end)).value_or(0);
    }

private:
    HANDLE pipe_;
    HANDLE stopSign_;
    OwnedHandle done_;
};

/// The end of the program that listens, which uses its pipe again.
class AcceptedChannel : public PipeChannel
{
public:
    AcceptedChannel(HANDLE pipe, HANDLE stopSign) : PipeChannel(pipe, stopSign), accepted_(pipe) {}
    ~AcceptedChannel() override { ::DisconnectNamedPipe(accepted_); }

private:
    HANDLE accepted_;
};

/// The end of the program that connects.
class ConnectedChannel : public Channel
{
public:
    explicit ConnectedChannel(OwnedHandle pipe) : pipe_(std::move(pipe)), channel_(pipe_.get(), nullptr) {}

    bool send(std::string_view bytes, WaitEnd end) override { return channel_.send(bytes, end); }
    std::size_t receive(char* bytes, std::size_t size, WaitEnd end) override
    {
        return channel_.receive(bytes, size, end);
    }

private:
    OwnedHandle pipe_;
    PipeChannel channel_;
};

class PipeListener : public ChannelListener
{
public:
    explicit PipeListener(OwnedHandle pipe) : pipe_(std::move(pipe)), stopSign_(newEvent()), done_(newEvent()) {}

    bool isWhole() const noexcept { return stopSign_ != nullptr && done_ != nullptr; }

    std::unique_ptr<Channel> next() override
    {
        while (::WaitForSingleObject(stopSign_.get(), 0) != WAIT_OBJECT_0) {
            if (connects())
                return std::make_unique<AcceptedChannel>(pipe_.get(), stopSign_.get());
            ::DisconnectNamedPipe(pipe_.get());  // from one that has already gone
        }
        return nullptr;
    }

    void stop() noexcept override { ::SetEvent(stopSign_.get()); }

private:
    bool connects()
    {
        OVERLAPPED work{};
        work.hEvent = done_.get();
        if (::ConnectNamedPipe(pipe_.get(), &work))
            return true;
        if (::GetLastError() == ERROR_PIPE_CONNECTED)
            return true;
        return resultOf(false, pipe_.get(), work, stopSign_.get(), INFINITE).has_value();
    }

    OwnedHandle pipe_;
    OwnedHandle stopSign_;
    OwnedHandle done_;
};

/// Whether the pipe was made by a program of this user.
bool isOwn(HANDLE pipe, const User& user)
{
    PSID owner = nullptr;
    PSECURITY_DESCRIPTOR description = nullptr;
    if (::GetSecurityInfo(pipe, SE_KERNEL_OBJECT, OWNER_SECURITY_INFORMATION, &owner, nullptr, nullptr, nullptr,
                          &description) != ERROR_SUCCESS)
        return false;
    const std::unique_ptr<void, LocalEnd> held(description);
    return owner != nullptr && ::EqualSid(owner, user.id());
}

/// Opens the pipe as soon as nobody else uses it. The program behind it may know who this is, and no more.
OwnedHandle openedPipe(const std::wstring& name, WaitEnd end)
{
    for (;;) {
        OwnedHandle pipe =
            owned(::CreateFileW(name.c_str(), GENERIC_READ | GENERIC_WRITE, 0, nullptr, OPEN_EXISTING,
                                FILE_FLAG_OVERLAPPED | SECURITY_SQOS_PRESENT | SECURITY_IDENTIFICATION, nullptr));
        if (pipe != nullptr || ::GetLastError() != ERROR_PIPE_BUSY)
            return pipe;
        const DWORD patience = millisecondsUntil(end);
        if (patience == 0 || !::WaitNamedPipeW(name.c_str(), patience))
            return nullptr;
    }
}

}  // namespace

Listening listenOnChannel(const std::string& name)
{
    const User user;
    const std::wstring owner = user.text();
    if (owner.empty())
        return {};
    const std::wstring rights = L"O:" + owner + L"D:P(A;;GA;;;" + owner + L")";
    PSECURITY_DESCRIPTOR description = nullptr;
    if (!::ConvertStringSecurityDescriptorToSecurityDescriptorW(rights.c_str(), SDDL_REVISION_1, &description, nullptr))
        return {};
    const std::unique_ptr<void, LocalEnd> held(description);
    SECURITY_ATTRIBUTES security{sizeof security, description, FALSE};
    OwnedHandle pipe = owned(::CreateNamedPipeW(
        pipeName(name, user).c_str(), PIPE_ACCESS_DUPLEX | FILE_FLAG_OVERLAPPED | FILE_FLAG_FIRST_PIPE_INSTANCE,
        PIPE_TYPE_BYTE | PIPE_READMODE_BYTE | PIPE_WAIT | PIPE_REJECT_REMOTE_CLIENTS, 1, blockBytes, blockBytes, 0,
        &security));
    if (pipe == nullptr) {
        const DWORD error = ::GetLastError();
        return {nullptr, error == ERROR_ACCESS_DENIED || error == ERROR_PIPE_BUSY};
    }
    auto listener = std::make_unique<PipeListener>(std::move(pipe));
    if (!listener->isWhole())
        return {};
    return {std::move(listener), false};
}

std::unique_ptr<Channel> connectToChannel(const std::string& name, WaitEnd end)
{
    const User user;
    if (!user)
        return nullptr;
    OwnedHandle pipe = openedPipe(pipeName(name, user), end);
    if (pipe == nullptr || !isOwn(pipe.get(), user))
        return nullptr;
    // Windows come to the front only with the consent of the program that the user has just started.
    ULONG listener = 0;
    if (::GetNamedPipeServerProcessId(pipe.get(), &listener))
        ::AllowSetForegroundWindow(listener);
    return std::make_unique<ConnectedChannel>(std::move(pipe));
}

fileString pathWithoutLinks(const fileString& path)
{
    constexpr DWORD everybody = FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE;
    const OwnedHandle file = owned(::CreateFileW(Velk::absolutePath(path).toNativeString().c_str(), 0, everybody,
                                                 nullptr, OPEN_EXISTING, FILE_FLAG_BACKUP_SEMANTICS, nullptr));
    if (file == nullptr)
        return {};
    std::wstring found(32'768, L'\0');
    const DWORD length =
        ::GetFinalPathNameByHandleW(file.get(), found.data(), static_cast<DWORD>(found.size()), VOLUME_NAME_DOS);
    found.resize(length < found.size() ? length : 0);
    return fileString::fromNative(found);
}

}  // namespace VelkHost
