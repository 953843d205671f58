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

// Where no lock file can be made, no file can be replaced either: then the writing itself fails.
FileLock lockFile(const fileString& file, const std::string& purpose, const std::stop_token& stop)
{
    const fileString path = absolutePath(file) + fileString(std::string(".lock"));
    FileUtils::createDirectoriesWithPerm(path.parentPath());
    FileLock lock(path, patience, purpose, stop);
    if (lock || !lock.isBusy())
        return lock;
    const std::string holder = FileLock::holder(path);
    throw DataError({"%1 is in use: %2", {file.utf8(), holder.empty() ? "another program changes it" : holder}},
                    "Try again when that has ended.");
}

FileLock lockUpdates(const std::string& purpose, const std::stop_token& stop)
{
    return lockFile(InstalledRecord::path(), purpose, stop);
}

}  // namespace VelkHost
