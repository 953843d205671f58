#pragma once

/// @file
/// Helpers that the POSIX sources of this layer share.

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <string>
#include <utility>

namespace Velk::Platform {

inline constexpr mode_t allBits = 0777;
inline constexpr mode_t privateBits = 0700;
inline constexpr mode_t fileBits = 0666;

/// Repeats a call that a signal interrupted.
template <typename Call>
auto uninterrupted(Call call) noexcept
{
    auto result = call();
    while (result == -1 && errno == EINTR)
        result = call();
    return result;
}

/// The path as system calls take it; one with a zero byte would name another file, so it becomes the
/// empty path, which names nothing.
inline const char* systemPath(const std::string& path) noexcept
{
    return path.find('\0') == std::string::npos ? path.c_str() : "";
}

/// An open descriptor. The destructor closes it and leaves errno as it was.
class Descriptor
{
public:
    explicit Descriptor(int number = -1) noexcept : number_(number) {}
    Descriptor(Descriptor&& other) noexcept : number_(std::exchange(other.number_, -1)) {}
    Descriptor& operator=(Descriptor&& other) noexcept
    {
        std::swap(number_, other.number_);
        return *this;
    }
    ~Descriptor()
    {
        const int error = errno;
        if (number_ != -1)
            ::close(number_);
        errno = error;
    }

    int get() const noexcept { return number_; }
    int release() noexcept { return std::exchange(number_, -1); }
    explicit operator bool() const noexcept { return number_ != -1; }

private:
    int number_;
};

/// Opens with O_NONBLOCK, so that a pipe put in a file's place cannot block us; for files it has no effect.
inline Descriptor openAt(int folder, const char* name, int flags) noexcept
{
    return Descriptor(
        uninterrupted([&] { return ::openat(folder, name, flags | O_CLOEXEC | O_NOCTTY | O_NONBLOCK, fileBits); }));
}

inline Descriptor openPath(const std::string& path, int flags) noexcept
{
    return openAt(AT_FDCWD, systemPath(path), flags);
}

inline Descriptor openFolder(int parent, const char* name) noexcept
{
    return openAt(parent, name, O_RDONLY | O_DIRECTORY | O_NOFOLLOW);
}

/// Like openPath(), but fails for folders, which could otherwise be opened for reading.
inline Descriptor openFile(const std::string& path, int flags) noexcept
{
    Descriptor file = openPath(path, flags);
    struct stat status = {};
    if (!file || ::fstat(file.get(), &status) != 0)
        return Descriptor();
    if (!S_ISDIR(status.st_mode))
        return file;
    errno = EISDIR;
    return Descriptor();
}

/// Like openFile(), but refuses devices and pipes, which may have no end and would keep a reader busy for
/// ever.
inline Descriptor openForReading(const std::string& path) noexcept
{
    Descriptor file = openPath(path, O_RDONLY);
    struct stat status = {};
    if (!file || ::fstat(file.get(), &status) != 0)
        return Descriptor();
    if (S_ISREG(status.st_mode))
        return file;
    errno = S_ISDIR(status.st_mode) ? EISDIR : EINVAL;
    return Descriptor();
}

struct Identity
{
    dev_t device = 0;
    ino_t number = 0;
    friend bool operator==(const Identity&, const Identity&) = default;
};

inline Identity identityOf(const struct stat& status) noexcept
{
    return {status.st_dev, status.st_ino};
}

inline Identity identityOf(const Descriptor& descriptor) noexcept
{
    struct stat status = {};
    return ::fstat(descriptor.get(), &status) == 0 ? identityOf(status) : Identity{};
}

inline bool linkStatus(const std::string& path, struct stat& status) noexcept
{
    return ::lstat(systemPath(path), &status) == 0;
}

}  // namespace Velk::Platform
