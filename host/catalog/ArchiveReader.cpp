#include "host/catalog/ArchiveReader.h"

#include "host/support/FileError.h"
#include "host/support/WholeFile.h"

#include <zip.h>

#include <algorithm>
#include <limits>
#include <utility>

namespace VelkHost {
namespace {

constexpr std::size_t blockBytes = 1 << 18;

}  // namespace

ArchiveReader::ArchiveReader(fileString path, Directory directory) : path_(std::move(path))
{
    const std::uint64_t size = requireFile(path_, std::numeric_limits<std::uint64_t>::max());
    handle_ = openZip(path_, directory == Directory::sound);
    readEntries();
    if (directory == Directory::sound)
        refuseOverlaps(size);
}

ArchiveReader::~ArchiveReader() = default;

void ArchiveReader::read(const Entry& entry, const std::function<void(std::string_view)>& sink) const
{
    OpenZipEntry file(path_, handle_.get(), entry.index, entry.name);
    std::vector<char> block(blockBytes);
    std::uint64_t size = 0;
    for (;;) {
        const std::size_t got = file.read(block);
        size += got;
        if (size > entry.size || (got == 0 && size < entry.size))
            fail("its entry \"" + entry.name + "\" is damaged (it has another length than the directory says)");
        if (got == 0)
            return;
        sink({block.data(), got});
    }
}

void ArchiveReader::fail(const std::string& reason) const
{
    throw FileError(path_, reason);
}

void ArchiveReader::readEntries()
{
    const auto count = static_cast<std::uint64_t>(zip_get_num_entries(handle_.get(), 0));
    for (std::uint64_t index = 0; index < count; ++index) {
        zip_stat_t stat;
        if (zip_stat_index(handle_.get(), index, ZIP_FL_ENC_RAW, &stat) != 0)
            fail("has a damaged directory");
        entries_.push_back({index, stat.name, stat.size, stat.crc, stat.encryption_method != ZIP_EM_NONE});
    }
}

void ArchiveReader::refuseOverlaps(std::uint64_t archiveBytes) const
{
    std::uint64_t compressed = 0;
    for (const Entry& entry : entries_) {
        zip_stat_t stat;
        if (zip_stat_index(handle_.get(), entry.index, 0, &stat) != 0)
            fail("has a damaged directory");
        compressed += std::min<std::uint64_t>(stat.comp_size, archiveBytes + 1);
        if (compressed > archiveBytes)
            fail("has overlapping entries");
    }
}

}  // namespace VelkHost
