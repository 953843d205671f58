#include "host/support/MadeFolder.h"

#include "host/support/Folders.h"
#include "host/support/SystemPath.h"

#include <filesystem>
#include <system_error>

namespace VelkHost {

MadeFolder::MadeFolder(const fileString& path)
{
    for (fileString folder = absolutePath(path); !folder.pathExists(); folder = folder.parentPath())
        made_.push_back(folder);
    makeFolder(path);
}

MadeFolder::~MadeFolder()
{
    std::error_code notEmpty;
    for (const fileString& folder : made_)
        std::filesystem::remove(systemPath(folder), notEmpty);
}

}  // namespace VelkHost
