#pragma once

/// @file
/// Helpers that the Windows sources of this layer share.

#include <VelkCommon/Platform/PathText.h>
#include <VelkCommon/detail/Guarded.h>

// The order of the system's headers matters: windows.h comes first.
#include <windows.h>

#include <algorithm>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace Velk::Platform {

/// A single request to the system must fit into 32 bits.
inline constexpr std::size_t requestLimit = std::size_t{1} << 30;
inline constexpr DWORD shareAll = FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE;
inline constexpr std::wstring_view longPrefix = L"\\\\?\\";
inline constexpr std::wstring_view longShare = L"\\\\?\\UNC\\";
/// The limit for files is 259 characters; that for folders is 12 less.
inline constexpr std::size_t longestPlainPath = 247;
/// How often to try, because programs that inspect every new file hold it open for a moment.
inline constexpr int busyAttempts = 10;
/// The same for what takes the place of a file that may be read just now: two seconds, as long as a reader waits for a
/// writer.
inline constexpr int readAttempts = 100;
inline constexpr DWORD busyPause = 20;

/// The form of a path that counts from the current folder or drive in which it does not; an absolute path with "." and
/// ".." resolved. `path` itself where the system cannot tell.
inline std::wstring fullPath(const std::wstring& path)
{
    std::wstring full(path.size() + MAX_PATH, L'\0');
    for (;;) {
        const DWORD size = ::GetFullPathNameW(path.c_str(), static_cast<DWORD>(full.size()), full.data(), nullptr);
        if (size == 0)
            return path;
        const bool fits = size < full.size();
        full.resize(size);
        if (fits)
            return full;
    }
}

/// The path as system calls take it; one with a zero byte would name another file, so it becomes the
/// empty path, which names nothing. A path from the current folder gets the long form, too, where the whole is too long
/// for the plain one. An exception leaves lack of memory as the last error, as a call does that could not get any.
inline std::wstring systemPath(const std::string& path)
try {
    if (path.empty() || path.find('\0') != std::string::npos)
        return {};
    std::wstring native = toNativePath(path);
    if (isAbsolute(path) || native.starts_with(longPrefix))
        return native;
    const std::wstring full = fullPath(native);
    return full.size() > longestPlainPath ? toNativePath(fromNativePath(full)) : native;
} catch (...) {
    ::SetLastError(ERROR_NOT_ENOUGH_MEMORY);
    throw;
}

/// An open handle. The destructor closes it and leaves the last error as it was.
class Handle
{
public:
    explicit Handle(HANDLE handle) noexcept : handle_(handle) {}
    Handle(const Handle&) = delete;
    Handle& operator=(const Handle&) = delete;
    ~Handle()
    {
        const DWORD error = ::GetLastError();
        if (*this)
            ::CloseHandle(handle_);
        ::SetLastError(error);
    }

    HANDLE get() const noexcept { return handle_; }
    explicit operator bool() const noexcept { return handle_ != INVALID_HANDLE_VALUE; }

private:
    HANDLE handle_;
};

inline HANDLE handleOf(std::intptr_t handle) noexcept
{
    return reinterpret_cast<HANDLE>(handle);
}

inline std::intptr_t numberOf(HANDLE handle) noexcept
{
    return reinterpret_cast<std::intptr_t>(handle);
}

/// Opens a file, never a folder: without FILE_FLAG_BACKUP_SEMANTICS the system itself refuses folders.
inline HANDLE openFile(const std::string& path, DWORD access, DWORD share, DWORD creation) noexcept
{
    return guarded(
        [&] {
            return ::CreateFileW(systemPath(path).c_str(), access, share, nullptr, creation, FILE_ATTRIBUTE_NORMAL,
                                 nullptr);
        },
        INVALID_HANDLE_VALUE);
}

inline bool isBusy(DWORD error) noexcept
{
    return error == ERROR_SHARING_VIOLATION || error == ERROR_ACCESS_DENIED || error == ERROR_LOCK_VIOLATION;
}

/// Tries the call again, so many times in all, while another program holds the file.
template <typename Call>
bool patiently(int attempts, Call call)
{
    for (int attempt = 1;; ++attempt) {
        if (call())
            return true;
        if (attempt == attempts || !isBusy(::GetLastError()))
            return false;
        ::Sleep(busyPause);
    }
}

inline DWORD attributesOf(const std::wstring& path) noexcept
{
    return path.empty() ? INVALID_FILE_ATTRIBUTES : ::GetFileAttributesW(path.c_str());
}

inline bool isFolder(DWORD attributes) noexcept
{
    return (attributes & FILE_ATTRIBUTE_DIRECTORY) != 0;
}

inline bool isLink(DWORD attributes) noexcept
{
    return (attributes & FILE_ATTRIBUTE_REPARSE_POINT) != 0;
}

inline bool clearReadOnly(const std::wstring& path, DWORD attributes) noexcept
{
    if ((attributes & FILE_ATTRIBUTE_READONLY) == 0)
        return true;
    return ::SetFileAttributesW(path.c_str(), attributes & ~static_cast<DWORD>(FILE_ATTRIBUTE_READONLY)) != 0;
}

/// Deletes one file, one link or one empty folder.
inline bool removeOne(const std::wstring& path, DWORD attributes, bool overrideReadOnly)
{
    if (overrideReadOnly && !clearReadOnly(path, attributes))
        return false;
    const auto remove = [&] {
        return (isFolder(attributes) ? ::RemoveDirectoryW(path.c_str()) : ::DeleteFileW(path.c_str())) != 0;
    };
    // What is read-only is refused for good, in the same words as a file that is in use for the moment.
    const bool staysReadOnly = !overrideReadOnly && (attributes & FILE_ATTRIBUTE_READONLY) != 0;
    return staysReadOnly ? remove() : patiently(busyAttempts, remove);
}

/// The pieces of a path joined, with "." and ".." resolved; the system does not resolve them after the
/// long-path prefix.
inline std::wstring resolved(std::wstring_view pieces)
{
    std::vector<std::wstring_view> kept;
    while (!pieces.empty()) {
        const std::size_t end = std::min(pieces.find(L'\\'), pieces.size());
        const std::wstring_view piece = pieces.substr(0, end);
        pieces.remove_prefix(std::min(end + 1, pieces.size()));
        if (piece == L"..") {
            if (!kept.empty())
                kept.pop_back();
        } else if (!piece.empty() && piece != L".") {
            kept.push_back(piece);
        }
    }
    std::wstring joined;
    for (const std::wstring_view piece : kept)
        joined.append(joined.empty() ? L"" : L"\\").append(piece);
    return joined;
}

template <typename T>
struct LocalMemory
{
    T* pointer = nullptr;
    LocalMemory() = default;
    LocalMemory(const LocalMemory&) = delete;
    LocalMemory& operator=(const LocalMemory&) = delete;
    ~LocalMemory() { ::LocalFree(pointer); }
};

}  // namespace Velk::Platform
