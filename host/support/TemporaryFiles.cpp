#include "host/support/TemporaryFiles.h"

#include "host/support/FileError.h"

#include <VelkCommon/Files/PathUtils.h>

#include <exception>
#include <utility>

namespace VelkHost {

TemporaryFiles::TemporaryFiles(Velk::HostServices services, Need need) : services_(std::move(services))
{
    Velk::installHost(*services_);
    useFolderIn(PathUtils::getObject().getTempPath(), need);
}

TemporaryFiles::TemporaryFiles(Velk::HostServices services, const fileString& parent) : services_(std::move(services))
{
    Velk::installHost(*services_);
    useFolderIn(parent, Need::always);
}

fileString TemporaryFiles::path() const
{
    return PathUtils::getObject().getTempPath();
}

void TemporaryFiles::useFolderIn(const fileString& parent, Need need)
{
    WorkFolder::removeLeftovers(parent);
    folder_.emplace(parent);
    if (folder_->path().empty()) {
        if (need == Need::always)
            throw FileError(parent, "cannot be written");
        return;
    }
    Velk::HostServices own = *services_;
    own.folders.temp = folder_->path();
    Velk::installHost(std::move(own));
}

TemporaryFiles::~TemporaryFiles()
{
    try {
        Velk::installHost(std::move(*services_));
    } catch (const std::exception&) {
        // Without memory the program ends anyway.
    }
}

}  // namespace VelkHost
