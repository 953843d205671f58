#include "Watched.h"

#include "Plan.h"

#include <fcntl.h>
#include <sys/syscall.h>
#include <unistd.h>

#include <array>
#include <climits>
#include <cstdio>
#include <cstring>
#include <string_view>

namespace faults {

namespace {

constinit std::array<char, PATH_MAX> below{};

bool startsWithFolder(std::string_view path)
{
    const std::string_view folder = below.data();
    return path.starts_with(folder) && (path.size() == folder.size() || path[folder.size()] == '/');
}

}  // namespace

void watch(const char* folder)
{
    std::strncpy(below.data(), folder, below.size() - 1);
}

bool isWatched(int descriptor)
{
    if (!isArmed())
        return false;
    std::array<char, 32> link{};
    std::snprintf(link.data(), link.size(), "/proc/self/fd/%d", descriptor);
    std::array<char, PATH_MAX> path{};
    const long size = ::syscall(SYS_readlink, link.data(), path.data(), path.size());
    return size > 0 && startsWithFolder({path.data(), static_cast<std::size_t>(size)});
}

// The program works in the watched folder, so what is relative is below it.
bool isWatched(const char* path)
{
    return isArmed() && path != nullptr &&
           (path[0] != '/' || startsWithFolder(path) || std::string_view(path).starts_with("/proc/self/fd/"));
}

bool isWatched(int folder, const char* path)
{
    return folder == AT_FDCWD || path[0] == '/' ? isWatched(path) : isWatched(folder);
}

}  // namespace faults
