#include "host/support/MadeFolder.h"

#include "host/support/Folders.h"

#include <VelkCommon/Files/FileState.h>

namespace VelkHost {

MadeFolder::MadeFolder(const fileString& path)
{
    for (fileString folder = absolutePath(path); !folder.pathExists(); folder = folder.parentPath())
        made_.push_back(folder);
    makeFolder(path);
}

MadeFolder::~MadeFolder()
{
    for (const fileString& folder : made_)
        Velk::removeEmptyFolder(folder);
}

}  // namespace VelkHost
