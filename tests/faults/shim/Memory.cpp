#include "Plan.h"

#include <cerrno>
#include <cstddef>
#include <cstdlib>
#include <cstring>

#include <dlfcn.h>

extern "C" {
void* __libc_malloc(std::size_t size);
void* __libc_calloc(std::size_t count, std::size_t size);
void* __libc_realloc(void* block, std::size_t size);
void* __libc_memalign(std::size_t alignment, std::size_t size);
}

namespace {

template <typename Call>
void* faultyMemory(Call call)
{
    if (faults::countsMemory() && faults::meet(faults::Kind::allocate).error != 0) {
        errno = ENOMEM;
        return nullptr;
    }
    return call();
}

/// Whether Qt asks for the list of an object's connections: it writes into it without a look at whether it got one, so
/// no program can survive that.
bool isListOfConnections(const void* caller)
{
    Dl_info place{};
    return ::dladdr(caller, &place) != 0 && place.dli_sname != nullptr &&
           std::strstr(place.dli_sname, "QObjectPrivate13addConnection") != nullptr;
}

}  // namespace

extern "C" {

void* malloc(std::size_t size)
{
    void* const block = faultyMemory([&] { return __libc_malloc(size); });
    return block == nullptr && isListOfConnections(__builtin_return_address(0)) ? __libc_malloc(size) : block;
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

}  // extern "C"
