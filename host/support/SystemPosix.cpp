#include "host/support/System.h"

#include <array>
#include <cerrno>
#include <csignal>
#include <sys/ioctl.h>
#include <sys/socket.h>
#include <unistd.h>

namespace VelkHost {
namespace {

volatile std::sig_atomic_t interruptSeen = 0;

extern "C" void noteInterrupt(int)
{
    interruptSeen = 1;
}

WriteResult writeAll(int descriptor, std::string_view bytes) noexcept
{
    while (!bytes.empty()) {
        const ssize_t written = ::write(descriptor, bytes.data(), bytes.size());
        if (written < 0 && errno == EINTR)
            continue;
        if (written < 0)
            return errno == EPIPE ? WriteResult::ReaderGone : WriteResult::Failed;
        bytes.remove_prefix(static_cast<std::size_t>(written));
    }
    return WriteResult::Written;
}

}  // namespace

std::vector<std::string> programArguments(int argumentCount, char** arguments)
{
    return {arguments + (argumentCount > 0 ? 1 : 0), arguments + argumentCount};
}

void prepareConsole()
{
    std::signal(SIGPIPE, SIG_IGN);
}

void shareParentsConsole() {}

bool outputIsTerminal()
{
    return ::isatty(STDOUT_FILENO) == 1;
}

std::size_t terminalColumns()
{
    constexpr std::size_t usualColumns = 80;
    winsize size{};
    const bool known = ::ioctl(STDOUT_FILENO, TIOCGWINSZ, &size) == 0 && size.ws_col > 0;
    return known ? size.ws_col : usualColumns;
}

WriteResult writeToOutput(std::string_view bytes) noexcept
{
    return writeAll(STDOUT_FILENO, bytes);
}

void writeToError(std::string_view text) noexcept
{
    writeAll(STDERR_FILENO, text);
}

void watchInterrupts()
{
    struct sigaction action = {};
    action.sa_handler = noteInterrupt;
    action.sa_flags = static_cast<int>(SA_RESETHAND | SA_RESTART);
    ::sigaction(SIGINT, &action, nullptr);
    ::sigaction(SIGTERM, &action, nullptr);
}

bool interrupted() noexcept
{
    return interruptSeen != 0;
}

std::string pathForLibraries(const fileString& path)
{
    return path.utf8();
}

std::string shellQuoted(const std::string& text)
{
    constexpr std::string_view plain = "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789-_./=:,+@%";
    if (!text.empty() && text.find_first_not_of(plain) == std::string::npos)
        return text;
    std::string quoted = "'";
    for (const char c : text)
        quoted += c == '\'' ? std::string("'\\''") : std::string(1, c);
    return quoted + "'";
}

std::string programPath()
{
    std::array<char, 4'096> path;
    const ssize_t length = ::readlink("/proc/self/exe", path.data(), path.size());
    if (length <= 0 || static_cast<std::size_t>(length) >= path.size())
        return "velk";
    std::string program(path.data(), static_cast<std::size_t>(length));
    std::array<char, 4'096> folder;
    if (::getcwd(folder.data(), folder.size()) != nullptr) {
        const std::string below = std::string(folder.data()) + "/";
        if (program.starts_with(below) && program.find('/', below.size()) != std::string::npos)
            program.erase(0, below.size());
    }
    return program;
}

void allowQuickRestart(std::intptr_t socket) noexcept
{
    const int yes = 1;
    ::setsockopt(static_cast<int>(socket), SOL_SOCKET, SO_REUSEADDR, &yes, sizeof yes);
}

}  // namespace VelkHost
