#include <VelkCommon/Platform/RemoveTree.h>

#include <VelkCommon/Platform/detail/Posix.h>

#include <dirent.h>

#include <cstring>
#include <memory>
#include <utility>
#include <vector>

namespace Velk::Platform {
namespace {

// Empties a tree with one open folder at a time. It descends by name and ascends by "..", which must lead to the
// folder that it came from.
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

    // Makes the current folder a new level: unlinks its files, and leaves its folders to descend().
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
        // A file system that is mounted in the tree is not ours to delete.
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

}  // namespace Velk::Platform
