#include <VelkCommon/Platform/UserFolders.h>

#include <pwd.h>
#include <unistd.h>

#include <cstdlib>
#include <vector>

namespace Velk::Platform {
namespace {

std::string environment(const char* name)
{
    const char* value = std::getenv(name);
    return value != nullptr && value[0] == '/' ? value : std::string();
}

std::string homeFolder()
{
    if (std::string home = environment("HOME"); !home.empty())
        return home;
    struct passwd entry = {};
    struct passwd* found = nullptr;
    std::vector<char> buffer(std::size_t{1} << 14);
    if (::getpwuid_r(::geteuid(), &entry, buffer.data(), buffer.size(), &found) == 0 && found != nullptr)
        return found->pw_dir;
    return "/";
}

}  // namespace

std::string userDataFolder()
{
    if (std::string folder = environment("XDG_DATA_HOME"); !folder.empty())
        return folder;
    return homeFolder() + "/.local/share";
}

std::string temporaryFolder()
{
    if (std::string folder = environment("TMPDIR"); !folder.empty())
        return folder;
    return "/tmp";
}

std::string userFolderName()
{
    return "velk-" + std::to_string(::geteuid());
}

}  // namespace Velk::Platform
