#pragma once

/// @file
/// Work in processes of its own, on POSIX: for what a test cannot do to itself, such as being another
/// user, running into a limit or dying.

#include <functional>

#include <sys/types.h>

namespace test {

/// A child that runs `work` and ends. Checks that fail in it are printed and fail the test in wait().
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
    /// Kills it, and waits for the end.
    void kill();

private:
    pid_t id_ = -1;
};

/// Runs `work` in a child and waits for it.
void inChild(const std::function<void()>& work);
/// The same as a user without special rights, whoever runs the tests.
void asOrdinaryUser(const std::function<void()>& work);

/// Runs `work` in a child that is killed after `calls` system calls. False when it came to its end
/// before.
bool killedAtSystemCall(int calls, const std::function<void()>& work);

/// Lets one process wait for another.
class Signal
{
public:
    Signal();
    ~Signal();
    Signal(const Signal&) = delete;
    Signal& operator=(const Signal&) = delete;

    void send();
    /// Returns after one send(), before or after the call.
    void wait();

private:
    int ends_[2] = {-1, -1};
};

}  // namespace test
