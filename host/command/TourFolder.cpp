#include "host/command/TourFolder.h"

#include "host/support/FileError.h"
#include "host/support/Folders.h"

#include <VelkCommon/Files/FileUtils.h>
#include <VelkCommon/Files/ReplacementFile.h>

namespace VelkHost {

fileString freshTourFolder(const fileString& folder)
{
    makeFolder(folder);
    const fileString mark = folder / U"made-by-velk-tour.txt";
    for (const char32_t* name : {U"content", U"publisher", U"site", U"home", U"earlier"}) {
        const fileString part = folder / fileString(std::u32string(name));
        if (!part.pathExists())
            continue;
        if (!mark.pathExists())
            throw FileError(part, "already exists, and was not made by a tour; choose another folder");
        // Removing takes absolute paths only.
        if (!FileUtils::removeDirectoryAndFiles(absolutePath(part), FileUtils::overrideReadOnly))
            throw FileError(part, "cannot be removed");
    }
    ReplacementFile file(mark);
    if (!file.write(
            "\"velk tour\" makes the folders content, publisher, site, home and earlier here anew each time.\n") ||
        !file.commit())
        throw FileError(mark, "cannot be written");
    return folder;
}

void copyFolder(const fileString& from, const fileString& to)
{
    makeFolder(to);
    for (const FolderEntry& entry : folderEntries(from)) {
        if (entry.isFolder)
            copyFolder(from / entry.name, to / entry.name);
        else if (!FileUtils::copyFile(from / entry.name, to / entry.name, false))
            throw FileError(to / entry.name, "cannot be written");
    }
}

}  // namespace VelkHost
