#include "host/support/Folders.h"

#include "host/support/FileError.h"

#include <algorithm>
#include <filesystem>

namespace fs = std::filesystem;

namespace VelkHost {
namespace {

// The UTF-8 form keeps names on Linux that are not valid text, and is exact on Windows.
fs::path native(const fileString& path)
{
    return fs::path(std::u8string(path.utf8().begin(), path.utf8().end()));
}

fileString fromNative(const fs::path& path)
{
    const std::u8string text = path.u8string();
    return fileString(std::string(text.begin(), text.end()));
}

}  // namespace

fileString absolutePath(const fileString& path)
{
    std::error_code error;
    const fs::path absolute = fs::absolute(native(path), error);
    return error ? path : fromNative(absolute);
}

bool isFolder(const fileString& path)
{
    std::error_code ignored;
    return !path.empty() && fs::is_directory(native(path), ignored);
}

void makeFolder(const fileString& path)
{
    std::error_code error;
    fs::create_directories(native(path), error);
    if (isFolder(path))
        return;
    if (error)
        throw FileError(path, {"cannot be created as a folder: %1", {error.message()}});
    throw FileError(path, "cannot be created as a folder");
}

std::vector<fileString> filesInFolder(const fileString& folder, const fileString& extension)
{
    std::vector<fileString> files;
    for (const FolderEntry& entry : folderEntries(folder))
        if (!entry.isFolder && entry.name.extension() == extension)
            files.push_back(folder / entry.name);
    return files;
}

std::vector<FolderEntry> folderEntries(const fileString& folder)
{
    std::vector<FolderEntry> entries;
    std::error_code error;
    for (fs::directory_iterator entry(native(folder), error), end; !error && entry != end; entry.increment(error)) {
        std::error_code ignored;
        entries.push_back({fromNative(entry->path().filename()), entry->is_directory(ignored)});
    }
    if (error)
        throw FileError(folder, {"cannot be read: %1", {error.message()}});
    std::sort(entries.begin(), entries.end(),
              [](const FolderEntry& left, const FolderEntry& right) { return left.name < right.name; });
    return entries;
}

}  // namespace VelkHost
