#include <VelkCommon/Platform/FolderEntries.h>

#include <VelkCommon/Platform/detail/Posix.h>

#include <dirent.h>

#include <memory>
#include <new>
#include <string_view>

namespace Velk::Platform {
namespace {

using Listing = std::unique_ptr<DIR, int (*)(DIR*)>;

std::error_code lastError()
{
    if (errno == ENOMEM)
        throw std::bad_alloc();
    return {errno, std::system_category()};
}

Listing openListing(const std::string& path)
{
    Descriptor folder = openPath(path, O_RDONLY | O_DIRECTORY);
    Listing listing(folder ? ::fdopendir(folder.get()) : nullptr, &::closedir);
    if (listing)
        folder.release();
    return listing;
}

// The next entry; null at the end, and after a failure, which leaves errno other than 0.
const dirent* next(const Listing& listing) noexcept
{
    errno = 0;
    return ::readdir(listing.get());
}

bool isFolder(const Listing& listing, const dirent& entry) noexcept
{
    if (entry.d_type != DT_UNKNOWN && entry.d_type != DT_LNK)
        return entry.d_type == DT_DIR;
    struct stat status = {};
    return ::fstatat(::dirfd(listing.get()), entry.d_name, &status, 0) == 0 && S_ISDIR(status.st_mode);
}

}  // namespace

std::vector<FolderEntry> folderEntries(const std::string& path, std::error_code& error)
{
    error.clear();
    const Listing listing = openListing(path);
    if (!listing) {
        error = lastError();
        return {};
    }
    std::vector<FolderEntry> entries;
    while (const dirent* const entry = next(listing)) {
        const std::string_view name = entry->d_name;
        if (name != "." && name != "..")
            entries.push_back({std::string(name), isFolder(listing, *entry)});
    }
    if (errno == 0)
        return entries;
    error = lastError();
    return {};
}

}  // namespace Velk::Platform
