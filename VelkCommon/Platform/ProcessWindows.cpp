#include <VelkCommon/Platform/Process.h>

#include <VelkCommon/Platform/detail/Windows.h>

#include <bcrypt.h>

#include <algorithm>
#include <cstddef>

namespace Velk::Platform {
namespace {

std::string textOf(DWORD error)
{
    LocalMemory<wchar_t> buffer;
    const DWORD size =
        ::FormatMessageW(FORMAT_MESSAGE_ALLOCATE_BUFFER | FORMAT_MESSAGE_FROM_SYSTEM | FORMAT_MESSAGE_IGNORE_INSERTS,
                         nullptr, error, 0, reinterpret_cast<LPWSTR>(&buffer.pointer), 0, nullptr);
    std::wstring_view text(buffer.pointer, size);
    while (!text.empty() && (text.back() == L'\n' || text.back() == L'\r' || text.back() == L' '))
        text.remove_suffix(1);
    return text.empty() ? "error " + std::to_string(error) : fromNativePath(text);
}

// The text that is in `codePage`; nothing where it cannot be.
std::wstring wideText(const std::string& text, UINT codePage, DWORD flags)
{
    const auto bytes = static_cast<int>(text.size());
    std::wstring wide;
    wide.resize(static_cast<std::size_t>(::MultiByteToWideChar(codePage, flags, text.data(), bytes, nullptr, 0)));
    ::MultiByteToWideChar(codePage, flags, text.data(), bytes, wide.data(), static_cast<int>(wide.size()));
    return wide;
}

}  // namespace

std::string lastErrorText()
{
    return textOf(::GetLastError());
}

std::string errorText(const std::error_code& error)
{
    if (error.category() == std::system_category())
        return textOf(static_cast<DWORD>(error.value()));
    return utf8OfSystemText(error.message());
}

std::string utf8OfSystemText(std::string text)
{
    constexpr std::size_t longest = 1 << 20;  // nobody reads more
    if (text.empty() || text.size() > longest || !wideText(text, CP_UTF8, MB_ERR_INVALID_CHARS).empty())
        return text;
    const std::wstring wide = wideText(text, CP_ACP, 0);
    return wide.empty() ? text : fromNativePath(wide);
}

bool lastErrorIsNotFound() noexcept
{
    const DWORD error = ::GetLastError();
    return error == ERROR_FILE_NOT_FOUND || error == ERROR_PATH_NOT_FOUND || error == ERROR_INVALID_NAME ||
           error == ERROR_BAD_NETPATH || error == ERROR_BAD_PATHNAME || error == ERROR_INVALID_DRIVE;
}

bool lastErrorIsLackOfMemory() noexcept
{
    const DWORD error = ::GetLastError();
    return error == ERROR_NOT_ENOUGH_MEMORY || error == ERROR_OUTOFMEMORY;
}

bool debuggerPresent()
{
    return ::IsDebuggerPresent() != 0;
}

void debugBreak()
{
    ::DebugBreak();
}

void writeToStandardError(std::string_view text) noexcept
{
    const HANDLE handle = ::GetStdHandle(STD_ERROR_HANDLE);
    if (handle == nullptr || handle == INVALID_HANDLE_VALUE)
        return;
    while (!text.empty()) {
        DWORD written = 0;
        const auto size = static_cast<DWORD>(std::min(text.size(), requestLimit));
        if (::WriteFile(handle, text.data(), size, &written, nullptr) == 0 || written == 0)
            return;
        text.remove_prefix(written);
    }
}

std::uint32_t currentThreadId() noexcept
{
    return ::GetCurrentThreadId();
}

bool fillRandom(void* bytes, std::size_t size) noexcept
{
    return ::BCryptGenRandom(nullptr, static_cast<PUCHAR>(bytes), static_cast<ULONG>(size),
                             BCRYPT_USE_SYSTEM_PREFERRED_RNG) == 0;
}

}  // namespace Velk::Platform
