#pragma once

/// @file
/// Replaces the program's `operator new`, so that what it takes can be counted. For exactly one source
/// of a program. The counters are plain: count while one thread runs.

#include <cstddef>
#include <cstdlib>
#include <new>

namespace test {

inline std::size_t allocations = 0;
inline std::size_t allocatedBytes = 0;

}  // namespace test

void* operator new(std::size_t size)
{
    ++test::allocations;
    test::allocatedBytes += size;
    if (void* const memory = std::malloc(size == 0 ? 1 : size))
        return memory;
    throw std::bad_alloc();
}

void operator delete(void* memory) noexcept
{
    std::free(memory);
}

void operator delete(void* memory, std::size_t) noexcept
{
    std::free(memory);
}
