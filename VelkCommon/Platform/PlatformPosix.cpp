#include <VelkCommon/Platform/Platform.h>

#include <dirent.h>
#include <fcntl.h>
#include <pwd.h>
#include <sys/file.h>
#include <sys/random.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <fstream>
#include <memory>
#include <utility>
#include <vector>

namespace Velk::Platform {
namespace {

constexpr mode_t allBits = 0777;
constexpr mode_t privateBits = 0700;
constexpr mode_t fileBits = 0666;
constexpr std::size_t copyBlock = std::size_t{1} << 20;
// Larger requests are cut by the kernel anyway.
constexpr std::size_t kernelCopyBlock = std::size_t{1} << 30;

// Repeats a call that a signal interrupted.
template <typename Call>
auto uninterrupted(Call call) noexcept
{
    auto result = call();
    while (result == -1 && errno == EINTR)
        result = call();
    return result;
}

// The path as system calls take it; one with a zero byte would name another file, so it becomes the
// empty path, which names nothing.
const char* systemPath(const std::string& path) noexcept
{
    return path.find('\0') == std::string::npos ? path.c_str() : "";
}

class Descriptor
{
public:
    explicit Descriptor(int number = -1) noexcept : number_(number) {}
    Descriptor(Descriptor&& other) noexcept : number_(std::exchange(other.number_, -1)) {}
    Descriptor& operator=(Descriptor&& other) noexcept
    {
        std::swap(number_, other.number_);
        return *this;
    }
    ~Descriptor()
    {
        const int error = errno;
        if (number_ != -1)
            ::close(number_);
        errno = error;
    }

