/// @file
/// Preloaded into a program to let one of its calls fail. It counts the calls that the program makes on files
/// below one folder, and its allocations, from main() on. What is to happen stands in the environment:
///
///     VELK_FAULT         KIND:NUMBER:EFFECT:TIMES, such as write:17:ENOSPC:once
///     VELK_FAULT_BELOW   the folder; calls on files elsewhere are left alone and not counted
///     VELK_FAULT_COUNTS  a file of one 32-bit number per kind, in the order of `Kind`, that is counted up
///
/// KIND is a name in `kindNames`. EFFECT is the name of an error, "half" (a call that takes bytes takes half of
/// them), "kill-before", "kill-half" or "kill-after". TIMES is "once", or "on" for that call and all after it.
///
/// Nothing here allocates. System calls are made directly and memory comes from the C library's own entry points, so
/// that only the functions of buffered streams have to be looked up.

#include <dlfcn.h>
#include <fcntl.h>
#include <signal.h>
#include <sys/mman.h>
#include <sys/sendfile.h>
#include <sys/stat.h>
#include <sys/syscall.h>
#include <sys/uio.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <atomic>
#include <cerrno>
#include <climits>
#include <cstdarg>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <string_view>

extern "C" {
void* __libc_malloc(std::size_t size);
void* __libc_calloc(std::size_t count, std::size_t size);
void* __libc_realloc(void* block, std::size_t size);
void* __libc_memalign(std::size_t alignment, std::size_t size);
}

