#include <VelkCommon/Platform/UserFolders.h>

#include <VelkCommon/Platform/detail/Windows.h>

#include <limits>

namespace Velk::Platform {
namespace {

std::string environment(const wchar_t* name)
{
    std::wstring value(std::numeric_limits<short>::max(), L'\0');
    const DWORD size = ::GetEnvironmentVariableW(name, value.data(), static_cast<DWORD>(value.size()));
    return size < value.size() ? fromNativePath(value.substr(0, size)) : std::string();
}

}  // namespace

std::string userDataFolder()
{
    std::string folder = environment(L"LOCALAPPDATA");
    return folder.empty() ? temporaryFolder() : folder;
}

std::string temporaryFolder()
{
    std::wstring folder(MAX_PATH + 2, L'\0');
    const DWORD size = ::GetTempPathW(static_cast<DWORD>(folder.size()), folder.data());
    if (size == 0 || size >= folder.size())
        return "C:\\Windows\\Temp";
    return fromNativePath(folder.substr(0, size));
}

std::string userFolderName()
{
    // The temporary folder already belongs to this user alone.
    return "velk";
}

}  // namespace Velk::Platform
