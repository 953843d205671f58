#include <VelkCommon/Platform/FileSystem.h>

#include <VelkCommon/Platform/detail/Posix.h>

#include <sys/file.h>
#include <sys/statvfs.h>

#include <cstdio>

namespace Velk::Platform {
namespace {

std::string parentOf(const std::string& path)
{
    const std::size_t end = path.find_last_of('/');
    if (end == std::string::npos)
        return ".";
    return end == 0 ? "/" : path.substr(0, end);
}

// Whether it is a file, and one that can be found nowhere else.
bool isOrdinary(const Descriptor& file) noexcept
{
    struct stat status = {};
    if (::fstat(file.get(), &status) != 0)
        return false;
    if (S_ISREG(status.st_mode) && status.st_nlink == 1)
        return true;
    errno = EMLINK;
    return false;
}

// Whether the two are different names of one file. Then rename() does nothing, and the old name would stay.
bool isSecondName(const std::string& from, const std::string& to)
{
    struct stat source = {};
    struct stat target = {};
    if (!linkStatus(from, source) || !linkStatus(to, target) || identityOf(source) != identityOf(target))
        return false;
    const bool sameName = from.substr(from.find_last_of('/') + 1) == to.substr(to.find_last_of('/') + 1);
    return !sameName || ::stat(systemPath(parentOf(from)), &source) != 0 ||
           ::stat(systemPath(parentOf(to)), &target) != 0 || identityOf(source) != identityOf(target);
}

bool renameNew(const char* from, const char* to) noexcept
{
    if (::renameat2(AT_FDCWD, from, AT_FDCWD, to, RENAME_NOREPLACE) == 0)
        return true;
    if (errno != EINVAL && errno != ENOSYS)
        return false;
    // The file system cannot do this in one step: claim the name by an empty file, then replace that file.
    if (!openAt(AT_FDCWD, to, O_WRONLY | O_CREAT | O_EXCL))
        return false;
    if (::rename(from, to) == 0)
        return true;
    const int error = errno;
    ::unlink(to);
    errno = error;
    return false;
}

bool renameReplacing(const std::string& from, const std::string& to)
{
    if (isSecondName(from, to))
        return ::unlink(systemPath(from)) == 0;
    return ::rename(systemPath(from), systemPath(to)) == 0;
}

}  // namespace

std::optional<FileStatus> fileStatus(const std::string& path) noexcept
{
    struct stat status = {};
    if (::stat(systemPath(path), &status) != 0)
        return std::nullopt;
    constexpr long long second = 1'000'000'000;
    return FileStatus{S_ISDIR(status.st_mode),
                      S_ISREG(status.st_mode),
                      status.st_size,
                      status.st_mtim.tv_sec,
                      status.st_ino,
                      status.st_dev,
                      status.st_mtim.tv_sec * second + status.st_mtim.tv_nsec};
}

bool nameTaken(const std::string& path) noexcept
{
    struct stat status = {};
    return linkStatus(path, status);
}

bool linkAt(const std::string& path) noexcept
{
    struct stat status = {};
    return linkStatus(path, status) && S_ISLNK(status.st_mode);
}

std::string absolutePath(const std::string& path)
{
    if (path.empty() || path.front() == '/')
        return path;
    std::string folder(256, '\0');
    while (::getcwd(folder.data(), folder.size()) == nullptr) {
        if (errno != ERANGE)
            return path;
        folder.resize(2 * folder.size());
    }
    folder.resize(folder.find('\0'));
    return folder + (folder.ends_with('/') ? "" : "/") + path;
}

bool createFolder(const std::string& path) noexcept
{
    if (::mkdir(systemPath(path), allBits) == 0)
        return true;
    const int error = errno;
    const auto status = error == EEXIST ? fileStatus(path) : std::nullopt;
    errno = error;
    return status && status->folder;
}

bool removeEmptyFolder(const std::string& path) noexcept
{
    return ::rmdir(systemPath(path)) == 0;
}

bool createSharedFolder(const std::string& path) noexcept
{
    if (::mkdir(systemPath(path), allBits) != 0) {
        const auto status = errno == EEXIST ? fileStatus(path) : std::nullopt;
        return status && status->folder;
    }
    // The process's mask removed some permissions. They are set through a descriptor, so that no link can be put in
    // the folder's place.
    const Descriptor folder = openFolder(AT_FDCWD, systemPath(path));
    return folder && ::fchmod(folder.get(), allBits) == 0;
}

bool createPrivateFolder(const std::string& path) noexcept
{
    if (::mkdir(systemPath(path), privateBits) != 0 && errno != EEXIST)
        return false;
    const Descriptor folder = openFolder(AT_FDCWD, systemPath(path));
    struct stat status = {};
    return folder && ::fstat(folder.get(), &status) == 0 && status.st_uid == ::geteuid() &&
           (status.st_mode & allBits & ~privateBits) == 0;
}

bool removeFile(const std::string& path, bool) noexcept
{
    // The folder's permissions decide here, never those of the file.
    struct stat status = {};
    if (!linkStatus(path, status))
        return false;
    if (!S_ISDIR(status.st_mode))
        return ::unlink(systemPath(path)) == 0;
    errno = EISDIR;
    return false;
}

bool removeUnheldFile(const std::string& path) noexcept
{
    const Descriptor file = openPath(path, O_RDONLY | O_NOFOLLOW);
    struct stat status = {};
    if (!file || ::fstat(file.get(), &status) != 0 || !S_ISREG(status.st_mode))
        return false;
    // Unlinked under the lock, so the name still belongs to the file that was looked at.
    struct stat named = {};
    return uninterrupted([&] { return ::flock(file.get(), LOCK_EX | LOCK_NB); }) == 0 && linkStatus(path, named) &&
           identityOf(named) == identityOf(status) && ::unlink(systemPath(path)) == 0;
}

bool linkFile(const std::string& file, const std::string& secondName) noexcept
{
    return ::linkat(AT_FDCWD, systemPath(file), AT_FDCWD, systemPath(secondName), AT_SYMLINK_FOLLOW) == 0;
}

MoveResult move(const std::string& from, const std::string& to, bool replace) noexcept
try {
    struct stat status = {};
    if (!linkStatus(from, status))
        return MoveResult::failed;
    const bool mayReplace = replace && !S_ISDIR(status.st_mode);
    if (mayReplace ? renameReplacing(from, to) : renameNew(systemPath(from), systemPath(to)))
        return MoveResult::moved;
    return errno == EXDEV ? MoveResult::otherVolume : MoveResult::failed;
} catch (...) {
    return MoveResult::failed;
}

void syncFolder(const std::string& folder) noexcept
{
    if (const Descriptor opened = openPath(folder, O_RDONLY | O_DIRECTORY))
        ::fsync(opened.get());
}

std::optional<std::uint64_t> freeSpace(const std::string& folder) noexcept
{
    struct statvfs status = {};
    if (uninterrupted([&] { return ::statvfs(systemPath(folder), &status); }) != 0)
        return std::nullopt;
    return static_cast<std::uint64_t>(status.f_bavail) * status.f_frsize;
}

bool canChangeFolder(const std::string& folder) noexcept
{
    const auto status = fileStatus(folder);
    return status && status->folder && ::faccessat(AT_FDCWD, systemPath(folder), W_OK | X_OK, AT_EACCESS) == 0;
}

bool canWriteFile(const std::string& path) noexcept
{
    const auto status = fileStatus(path);
    return status && !status->folder && ::faccessat(AT_FDCWD, systemPath(path), W_OK, AT_EACCESS) == 0 &&
           !isWriteLocked(path);
}

// In a folder with the sticky bit, a file may be replaced only by its owner and by the owner of the folder.
bool canReplaceFile(const std::string& folder, const std::string& path) noexcept
{
    if (!canChangeFolder(folder))
        return false;
    struct stat holder = {};
    struct stat file = {};
    if (::stat(systemPath(folder), &holder) != 0 || ::lstat(systemPath(path), &file) != 0)
        return false;
    const uid_t user = ::geteuid();
    return (holder.st_mode & S_ISVTX) == 0 || user == 0 || user == holder.st_uid || user == file.st_uid;
}

bool isWriteLocked(const std::string& path) noexcept
{
    Descriptor file = openFile(path, O_RDONLY);
    if (!file && errno == EACCES)
        file = openFile(path, O_WRONLY);
    return file && uninterrupted([&] { return ::flock(file.get(), LOCK_SH | LOCK_NB); }) != 0 && errno == EWOULDBLOCK;
}

bool makeWritable(const std::string& path) noexcept
{
    struct stat status = {};
    return ::stat(systemPath(path), &status) == 0 && ::chmod(systemPath(path), (status.st_mode & 07777) | S_IWUSR) == 0;
}

bool grantEveryone(const std::string& path) noexcept
{
    // A link in a folder that everybody may change could lead to a file of this user.
    const auto status = fileStatus(path);
    return status &&
           ::fchmodat(AT_FDCWD, systemPath(path), status->folder ? allBits : fileBits, AT_SYMLINK_NOFOLLOW) == 0;
}

bool appendText(const std::string& path, std::string_view text)
{
    Descriptor file = openFile(path, O_WRONLY | O_APPEND | O_CREAT | O_NOFOLLOW);
    if (!file || !isOrdinary(file))
        return false;
    const ssize_t written = uninterrupted([&] { return ::write(file.get(), text.data(), text.size()); });
    return ::close(file.release()) == 0 && written == static_cast<ssize_t>(text.size());
}

}  // namespace Velk::Platform
