#pragma once

#include <exception>

namespace VelkHost {

/// What a program says before it ends where nobody caught an exception: one line for each cause, with its end. They are
/// literals, since there may be no memory for any other text.
struct LastWords
{
    const char* outOfMemory;
    const char* unexpected;
    int exitCode;
};

/// From now on an exception that nobody catches, on any thread, ends the program with these words on standard error and
/// their exit code instead of an abort. Files are as they are after a crash, which nothing that the program writes
/// depends on. Returns the handler that was there before.
std::terminate_handler endWith(const LastWords& words) noexcept;

}  // namespace VelkHost
