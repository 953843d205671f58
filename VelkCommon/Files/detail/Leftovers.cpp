#include <VelkCommon/Files/detail/Leftovers.h>

#include <VelkCommon/Files/detail/RandomName.h>

#include <string_view>

namespace {

constexpr std::string_view beginning = ".velk-";
constexpr std::string_view ending = ".tmp";
constexpr std::string_view lockEnding = ".lock";

}  // namespace

fileString Velk::detail::temporaryName()
{
    return std::string(beginning) + randomName() + std::string(ending);
}

bool Velk::detail::isTemporaryName(const std::string& name)
{
    return name.starts_with(beginning) && name.ends_with(ending);
}

fileString Velk::detail::lockOfFolder(const fileString& temporaryFolder)
{
    return temporaryFolder.pathAndName() + fileString(std::string(lockEnding));
}

bool Velk::detail::isLockOfFolder(const std::string& name)
{
    return name.starts_with(beginning) && name.ends_with(lockEnding);
}

fileString Velk::detail::folderOfLock(const fileString& lockFile)
{
    return lockFile.pathAndName() + fileString(std::string(ending));
}
