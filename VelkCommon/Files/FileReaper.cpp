#include <VelkCommon/Files/FileReaper.h>

#include <VelkCommon/Files/FileUtils.h>

#include <utility>

FileReaper::FileReaper(fileString path) noexcept : path_(std::move(path)) {}

FileReaper::~FileReaper()
{
    if (!cancelled_)
        FileUtils::removePath(path_, FileUtils::overrideReadOnly);
}
