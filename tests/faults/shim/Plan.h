#pragma once

/// @file
/// Preloaded into a program to let one of its calls fail. It counts the calls that the program makes on files
/// below one folder, and its allocations, from main() on. What is to happen stands in the environment:
///
///     VELK_FAULT         KIND:NUMBER:EFFECT:TIMES, such as write:17:ENOSPC:once
///     VELK_FAULT_BELOW   the folder; calls on files elsewhere are left alone and not counted
///     VELK_FAULT_MEMORY  "workers" for the allocations of all threads but the first, which otherwise count as well
///     VELK_FAULT_COUNTS  a file of one 32-bit number per kind, in the order of `Kind`, that is counted up
///
/// KIND is a name in `kindNames`. EFFECT is the name of an error, "half" (a call that takes bytes takes half of
/// them), "kill-before", "kill-half" or "kill-after". TIMES is "once", or "on" for that call and all after it.
///
/// Nothing here allocates. System calls are made directly and memory comes from the C library's own entry points, so
/// that only the functions of buffered streams have to be looked up.

#include <cstddef>
#include <cstdint>

// Only the functions that it replaces are seen from outside.
#pragma GCC visibility push(hidden)

namespace faults {

/// The last is no kind of call: it counts all that change a file, which are those from `create` to `lock`.
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

inline constexpr auto kinds = static_cast<std::size_t>(Kind::count);

/// What a call meets.
struct Effect
{
    int error = 0;
    bool half = false;
    bool killBefore = false;
    bool killAfter = false;
};

/// Takes the plan and the folder from the environment. From then on calls count.
void begin();

/// Whether calls count already.
bool isArmed();

/// Whether the allocations of this thread count.
bool countsMemory();

/// Counts a call of a kind that the program makes, and says what it is to meet.
Effect meet(Kind kind);

/// Ends the process as if it had been killed.
[[noreturn]] void die();

}  // namespace faults

#pragma GCC visibility pop
