#pragma once

#include <VelkCommon/Files/fileString.h>

#include <vector>

namespace VelkHost {

/// A new file, and where it goes.
struct FilePlacement
{
    fileString file;
    fileString target;
};

/// Moves new files to their places: all of them, or none. Files that are there are replaced, each in one step, and come
/// back when one of the others cannot be placed. Throws FileError then. A process that is killed in between may leave
/// some files new and some old. The folders of the targets must exist.
void replaceTogether(const std::vector<FilePlacement>& placements);

}  // namespace VelkHost
