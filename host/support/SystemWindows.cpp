#include "host/support/System.h"

#include <VelkCommon/Files/FileState.h>
#include <VelkCommon/Text/StringConvert.h>

#include <algorithm>
#include <array>
#include <atomic>
#include <cstdio>
#include <winsock2.h>

#include <windows.h>

#include <shellapi.h>

namespace VelkHost {
namespace {

std::string utf8(const wchar_t* text)
{
    return StringConvert::toStdUtf8String(StringConvert::toUnicode(std::wstring_view(text)));
}

std::atomic<bool> interruptSeen{false};

// The second one goes to the system's own handler, which ends the program.
BOOL WINAPI noteInterrupt(DWORD event)
{
    return (event == CTRL_C_EVENT || event == CTRL_BREAK_EVENT) && !interruptSeen.exchange(true);
}

HANDLE standardOutput()
{
    return ::GetStdHandle(STD_OUTPUT_HANDLE);
}

WriteResult writeAll(HANDLE file, std::string_view bytes) noexcept
{
    constexpr std::size_t blockBytes = 1 << 20;
    while (!bytes.empty()) {
        DWORD written = 0;
        const auto block = static_cast<DWORD>(std::min(bytes.size(), blockBytes));
        if (!::WriteFile(file, bytes.data(), block, &written, nullptr)) {
            const DWORD error = ::GetLastError();
            return error == ERROR_BROKEN_PIPE || error == ERROR_NO_DATA ? WriteResult::ReaderGone : WriteResult::Failed;
        }
        bytes.remove_prefix(written);
    }
    return WriteResult::Written;
}

}  // namespace

std::vector<std::string> programArguments(int, char**)
{
    std::vector<std::string> result;
    int count = 0;
    wchar_t** const wide = ::CommandLineToArgvW(::GetCommandLineW(), &count);
    for (int i = 1; wide != nullptr && i < count; ++i)
        result.push_back(utf8(wide[i]));
    ::LocalFree(wide);
    return result;
}

void prepareConsole()
{
    DWORD mode = 0;
    ::SetConsoleOutputCP(CP_UTF8);
    if (::GetConsoleMode(standardOutput(), &mode))
        ::SetConsoleMode(standardOutput(), mode | ENABLE_VIRTUAL_TERMINAL_PROCESSING);
}

void shareParentsConsole()
{
    if (standardOutput() != nullptr || !::AttachConsole(ATTACH_PARENT_PROCESS))
        return;
    for (FILE* const stream : {stdout, stderr})
        static_cast<void>(std::freopen("CONOUT$", "w", stream));
    const HANDLE console = ::CreateFileW(L"CONOUT$", GENERIC_READ | GENERIC_WRITE, FILE_SHARE_READ | FILE_SHARE_WRITE,
                                         nullptr, OPEN_EXISTING, 0, nullptr);
    ::SetStdHandle(STD_OUTPUT_HANDLE, console);
    ::SetStdHandle(STD_ERROR_HANDLE, console);
    prepareConsole();
}

bool outputIsTerminal()
{
    DWORD mode = 0;
    return ::GetConsoleMode(standardOutput(), &mode) != 0;
}

std::size_t terminalColumns()
{
    constexpr std::size_t usualColumns = 80;
    CONSOLE_SCREEN_BUFFER_INFO info{};
    if (!::GetConsoleScreenBufferInfo(standardOutput(), &info))
        return usualColumns;
    // A console breaks the line when its last column is written.
    return static_cast<std::size_t>(std::max<int>(info.srWindow.Right - info.srWindow.Left, 1));
}

WriteResult writeToOutput(std::string_view bytes) noexcept
{
    return writeAll(standardOutput(), bytes);
}

void writeToError(std::string_view text) noexcept
{
    // A program with a window may have none.
    const HANDLE standardError = ::GetStdHandle(STD_ERROR_HANDLE);
    if (standardError != nullptr && standardError != INVALID_HANDLE_VALUE)
        writeAll(standardError, text);
}

void watchInterrupts()
{
    ::SetConsoleCtrlHandler(noteInterrupt, TRUE);
}

bool interrupted() noexcept
{
    return interruptSeen;
}

std::string pathForLibraries(const fileString& path)
{
    return utf8(Velk::absolutePath(path).toNativeString().c_str());
}

std::string shellQuoted(const std::string& text)
{
    // A path cannot hold a quote; in other text a backslash before it serves most programs.
    if (!text.empty() && text.find_first_of(" \t\"&|<>^()%!;,=") == std::string::npos)
        return text;
    std::string quoted = "\"";
    for (const char c : text)
        quoted += c == '"' ? std::string("\\\"") : std::string(1, c);
    return quoted + "\"";
}

std::string programPath()
{
    std::array<wchar_t, 32'768> path;
    const DWORD length = ::GetModuleFileNameW(nullptr, path.data(), static_cast<DWORD>(path.size()));
    return length > 0 && length < path.size() ? utf8(path.data()) : "velk";
}

void allowQuickRestart(std::intptr_t socket) noexcept
{
    // The port comes back at once in any case; what must be asked for is that nobody else takes it.
    const BOOL yes = TRUE;
    ::setsockopt(static_cast<SOCKET>(socket), SOL_SOCKET, SO_EXCLUSIVEADDRUSE, reinterpret_cast<const char*>(&yes),
                 sizeof yes);
}

}  // namespace VelkHost
