#pragma once

/// @file
/// Work in processes of its own, on POSIX: for what a test cannot do to itself, such as being another
/// user, running into a limit or dying.

#include <cstddef>
#include <functional>
#include <string>

#include <sys/types.h>

namespace test {

/// A child that runs `work` and ends. Checks that fail in it are printed and fail the test in wait(). No child is
/// waited for for ever: one that does not end is killed, and fails the test.
class Child
{
public:
    explicit Child(const std::function<void()>& work);
    /// Ends the child when it still runs.
    ~Child();
    Child(const Child&) = delete;
    Child& operator=(const Child&) = delete;

    /// Waits for the end; fails the test when a check in the child failed, or when it died.
    void wait();
    /// Waits for the end; the exit code, -1 when it died.
    int end();
    /// Kills it, and waits for the end.
    void kill();

private:
    pid_t id_ = -1;
};

/// Runs `work` in a child and waits for it.
void inChild(const std::function<void()>& work);
/// The same as a user without special rights, whoever runs the tests.
void asOrdinaryUser(const std::function<void()>& work);

/// From here on this process, a child, cannot make a file longer than that, as on a full disk.
void limitFileSize(std::size_t bytes);

/// Runs `work` in a child that is killed after `calls` system calls. False when it came to its end
/// before.
bool killedAtSystemCall(int calls, const std::function<void()>& work);

/// Runs `work` in children of which each is killed one system call later than the one before, and at last in one that
/// comes to its end. `prepare` comes before each of them, `check(died)` after it. Stops when a check fails for good.
void killedAtEachSystemCall(const std::function<void()>& prepare, const std::function<void()>& work,
                            const std::function<void(bool died)>& check);

/// Waits for the end of a child that somebody else has made, as Child::end() does.
int endOf(pid_t child);

/// Reads a pipe or a terminal until nobody writes to it any more; fails the test when that takes too long.
std::string readToEnd(int file);

/// Lets one process wait for another.
class Signal
{
public:
    Signal();
    ~Signal();
    Signal(const Signal&) = delete;
    Signal& operator=(const Signal&) = delete;

    void send();
    /// Returns after one send(), before or after the call; fails the test when there is none.
    void wait();

private:
    int ends_[2] = {-1, -1};
};

}  // namespace test