namespace {

using namespace std::string_view_literals;

// The last is no kind of call: it counts all that change a file, which are those from `create` to `lock`.
enum class Kind : std::size_t {
    open,
    read,
    create,
    write,
    copy,
    truncate,
    sync,
    rename,
    remove,
    folder,
    mode,
    lock,
    allocate,
    change,
    count
};

constexpr auto kinds = static_cast<std::size_t>(Kind::count);

constexpr std::array<std::string_view, kinds> kindNames{"open",     "read", "create",   "write",  "copy",
                                                        "truncate", "sync", "rename",   "remove", "folder",
                                                        "mode",     "lock", "allocate", "change"};

struct NamedError
{
    std::string_view name;
    int number;
};

constexpr std::array namedErrors{
    NamedError{"EACCES", EACCES}, NamedError{"EINTR", EINTR},   NamedError{"EIO", EIO},
    NamedError{"EMFILE", EMFILE}, NamedError{"ENOMEM", ENOMEM}, NamedError{"ENOSPC", ENOSPC},
    NamedError{"EXDEV", EXDEV},
};

// What a call meets.
struct Effect
{
    int error = 0;
    bool half = false;
    bool killBefore = false;
    bool killAfter = false;
};

struct Plan
{
    Kind kind = Kind::count;
    std::uint32_t number = 0;
    Effect effect;
    bool once = true;
};

Plan plan;
std::array<char, PATH_MAX> below{};
std::atomic<bool> armed{false};
std::array<std::uint32_t, kinds> unsharedCounts{};
std::uint32_t* counts = unsharedCounts.data();

template <typename Function>
Function* following(const char* name)
{
    return reinterpret_cast<Function*>(::dlsym(RTLD_NEXT, name));
}

std::uint32_t countUp(Kind kind)
{
    return std::atomic_ref(counts[static_cast<std::size_t>(kind)]).fetch_add(1) + 1;
}

[[noreturn]] void die()
{
    ::syscall(SYS_kill, ::syscall(SYS_getpid), SIGKILL);
    for (;;)
        ::syscall(SYS_pause);
}

bool changesFiles(Kind kind)
{
    return kind >= Kind::create && kind <= Kind::lock;
}

// Counts a call of a kind that the program makes, and says what it is to meet.
Effect meet(Kind kind)
{
    std::uint32_t number = countUp(kind);
    if (changesFiles(kind)) {
        const std::uint32_t changes = countUp(Kind::change);
        if (plan.kind == Kind::change)
            number = changes;
    }
    const bool concerned = plan.kind == kind || (plan.kind == Kind::change && changesFiles(kind));
    if (!concerned || (plan.once ? number != plan.number : number < plan.number))
        return {};
    if (plan.effect.killBefore)
        die();
    return plan.effect;
}

bool startsWithFolder(std::string_view path)
{
    const std::string_view folder = below.data();
    return path.starts_with(folder) && (path.size() == folder.size() || path[folder.size()] == '/');
}

bool isWatched(int descriptor)
{
    if (!armed)
        return false;
    std::array<char, 32> link{};
    std::snprintf(link.data(), link.size(), "/proc/self/fd/%d", descriptor);
    std::array<char, PATH_MAX> path{};
    const long size = ::syscall(SYS_readlink, link.data(), path.data(), path.size());
    return size > 0 && startsWithFolder({path.data(), static_cast<std::size_t>(size)});
}

// The program works in the watched folder, so what is relative is below it.
bool isWatched(const char* path)
{
    return armed && path != nullptr &&
           (path[0] != '/' || startsWithFolder(path) || std::string_view(path).starts_with("/proc/self/fd/"));
}

bool isWatched(int folder, const char* path)
{
    return folder == AT_FDCWD || path[0] == '/' ? isWatched(path) : isWatched(folder);
}

// Makes a call that meets what was planned for it; the call returns -1 when it fails.
template <typename Call>
auto faulty(bool watched, Kind kind, Call call) -> decltype(call())
{
    const Effect effect = watched ? meet(kind) : Effect{};
    if (effect.error != 0) {
        errno = effect.error;
        return -1;
    }
    const auto result = call();
    if (effect.killAfter)
        die();
    return result;
}

// The same of a call that takes or gives a number of bytes.
template <typename Call>
ssize_t faultyBytes(bool watched, Kind kind, std::size_t size, Call call)
{
    const Effect effect = watched ? meet(kind) : Effect{};
    if (effect.error != 0) {
        errno = effect.error;
        return -1;
    }
    const ssize_t result = call(effect.half ? std::max<std::size_t>(size / 2, std::min<std::size_t>(size, 1)) : size);
    if (effect.killAfter)
        die();
    return result;
}

template <typename Call>
void* faultyMemory(Call call)
{
    if (armed && meet(Kind::allocate).error != 0) {
        errno = ENOMEM;
        return nullptr;
    }
    return call();
}

// ---- What is planned ---------------------------------------------------------------------------------------

std::string_view takePart(std::string_view& text)
{
    const std::size_t end = std::min(text.find(':'), text.size());
    const std::string_view part = text.substr(0, end);
    text.remove_prefix(std::min(end + 1, text.size()));
    return part;
}

Effect effectOf(std::string_view name)
{
    for (const NamedError& error : namedErrors)
        if (error.name == name)
            return {error.number, false, false, false};
    if (name == "half")
        return {0, true, false, false};
    return {0, name == "kill-half", name == "kill-before", name == "kill-after" || name == "kill-half"};
}

void readPlan(std::string_view text)
{
    const std::string_view kind = takePart(text);
    plan.kind = static_cast<Kind>(std::find(kindNames.begin(), kindNames.end(), kind) - kindNames.begin());
    for (const char digit : takePart(text))
        plan.number = plan.number * 10 + static_cast<std::uint32_t>(digit - '0');
    plan.effect = effectOf(takePart(text));
    plan.once = takePart(text) == "once"sv;
}

void shareCounts(const char* path)
{
    const auto file = static_cast<int>(::syscall(SYS_openat, AT_FDCWD, path, O_RDWR | O_CLOEXEC));
    void* const shared = ::mmap(nullptr, sizeof unsharedCounts, PROT_READ | PROT_WRITE, MAP_SHARED, file, 0);
    if (shared != MAP_FAILED)
        counts = static_cast<std::uint32_t*>(shared);
    ::syscall(SYS_close, file);
}

using Main = int(int, char**, char**);

Main* programMain = nullptr;

int mainWithFaults(int count, char** arguments, char** environment)
{
    if (const char* const text = std::getenv("VELK_FAULT"))
        readPlan(text);
    if (const char* const path = std::getenv("VELK_FAULT_COUNTS"))
        shareCounts(path);
    if (const char* const path = std::getenv("VELK_FAULT_BELOW")) {
        std::strncpy(below.data(), path, below.size() - 1);
        armed = true;
    }
    return programMain(count, arguments, environment);
}

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

// ---- What programs call ------------------------------------------------------------------------------------

extern "C" {

int __libc_start_main(Main* main, int count, char** arguments, void (*init)(), void (*fini)(), void (*loaderFini)(),
                      void* stackEnd)
{
    programMain = main;
    return following<int(Main*, int, char**, void (*)(), void (*)(), void (*)(), void*)>("__libc_start_main")(
        mainWithFaults, count, arguments, init, fini, loaderFini, stackEnd);
}

// -- memory --

void* malloc(std::size_t size)
{
    return faultyMemory([&] { return __libc_malloc(size); });
}

void* calloc(std::size_t count, std::size_t size)
{
    return faultyMemory([&] { return __libc_calloc(count, size); });
}

void* realloc(void* block, std::size_t size)
{
    return size == 0 ? __libc_realloc(block, size) : faultyMemory([&] { return __libc_realloc(block, size); });
}

void* memalign(std::size_t alignment, std::size_t size)
{
    return faultyMemory([&] { return __libc_memalign(alignment, size); });
}

void* aligned_alloc(std::size_t alignment, std::size_t size)
{
    return faultyMemory([&] { return __libc_memalign(alignment, size); });
}

int posix_memalign(void** block, std::size_t alignment, std::size_t size)
{
    *block = faultyMemory([&] { return __libc_memalign(alignment, size); });
    return *block == nullptr ? ENOMEM : 0;
}

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

// -- buffered streams: what they write reaches the file in one of these calls --

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
