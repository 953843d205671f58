#include "host/command/PackLibrary.h"

#include "host/catalog/CatalogError.h"
#include "host/catalog/SourceFile.h"
#include "host/command/NewArchive.h"

#include <VelkCommon/Archive/ZipUtils.h>
#include <VelkCommon/Files/FileReaper.h>
#include <VelkCommon/Files/FileUtils.h>

#include <limits>

namespace VelkHost {
namespace {

/// Adds bytes that live until the archive is closed.
bool addEntry(zip_t* archive, const std::string& name, const std::string& bytes)
{
    zip_source_t* const source = zip_source_buffer(archive, bytes.data(), bytes.size(), 0);
    if (source == nullptr)
        return false;
    if (zip_file_add(archive, name.c_str(), source, ZIP_FL_ENC_UTF_8) >= 0)
        return true;
    zip_source_free(source);
    return false;
}

/// The source's own tables of names are in the catalog already.
bool isContent(const std::u32string& name)
{
    return !name.empty() && !name.ends_with(U'/') && !name.starts_with(U"PluginFurnitureCatalog");
}

}  // namespace

void packWithFiles(const fileString& catalog, const std::vector<std::pair<std::string, std::string>>& files,
                   const fileString& target)
{
    const std::string bytes = readSourceFile(catalog, std::numeric_limits<std::size_t>::max());
    int code = 0;
    NewArchive archive(zip_open(target.utf8().c_str(), ZIP_CREATE | ZIP_TRUNCATE, &code));
    bool complete = archive != nullptr && addEntry(archive.get(), target.stem().utf8() + ".calib", bytes);
    for (const auto& [name, content] : files)
        complete = complete && addEntry(archive.get(), name, content);
    if (!complete || zip_close(archive.get()) != 0)
        throw CatalogError(target, "cannot be written");
    static_cast<void>(archive.release());
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
        throw CatalogError(target, "cannot take over the files of " + furniture.humanReadableString());
    reaper.cancel();
}

}  // namespace VelkHost
