#pragma once

/// @file
/// Replaces the program's `operator new`, so that the memory it takes can be counted and refused. Only one source
/// of a program may include it. Each thread counts for itself, and is refused nothing but its own requests.

#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <new>

namespace test {

inline thread_local std::size_t allocations = 0;
inline thread_local std::size_t allocatedBytes = 0;
/// Larger requests fail.
inline thread_local std::size_t largestAllocation = SIZE_MAX;
inline thread_local std::size_t refusedAllocations = 0;
/// The request of this number from now on fails, the next one being number 0; SIZE_MAX for none.
inline thread_local std::size_t failingAllocation = SIZE_MAX;
/// All requests after that one fail too, until `failingAllocation` is set to SIZE_MAX.
inline thread_local bool failingForGood = false;

/// Counts a request; true when it is the one to refuse, or comes after it and is to be refused as well.
inline bool isRefused() noexcept
{
    if (failingAllocation == SIZE_MAX)
        return false;
    if (failingAllocation > 0) {
        --failingAllocation;
        return false;
    }
    if (!failingForGood)
        failingAllocation = SIZE_MAX;
    return true;
}

/// Memory for a request, which is counted; null when it is refused, or there is none.
inline void* take(std::size_t size) noexcept
{
    if (size > largestAllocation || isRefused()) {
        ++refusedAllocations;
        return nullptr;
    }
    ++allocations;
    allocatedBytes += size;
    return std::malloc(size == 0 ? 1 : size);
}

inline void* takeOrThrow(std::size_t size)
{
    if (void* const memory = take(size))
        return memory;
    throw std::bad_alloc();
}

}  // namespace test

// All that can meet each other: what one of the standard library's own took, ours must not give back.

void* operator new(std::size_t size)
{
    return test::takeOrThrow(size);
}

void* operator new[](std::size_t size)
{
    return test::takeOrThrow(size);
}

void* operator new(std::size_t size, const std::nothrow_t&) noexcept
{
    return test::take(size);
}

void* operator new[](std::size_t size, const std::nothrow_t&) noexcept
{
    return test::take(size);
}

void operator delete(void* memory) noexcept
{
    std::free(memory);
}

void operator delete[](void* memory) noexcept
{
    std::free(memory);
}

void operator delete(void* memory, std::size_t) noexcept
{
    std::free(memory);
}

void operator delete[](void* memory, std::size_t) noexcept
{
    std::free(memory);
}

void operator delete(void* memory, const std::nothrow_t&) noexcept
{
    std::free(memory);
}

void operator delete[](void* memory, const std::nothrow_t&) noexcept
{
    std::free(memory);
}

#ifdef _WIN32

#include "support/Imports.h"

namespace test {

// On Windows a program's functions do not take the place of those that a library has found elsewhere. What the standard
// library itself takes for its own functions stays uncounted there.
inline const bool librariesCount = [] {
    redirectImports("_Znwy", reinterpret_cast<void (*)()>(static_cast<void* (*)(std::size_t)>(&::operator new)));
    return true;
}();

}  // namespace test

#endif
