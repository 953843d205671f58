#include "host/catalog/ZipSource.h"

#include "host/support/FileError.h"
#include "host/support/WholeFile.h"

#include <zip.h>

#include <algorithm>
#include <array>
#include <cstdint>

namespace VelkHost {
namespace {

constexpr std::uint64_t maximumArchiveBytes = std::uint64_t{4} << 30;
constexpr std::size_t maximumEntries = 100'000;
constexpr std::size_t maximumBytesRead = std::size_t{2} << 30;  // of one archive, all entries together

}  // namespace

ZipSource::ZipSource(const fileString& path) : path_(path)
{
    const std::uint64_t size = requireFile(path, maximumArchiveBytes);
    archive_ = openZip(path, true);
    readNames(size);
}

ZipSource::~ZipSource() = default;

void ZipSource::fail(const std::string& reason) const
{
    throw FileError(path_, reason);
}

void ZipSource::readNames(std::uint64_t archiveBytes)
{
    const auto count = static_cast<std::uint64_t>(zip_get_num_entries(archive_.get(), 0));
    if (count > maximumEntries)
        fail("has more than " + std::to_string(maximumEntries) + " entries");
    std::uint64_t compressed = 0;
    for (std::uint64_t index = 0; index < count; ++index) {
        zip_stat_t entry;
        if (zip_stat_index(archive_.get(), index, 0, &entry) != 0 || (entry.valid & ZIP_STAT_NAME) == 0)
            fail("has a damaged directory");
        // Entries that share their bytes make a small file unpack to a huge one.
        compressed +=
            (entry.valid & ZIP_STAT_COMP_SIZE) != 0 ? std::min<std::uint64_t>(entry.comp_size, 1ULL << 40) : 0;
        if (compressed > archiveBytes)
            fail("has overlapping entries");
        std::string name = entry.name;
        if (!name.empty() && !name.ends_with('/'))
            names_.push_back(std::move(name));
    }
    std::sort(names_.begin(), names_.end());
}

std::optional<std::string> ZipSource::read(const std::string& name, std::size_t maximumBytes)
{
    const std::int64_t index = zip_name_locate(archive_.get(), name.c_str(), 0);
    if (index < 0)
        return std::nullopt;
    return readEntry(static_cast<std::size_t>(index), name, maximumBytes);
}

std::string ZipSource::readEntry(std::size_t index, const std::string& name, std::size_t maximumBytes)
{
    OpenZipEntry entry(path_, archive_.get(), index, name);
    std::string bytes;
    std::array<char, 65'536> block;
    for (;;) {
        const std::size_t got = entry.read(block);
        if (got == 0)
            return bytes;
        bytes.append(block.data(), got);
        bytesRead_ += got;
        if (bytes.size() > maximumBytes)
            fail("its entry \"" + name + "\" is larger than " + std::to_string(maximumBytes >> 20) + " MiB");
        if (bytesRead_ > maximumBytesRead)
            fail("unpacks to more than 2 GiB");
    }
}

}  // namespace VelkHost
