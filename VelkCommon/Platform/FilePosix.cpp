#include <VelkCommon/Platform/File.h>

#include <VelkCommon/Platform/detail/Posix.h>

#include <sys/file.h>

#include <algorithm>
#include <utility>

namespace Velk::Platform {
namespace {

// The kernel shortens larger requests anyway.
constexpr std::size_t kernelCopyBlock = std::size_t{1} << 30;

int descriptorOf(std::intptr_t handle) noexcept
{
    return static_cast<int>(handle);
}

// Calls `readFrom(number of bytes read so far)` until all bytes are read or the file ends; -1 on failure.
template <typename Read>
long long readAll(std::size_t size, Read readFrom) noexcept
{
    std::size_t total = 0;
    while (total < size) {
        const ssize_t got = uninterrupted([&] { return readFrom(total); });
        if (got < 0)
            return -1;
        if (got == 0)
            break;
        total += static_cast<std::size_t>(got);
    }
    return static_cast<long long>(total);
}

bool lockAtOnce(const Descriptor& file, int kind) noexcept
{
    return uninterrupted([&] { return ::flock(file.get(), kind | LOCK_NB); }) == 0;
}

// Opens for a lock. A link in a folder that everybody may change could lead to a file of this user, so writers do not
// follow it.
Descriptor openForLock(const std::string& path, File::Lock lock) noexcept
{
    if (lock == File::Lock::shared)
        return openForReading(path);
    // Some systems let nobody ask for a file to be made where somebody else's is in a folder for everybody.
    Descriptor file = openFile(path, O_RDWR | O_NOFOLLOW);
    if (!file && errno == ENOENT)
        file = openFile(path, O_RDWR | O_CREAT | O_NOFOLLOW);
    if (!file && errno == EACCES)
        file = openFile(path, (lock == File::Lock::marker ? O_RDONLY : O_WRONLY) | O_NOFOLLOW);
    return file;
}

// Between opening and locking, another file may have taken the name: then the lock protects nothing.
bool stillNames(const std::string& path, const Descriptor& file) noexcept
{
    struct stat named = {};
    return ::stat(systemPath(path), &named) == 0 && identityOf(named) == identityOf(file);
}

}  // namespace

File File::open(const std::string& path, Mode mode) noexcept
{
    if (mode == Mode::read)
        return File(openForReading(path).release());
    Descriptor file = openFile(path, O_RDWR | O_CREAT | O_EXCL);
    // Whoever removes leftovers may have been quicker than the lock. A file system without locks has no such remover.
    // The lock is a reader's, because the file may be given its name while it is held, and must not look as if somebody
    // were writing it.
    if (file && !lockAtOnce(file, LOCK_SH) && errno == EWOULDBLOCK)
        return {};
    if (!file || !stillNames(path, file))
        return {};
    return File(file.release());
}

File::LockResult File::openLocked(const std::string& path, Lock lock) noexcept
{
    Descriptor file = openForLock(path, lock);
    if (!file)
        return LockResult::failed;
    if (!lockAtOnce(file, lock == Lock::shared ? LOCK_SH : LOCK_EX))
        return errno == EWOULDBLOCK ? LockResult::held : LockResult::failed;
    if (!stillNames(path, file))
        return LockResult::held;
    if (lock == Lock::marker)
        static_cast<void>(::fchmod(file.get(), fileBits));  // fails for the file of another user, who has done it
    *this = File(file.release());
    return LockResult::locked;
}

File::LockResult File::lockFolder(const std::string& folder, Lock lock) noexcept
{
    Descriptor opened = openPath(folder, O_RDONLY | O_DIRECTORY);
    if (!opened)
        return LockResult::failed;
    if (!lockAtOnce(opened, lock == Lock::shared ? LOCK_SH : LOCK_EX))
        return errno == EWOULDBLOCK ? LockResult::held : LockResult::failed;
    *this = File(opened.release());
    return LockResult::locked;
}

File File::duplicate() const noexcept
{
    return File(::fcntl(descriptorOf(handle_), F_DUPFD_CLOEXEC, 0));
}

bool File::close() noexcept
{
    return ::close(descriptorOf(std::exchange(handle_, closed))) == 0;
}

long long File::read(char* bytes, std::size_t size) noexcept
{
    return readAll(size, [&](std::size_t done) { return ::read(descriptorOf(handle_), bytes + done, size - done); });
}

long long File::readAt(long long offset, char* bytes, std::size_t size) noexcept
{
    return readAll(size, [&](std::size_t done) {
        const auto position = static_cast<off_t>(offset + static_cast<long long>(done));
        return ::pread(descriptorOf(handle_), bytes + done, size - done, position);
    });
}

bool File::write(const char* bytes, std::size_t size) noexcept
{
    while (size > 0) {
        const ssize_t written = uninterrupted([&] { return ::write(descriptorOf(handle_), bytes, size); });
        if (written <= 0)
            return false;
        bytes += written;
        size -= static_cast<std::size_t>(written);
    }
    return true;
}

bool File::seek(long long offset) noexcept
{
    return ::lseek(descriptorOf(handle_), offset, SEEK_SET) == offset;
}

long long File::size() const noexcept
{
    struct stat status = {};
    return ::fstat(descriptorOf(handle_), &status) == 0 ? static_cast<long long>(status.st_size) : -1;
}

bool File::truncate(long long size) noexcept
{
    struct stat status = {};
    if (::fstat(descriptorOf(handle_), &status) != 0)
        return false;
    return !S_ISREG(status.st_mode) || uninterrupted([&] { return ::ftruncate(descriptorOf(handle_), size); }) == 0;
}

bool File::sync() noexcept
{
    return uninterrupted([&] { return ::fsync(descriptorOf(handle_)); }) == 0;
}

void File::expectSequentialReading() noexcept
{
    ::posix_fadvise(descriptorOf(handle_), 0, 0, POSIX_FADV_SEQUENTIAL);
}

void File::copyBySystem(File& source) noexcept
{
    const int from = descriptorOf(source.handle_);
    const int to = descriptorOf(handle_);
    ssize_t copied = 0;
    do
        copied = uninterrupted([&] { return ::copy_file_range(from, nullptr, to, nullptr, kernelCopyBlock, 0); });
    while (copied > 0);
}

long long File::copyBySystem(File& source, long long offset, long long size) noexcept
{
    off_t position = offset;
    auto rest = static_cast<std::size_t>(size);
    while (rest > 0) {
        const ssize_t copied = uninterrupted([&] {
            return ::copy_file_range(descriptorOf(source.handle_), &position, descriptorOf(handle_), nullptr,
                                     std::min(rest, kernelCopyBlock), 0);
        });
        if (copied <= 0)
            break;
        rest -= static_cast<std::size_t>(copied);
    }
    return position - offset;
}

bool File::copyPermissionsFrom(const std::string& source) noexcept
{
    struct stat status = {};
    return ::stat(systemPath(source), &status) == 0 && ::fchmod(descriptorOf(handle_), status.st_mode & allBits) == 0;
}

}  // namespace Velk::Platform
