#include "Plan.h"

#include "Watched.h"

#include <fcntl.h>
#include <signal.h>
#include <sys/mman.h>
#include <sys/syscall.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <atomic>
#include <cerrno>
#include <cstdlib>
#include <string_view>

using namespace std::string_view_literals;

namespace faults {

namespace {

constexpr std::array<std::string_view, kinds> kindNames{"open",     "read", "create",   "write",  "copy",
                                                        "truncate", "sync", "rename",   "remove", "folder",
                                                        "mode",     "lock", "allocate", "change"};

struct NamedError
{
    std::string_view name;
    int number;
};

constexpr std::array namedErrors{
    NamedError{"EACCES", EACCES}, NamedError{"EINTR", EINTR},   NamedError{"EIO", EIO},
    NamedError{"EMFILE", EMFILE}, NamedError{"ENOMEM", ENOMEM}, NamedError{"ENOSPC", ENOSPC},
    NamedError{"EXDEV", EXDEV},
};

struct Plan
{
    Kind kind = Kind::count;
    std::uint32_t number = 0;
    Effect effect;
    bool once = true;
};

// Memory is asked for before anything is constructed, so all of this is there from the beginning.
constinit Plan plan;
constinit std::atomic<bool> armed{false};
constinit long exemptThread = 0;  // no thread's number
constinit std::array<std::uint32_t, kinds> unsharedCounts{};
constinit std::uint32_t* counts = unsharedCounts.data();

std::uint32_t countUp(Kind kind)
{
    return std::atomic_ref(counts[static_cast<std::size_t>(kind)]).fetch_add(1) + 1;
}

bool changesFiles(Kind kind)
{
    return kind >= Kind::create && kind <= Kind::lock;
}

std::string_view takePart(std::string_view& text)
{
    const std::size_t end = std::min(text.find(':'), text.size());
    const std::string_view part = text.substr(0, end);
    text.remove_prefix(std::min(end + 1, text.size()));
    return part;
}

Effect effectOf(std::string_view name)
{
    for (const NamedError& error : namedErrors)
        if (error.name == name)
            return {error.number, false, false, false};
    if (name == "half")
        return {0, true, false, false};
    return {0, name == "kill-half", name == "kill-before", name == "kill-after" || name == "kill-half"};
}

void readPlan(std::string_view text)
{
    const std::string_view kind = takePart(text);
    plan.kind = static_cast<Kind>(std::find(kindNames.begin(), kindNames.end(), kind) - kindNames.begin());
    for (const char digit : takePart(text))
        plan.number = plan.number * 10 + static_cast<std::uint32_t>(digit - '0');
    plan.effect = effectOf(takePart(text));
    plan.once = takePart(text) == "once"sv;
}

void shareCounts(const char* path)
{
    const auto file = static_cast<int>(::syscall(SYS_openat, AT_FDCWD, path, O_RDWR | O_CLOEXEC));
    void* const shared = ::mmap(nullptr, sizeof unsharedCounts, PROT_READ | PROT_WRITE, MAP_SHARED, file, 0);
    if (shared != MAP_FAILED)
        counts = static_cast<std::uint32_t*>(shared);
    ::syscall(SYS_close, file);
}

}  // namespace

void die()
{
    ::syscall(SYS_kill, ::syscall(SYS_getpid), SIGKILL);
    for (;;)
        ::syscall(SYS_pause);
}

Effect meet(Kind kind)
{
    std::uint32_t number = countUp(kind);
    if (changesFiles(kind)) {
        const std::uint32_t changes = countUp(Kind::change);
        if (plan.kind == Kind::change)
            number = changes;
    }
    const bool concerned = plan.kind == kind || (plan.kind == Kind::change && changesFiles(kind));
    if (!concerned || (plan.once ? number != plan.number : number < plan.number))
        return {};
    if (plan.effect.killBefore)
        die();
    return plan.effect;
}

bool isArmed()
{
    return armed;
}

bool countsMemory()
{
    return isArmed() && (exemptThread == 0 || ::syscall(SYS_gettid) != exemptThread);
}

void begin()
{
    if (const char* const whose = std::getenv("VELK_FAULT_MEMORY"); whose != nullptr && whose == "workers"sv)
        exemptThread = ::syscall(SYS_gettid);
    if (const char* const text = std::getenv("VELK_FAULT"))
        readPlan(text);
    if (const char* const path = std::getenv("VELK_FAULT_COUNTS"))
        shareCounts(path);
    if (const char* const path = std::getenv("VELK_FAULT_BELOW")) {
        watch(path);
        armed = true;
    }
}

}  // namespace faults
