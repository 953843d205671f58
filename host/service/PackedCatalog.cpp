#include "host/service/PackedCatalog.h"

#include "host/catalog/ArchiveReader.h"
#include "host/catalog/CatalogFile.h"
#include "host/service/Digest.h"
#include "host/support/FileError.h"

#include <VelkCommon/Files/FileReaper.h>
#include <VelkCommon/Files/ReplacementFile.h>
#include <VelkCommon/Files/SHA1.h>
#include <VelkLibrary/Data/FileExtensions.h>

#include <algorithm>
#include <string_view>
#include <vector>

namespace VelkHost {
namespace {

using Entry = ArchiveReader::Entry;

bool isCatalog(const Entry& entry)
{
    return fileString(entry.name).hasExtension(Library::extensions::database);
}

const Entry& theCatalog(const ArchiveReader& archive)
{
    const std::vector<Entry>& entries = archive.entries();
    const auto count = std::count_if(entries.begin(), entries.end(), isCatalog);
    if (count == 0)
        archive.fail("holds no .calib file");
    if (count > 1)
        archive.fail("holds more than one .calib file, of which clients would install the last");
    return *std::find_if(entries.begin(), entries.end(), isCatalog);
}

/// What there is to know about the catalog: unpacked to a temporary file, and read.
PackedCatalog inspectCatalog(const ArchiveReader& archive, const Entry& entry)
{
    fileString path;
    path.generateAsTempName(fileString(Library::extensions::database));
    const FileReaper reaper(path);
    ReplacementFile file(path);
    bool written = file.isOpen();
    archive.read(entry, [&](std::string_view bytes) { written = written && file.write(bytes); });
    if (!written || !file.commit())
        archive.fail("cannot be unpacked to " + path.parentPath().humanReadableString() + "; is the disk full?");
    try {
        static_cast<void>(readCatalog(path, CatalogContent::Names));
    } catch (const FileError& error) {
        archive.fail("its entry \"" + entry.name + "\" " + error.reason());
    }
    PackedCatalog packed{catalogFormat(path), SHA1::fileContentsToSHA1Hex(path), {}};
    if (packed.catalogHash.empty())
        archive.fail("cannot be unpacked to " + path.parentPath().humanReadableString());
    return packed;
}

std::string digestOfOthers(const std::vector<Entry>& entries)
{
    std::vector<std::string> lines;
    for (const Entry& entry : entries)
        if (!isCatalog(entry))
            lines.push_back(std::to_string(entry.size) + " " + std::to_string(entry.checksum) + " " + entry.name);
    std::sort(lines.begin(), lines.end());
    std::string bytes;
    for (const std::string& line : lines)
        bytes.append(line).push_back('\0');
    return digestOf(bytes);
}

}  // namespace

PackedCatalog inspectPackedCatalog(const fileString& path)
{
    const ArchiveReader archive(path, ArchiveReader::Directory::sound);
    const Entry& catalog = theCatalog(archive);
    PackedCatalog packed = inspectCatalog(archive, catalog);
    packed.companions = digestOfOthers(archive.entries());
    for (const Entry& entry : archive.entries())
        if (&entry != &catalog)
            archive.read(entry, [](std::string_view) {});
    return packed;
}

void checkArchive(const fileString& path)
{
    const ArchiveReader archive(path, ArchiveReader::Directory::sound);
    for (const Entry& entry : archive.entries())
        archive.read(entry, [](std::string_view) {});
}

}  // namespace VelkHost
