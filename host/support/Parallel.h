#pragma once

#include <cstddef>
#include <functional>

namespace VelkHost {

/// How many threads share the work of a moment: as many as there are processors, within reason.
std::size_t threadCount();

/// Calls `work` on `threads` threads, this one among them, and returns when all have ended. Where the system has no
/// more threads to give, fewer do it; so `work` takes its share from what is left until nothing is. Throws what one of
/// them threw.
void onThreads(std::size_t threads, const std::function<void()>& work);

/// Calls `work` for each number below `count`, shared among the threads.
void forEachInParallel(std::size_t count, const std::function<void(std::size_t number)>& work);

}  // namespace VelkHost
