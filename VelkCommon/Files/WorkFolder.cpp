#include <VelkCommon/Files/WorkFolder.h>

#include <VelkCommon/Files/detail/Leftovers.h>
#include <VelkCommon/Platform/FileSystem.h>
#include <VelkCommon/Platform/FolderEntries.h>
#include <VelkCommon/Platform/RemoveTree.h>
#include <VelkCommon/detail/Guarded.h>

#include <chrono>
#include <stdexcept>
#include <string>
#include <system_error>
#include <utility>

namespace Platform = Velk::Platform;

namespace {

constexpr int folderAttempts = 10;
constexpr std::chrono::milliseconds atOnce{0};
constexpr const char* usedForFiles = "temporary files";

// Only the owner of the lock may remove a folder, so a folder that is just being made is safe.
void removeFolder(const fileString& folder)
{
    if (const FileLock lock(Velk::detail::lockOfFolder(folder), atOnce, usedForFiles); lock)
        static_cast<void>(Platform::removeTree(folder.utf8(), true));
}

void removeUnheld(const fileString& path, bool isFolder)
{
    if (isFolder)
        removeFolder(path);
    else
        static_cast<void>(Platform::removeUnheldFile(path.utf8()));
}

}  // namespace

WorkFolder::WorkFolder(const fileString& parent)
{
    try {
        for (int attempt = 0; attempt < folderAttempts && path_.empty(); ++attempt) {
            fileString candidate = parent / Velk::detail::temporaryName();
            FileLock lock(Velk::detail::lockOfFolder(candidate), atOnce, usedForFiles);
            if (!lock || Platform::nameTaken(candidate.utf8()) || !Platform::createPrivateFolder(candidate.utf8()))
                continue;
            path_ = std::move(candidate);
            lock_ = std::move(lock);
        }
    } catch (const std::runtime_error&) {
        // Without random numbers there is no name that nobody can guess.
    }
}

WorkFolder::~WorkFolder()
{
    if (!path_.empty())
        Velk::guarded([&] { return Platform::removeTree(path_.utf8(), true); }, false);
}

void WorkFolder::removeLeftovers(const fileString& folder)
{
    std::error_code unreadable;
    for (const auto& [name, isFolder] : Platform::folderEntries(folder.utf8(), unreadable)) {
        const fileString path = folder / fileString(name);
        if (Velk::detail::isLockOfFolder(name))
            removeFolder(Velk::detail::folderOfLock(path));
        else if (Velk::detail::isTemporaryName(name))
            removeUnheld(path, isFolder);
    }
}
