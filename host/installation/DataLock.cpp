#include "host/installation/DataLock.h"

#include "host/installation/DataError.h"
#include "host/installation/InstalledRecord.h"
#include "host/support/Folders.h"

#include <VelkCommon/Files/FileUtils.h>

#include <chrono>

namespace VelkHost {
namespace {

constexpr std::chrono::seconds patience{10};

}  // namespace

// Where there is no lock of any kind, as on some network drives in a folder that may not be changed, all that is lost
// is the order of two who write at the same time.
FileLock lockFile(const fileString& file, const std::string& purpose, const std::stop_token& stop)
{
    const fileString path = absolutePath(file);
    FileUtils::createDirectoriesWithPerm(path.parentPath());
    FileLock lock = FileLock::ofFile(path, patience, purpose, stop);
    if (lock || !lock.isBusy())
        return lock;
    const std::string holder = FileLock::holder(path + fileString(std::string(".lock")));
    throw DataError({"%1 is in use: %2", {file.utf8(), holder.empty() ? "another program changes it" : holder}},
                    "Try again when that has ended.");
}

FileLock lockUpdates(const std::string& purpose, const std::stop_token& stop)
{
    return lockFile(InstalledRecord::path(), purpose, stop);
}

}  // namespace VelkHost
