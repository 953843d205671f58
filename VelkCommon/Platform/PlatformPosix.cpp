#include <VelkCommon/Platform/Platform.h>

#include <VelkCommon/Platform/detail/Posix.h>

#include <pwd.h>
#include <sys/random.h>

#include <algorithm>
#include <csignal>
#include <cstdlib>
#include <cstring>
#include <fstream>
#include <vector>

namespace Velk::Platform {
namespace {

std::string environment(const char* name)
{
    const char* value = std::getenv(name);
    return value != nullptr && value[0] == '/' ? value : std::string();
}

std::string homeFolder()
{
    if (std::string home = environment("HOME"); !home.empty())
        return home;
    struct passwd entry = {};
    struct passwd* found = nullptr;
    std::vector<char> buffer(std::size_t{1} << 14);
    if (::getpwuid_r(::geteuid(), &entry, buffer.data(), buffer.size(), &found) == 0 && found != nullptr)
        return found->pw_dir;
    return "/";
}

}  // namespace

// ---- The process ---------------------------------------------------------------------------------

std::string lastErrorText()
{
    return std::strerror(errno);
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

// ---- Path text -----------------------------------------------------------------------------------

std::size_t rootLength(std::string_view path) noexcept
{
    return std::min(path.find_first_not_of('/'), path.size());
}

bool isAbsolute(std::string_view path) noexcept
{
    return path.starts_with('/');
}

std::wstring toNativePath(std::string_view path)
{
    const std::u32string points = toUnicodePath(path);
    return {points.begin(), points.end()};
}

std::string fromNativePath(std::wstring_view native)
{
    return fromUnicodePath(std::u32string(native.begin(), native.end()));
}

std::string userDataFolder()
{
    if (std::string folder = environment("XDG_DATA_HOME"); !folder.empty())
        return folder;
    return homeFolder() + "/.local/share";
}

std::string temporaryFolder()
{
    if (std::string folder = environment("TMPDIR"); !folder.empty())
        return folder;
    return "/tmp";
}

std::string userFolderName()
{
    return "velk-" + std::to_string(::geteuid());
}

}  // namespace Velk::Platform
