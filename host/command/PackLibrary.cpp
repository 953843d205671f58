#include "host/command/PackLibrary.h"

#include "host/command/NewArchive.h"
#include "host/support/FileError.h"
#include "host/support/WholeFile.h"

#include <VelkCommon/Archive/ZipUtils.h>
#include <VelkCommon/Files/FileReaper.h>
#include <VelkCommon/Files/FileUtils.h>
#include <VelkLibrary/Data/FileExtensions.h>

#include <limits>

namespace VelkHost {
namespace {

/// The source's own tables of names are in the catalog already.
bool isContent(const std::u32string& name)
{
    return !name.empty() && !name.ends_with(U'/') && !name.starts_with(U"PluginFurnitureCatalog");
}

}  // namespace

void packWithFiles(const fileString& catalog, const std::vector<std::pair<std::string, std::string>>& files,
                   const fileString& target)
{
    requireFile(catalog, std::numeric_limits<std::uint64_t>::max());
    NewArchive archive(target);
    archive.addFile(target.stem().utf8() + Library::extensions::database, catalog);
    for (const auto& [name, content] : files)
        archive.addBytes(name, content);
    archive.close();
}

void packWithFurniture(const fileString& catalog, const fileString& furniture, const fileString& target)
{
    FileReaper reaper(target);
    packWithFiles(catalog, {}, target);
    bool complete = true;
    const auto copy = [&](const std::u32string& name, const ZipUtils::ZipHandles::unzArchiveHandle& handle,
                          ZipUtils::ZipRawDataInfo* entry) {
        if (isContent(name))
            complete = ZipUtils::writeFileToArchiveRaw(target, fileString(name), handle, false, entry);
        return complete;
    };
    const auto never = [] { return false; };
    if (ZipUtils::getFilesDataInArchive(furniture, copy, never).empty() || !complete)
        throw FileError(target, "cannot include the files of " + furniture.humanReadableString());
    reaper.cancel();
}

}  // namespace VelkHost
