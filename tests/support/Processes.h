#pragma once

/// @file
/// Runs work in separate processes, on POSIX, for things that a test cannot do to itself, such as being another
/// user, running into a limit or dying.

#include <cstddef>
#include <functional>
#include <string>

#include <sys/types.h>

namespace test {

/// A child that runs `work` and ends. Checks that fail in it are printed and fail the test in wait(). No wait lasts
/// for ever: a child that does not end is killed, and fails the test.
class Child
{
public:
    explicit Child(const std::function<void()>& work);
    /// Ends the child if it still runs.
    ~Child();
    Child(const Child&) = delete;
    Child& operator=(const Child&) = delete;

    /// Waits for the end; fails the test when a check in the child failed, or when it died.
    void wait();
    /// Waits for the end and returns the exit code, or -1 when the child died.
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

/// From now on this process, which must be a child, has no special rights, whoever runs the tests.
void becomeOrdinaryUser();

/// From now on this process, which must be a child, cannot make a longer file than this, as on a full disk.
void limitFileSize(std::size_t bytes);

/// Runs `work` in a child that is killed after `calls` system calls. False when the child ended before that.
bool killedAtSystemCall(int calls, const std::function<void()>& work);

/// Runs `work` in one child after the other, each killed one system call later than the one before, until a child
/// reaches its end. `prepare` comes before each of them, `check(died)` after it. Stops when a check fails for good.
void killedAtEachSystemCall(const std::function<void()>& prepare, const std::function<void()>& work,
                            const std::function<void(bool died)>& check);

/// Waits as Child::end() does, for a child that was made in another way.
int endOf(pid_t child);

/// Reads a pipe or a terminal until its last writer has closed it; fails the test when that takes too long.
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
