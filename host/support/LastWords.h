#pragma once

#include <exception>
#include <new>

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

/// While one of these is there, the program ends with its last words as soon as memory runs out, and nothing is
/// unwound: for what would crash then, as Qt's applications do while they are made. Before other threads are.
class EndWithoutMemory
{
public:
    EndWithoutMemory() noexcept;
    ~EndWithoutMemory();
    EndWithoutMemory(const EndWithoutMemory&) = delete;
    EndWithoutMemory& operator=(const EndWithoutMemory&) = delete;

private:
    std::new_handler before_;
};

}  // namespace VelkHost
