#include "host/support/Folders.h"

#include "host/support/FileError.h"

#include <VelkCommon/Files/FileState.h>
#include <VelkCommon/Files/FileUtils.h>

#include <algorithm>
#include <system_error>

namespace VelkHost {
namespace {

using Kind = Velk::FileState::Kind;

/// The nearest thing above a path that is not a folder, so that nothing can be below it; empty without one.
fileString fileAbove(const fileString& path)
{
    for (fileString above = path.parentPath(); !above.empty(); above = above.parentPath()) {
        const Kind kind = Velk::fileState(above).kind;
        if (kind != Kind::nothing && kind != Kind::unknown)
            return kind == Kind::folder ? fileString() : above;
        if (above == above.parentPath())
            break;
    }
    return {};
}

}  // namespace

bool isFolder(const fileString& path)
{
    return Velk::fileState(path).kind == Kind::folder;
}

std::optional<Absence> absenceOf(const fileString& path)
{
    const Velk::FileState state = Velk::fileState(path);
    if (state.kind != Kind::nothing && state.kind != Kind::unknown)
        return std::nullopt;
    if (FileUtils::isLink(path))
        return Absence{false, "is a link to something that cannot be found"};
    if (const fileString file = fileAbove(path); !file.empty())
        return Absence{false, {"does not exist: %1 is not a folder", {file.humanReadableString()}}};
    if (state.kind == Kind::nothing)
        return Absence{true, "does not exist"};
    return Absence{false, {"cannot be read: %1", {state.why}}};
}

void makeFolder(const fileString& path)
{
    if (const std::optional<std::string> why = Velk::makeFolders(path))
        throw FileError(path, {"cannot be created as a folder: %1", {*why}});
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
        throw FileError(folder, {"cannot be read: %1", {Velk::errorText(error)}});
    std::sort(entries.begin(), entries.end(),
              [](const FolderEntry& left, const FolderEntry& right) { return left.name < right.name; });
    return entries;
}

}  // namespace VelkHost
