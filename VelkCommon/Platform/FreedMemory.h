#pragma once

#include <cstddef>
#include <cstdlib>

namespace Velk::Platform {

/// For whoever frees very many small pieces of memory in between: lets the allocator put them together now, while they
/// are in the processor's caches. glibc sets small pieces aside and joins them at the next large request, however many
/// have gathered by then and however cold they are; this is that request. Costs about as much as one `malloc`, so call
/// it for every few hundred pieces. Other systems' allocators need no such hint, and get none. Any thread.
inline void joinFreedMemory() noexcept
{
#ifdef __GLIBC__
    constexpr std::size_t largeRequest = 4096;         // beyond what a thread keeps for itself
    void* volatile block = std::malloc(largeRequest);  // volatile: a compiler leaves out memory that nobody uses
    std::free(block);
#endif
}

}  // namespace Velk::Platform
