#pragma once

#include <VelkCommon/Files/fileString.h>
#include <VelkCommon/Platform/FileSystem.h>
#include <VelkCommon/Platform/PathText.h>

#include <string>
#include <string_view>
#include <vector>

namespace Velk::detail {

/// `text` without the separators at its end; a root stays.
inline std::string withoutTrailingSeparators(std::string text)
{
    const std::size_t root = Velk::Platform::rootLength(text);
    while (text.size() > root && Velk::Platform::isSeparator(text.back()))
        text.pop_back();
    return text;
}

/// The folder that holds `path`, as system calls take it: "." for a bare name.
inline std::string folderOf(const fileString& path)
{
    const fileString parent = path.parentPathWithSeparator();
    return parent.empty() ? "." : parent.utf8();
}

/// Creates each missing folder of `path` by `createFolder(path)`, outermost first. Returns whether the
/// folder exists afterwards. An existing folder is not touched.
template <typename CreateFolder>
bool createMissingFolders(const fileString& path, CreateFolder createFolder)
{
    std::vector<std::string> missing;
    fileString folder = withoutTrailingSeparators(path.utf8());
    // A root is its own parent and cannot be created, even if it is that of a missing drive.
    const std::size_t root = Velk::Platform::rootLength(folder.utf8());
    for (; folder.utf8().size() > root && !folder.pathExists(); folder = folder.parentPath())
        missing.push_back(folder.utf8());
    for (; !missing.empty(); missing.pop_back())
        if (!createFolder(missing.back()))
            return false;
    const auto status = Velk::Platform::fileStatus(path.utf8());
    return status && status->folder;
}

}  // namespace Velk::detail
