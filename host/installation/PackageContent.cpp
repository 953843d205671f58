#include "host/installation/PackageContent.h"

#include "host/support/FileError.h"
#include "host/support/SystemPath.h"

#include <VelkCommon/Archive/ZipUtils.h>
#include <VelkLibrary/Data/FileExtensions.h>

#include <zip.h>
#include <zlib.h>

#include <fstream>
#include <memory>
#include <optional>
#include <vector>

namespace VelkHost {
namespace {

constexpr std::size_t blockSize = std::size_t{1} << 20;  // bytes

struct Closer
{
    void operator()(zip_t* archive) const { zip_discard(archive); }
};

/// The checksum that archives keep, of a whole file; nothing when it cannot be read.
std::optional<std::uint32_t> checksumOf(const fileString& path)
{
    std::ifstream file(systemPath(path), std::ios::binary);
    std::vector<char> block(blockSize);
    uLong checksum = crc32(0, nullptr, 0);
    while (file.read(block.data(), static_cast<std::streamsize>(block.size())) || file.gcount() > 0)
        checksum = crc32(checksum, reinterpret_cast<const Bytef*>(block.data()), static_cast<uInt>(file.gcount()));
    if (!file.eof())
        return std::nullopt;
    return static_cast<std::uint32_t>(checksum);
}

}  // namespace

PackageContent::Entries PackageContent::entriesOf(const fileString& archive)
{
    const std::unique_ptr<zip_t, Closer> open(zip_open(archive.utf8().c_str(), ZIP_RDONLY, nullptr));
    if (open == nullptr)
        throw FileError(archive, "is not a packed library, or it is damaged");
    Entries entries;
    const auto count = static_cast<std::uint64_t>(zip_get_num_entries(open.get(), 0));
    for (std::uint64_t index = 0; index < count; ++index) {
        zip_stat_t entry;
        constexpr zip_uint64_t needed = ZIP_STAT_SIZE | ZIP_STAT_CRC | ZIP_STAT_ENCRYPTION_METHOD;
        const char* const name = zip_get_name(open.get(), index, ZIP_FL_ENC_RAW);
        if (name == nullptr || zip_stat_index(open.get(), index, 0, &entry) != 0 || (entry.valid & needed) != needed)
            throw FileError(archive, "is damaged");
        if (entry.encryption_method != ZIP_EM_NONE)
            throw FileError(archive, "is encrypted");
        entries[name] = {entry.size, entry.crc};
    }
    return entries;
}

PackageContent::PackageContent(const fileString& archive) : archive_(archive), others_(entriesOf(archive))
{
    // The unpacking takes the last of several catalog files.
    fileString database;
    for (const fileString& name : ZipUtils::getFilenamesInArchive(archive))
        if (name.hasExtension(Library::extensions::database))
            database = name;
    const auto found = others_.find(database.utf8());
    if (database.empty() || found == others_.end())
        throw FileError(archive, "is not a packed library: its catalog file is missing or damaged");
    database_ = found->second;
    std::erase_if(others_, [](const auto& entry) {
        return fileString(entry.first).hasExtension(Library::extensions::database);
    });
}

void PackageContent::requireUnpacked(const fileString& database, const fileString& others) const
{
    std::error_code error;
    const std::uintmax_t size = std::filesystem::file_size(systemPath(database), error);
    if (error || size != database_.size || checksumOf(database) != database_.checksum)
        throw FileError(archive_, "its catalog file could not be unpacked; is it damaged, or the disk full?");
    if (hasOthers() && (others.empty() || entriesOf(others) != others_))
        throw FileError(archive_, "its textures and other files could not be unpacked; is it damaged, or the disk full?");
}

}  // namespace VelkHost
