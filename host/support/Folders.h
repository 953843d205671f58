#pragma once

#include "host/support/Reason.h"

#include <VelkCommon/Files/FileState.h>
#include <VelkCommon/Files/FolderListing.h>
#include <VelkCommon/Files/fileString.h>

#include <optional>
#include <string_view>
#include <vector>

namespace VelkHost {

using Velk::absolutePath;

/// Whether a folder stands at `path`; a link counts by its target.
bool isFolder(const fileString& path);

/// Why nothing can be had at a path.
struct Absence
{
    bool isFree = false;  ///< something could be made there: it is just not there yet
    Reason why;
};

/// Tells whether there is nothing at `path`, or nothing that one may see. Empty when there is something.
std::optional<Absence> absenceOf(const fileString& path);

/// Makes the folder and its parents. Throws FileError.
void makeFolder(const fileString& path);

/// The files in `folder` whose extension is exactly `extension` (such as ".calib"), sorted by name.
/// Throws FileError for a folder that cannot be read.
std::vector<fileString> filesInFolder(const fileString& folder, std::string_view extension);

using Velk::FolderEntry;

/// Everything in `folder`, sorted by name. Throws FileError for a folder that cannot be read.
std::vector<FolderEntry> folderEntries(const fileString& folder);

}  // namespace VelkHost
