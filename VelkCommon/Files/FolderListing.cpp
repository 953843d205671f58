#include <VelkCommon/Files/FolderListing.h>

#include <VelkCommon/Platform/FolderEntries.h>

namespace Velk {

std::vector<FolderEntry> folderEntries(const fileString& folder, std::error_code& error)
{
    std::vector<FolderEntry> entries;
    for (const Platform::FolderEntry& entry : Platform::folderEntries(folder.utf8(), error))
        entries.push_back({fileString(entry.name), entry.folder});
    return entries;
}

}  // namespace Velk
