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

struct EntryCloser
{
    void operator()(zip_file_t* file) const { zip_fclose(file); }
};

std::string errorText(int code)
{
    zip_error_t error;
    zip_error_init_with_code(&error, code);
    std::string text = zip_error_strerror(&error);
    zip_error_fini(&error);
    return text;
}

}  // namespace

struct ZipSource::Archive
{
    explicit Archive(zip_t* opened) : handle(opened) {}
    ~Archive() { zip_discard(handle); }
    Archive(const Archive&) = delete;
    Archive& operator=(const Archive&) = delete;

    zip_t* handle;
};

ZipSource::ZipSource(const fileString& path) : path_(path)
{
    const std::uint64_t size = requireFile(path, maximumArchiveBytes);
    int code = 0;
    zip_t* handle = zip_open(path.utf8().c_str(), ZIP_RDONLY | ZIP_CHECKCONS, &code);
    if (handle == nullptr)
        fail("is not a sound zip archive (" + errorText(code) + ")");
    archive_ = std::make_unique<Archive>(handle);
    readNames(size);
}

ZipSource::~ZipSource() = default;

void ZipSource::fail(const std::string& reason) const
{
    throw FileError(path_, reason);
}

void ZipSource::readNames(std::uint64_t archiveBytes)
{
    const auto count = static_cast<std::uint64_t>(zip_get_num_entries(archive_->handle, 0));
    if (count > maximumEntries)
        fail("has more than " + std::to_string(maximumEntries) + " entries");
    std::uint64_t compressed = 0;
    for (std::uint64_t index = 0; index < count; ++index) {
        zip_stat_t entry;
        if (zip_stat_index(archive_->handle, index, 0, &entry) != 0 || (entry.valid & ZIP_STAT_NAME) == 0)
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
    const std::int64_t index = zip_name_locate(archive_->handle, name.c_str(), 0);
    if (index < 0)
        return std::nullopt;
    return readEntry(static_cast<std::size_t>(index), name, maximumBytes);
}

std::string ZipSource::readEntry(std::size_t index, const std::string& name, std::size_t maximumBytes)
{
    const std::unique_ptr<zip_file_t, EntryCloser> file(zip_fopen_index(archive_->handle, index, 0));
    if (!file)
        fail("its entry \"" + name + "\" cannot be read (" + zip_strerror(archive_->handle) + ")");
    std::string bytes;
    std::array<char, 65'536> block;
    for (;;) {
        // At the entry's end the library compares length and checksum; a difference is an error.
        const std::int64_t got = zip_fread(file.get(), block.data(), block.size());
        if (got < 0)
            fail("its entry \"" + name + "\" is damaged (" + zip_file_strerror(file.get()) + ")");
        if (got == 0)
            return bytes;
        bytes.append(block.data(), static_cast<std::size_t>(got));
        bytesRead_ += static_cast<std::size_t>(got);
        if (bytes.size() > maximumBytes)
            fail("its entry \"" + name + "\" is larger than " + std::to_string(maximumBytes >> 20) + " MiB");
        if (bytesRead_ > maximumBytesRead)
            fail("unpacks to more than 2 GiB");
    }
}

}  // namespace VelkHost
