#include <VelkCommon/Platform/File.h>

#include <VelkCommon/Platform/FileSystem.h>
#include <VelkCommon/Platform/detail/Windows.h>

#include <algorithm>
#include <utility>

namespace Velk::Platform {
namespace {

// Like openFile(), but refuses devices and pipes, which may have no end and would keep a reader busy for ever.
HANDLE openForReading(const std::string& path, DWORD share) noexcept
{
    const HANDLE file = openFile(path, GENERIC_READ, share, OPEN_EXISTING);
    if (file == INVALID_HANDLE_VALUE || ::GetFileType(file) == FILE_TYPE_DISK)
        return file;
    ::CloseHandle(file);
    ::SetLastError(ERROR_BAD_FILE_TYPE);
    return INVALID_HANDLE_VALUE;
}

// Empty where there is no such folder.
std::wstring lockNameOf(const std::string& folder)
{
    const Handle opened(::CreateFileW(systemPath(folder).c_str(), FILE_READ_ATTRIBUTES, shareAll, nullptr,
                                      OPEN_EXISTING, FILE_FLAG_BACKUP_SEMANTICS, nullptr));
    BY_HANDLE_FILE_INFORMATION information = {};
    if (!opened || ::GetFileInformationByHandle(opened.get(), &information) == 0 ||
        !isFolder(information.dwFileAttributes))
        return {};
    std::wstring name = L"Global\\velk-folder";
    for (const DWORD part : {information.dwVolumeSerialNumber, information.nFileIndexHigh, information.nFileIndexLow})
        name += L'-' + std::to_wstring(part);
    return name;
}

}  // namespace

File File::open(const std::string& path, Mode mode) noexcept
{
    if (mode == Mode::read)
        return File(numberOf(openForReading(path, shareAll)));
    return File(numberOf(openFile(path, GENERIC_READ | GENERIC_WRITE, shareAll, CREATE_NEW)));
}

File::LockResult File::openLocked(const std::string& path, Lock lock) noexcept
{
    // An open file is locked here: nobody else may open it in a way that it is not shared for.
    // A file that is only read may be replaced meanwhile: the reader goes on with the old one.
    const DWORD share = lock == Lock::exclusive ? 0
                        : lock == Lock::shared  ? FILE_SHARE_READ | FILE_SHARE_DELETE
                                                : FILE_SHARE_READ;
    File file(numberOf(lock == Lock::shared ? openForReading(path, share)
                                            : openFile(path, GENERIC_READ | GENERIC_WRITE, share, OPEN_ALWAYS)));
    if (!file.isOpen() && lock != Lock::shared && ::GetLastError() == ERROR_ACCESS_DENIED)
        file = File(numberOf(openFile(path, GENERIC_WRITE, share, OPEN_ALWAYS)));
    if (!file.isOpen())
        return ::GetLastError() == ERROR_SHARING_VIOLATION ? LockResult::held : LockResult::failed;
    *this = std::move(file);
    return LockResult::locked;
}

// An open folder that is not shared could not be listed by anybody. So the lock is an object of the system that bears
// the folder's identity, and exists for as long as somebody has a handle of it.
File::LockResult File::lockFolder(const std::string& folder, Lock lock) noexcept
{
    const std::wstring name = guarded([&] { return lockNameOf(folder); }, std::wstring());
    if (name.empty())
        return LockResult::failed;
    // Another user's may not be opened, but says that it is there.
    if (File existing(numberOf(::OpenEventW(READ_CONTROL, FALSE, name.c_str())));
        existing.handle_ != 0 || ::GetLastError() == ERROR_ACCESS_DENIED)
        return LockResult::held;
    if (lock == Lock::shared)
        return LockResult::locked;
    ::SetLastError(ERROR_SUCCESS);
    const HANDLE event = ::CreateEventW(nullptr, TRUE, FALSE, name.c_str());
    if (event == nullptr)
        return LockResult::failed;
    const bool isNew = ::GetLastError() != ERROR_ALREADY_EXISTS;
    File created(numberOf(event));
    if (!isNew)
        return LockResult::held;
    *this = std::move(created);
    return LockResult::locked;
}

// Nothing to do: a file with a second handle could not be replaced or removed.
File File::duplicate() const noexcept
{
    return {};
}

bool File::close() noexcept
{
    return ::CloseHandle(handleOf(std::exchange(handle_, closed))) != 0;
}

long long File::read(char* bytes, std::size_t size) noexcept
{
    std::size_t total = 0;
    while (total < size) {
        DWORD got = 0;
        const auto request = static_cast<DWORD>(std::min(size - total, requestLimit));
        if (::ReadFile(handleOf(handle_), bytes + total, request, &got, nullptr) == 0)
            return -1;
        if (got == 0)
            break;
        total += got;
    }
    return static_cast<long long>(total);
}

long long File::readAt(long long offset, char* bytes, std::size_t size) noexcept
{
    return seek(offset) ? read(bytes, size) : -1;
}

bool File::write(const char* bytes, std::size_t size) noexcept
{
    while (size > 0) {
        DWORD written = 0;
        const auto request = static_cast<DWORD>(std::min(size, requestLimit));
        if (::WriteFile(handleOf(handle_), bytes, request, &written, nullptr) == 0 || written == 0)
            return false;
        bytes += written;
        size -= written;
    }
    return true;
}

bool File::seek(long long offset) noexcept
{
    LARGE_INTEGER distance = {};
    distance.QuadPart = offset;
    return ::SetFilePointerEx(handleOf(handle_), distance, nullptr, FILE_BEGIN) != 0;
}

long long File::size() const noexcept
{
    LARGE_INTEGER size = {};
    return ::GetFileSizeEx(handleOf(handle_), &size) != 0 ? size.QuadPart : -1;
}

bool File::truncate(long long size) noexcept
{
    if (::GetFileType(handleOf(handle_)) != FILE_TYPE_DISK)
        return true;
    return seek(size) && ::SetEndOfFile(handleOf(handle_)) != 0;
}

bool File::sync() noexcept
{
    // A file that was opened only for reading has nothing to write.
    return ::FlushFileBuffers(handleOf(handle_)) != 0 || ::GetLastError() == ERROR_ACCESS_DENIED;
}

void File::expectSequentialReading() noexcept
{
    // Nothing to do: the system notices sequential reading by itself.
}

// Nothing to do: the system copies files only by name.
void File::copyBySystem(File&) noexcept {}

long long File::copyBySystem(File&, long long, long long) noexcept
{
    return 0;
}

bool File::copyPermissionsFrom(const std::string& source) noexcept
{
    // A file inherits the access list of its folder, so there is nothing to copy.
    return nameTaken(source);
}

}  // namespace Velk::Platform
