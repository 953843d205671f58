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

struct FileCloser
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

void ArchiveReader::Closer::operator()(zip* handle) const
{
    zip_discard(handle);
}

ArchiveReader::ArchiveReader(fileString path, Directory directory) : path_(std::move(path))
{
    const std::uint64_t size = requireFile(path_, std::numeric_limits<std::uint64_t>::max());
    int code = 0;
    handle_.reset(
        zip_open(path_.utf8().c_str(), ZIP_RDONLY | (directory == Directory::sound ? ZIP_CHECKCONS : 0), &code));
    if (!handle_)
        fail("is not a sound zip archive (" + errorText(code) + ")");
    readEntries();
    if (directory == Directory::sound)
        refuseOverlaps(size);
}

ArchiveReader::~ArchiveReader() = default;

void ArchiveReader::read(const Entry& entry, const std::function<void(std::string_view)>& sink) const
{
    const std::unique_ptr<zip_file_t, FileCloser> file(zip_fopen_index(handle_.get(), entry.index, 0));
    if (!file)
        fail("its entry \"" + entry.name + "\" cannot be read (" + zip_strerror(handle_.get()) + ")");
    std::vector<char> block(blockBytes);
    std::uint64_t size = 0;
    for (;;) {
        const std::int64_t got = zip_fread(file.get(), block.data(), block.size());
        if (got < 0)
            fail("its entry \"" + entry.name + "\" is damaged (" + zip_file_strerror(file.get()) + ")");
        size += static_cast<std::uint64_t>(got);
        if (size > entry.size || (got == 0 && size < entry.size))
            fail("its entry \"" + entry.name + "\" is damaged (it has another length than the directory says)");
        if (got == 0)
            return;
        sink({block.data(), static_cast<std::size_t>(got)});
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
