#include "Faulty.h"
#include "Watched.h"

#include <fcntl.h>
#include <sys/sendfile.h>
#include <sys/stat.h>
#include <sys/syscall.h>
#include <sys/uio.h>
#include <unistd.h>

#include <cerrno>
#include <cstdarg>
#include <cstddef>
#include <cstdio>

using faults::faulty;
using faults::faultyBytes;
using faults::following;
using faults::isWatched;
using faults::Kind;

namespace {

mode_t modeArgument(int flags, std::va_list list)
{
    return (flags & (O_CREAT | O_TMPFILE)) != 0 ? va_arg(list, mode_t) : 0;
}

int openAt(int parent, const char* path, int flags, mode_t bits)
{
    const Kind kind = (flags & (O_CREAT | O_TRUNC)) != 0 ? Kind::create : Kind::open;
    return faulty(isWatched(parent, path), kind,
                  [&] { return static_cast<int>(::syscall(SYS_openat, parent, path, flags, bits)); });
}

// A lock is asked for by two of the many requests; all the others go through.
int control(int file, int request, void* argument)
{
    const bool locks = request == F_SETLK || request == F_SETLKW || request == F_OFD_SETLK || request == F_OFD_SETLKW;
    return faulty(locks && isWatched(file), Kind::lock,
                  [&] { return static_cast<int>(::syscall(SYS_fcntl, file, request, argument)); });
}

}  // namespace

