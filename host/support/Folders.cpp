#include "host/support/Folders.h"

#include "host/support/FileError.h"
#include "host/support/SystemPath.h"

#include <algorithm>
#include <filesystem>
#include <system_error>

namespace fs = std::filesystem;

namespace VelkHost {
namespace {

/// The nearest thing above a path that is not a folder, so that nothing can be below it; empty without one.
fs::path fileAbove(const fs::path& path)
{
    std::error_code ignored;
    for (fs::path above = path.parent_path(); !above.empty(); above = above.parent_path()) {
        const fs::file_status status = fs::status(above, ignored);
        if (fs::exists(status))
            return fs::is_directory(status) ? fs::path() : above;
        if (above == above.parent_path())
            break;
    }
    return {};
}

}  // namespace

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

std::optional<Absence> absenceOf(const fileString& path)
{
    const fs::path native = systemPath(path);
    std::error_code error;
    const fs::file_status status = fs::status(native, error);
    if (fs::exists(status))
        return std::nullopt;
    std::error_code ignored;
    if (fs::is_symlink(fs::symlink_status(native, ignored)))
        return Absence{false, "is a link to something that cannot be found"};
    if (const fs::path file = fileAbove(native); !file.empty())
        return Absence{false, {"does not exist: %1 is not a folder", {fromSystemPath(file).humanReadableString()}}};
    if (status.type() == fs::file_type::not_found)
        return Absence{true, "does not exist"};
    return Absence{false, {"cannot be read: %1", {error.message()}}};
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
