#include "support/Processes.h"

#include "support/Threads.h"

#include <gtest/gtest.h>

#include <poll.h>
#include <sys/ptrace.h>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <exception>
#include <utility>

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

// Waits until a child stops or ends, and kills it when it does neither in time.
class Watch
{
public:
    explicit Watch(pid_t id) : id_(id) {}
    ~Watch() { over_.add(); }
    Watch(const Watch&) = delete;
    Watch& operator=(const Watch&) = delete;

    // The status at its next stop, or at its end.
    int next() const
    {
        int status = -1;
        ::waitpid(id_, &status, 0);
        return status;
    }

private:
    void guard() const
    {
        if (over_.reaches(1))
            return;
        ADD_FAILURE() << "the child did not end, and was killed";
        ::kill(id_, SIGKILL);
    }

    const pid_t id_;
    Tally over_;
    Thread guard_{[this] { guard(); }};
};

bool hasSucceeded(int status)
{
    return WIFEXITED(status) && WEXITSTATUS(status) == EXIT_SUCCESS;
}

// Whether there is something to read, or the end has been reached.
bool isReadable(int file)
{
    pollfd wanted = {file, POLLIN, 0};
    int ready = -1;
    do {
        ready = ::poll(&wanted, 1, static_cast<int>(patience.count()));
    } while (ready < 0 && errno == EINTR);
    return ready > 0;
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
    const int status = Watch(std::exchange(id_, -1)).next();
    EXPECT_TRUE(hasSucceeded(status)) << "the child failed, status " << status;
}

int Child::end()
{
    return endOf(std::exchange(id_, -1));
}

void Child::kill()
{
    ::kill(id_, SIGKILL);
    static_cast<void>(Watch(std::exchange(id_, -1)).next());
}

void inChild(const std::function<void()>& work)
{
    Child(work).wait();
}

void asOrdinaryUser(const std::function<void()>& work)
{
    inChild([&] {
        becomeOrdinaryUser();
        work();
    });
}

void becomeOrdinaryUser()
{
    if (::geteuid() != 0)
        return;
    ASSERT_EQ(::setgid(nobody), 0);
    ASSERT_EQ(::setuid(nobody), 0);
}

void limitFileSize(std::size_t bytes)
{
    std::signal(SIGXFSZ, SIG_IGN);
    const struct rlimit limit = {bytes, bytes};
    ASSERT_EQ(::setrlimit(RLIMIT_FSIZE, &limit), 0);
}

bool killedAtSystemCall(int calls, const std::function<void()>& work)
{
    const pid_t id = start([&] {
        ASSERT_EQ(::ptrace(PTRACE_TRACEME, 0, nullptr, nullptr), 0) << "processes cannot be traced here";
        std::raise(SIGSTOP);
        work();
    });
    const Watch watch(id);
    int status = watch.next();
    // The child stops when a call begins and when it ends, so every call needs two steps.
    for (int stop = 0; WIFSTOPPED(status) && stop < 2 * calls; ++stop) {
        ::ptrace(PTRACE_SYSCALL, id, nullptr, nullptr);
        status = watch.next();
    }
    if (!WIFSTOPPED(status)) {
        EXPECT_TRUE(hasSucceeded(status)) << "the child failed";
        return false;
    }
    ::kill(id, SIGKILL);
    static_cast<void>(watch.next());
    return true;
}

void killedAtEachSystemCall(const std::function<void()>& prepare, const std::function<void()>& work,
                            const std::function<void(bool died)>& check)
{
    constexpr int mostCalls = 3000;
    constexpr int fewestCalls = 10;
    int deaths = 0;
    for (bool died = true; died; ++deaths) {
        const testing::ScopedTrace trace(__FILE__, __LINE__, "killed at call " + std::to_string(deaths));
        ASSERT_LT(deaths, mostCalls);
        prepare();
        died = killedAtSystemCall(deaths, work);
        check(died);
        if (testing::Test::HasFatalFailure())
            return;
    }
    EXPECT_GT(deaths, fewestCalls) << "the work was not watched";
}

int endOf(pid_t child)
{
    const int status = Watch(child).next();
    return WIFEXITED(status) ? WEXITSTATUS(status) : -1;
}

// A terminal reports an error, not an end of file, once its last writer has closed it.
std::string readToEnd(int file)
{
    std::string all;
    std::array<char, 4096> block{};
    for (;;) {
        if (!isReadable(file)) {
            ADD_FAILURE() << "no end comes, after " << all;
            return all;
        }
        const ssize_t got = ::read(file, block.data(), block.size());
        if (got > 0)
            all.append(block.data(), static_cast<std::size_t>(got));
        else if (got == 0 || errno != EINTR)
            return all;
    }
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
    ASSERT_TRUE(isReadable(ends_[0])) << "no signal comes";
    EXPECT_EQ(::read(ends_[0], &mark, 1), 1);
}

}  // namespace test