extern "C" {

// -- opening --

int open(const char* path, int flags, ...)
{
    std::va_list list;
    va_start(list, flags);
    const mode_t bits = modeArgument(flags, list);
    va_end(list);
    return openAt(AT_FDCWD, path, flags, bits);
}

int open64(const char* path, int flags, ...)
{
    std::va_list list;
    va_start(list, flags);
    const mode_t bits = modeArgument(flags, list);
    va_end(list);
    return openAt(AT_FDCWD, path, flags, bits);
}

int openat(int parent, const char* path, int flags, ...)
{
    std::va_list list;
    va_start(list, flags);
    const mode_t bits = modeArgument(flags, list);
    va_end(list);
    return openAt(parent, path, flags, bits);
}

int openat64(int parent, const char* path, int flags, ...)
{
    std::va_list list;
    va_start(list, flags);
    const mode_t bits = modeArgument(flags, list);
    va_end(list);
    return openAt(parent, path, flags, bits);
}

int creat(const char* path, mode_t bits)
{
    return openAt(AT_FDCWD, path, O_CREAT | O_WRONLY | O_TRUNC, bits);
}

int creat64(const char* path, mode_t bits)
{
    return openAt(AT_FDCWD, path, O_CREAT | O_WRONLY | O_TRUNC, bits);
}

// -- bytes --

ssize_t read(int file, void* bytes, std::size_t size)
{
    return faultyBytes(isWatched(file), Kind::read, size,
                       [&](std::size_t part) { return ::syscall(SYS_read, file, bytes, part); });
}

ssize_t pread(int file, void* bytes, std::size_t size, off_t offset)
{
    return faultyBytes(isWatched(file), Kind::read, size,
                       [&](std::size_t part) { return ::syscall(SYS_pread64, file, bytes, part, offset); });
}

ssize_t pread64(int file, void* bytes, std::size_t size, off64_t offset)
{
    return pread(file, bytes, size, offset);
}

ssize_t write(int file, const void* bytes, std::size_t size)
{
    return faultyBytes(isWatched(file), Kind::write, size,
                       [&](std::size_t part) { return ::syscall(SYS_write, file, bytes, part); });
}

ssize_t pwrite(int file, const void* bytes, std::size_t size, off_t offset)
{
    return faultyBytes(isWatched(file), Kind::write, size,
                       [&](std::size_t part) { return ::syscall(SYS_pwrite64, file, bytes, part, offset); });
}

ssize_t pwrite64(int file, const void* bytes, std::size_t size, off64_t offset)
{
    return pwrite(file, bytes, size, offset);
}

// Half of the parts, and at least the first: whoever wrote them has to go on from there.
ssize_t writev(int file, const iovec* parts, int count)
{
    return faultyBytes(isWatched(file), Kind::write, static_cast<std::size_t>(count),
                       [&](std::size_t some) { return ::syscall(SYS_writev, file, parts, some); });
}

ssize_t copy_file_range(int from, off64_t* fromOffset, int to, off64_t* toOffset, std::size_t size, unsigned flags)
{
    return faultyBytes(isWatched(to), Kind::copy, size, [&](std::size_t part) {
        return ::syscall(SYS_copy_file_range, from, fromOffset, to, toOffset, part, flags);
    });
}

ssize_t sendfile(int to, int from, off_t* offset, std::size_t size)
{
    return faultyBytes(isWatched(to), Kind::copy, size,
                       [&](std::size_t part) { return ::syscall(SYS_sendfile, to, from, offset, part); });
}

ssize_t sendfile64(int to, int from, off64_t* offset, std::size_t size)
{
    return sendfile(to, from, offset, size);
}

int ftruncate(int file, off_t size)
{
    return faulty(isWatched(file), Kind::truncate,
                  [&] { return static_cast<int>(::syscall(SYS_ftruncate, file, size)); });
}

int ftruncate64(int file, off64_t size)
{
    return ftruncate(file, size);
}

int truncate(const char* path, off_t size)
{
    return faulty(isWatched(path), Kind::truncate,
                  [&] { return static_cast<int>(::syscall(SYS_truncate, path, size)); });
}

int truncate64(const char* path, off64_t size)
{
    return truncate(path, size);
}

int fsync(int file)
{
    return faulty(isWatched(file), Kind::sync, [&] { return static_cast<int>(::syscall(SYS_fsync, file)); });
}

int fdatasync(int file)
{
    return faulty(isWatched(file), Kind::sync, [&] { return static_cast<int>(::syscall(SYS_fdatasync, file)); });
}

// -- names --

int renameat2(int oldFolder, const char* from, int newFolder, const char* to, unsigned flags)
{
    return faulty(isWatched(newFolder, to), Kind::rename,
                  [&] { return static_cast<int>(::syscall(SYS_renameat2, oldFolder, from, newFolder, to, flags)); });
}

int renameat(int oldFolder, const char* from, int newFolder, const char* to)
{
    return renameat2(oldFolder, from, newFolder, to, 0);
}

int rename(const char* from, const char* to)
{
    return renameat2(AT_FDCWD, from, AT_FDCWD, to, 0);
}

int linkat(int oldFolder, const char* from, int newFolder, const char* to, int flags)
{
    return faulty(isWatched(newFolder, to), Kind::rename,
                  [&] { return static_cast<int>(::syscall(SYS_linkat, oldFolder, from, newFolder, to, flags)); });
}

int link(const char* from, const char* to)
{
    return linkat(AT_FDCWD, from, AT_FDCWD, to, 0);
}

int symlinkat(const char* target, int parent, const char* path)
{
    return faulty(isWatched(parent, path), Kind::rename,
                  [&] { return static_cast<int>(::syscall(SYS_symlinkat, target, parent, path)); });
}

int symlink(const char* target, const char* path)
{
    return symlinkat(target, AT_FDCWD, path);
}

int unlinkat(int parent, const char* path, int flags)
{
    return faulty(isWatched(parent, path), Kind::remove,
                  [&] { return static_cast<int>(::syscall(SYS_unlinkat, parent, path, flags)); });
}

int unlink(const char* path)
{
    return unlinkat(AT_FDCWD, path, 0);
}

int rmdir(const char* path)
{
    return unlinkat(AT_FDCWD, path, AT_REMOVEDIR);
}

// As the C library does it: a file first, and a folder where that was one.
int remove(const char* path)
{
    return faulty(isWatched(path), Kind::remove, [&] {
        const long gone = ::syscall(SYS_unlinkat, AT_FDCWD, path, 0);
        return static_cast<int>(gone == 0 || errno != EISDIR ? gone
                                                             : ::syscall(SYS_unlinkat, AT_FDCWD, path, AT_REMOVEDIR));
    });
}

int mkdirat(int parent, const char* path, mode_t bits)
{
    return faulty(isWatched(parent, path), Kind::folder,
                  [&] { return static_cast<int>(::syscall(SYS_mkdirat, parent, path, bits)); });
}

int mkdir(const char* path, mode_t bits)
{
    return mkdirat(AT_FDCWD, path, bits);
}

// -- what else belongs to a file --

int chmod(const char* path, mode_t bits)
{
    return faulty(isWatched(path), Kind::mode, [&] { return static_cast<int>(::syscall(SYS_chmod, path, bits)); });
}

int fchmod(int file, mode_t bits)
{
    return faulty(isWatched(file), Kind::mode, [&] { return static_cast<int>(::syscall(SYS_fchmod, file, bits)); });
}

int fchmodat(int parent, const char* path, mode_t bits, int flags)
{
    static auto* const real = following<int(int, const char*, mode_t, int)>("fchmodat");
    return faulty(isWatched(parent, path), Kind::mode, [&] { return real(parent, path, bits, flags); });
}

int utimensat(int parent, const char* path, const timespec* times, int flags)
{
    return faulty(isWatched(parent, path), Kind::mode,
                  [&] { return static_cast<int>(::syscall(SYS_utimensat, parent, path, times, flags)); });
}

int futimens(int file, const timespec* times)
{
    return faulty(isWatched(file), Kind::mode,
                  [&] { return static_cast<int>(::syscall(SYS_utimensat, file, nullptr, times, 0)); });
}

int flock(int file, int operation)
{
    return faulty(isWatched(file), Kind::lock, [&] { return static_cast<int>(::syscall(SYS_flock, file, operation)); });
}

int fcntl(int file, int request, ...)
{
    std::va_list list;
    va_start(list, request);
    void* const argument = va_arg(list, void*);
    va_end(list);
    return control(file, request, argument);
}

int fcntl64(int file, int request, ...)
{
    std::va_list list;
    va_start(list, request);
    void* const argument = va_arg(list, void*);
    va_end(list);
    return control(file, request, argument);
}

}  // extern "C"
