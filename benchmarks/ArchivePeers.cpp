#include "ArchivePeers.h"

#include <VelkCommon/Files/FileUtils.h>

#include <cstdio>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include <libdeflate.h>
#include <zip.h>

namespace bench {
namespace {

bool writeFile(const fileString& path, const std::vector<unsigned char>& bytes)
{
    std::FILE* const file = std::fopen(path.utf8().c_str(), "wb");
    return file != nullptr && std::fwrite(bytes.data(), 1, bytes.size(), file) == bytes.size() &&
           std::fclose(file) == 0;
}

bool isDatabase(const char* name)
{
    return std::string_view(name).ends_with(".calib");
}

zip_t* open(const fileString& path, int flags)
{
    int error = 0;
    return zip_open(path.utf8().c_str(), flags, &error);
}

// The entry's compressed bytes by libzip, the rest by libdeflate.
std::vector<unsigned char> databaseOf(zip_t* archive)
{
    for (zip_int64_t index = 0; index < zip_get_num_entries(archive, 0); ++index) {
        zip_stat_t entry;
        zip_stat_index(archive, static_cast<zip_uint64_t>(index), 0, &entry);
        if (!isDatabase(entry.name))
            continue;
        std::vector<unsigned char> compressed(entry.comp_size);
        std::vector<unsigned char> bytes(entry.size);
        zip_file_t* const file = zip_fopen_index(archive, static_cast<zip_uint64_t>(index), ZIP_FL_COMPRESSED);
        zip_fread(file, compressed.data(), compressed.size());
        zip_fclose(file);
        if (entry.comp_method == ZIP_CM_STORE)
            return compressed;
        auto* const decompressor = libdeflate_alloc_decompressor();
        libdeflate_deflate_decompress(decompressor, compressed.data(), compressed.size(), bytes.data(), bytes.size(),
                                      nullptr);
        libdeflate_free_decompressor(decompressor);
        return bytes;
    }
    return {};
}

bool extract(zip_t* archive, zip_uint64_t index, const fileString& database)
{
    zip_file_t* const entry = zip_fopen_index(archive, index, 0);
    std::FILE* const file = std::fopen(database.utf8().c_str(), "wb");
    std::vector<char> block(1 << 16);
    zip_int64_t got = 0;
    while ((got = zip_fread(entry, block.data(), block.size())) > 0)
        if (std::fwrite(block.data(), 1, static_cast<std::size_t>(got), file) != static_cast<std::size_t>(got))
            return false;
    return got == 0 && zip_fclose(entry) == 0 && std::fclose(file) == 0;
}

bool copyEntry(zip_t* from, zip_uint64_t index, zip_t* to)
{
    zip_stat_t entry;
    zip_stat_index(from, index, 0, &entry);
    zip_source_t* const source = zip_source_zip(to, from, index, 0, 0, -1);
    const zip_int64_t added = zip_file_add(to, entry.name, source, ZIP_FL_OVERWRITE);
    return added >= 0 && zip_set_file_compression(to, static_cast<zip_uint64_t>(added), entry.comp_method, 0) == 0;
}

}  // namespace

bool boundOfSplit(const fileString& archive, const fileString& database, const fileString& others)
{
    zip_t* const opened = open(archive, ZIP_RDONLY);
    const bool written = opened != nullptr && writeFile(database, databaseOf(opened));
    zip_discard(opened);
    return written && FileUtils::copyFile(archive, others, true);
}

bool splitByLibzip(const fileString& archive, const fileString& database, const fileString& others)
{
    zip_t* const from = open(archive, ZIP_RDONLY);
    zip_t* const to = open(others, ZIP_CREATE | ZIP_TRUNCATE);
    if (from == nullptr || to == nullptr)
        return false;
    const auto count = static_cast<zip_uint64_t>(zip_get_num_entries(from, 0));
    for (zip_uint64_t index = 0; index < count; ++index) {
        const bool isBase = isDatabase(zip_get_name(from, index, 0));
        if (isBase ? !extract(from, index, database) : !copyEntry(from, index, to))
            return false;
    }
    if (zip_close(to) != 0)
        return false;
    zip_discard(from);
    return true;
}

bool mergeByLibzip(const fileString& source, const fileString& destination)
{
    const fileString merged = destination + fileString(std::string(".merged"));
    if (!FileUtils::copyFile(destination, merged, true))
        return false;
    zip_t* const from = open(source, ZIP_RDONLY);
    zip_t* const to = open(merged, 0);
    if (from == nullptr || to == nullptr)
        return false;
    const auto count = static_cast<zip_uint64_t>(zip_get_num_entries(from, 0));
    for (zip_uint64_t index = 0; index < count; ++index)
        if (zip_name_locate(to, zip_get_name(from, index, 0), 0) < 0 && !copyEntry(from, index, to))
            return false;
    if (zip_close(to) != 0)
        return false;
    zip_discard(from);
    FileUtils::removePath(source, FileUtils::noFlags);
    return FileUtils::moveFile(merged, destination, true);
}

}  // namespace bench
