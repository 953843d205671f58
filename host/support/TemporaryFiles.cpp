#include "host/support/TemporaryFiles.h"

#include "host/support/FileError.h"

#include <VelkCommon/Files/PathUtils.h>

#include <exception>
#include <utility>

namespace VelkHost {

TemporaryFiles::TemporaryFiles(Velk::HostServices services) : services_(std::move(services))
{
    Velk::installHost(*services_);
    useFolderIn(PathUtils::getObject().getTempPath());
}

TemporaryFiles::TemporaryFiles(Velk::HostServices services, const fileString& parent) : services_(std::move(services))
{
    Velk::installHost(*services_);
    useFolderIn(parent);
    if (folder_->path().empty())
        throw FileError(parent, "cannot be written");
}

fileString TemporaryFiles::path() const
{
    return PathUtils::getObject().getTempPath();
}

void TemporaryFiles::useFolderIn(const fileString& parent)
{
    WorkFolder::removeLeftovers(parent);
    folder_.emplace(parent);
    if (folder_->path().empty())
        return;
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
