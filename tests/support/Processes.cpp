#include "support/Processes.h"

#include <gtest/gtest.h>

#include <sys/ptrace.h>
#include <sys/wait.h>
#include <unistd.h>

#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <exception>

namespace test {
namespace {

constexpr unsigned nobody = 65534;

// The child leaves without running what belongs to the parent: destructors, exit handlers, reports.
[[noreturn]] void runAndLeave(const std::function<void()>& work)
{
    bool failed = true;
    try {
        work();
        failed = testing::Test::HasFailure();
    } catch (const std::exception& error) {
        std::fprintf(stderr, "child: %s\n", error.what());
    } catch (...) {
        std::fprintf(stderr, "child: unknown exception\n");
    }
    std::fflush(nullptr);
    ::_exit(failed ? EXIT_FAILURE : EXIT_SUCCESS);
}

pid_t start(const std::function<void()>& work)
{
    std::fflush(nullptr);
    const pid_t id = ::fork();
    if (id == 0)
        runAndLeave(work);
    if (id < 0)
        ADD_FAILURE() << "cannot fork";
    return id;
}

int statusOf(pid_t id)
{
    int status = -1;
    ::waitpid(id, &status, 0);
    return status;
}

}  // namespace

Child::Child(const std::function<void()>& work) : id_(start(work)) {}

Child::~Child()
{
    if (id_ > 0)
        kill();
}

void Child::wait()
{
    const int status = statusOf(id_);
    id_ = -1;
    EXPECT_TRUE(WIFEXITED(status) && WEXITSTATUS(status) == EXIT_SUCCESS) << "the child failed, status " << status;
}

void Child::kill()
{
    ::kill(id_, SIGKILL);
    statusOf(id_);
    id_ = -1;
}

void inChild(const std::function<void()>& work)
{
    Child(work).wait();
}

void asOrdinaryUser(const std::function<void()>& work)
{
    inChild([&] {
        if (::geteuid() == 0) {
            ASSERT_EQ(::setgid(nobody), 0);
            ASSERT_EQ(::setuid(nobody), 0);
        }
        work();
    });
}

bool killedAtSystemCall(int calls, const std::function<void()>& work)
{
    const pid_t id = start([&] {
        ASSERT_EQ(::ptrace(PTRACE_TRACEME, 0, nullptr, nullptr), 0) << "processes cannot be traced here";
        std::raise(SIGSTOP);
        work();
    });
    int status = statusOf(id);
    // There is a stop at each end of a call; what follows one end precedes the next.
    for (int stop = 0; WIFSTOPPED(status) && stop < 2 * calls; ++stop) {
        ::ptrace(PTRACE_SYSCALL, id, nullptr, nullptr);
        status = statusOf(id);
    }
    if (!WIFSTOPPED(status)) {
        EXPECT_TRUE(WIFEXITED(status) && WEXITSTATUS(status) == EXIT_SUCCESS) << "the child failed";
        return false;
    }
    ::kill(id, SIGKILL);
    statusOf(id);
    return true;
}

Signal::Signal()
{
    if (::pipe(ends_) != 0)
        ADD_FAILURE() << "cannot make a pipe";
}

Signal::~Signal()
{
    ::close(ends_[0]);
    ::close(ends_[1]);
}

void Signal::send()
{
    EXPECT_EQ(::write(ends_[1], "!", 1), 1);
}

void Signal::wait()
{
    char mark = 0;
    EXPECT_EQ(::read(ends_[0], &mark, 1), 1);
}

}  // namespace test
