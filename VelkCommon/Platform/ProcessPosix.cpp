#include <VelkCommon/Platform/Process.h>

#include <VelkCommon/Platform/detail/Posix.h>

#include <sys/random.h>

#include <csignal>
#include <cstdlib>
#include <cstring>
#include <fstream>

namespace Velk::Platform {

std::string lastErrorText()
{
    return std::strerror(errno);
}

std::string errorText(const std::error_code& error)
{
    return error.message();
}

std::string utf8OfSystemText(std::string text)
{
    return text;
}

bool lastErrorIsNotFound() noexcept
{
    return errno == ENOENT || errno == ENOTDIR;
}

bool lastErrorIsLackOfMemory() noexcept
{
    return errno == ENOMEM;
}

bool debuggerPresent()
{
    std::ifstream status("/proc/self/status");
    for (std::string line; std::getline(status, line);)
        if (line.starts_with("TracerPid:"))
            return std::strtol(line.c_str() + std::strlen("TracerPid:"), nullptr, 10) != 0;
    return false;
}

void debugBreak()
{
    static_cast<void>(std::raise(SIGTRAP));
}

void writeToStandardError(std::string_view text) noexcept
{
    while (!text.empty()) {
        const ssize_t written = uninterrupted([&] { return ::write(STDERR_FILENO, text.data(), text.size()); });
        if (written <= 0)
            return;
        text.remove_prefix(static_cast<std::size_t>(written));
    }
}

std::uint32_t currentThreadId() noexcept
{
    return static_cast<std::uint32_t>(::gettid());
}

bool fillRandom(void* bytes, std::size_t size) noexcept
{
    auto* next = static_cast<unsigned char*>(bytes);
    while (size > 0) {
        const ssize_t got = uninterrupted([&] { return ::getrandom(next, size, 0); });
        if (got <= 0)
            return false;
        next += got;
        size -= static_cast<std::size_t>(got);
    }
    return true;
}

}  // namespace Velk::Platform
