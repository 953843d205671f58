#pragma once

#include <VelkCommon/Files/fileString.h>

#include <vector>

namespace VelkHost {

/// A folder that an operation needs. Those of its parents and itself that were not there before go away again, as far
/// as they are empty, unless the operation keeps them.
class MadeFolder
{
public:
    /// Makes the folder. Throws FileError.
    explicit MadeFolder(const fileString& path);
    ~MadeFolder();
    MadeFolder(const MadeFolder&) = delete;
    MadeFolder& operator=(const MadeFolder&) = delete;

    void keep() noexcept { made_.clear(); }

private:
    std::vector<fileString> made_;  // the innermost first
};

}  // namespace VelkHost
