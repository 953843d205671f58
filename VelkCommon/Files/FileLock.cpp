#include <VelkCommon/Files/FileLock.h>

#include <VelkCommon/Files/detail/Folders.h>
#include <VelkCommon/Platform/File.h>
#include <VelkCommon/Platform/FileSystem.h>

#include <algorithm>
#include <array>
#include <thread>
#include <utility>

namespace Platform = Velk::Platform;

namespace {

using Clock = std::chrono::steady_clock;
using Result = Platform::File::LockResult;
using FolderLock = Platform::File::Lock;

constexpr std::chrono::milliseconds retryPause{5};
constexpr std::size_t longestPurpose = 500;  // bytes

Result openPatiently(Platform::File& file, const fileString& path, std::chrono::milliseconds patience,
                     const std::stop_token& stop)
{
    const auto end = Clock::now() + patience;
    for (;;) {
        const Result result = file.openLocked(path.utf8(), Platform::File::Lock::marker);
        if (result != Result::held || stop.stop_requested() || Clock::now() >= end)
            return result;
        std::this_thread::sleep_for(retryPause);
    }
}

}  // namespace

FileLock::FileLock(const fileString& lockFile, std::chrono::milliseconds patience, const std::string& purpose,
                   const std::stop_token& stop)
    : path_(lockFile)
{
    auto file = std::make_unique<Platform::File>();
    const Result result = openPatiently(*file, lockFile, patience, stop);
    busy_ = result == Result::held;
    if (result != Result::locked)
        return;
    // The purpose is a kindness: the lock holds without it.
    static_cast<void>(file->truncate() && file->write(purpose.data(), std::min(purpose.size(), longestPurpose)));
    file_ = std::move(file);
}

FileLock FileLock::ofFile(const fileString& file, std::chrono::milliseconds patience, const std::string& purpose,
                          const std::stop_token& stop)
{
    const auto end = Clock::now() + patience;
    for (;;) {
        FileLock lock = tryFile(file, purpose);
        if (!lock.isBusy() || stop.stop_requested() || Clock::now() >= end)
            return lock;
        std::this_thread::sleep_for(retryPause);
    }
}

// Whoever has the lock file looks whether somebody is at work under the lock of the folder; whoever has that, whether
// somebody has made a lock file meanwhile. So of two that begin at the same time, at most one goes on.
FileLock FileLock::tryFile(const fileString& file, const std::string& purpose)
{
    const fileString lockFile = file + fileString(std::string(".lock"));
    FileLock lock(lockFile, std::chrono::milliseconds(0), purpose);
    if (lock.isBusy())
        return lock;
    auto folder = std::make_unique<Platform::File>();
    const Result result =
        folder->lockFolder(Velk::detail::folderOf(file), lock ? FolderLock::shared : FolderLock::exclusive);
    if (lock && result != Result::held)
        return lock;
    FileLock folderLock;
    const bool isAlone = result == Result::locked && !Platform::nameTaken(lockFile.utf8());
    folderLock.busy_ = result != Result::failed && !isAlone;
    if (isAlone)
        folderLock.file_ = std::move(folder);
    return folderLock;
}

FileLock::~FileLock()
{
    release();
}

FileLock::FileLock(FileLock&& other) noexcept = default;

FileLock& FileLock::operator=(FileLock&& other) noexcept
{
    std::swap(path_, other.path_);
    std::swap(file_, other.file_);
    std::swap(busy_, other.busy_);
    return *this;
}

std::string FileLock::holder(const fileString& lockFile)
{
    Platform::File file = Platform::File::open(lockFile.utf8(), Platform::File::Mode::read);
    std::array<char, longestPurpose> text{};
    const long long size = file.isOpen() ? file.read(text.data(), text.size()) : 0;
    return {text.data(), static_cast<std::size_t>(std::max(size, 0LL))};
}

// Removed under the lock where an open file can be removed: a waiting process then finds that its file has lost the
// name, and makes a new one. Elsewhere nobody can open the file in between, or the removal fails.
void FileLock::release() noexcept
{
    if (!file_)
        return;
    if (path_.empty()) {
        file_.reset();
        return;
    }
    if constexpr (Platform::openFilesCanBeRemoved) {
        Platform::removeFile(path_.utf8(), false);
        file_.reset();
    } else {
        file_.reset();
        Platform::removeUnheldFile(path_.utf8());
    }
}
