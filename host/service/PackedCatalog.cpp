#include "host/service/PackedCatalog.h"

#include "host/catalog/CatalogFile.h"
#include "host/support/FileError.h"
#include "host/support/WholeFile.h"

#include <VelkCommon/Files/FileReaper.h>
#include <VelkCommon/Files/ReplacementFile.h>
#include <VelkCommon/Files/SHA1.h>
#include <VelkLibrary/Data/FileExtensions.h>

#include <zip.h>

#include <algorithm>
#include <functional>
#include <limits>
#include <memory>
#include <string_view>
#include <vector>

namespace VelkHost {
namespace {

constexpr std::size_t blockBytes = 1 << 18;

using Sink = std::function<void(std::string_view)>;

struct Entry
{
    std::uint64_t index = 0;
    std::string name;
    std::uint64_t size = 0;
    std::uint32_t checksum = 0;
};

/// An archive open for checking.
class Archive
{
public:
    explicit Archive(fileString path) : path_(std::move(path))
    {
        const std::uint64_t size = requireFile(path_, std::numeric_limits<std::uint64_t>::max());
        int code = 0;
        handle_.reset(zip_open(path_.utf8().c_str(), ZIP_RDONLY | ZIP_CHECKCONS, &code));
        if (!handle_)
            fail("is not a sound zip archive (" + errorText(code) + ")");
        readEntries(size);
    }

    const std::vector<Entry>& entries() const noexcept { return entries_; }

    /// Reads an entry to its end; length and checksum are compared there.
    void read(const Entry& entry, const Sink& sink)
    {
        const std::unique_ptr<zip_file_t, FileCloser> file(zip_fopen_index(handle_.get(), entry.index, 0));
        if (!file)
            fail("its entry \"" + entry.name + "\" cannot be read (" + zip_strerror(handle_.get()) + ")");
        std::vector<char> block(blockBytes);
        for (;;) {
            const std::int64_t got = zip_fread(file.get(), block.data(), block.size());
            if (got < 0)
                fail("its entry \"" + entry.name + "\" is damaged (" + zip_file_strerror(file.get()) + ")");
            if (got == 0)
                return;
            sink({block.data(), static_cast<std::size_t>(got)});
        }
    }

    [[noreturn]] void fail(const std::string& reason) const { throw FileError(path_, reason); }

private:
    struct Closer
    {
        void operator()(zip_t* handle) const { zip_discard(handle); }
    };
    struct FileCloser
    {
        void operator()(zip_file_t* file) const { zip_fclose(file); }
    };

    static std::string errorText(int code)
    {
        zip_error_t error;
        zip_error_init_with_code(&error, code);
        std::string text = zip_error_strerror(&error);
        zip_error_fini(&error);
        return text;
    }

    void readEntries(std::uint64_t archiveBytes)
    {
        const auto count = static_cast<std::uint64_t>(zip_get_num_entries(handle_.get(), 0));
        std::uint64_t compressed = 0;
        for (std::uint64_t index = 0; index < count; ++index) {
            zip_stat_t stat;
            if (zip_stat_index(handle_.get(), index, ZIP_FL_ENC_RAW, &stat) != 0)
                fail("has a damaged directory");
            compressed += std::min(stat.comp_size, archiveBytes + 1);
            if (compressed > archiveBytes)
                fail("has overlapping entries");
            entries_.push_back({index, stat.name, stat.size, stat.crc});
        }
    }

    fileString path_;
    std::unique_ptr<zip_t, Closer> handle_;
    std::vector<Entry> entries_;
};

bool isCatalog(const Entry& entry)
{
    return fileString(entry.name).hasExtension(Library::extensions::database);
}

const Entry& theCatalog(const Archive& archive)
{
    const std::vector<Entry>& entries = archive.entries();
    const auto count = std::count_if(entries.begin(), entries.end(), isCatalog);
    if (count == 0)
        archive.fail("holds no .calib file");
    if (count > 1)
        archive.fail("holds more than one .calib file, of which clients would install the last");
    return *std::find_if(entries.begin(), entries.end(), isCatalog);
}

/// Unpacks the catalog to a temporary file, makes sure that it can be read, and returns its SHA-1.
std::string catalogHash(Archive& archive, const Entry& entry)
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
    return SHA1::fileContentsToSHA1Hex(path);
}

std::string digestOf(const std::vector<Entry>& entries)
{
    std::vector<std::string> lines;
    for (const Entry& entry : entries)
        if (!isCatalog(entry))
            lines.push_back(std::to_string(entry.size) + " " + std::to_string(entry.checksum) + " " + entry.name);
    std::sort(lines.begin(), lines.end());
    std::string bytes;
    for (const std::string& line : lines)
        bytes.append(line).push_back('\0');
    return SHA1::bytesToSHA1Hex(bytes);
}

}  // namespace

PackedCatalog inspectPackedCatalog(const fileString& path)
{
    Archive archive(path);
    const Entry& catalog = theCatalog(archive);
    PackedCatalog packed{catalogHash(archive, catalog), digestOf(archive.entries())};
    for (const Entry& entry : archive.entries())
        if (&entry != &catalog)
            archive.read(entry, [](std::string_view) {});
    return packed;
}

void checkArchive(const fileString& path)
{
    Archive archive(path);
    for (const Entry& entry : archive.entries())
        archive.read(entry, [](std::string_view) {});
}

}  // namespace VelkHost
