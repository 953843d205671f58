#pragma once

/// @file
/// What a piece of work costs, measured in a process for it alone, so that nothing else counts.

#include <malloc.h>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <functional>

namespace bench {

struct Cost
{
    double cpu = 0;     ///< seconds of processor time, including the system's time for it
    double wall = 0;    ///< seconds
    double memory = 0;  ///< the most memory held at any time, in MiB
};

/// Runs `work`, which says whether it succeeded. A failure ends the benchmark.
inline Cost costOf(const char* name, const std::function<bool()>& work)
{
    using Clock = std::chrono::steady_clock;
    std::fflush(nullptr);
    // Memory that this process has freed must not count for the work.
    ::malloc_trim(0);
    const auto begin = Clock::now();
    const pid_t child = ::fork();
    if (child == 0)
        ::_exit(work() ? EXIT_SUCCESS : EXIT_FAILURE);
    int status = -1;
    struct rusage usage = {};
    if (child < 0 || ::wait4(child, &status, 0, &usage) != child || status != 0) {
        std::fprintf(stderr, "%s failed (status %d)\n", name, status);
        std::exit(EXIT_FAILURE);
    }
    const auto seconds = [](const timeval& time) {
        return static_cast<double>(time.tv_sec) + static_cast<double>(time.tv_usec) / 1e6;
    };
    return {seconds(usage.ru_utime) + seconds(usage.ru_stime),
            std::chrono::duration<double>(Clock::now() - begin).count(), static_cast<double>(usage.ru_maxrss) / 1024};
}

/// The least of two costs, for work that is repeated.
inline Cost least(const Cost& left, const Cost& right)
{
    return {std::min(left.cpu, right.cpu), std::min(left.wall, right.wall), std::max(left.memory, right.memory)};
}

}  // namespace bench
