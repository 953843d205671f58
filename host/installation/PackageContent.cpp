#include "host/installation/PackageContent.h"

#include "host/catalog/ArchiveReader.h"
#include "host/support/FileError.h"
#include "host/support/SystemPath.h"

#include <VelkCommon/Archive/ZipUtils.h>
#include <VelkCommon/Files/FileState.h>
#include <VelkLibrary/Data/FileExtensions.h>

#include <zlib.h>

#include <fstream>
#include <optional>
#include <vector>

namespace VelkHost {
namespace {

constexpr std::size_t checkedBlock = std::size_t{1} << 20;  // bytes

/// The checksum that archives keep, of a whole file; nothing when it cannot be read.
std::optional<std::uint32_t> checksumOf(const fileString& path, const std::function<void()>& betweenBlocks)
{
    std::ifstream file(streamPath(path), std::ios::binary);
    std::vector<char> block(checkedBlock);
    uLong checksum = crc32(0, nullptr, 0);
    while (file.read(block.data(), static_cast<std::streamsize>(block.size())) || file.gcount() > 0) {
        betweenBlocks();
        checksum = crc32(checksum, reinterpret_cast<const Bytef*>(block.data()), static_cast<uInt>(file.gcount()));
    }
    if (!file.eof())
        return std::nullopt;
    return static_cast<std::uint32_t>(checksum);
}

bool isCatalogFile(const std::string& name)
{
    return fileString(name).hasExtension(Library::extensions::database);
}

/// The entry that the unpacking takes: the last of several catalog files. Its directory is the one to ask, since some
/// archives look different to different readers.
std::string catalogNameIn(const fileString& archive)
{
    std::string last;
    for (const fileString& name : ZipUtils::getFilenamesInArchive(archive))
        if (name.hasExtension(Library::extensions::database))
            last = name.utf8();
    return last;
}

}  // namespace

PackageContent::PackageContent(const fileString& archive) : archive_(archive)
{
    const std::string catalog = catalogNameIn(archive);
    bool hasCatalog = false;
    try {
        const ArchiveReader packed(archive, ArchiveReader::Directory::readable);
        for (const ArchiveReader::Entry& entry : packed.entries()) {
            if (entry.encrypted)
                throw FileError(archive, "is encrypted");
            if (entry.name == catalog) {
                database_ = {entry.size, entry.checksum};
                hasCatalog = true;
            } else if (!isCatalogFile(entry.name)) {
                others_[entry.name] = {entry.size, entry.checksum};
            }
        }
    } catch (const FileError& error) {
        if (error.reason().starts_with("is not a sound zip archive"))
            throw FileError(archive, "is not a packed library, or it is damaged");
        throw;
    }
    if (!hasCatalog)
        throw FileError(archive, "is not a packed library: its catalog file is missing or damaged");
}

void PackageContent::requireUnpacked(const fileString& database, const fileString& others,
                                     const std::function<void()>& betweenBlocks) const
{
    const Velk::FileState state = Velk::fileState(database);
    if (state.kind != Velk::FileState::Kind::file || state.size != database_.size ||
        checksumOf(database, betweenBlocks) != database_.checksum)
        throw FileError(archive_, "its catalog file could not be unpacked; is it damaged, or the disk full?");
    if (hasOthers())
        requireOthers(others, betweenBlocks);
}

void PackageContent::requireOthers(const fileString& others, const std::function<void()>& betweenBlocks) const
{
    const Reason incomplete = "its textures and other files could not be unpacked; is it damaged, or the disk full?";
    if (others.empty())
        throw FileError(archive_, incomplete);
    try {
        const ArchiveReader unpacked(others, ArchiveReader::Directory::readable);
        Entries found;
        for (const ArchiveReader::Entry& entry : unpacked.entries()) {
            unpacked.read(entry, [&](std::string_view) { betweenBlocks(); });
            found[entry.name] = {entry.size, entry.checksum};
        }
        if (found == others_)
            return;
    } catch (const FileError&) {
        // As bad as an archive that lacks something.
    }
    throw FileError(archive_, incomplete);
}

}  // namespace VelkHost