    int get() const noexcept { return number_; }
    int release() noexcept { return std::exchange(number_, -1); }
    explicit operator bool() const noexcept { return number_ != -1; }

private:
    int number_;
};

// O_NONBLOCK: a pipe put in a file's place must not hang us; it means nothing for files.
Descriptor openAt(int folder, const char* name, int flags) noexcept
{
    return Descriptor(
        uninterrupted([&] { return ::openat(folder, name, flags | O_CLOEXEC | O_NOCTTY | O_NONBLOCK, fileBits); }));
}

Descriptor openPath(const std::string& path, int flags) noexcept
{
    return openAt(AT_FDCWD, systemPath(path), flags);
}

Descriptor openFolder(int parent, const char* name) noexcept
{
    return openAt(parent, name, O_RDONLY | O_DIRECTORY | O_NOFOLLOW);
}

// As openPath(), but fails for folders, which open for reading otherwise.
Descriptor openFile(const std::string& path, int flags) noexcept
{
    Descriptor file = openPath(path, flags);
    struct stat status = {};
    if (!file || ::fstat(file.get(), &status) != 0)
        return Descriptor();
    if (!S_ISDIR(status.st_mode))
        return file;
    errno = EISDIR;
    return Descriptor();
}

// As openFile(), but only what has an end: a device or a pipe put in a file's place must not keep a
// reader busy for ever.
Descriptor openForReading(const std::string& path) noexcept
{
    Descriptor file = openPath(path, O_RDONLY);
    struct stat status = {};
    if (!file || ::fstat(file.get(), &status) != 0)
        return Descriptor();
    if (S_ISREG(status.st_mode))
        return file;
    errno = S_ISDIR(status.st_mode) ? EISDIR : EINVAL;
    return Descriptor();
}

struct Identity
{
    dev_t device = 0;
    ino_t number = 0;
    friend bool operator==(const Identity&, const Identity&) = default;
};

Identity identityOf(const struct stat& status) noexcept
{
    return {status.st_dev, status.st_ino};
}

Identity identityOf(const Descriptor& descriptor) noexcept
{
    struct stat status = {};
    return ::fstat(descriptor.get(), &status) == 0 ? identityOf(status) : Identity{};
}

bool linkStatus(const std::string& path, struct stat& status) noexcept
{
    return ::lstat(systemPath(path), &status) == 0;
}

std::string parentOf(const std::string& path)
{
    const std::size_t end = path.find_last_of('/');
    if (end == std::string::npos)
        return ".";
    return end == 0 ? "/" : path.substr(0, end);
}

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

int descriptorOf(std::intptr_t handle) noexcept
{
    return static_cast<int>(handle);
}

}  // namespace

// ---- The process ---------------------------------------------------------------------------------

std::string lastErrorText()
{
    return std::strerror(errno);
}

bool debuggerPresent()
{
    std::ifstream status("/proc/self/status");
    for (std::string line; std::getline(status, line);)
        if (line.starts_with("TracerPid:"))
            return std::strtol(line.c_str() + std::strlen("TracerPid:"), nullptr, 10) != 0;
    return false;
}

void debugBreak()
{
    static_cast<void>(std::raise(SIGTRAP));
}

void writeToStandardError(std::string_view text) noexcept
{
    while (!text.empty()) {
        const ssize_t written = uninterrupted([&] { return ::write(STDERR_FILENO, text.data(), text.size()); });
        if (written <= 0)
            return;
        text.remove_prefix(static_cast<std::size_t>(written));
    }
}

std::uint32_t currentThreadId() noexcept
{
    return static_cast<std::uint32_t>(::gettid());
}

bool fillRandom(void* bytes, std::size_t size) noexcept
{
    auto* next = static_cast<unsigned char*>(bytes);
    while (size > 0) {
        const ssize_t got = uninterrupted([&] { return ::getrandom(next, size, 0); });
        if (got <= 0)
            return false;
        next += got;
        size -= static_cast<std::size_t>(got);
    }
    return true;
}

// ---- Path text -----------------------------------------------------------------------------------

std::size_t rootLength(std::string_view path) noexcept
{
    return std::min(path.find_first_not_of('/'), path.size());
}

bool isAbsolute(std::string_view path) noexcept
{
    return path.starts_with('/');
}

std::wstring toNativePath(std::u32string_view path)
{
    return {path.begin(), path.end()};
}

std::u32string fromNativePath(std::wstring_view native)
{
    return {native.begin(), native.end()};
}

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

// ---- Files and folders by path -------------------------------------------------------------------

std::optional<FileStatus> fileStatus(const std::string& path) noexcept
{
    struct stat status = {};
    if (::stat(systemPath(path), &status) != 0)
        return std::nullopt;
    return FileStatus{S_ISDIR(status.st_mode), status.st_size, status.st_mtim.tv_sec};
}

bool nameTaken(const std::string& path) noexcept
{
    struct stat status = {};
    return linkStatus(path, status);
}

bool createSharedFolder(const std::string& path) noexcept
{
    if (::mkdir(systemPath(path), allBits) != 0) {
        const auto status = errno == EEXIST ? fileStatus(path) : std::nullopt;
        return status && status->folder;
    }
    // The process's mask took bits away. Through a descriptor, so that no link can be put in between.
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

namespace {

// Empties a tree with one open folder at a time: down by name, up by "..", which must lead to the
// folder that we came from.
class TreeRemover
{
public:
    explicit TreeRemover(bool overrideReadOnly) : overrideReadOnly_(overrideReadOnly) {}

    // Whether everything below `path` is gone.
    bool empty(const std::string& path)
    {
        current_ = open(AT_FDCWD, systemPath(path));
        if (!current_)
            return false;
        enter({});
        while (!levels_.empty())
            if (!levels_.back().folders.empty())
                descend();
            else if (!ascend())
                return false;
        return complete_;
    }

private:
    struct Level
    {
        Identity identity;
        std::string name;
        std::vector<std::string> folders;
    };

    Descriptor open(int parent, const char* name) const
    {
        Descriptor folder = openFolder(parent, name);
        if (folder || errno != EACCES || !overrideReadOnly_)
            return folder;
        // A name could become a link before its bits are changed; a descriptor cannot.
        const Descriptor handle = openAt(parent, name, O_PATH | O_DIRECTORY | O_NOFOLLOW);
        const std::string self = "/proc/self/fd/" + std::to_string(handle.get());
        if (handle && ::chmod(self.c_str(), privateBits) == 0)
            return openFolder(parent, name);
        return Descriptor();
    }

    // Makes the current folder a level: files are unlinked, folders are left to descend().
    void enter(std::string name)
    {
        if (overrideReadOnly_)
            static_cast<void>(::fchmod(current_.get(), privateBits));
        levels_.push_back({identityOf(current_), std::move(name), {}});
        Descriptor copy(::fcntl(current_.get(), F_DUPFD_CLOEXEC, 0));
        const std::unique_ptr<DIR, int (*)(DIR*)> listing(::fdopendir(copy.get()), &::closedir);
        if (listing)
            copy.release();
        complete_ = complete_ && listing;
        while (const dirent* entry = listing ? ::readdir(listing.get()) : nullptr)
            unlink(entry->d_name);
    }

    void unlink(const char* name)
    {
        if (std::strcmp(name, ".") == 0 || std::strcmp(name, "..") == 0)
            return;
        struct stat status = {};
        if (::fstatat(current_.get(), name, &status, AT_SYMLINK_NOFOLLOW) == 0 && S_ISDIR(status.st_mode))
            levels_.back().folders.emplace_back(name);
        else if (::unlinkat(current_.get(), name, 0) != 0)
            complete_ = false;
    }

    void descend()
    {
        std::string name = std::move(levels_.back().folders.back());
        levels_.back().folders.pop_back();
        Descriptor child = open(current_.get(), name.c_str());
        // What is mounted in the tree is somebody else's.
        if (!child || identityOf(child).device != levels_.front().identity.device) {
            complete_ = false;
            return;
        }
        current_ = std::move(child);
        enter(std::move(name));
    }

    // False when the tree was moved while we were in it.
    bool ascend()
    {
        const std::string name = std::move(levels_.back().name);
        levels_.pop_back();
        if (levels_.empty())
            return true;
        current_ = openFolder(current_.get(), "..");
        if (!current_ || identityOf(current_) != levels_.back().identity)
            return false;
        if (::unlinkat(current_.get(), name.c_str(), AT_REMOVEDIR) != 0)
            complete_ = false;
        return true;
    }

    bool overrideReadOnly_;
    bool complete_ = true;
    Descriptor current_;
    std::vector<Level> levels_;
};

// The file is not renamed to itself: a second name of it stays when it is "renamed" to the first.
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
    // The file system cannot do it in one step: claim the name, then replace what we claimed it with.
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

bool removeTree(const std::string& path, bool overrideReadOnly)
{
    struct stat status = {};
    if (!linkStatus(path, status))
        return false;
    if (!S_ISDIR(status.st_mode))
        return S_ISLNK(status.st_mode) && ::unlink(systemPath(path)) == 0;
    return TreeRemover(overrideReadOnly).empty(path) && ::rmdir(systemPath(path)) == 0;
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

bool canChangeFolder(const std::string& folder) noexcept
{
    const auto status = fileStatus(folder);
    return status && status->folder && ::faccessat(AT_FDCWD, systemPath(folder), W_OK | X_OK, AT_EACCESS) == 0;
}

bool canWriteFile(const std::string& path) noexcept
{
    const auto status = fileStatus(path);
    return status && !status->folder && ::faccessat(AT_FDCWD, systemPath(path), W_OK, AT_EACCESS) == 0;
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
    Descriptor file = openFile(path, O_WRONLY | O_APPEND | O_CREAT);
    if (!file)
        return false;
    const ssize_t written = uninterrupted([&] { return ::write(file.get(), text.data(), text.size()); });
    return ::close(file.release()) == 0 && written == static_cast<ssize_t>(text.size());
}

// ---- An open file --------------------------------------------------------------------------------

File::File(File&& other) noexcept : handle_(std::exchange(other.handle_, closed)) {}

File& File::operator=(File&& other) noexcept
{
    std::swap(handle_, other.handle_);
    return *this;
}

File::~File()
{
    if (isOpen())
        close();
}

File File::open(const std::string& path, Mode mode) noexcept
{
    if (mode == Mode::read)
        return File(openForReading(path).release());
    return File(openFile(path, O_RDWR | O_CREAT | O_EXCL).release());
}

File::LockResult File::openLocked(const std::string& path, Lock lock) noexcept
{
    const bool exclusive = lock == Lock::exclusive;
    // A link in a folder that everybody may change could lead to a file of this user.
    Descriptor file = exclusive ? openFile(path, O_RDWR | O_CREAT | O_NOFOLLOW) : openForReading(path);
    if (!file && exclusive && errno == EACCES)
        file = openFile(path, O_WRONLY | O_NOFOLLOW);
    if (!file)
        return LockResult::failed;
    if (uninterrupted([&] { return ::flock(file.get(), (exclusive ? LOCK_EX : LOCK_SH) | LOCK_NB); }) != 0)
        return errno == EWOULDBLOCK ? LockResult::held : LockResult::failed;
    // Between opening and locking, another file may have taken the name: then the lock is on nothing.
    struct stat named = {};
    if (::stat(systemPath(path), &named) != 0 || identityOf(named) != identityOf(file))
        return LockResult::held;
    *this = File(file.release());
    return LockResult::locked;
}

bool File::close() noexcept
{
    return ::close(descriptorOf(std::exchange(handle_, closed))) == 0;
}

long long File::read(char* bytes, std::size_t size) noexcept
{
    std::size_t total = 0;
    while (total < size) {
        const ssize_t got = uninterrupted([&] { return ::read(descriptorOf(handle_), bytes + total, size - total); });
        if (got < 0)
            return -1;
        if (got == 0)
            break;
        total += static_cast<std::size_t>(got);
    }
    return static_cast<long long>(total);
}

bool File::write(const char* bytes, std::size_t size) noexcept
{
    while (size > 0) {
        const ssize_t written = uninterrupted([&] { return ::write(descriptorOf(handle_), bytes, size); });
        if (written <= 0)
            return false;
        bytes += written;
        size -= static_cast<std::size_t>(written);
    }
    return true;
}

bool File::seek(long long offset) noexcept
{
    return ::lseek(descriptorOf(handle_), offset, SEEK_SET) == offset;
}

long long File::size() const noexcept
{
    struct stat status = {};
    return ::fstat(descriptorOf(handle_), &status) == 0 ? static_cast<long long>(status.st_size) : -1;
}

bool File::truncate() noexcept
{
    struct stat status = {};
    if (::fstat(descriptorOf(handle_), &status) != 0)
        return false;
    return !S_ISREG(status.st_mode) || uninterrupted([&] { return ::ftruncate(descriptorOf(handle_), 0); }) == 0;
}

bool File::sync() noexcept
{
    return uninterrupted([&] { return ::fsync(descriptorOf(handle_)); }) == 0;
}

void File::expectSequentialReading() noexcept
{
    ::posix_fadvise(descriptorOf(handle_), 0, 0, POSIX_FADV_SEQUENTIAL);
}

bool File::copyFrom(File& source)
{
    const int from = descriptorOf(source.handle_);
    const int to = descriptorOf(handle_);
    ssize_t copied = 0;
    do
        copied = uninterrupted([&] { return ::copy_file_range(from, nullptr, to, nullptr, kernelCopyBlock, 0); });
    while (copied > 0);
    // Not every pair of file systems can do it, and some answer 0 for files whose size they do not
    // know, so the rest is always read the ordinary way.
    std::vector<char> block(copyBlock);
    for (;;) {
        const long long got = source.read(block.data(), block.size());
        if (got <= 0)
            return got == 0;
        if (!write(block.data(), static_cast<std::size_t>(got)))
            return false;
    }
}

bool File::copyPermissionsFrom(const std::string& source) noexcept
{
    struct stat status = {};
    return ::stat(systemPath(source), &status) == 0 && ::fchmod(descriptorOf(handle_), status.st_mode & allBits) == 0;
}

}  // namespace Velk::Platform
