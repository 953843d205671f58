#pragma once

/// @file
/// Replaces the program's `operator new`, so that the memory it takes can be counted and refused. Only one source
/// of a program may include it. The counters are not atomic, so count only while a single thread runs.

#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <new>

namespace test {

inline std::size_t allocations = 0;
inline std::size_t allocatedBytes = 0;
/// Larger requests fail.
inline std::size_t largestAllocation = SIZE_MAX;
inline std::size_t refusedAllocations = 0;
/// The request of this number from now on fails, the next one being number 0; SIZE_MAX for none.
inline std::size_t failingAllocation = SIZE_MAX;

}  // namespace test

void* operator new(std::size_t size)
{
    const bool fails = test::failingAllocation != SIZE_MAX && test::failingAllocation-- == 0;
    if (size > test::largestAllocation || fails) {
        ++test::refusedAllocations;
        throw std::bad_alloc();
    }
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
