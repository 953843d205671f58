#include "host/support/Folders.h"

#include "host/support/FileError.h"
#include "host/support/SystemPath.h"

#include <algorithm>
#include <filesystem>
#include <system_error>

namespace fs = std::filesystem;

namespace VelkHost {

fileString absolutePath(const fileString& path)
{
    std::error_code error;
    const fs::path absolute = fs::absolute(systemPath(path), error);
    return error ? path : fromSystemPath(absolute);
}

bool isFolder(const fileString& path)
{
    std::error_code ignored;
    return !path.empty() && fs::is_directory(systemPath(path), ignored);
}

void makeFolder(const fileString& path)
{
    std::error_code error;
    fs::create_directories(systemPath(path), error);
    if (isFolder(path))
        return;
    if (error)
        throw FileError(path, {"cannot be created as a folder: %1", {error.message()}});
    throw FileError(path, "cannot be created as a folder");
}

std::vector<fileString> filesInFolder(const fileString& folder, std::string_view extension)
{
    std::vector<fileString> files;
    for (const FolderEntry& entry : folderEntries(folder))
        if (!entry.isFolder && entry.name.hasExtension(extension))
            files.push_back(folder / entry.name);
    return files;
}

std::vector<FolderEntry> folderEntries(const fileString& folder)
{
    std::error_code error;
    std::vector<FolderEntry> entries = Velk::folderEntries(folder, error);
    if (error)
        throw FileError(folder, {"cannot be read: %1", {error.message()}});
    std::sort(entries.begin(), entries.end(),
              [](const FolderEntry& left, const FolderEntry& right) { return left.name < right.name; });
    return entries;
}

}  // namespace VelkHost
