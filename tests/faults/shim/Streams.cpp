// Buffered streams: what they write reaches the file in one of these calls.

#include "Faulty.h"
#include "Watched.h"

#include <fcntl.h>

#include <cerrno>
#include <cstdio>
#include <cstring>

using faults::faulty;
using faults::faultyBytes;
using faults::following;
using faults::isWatched;
using faults::Kind;

namespace {

FILE* openStream(FILE* (*real)(const char*, const char*), const char* path, const char* how)
{
    const Kind kind = std::strpbrk(how, "wa") != nullptr ? Kind::create : Kind::open;
    FILE* result = nullptr;
    faulty(isWatched(path), kind, [&] {
        result = real(path, how);
        return 0;
    });
    return result;
}

}  // namespace

extern "C" {

FILE* fopen(const char* path, const char* how)
{
    static auto* const real = following<FILE*(const char*, const char*)>("fopen");
    return openStream(real, path, how);
}

FILE* fopen64(const char* path, const char* how)
{
    static auto* const real = following<FILE*(const char*, const char*)>("fopen64");
    return openStream(real, path, how);
}

std::size_t fread(void* bytes, std::size_t unit, std::size_t count, FILE* stream)
{
    static auto* const real = following<std::size_t(void*, std::size_t, std::size_t, FILE*)>("fread");
    const ssize_t got = faultyBytes(isWatched(::fileno(stream)), Kind::read, count, [&](std::size_t part) {
        return static_cast<ssize_t>(real(bytes, unit, part, stream));
    });
    return got < 0 ? 0 : static_cast<std::size_t>(got);
}

std::size_t fwrite(const void* bytes, std::size_t unit, std::size_t count, FILE* stream)
{
    static auto* const real = following<std::size_t(const void*, std::size_t, std::size_t, FILE*)>("fwrite");
    const ssize_t put = faultyBytes(isWatched(::fileno(stream)), Kind::write, count, [&](std::size_t part) {
        return static_cast<ssize_t>(real(bytes, unit, part, stream));
    });
    return put < 0 ? 0 : static_cast<std::size_t>(put);
}

int fflush(FILE* stream)
{
    static auto* const real = following<int(FILE*)>("fflush");
    return faulty(stream != nullptr && isWatched(::fileno(stream)), Kind::write, [&] { return real(stream); });
}

// A stream that could not be written to its end is closed all the same.
int fclose(FILE* stream)
{
    static auto* const real = following<int(FILE*)>("fclose");
    bool closed = false;
    const bool watched = isWatched(::fileno(stream)) && (::fcntl(::fileno(stream), F_GETFL) & O_ACCMODE) != O_RDONLY;
    const int result = faulty(watched, Kind::write, [&] {
        closed = true;
        return real(stream);
    });
    if (closed)
        return result;
    const int error = errno;
    real(stream);
    errno = error;
    return EOF;
}

}  // extern "C"
