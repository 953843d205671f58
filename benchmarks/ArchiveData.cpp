#include "ArchiveData.h"

#include <VelkCommon/Archive/ZipUtils.h>
#include <VelkCommon/Files/FileUtils.h>

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <set>
#include <stdexcept>

#include <libdeflate.h>
#include <zip.h>
#include <zlib.h>

namespace bench {
namespace {

constexpr std::size_t databaseSize = 8'000'000;
constexpr std::size_t chunkSize = 27'000'000;

void require(bool holds, const char* what)
{
    if (!holds)
        throw std::runtime_error(std::string("cannot make the data: ") + what);
}

/// Text from the archive's largest entries.
std::string someText(const fileString& source, std::size_t size)
{
    std::string text;
    for (const fileString& name : ZipUtils::getFilenamesInArchive(source))
        if (name.hasExtension(".obj") && text.size() < size)
            ZipUtils::writeFileDataFromArchive(
                source + fileString(ZipUtils::getDelimiter()) + name,
                [&](std::vector<unsigned char>& bytes) { text.append(bytes.begin(), bytes.end()); });
    require(!text.empty(), "the source holds no text");
    const std::string once = text;
    while (text.size() < size)
        text += once;
    text.resize(size);
    return text;
}

using Writer = zip_t;

void addText(Writer* writer, const std::string& name, const std::string& text, bool deflated)
{
    // The library reads it when it closes the archive.
    auto* const copy = static_cast<char*>(std::malloc(text.size() + 1));
    std::copy(text.begin(), text.end(), copy);
    zip_source_t* const source = zip_source_buffer(writer, copy, text.size(), 1);
    const auto index = zip_file_add(writer, name.c_str(), source, ZIP_FL_ENC_UTF_8);
    require(index >= 0, "adding an entry");
    zip_set_file_compression(writer, static_cast<zip_uint64_t>(index), deflated ? ZIP_CM_DEFLATE : ZIP_CM_STORE, 0);
}

Writer* openWriter(const fileString& target)
{
    int error = 0;
    Writer* const writer = zip_open(target.utf8().c_str(), ZIP_CREATE | ZIP_TRUNCATE, &error);
    require(writer != nullptr, "opening an archive");
    return writer;
}

/// Writes an archive of one large entry by hand.
class LargeZip
{
public:
    LargeZip(const fileString& target, const std::string& name, bool deflated)
        : file_(target.utf8(), std::ios::binary), name_(name), deflated_(deflated)
    {
        std::string header;
        put(header, 0x04034B50, 4);
        putCommon(header, 0, 0, 0);
        putWide(header, 0, 0);
        file_ << header;
        dataBegin_ = header.size();
    }

    void write(const std::string& bytes) { file_.write(bytes.data(), static_cast<std::streamsize>(bytes.size())); }

    void finish(std::uint32_t crc, std::uint64_t size)
    {
        const auto dataEnd = static_cast<std::uint64_t>(file_.tellp());
        const std::uint64_t compressed = dataEnd - dataBegin_;
        std::string local;
        put(local, 0x04034B50, 4);
        putCommon(local, crc, 0, 0);
        putWide(local, size, compressed);
        file_.seekp(0);
        file_ << local;
        file_.seekp(static_cast<std::streamoff>(dataEnd));
        std::string end;
        put(end, 0x02014B50, 4);
        put(end, 0x031E, 2);
        putCommon(end, crc, 14, 0);
        putWide(end, size, compressed);
        const std::uint64_t directorySize = end.size();
        put(end, 0x06064B50, 4);
        put(end, 44, 8);
        put(end, 45, 2);
        put(end, 45, 2);
        put(end, 0, 8);
        put(end, 1, 8);
        put(end, 1, 8);
        put(end, directorySize, 8);
        put(end, dataEnd, 8);
        put(end, 0x07064B50, 4);
        put(end, 0, 4);
        put(end, dataEnd + directorySize, 8);
        put(end, 1, 4);
        put(end, 0x06054B50, 4);
        put(end, 0, 4);
        put(end, 1, 2);
        put(end, 1, 2);
        put(end, 0xFFFFFFFF, 4);
        put(end, 0xFFFFFFFF, 4);
        put(end, 0, 2);
        file_ << end;
        file_.close();
        require(!file_.fail(), "writing a large archive");
    }

private:
    static void put(std::string& out, std::uint64_t value, int bytes)
    {
        for (int i = 0; i < bytes; ++i, value >>= 8U)
            out += static_cast<char>(static_cast<unsigned char>(value & 0xFFU));
    }

    // From the version to the name. The directory's record has `more` further bytes before the name.
    void putCommon(std::string& out, std::uint32_t crc, std::size_t more, std::uint32_t offset) const
    {
        put(out, 45, 2);
        put(out, 0, 2);
        put(out, deflated_ ? 8 : 0, 2);
        put(out, 0x5A216C32, 4);
        put(out, crc, 4);
        put(out, 0xFFFFFFFF, 4);
        put(out, 0xFFFFFFFF, 4);
        put(out, name_.size(), 2);
        put(out, 20, 2);
        if (more > 0) {
            put(out, 0, 6);
            put(out, 0x81A40000, 4);
            put(out, offset, 4);
        }
        out += name_;
    }

    static void putWide(std::string& out, std::uint64_t size, std::uint64_t compressed)
    {
        put(out, 1, 2);
        put(out, 16, 2);
        put(out, size, 8);
        put(out, compressed, 8);
    }

    std::ofstream file_;
    std::string name_;
    bool deflated_;
    std::uint64_t dataBegin_ = 0;
};

// Deflated so that it can be repeated: it ends at the end of a byte and refers to nothing before itself.
std::string deflatedChunk(const std::string& text)
{
    z_stream stream = {};
    require(::deflateInit2(&stream, 6, Z_DEFLATED, -MAX_WBITS, 8, Z_DEFAULT_STRATEGY) == Z_OK, "deflating");
    std::string out(::deflateBound(&stream, static_cast<uLong>(text.size())) + 64, '\0');
    std::string in = text;
    stream.next_in = reinterpret_cast<Bytef*>(in.data());
    stream.avail_in = static_cast<uInt>(in.size());
    stream.next_out = reinterpret_cast<Bytef*>(out.data());
    stream.avail_out = static_cast<uInt>(out.size());
    require(::deflate(&stream, Z_FULL_FLUSH) == Z_OK && stream.avail_in == 0, "deflating");
    out.resize(stream.total_out);
    ::deflateEnd(&stream);
    return out;
}

/// Adds everything of `source` to `target`.
void copyInto(const fileString& source, const fileString& target, std::size_t maximumEntries = SIZE_MAX)
{
    std::size_t count = 0;
    const auto names = ZipUtils::getFilesDataInArchive(
        source,
        [&](const std::u32string& name, const auto& handle, ZipUtils::ZipRawDataInfo* entry) {
            return count++ < maximumEntries &&
                   ZipUtils::writeFileToArchiveRaw(target, fileString(name), handle, true, entry);
        },
        {});
    require(!names.empty(), "copying an archive");
}

}  // namespace

std::vector<fileString> furnitureArchives(const std::vector<std::string>& folders)
{
    std::vector<fileString> found;
    for (const std::string& folder : folders)
        if (std::filesystem::is_directory(folder))
            for (const auto& entry : std::filesystem::directory_iterator(folder))
                if (entry.path().extension() == ".sh3f")
                    found.emplace_back(entry.path().string());
    std::sort(found.begin(), found.end());
    return found;
}

void packLibrary(const std::vector<fileString>& sources, const fileString& target, std::size_t maximumEntries)
{
    Writer* const writer = openWriter(target);
    addText(writer, "library.calib", someText(sources.front(), databaseSize), true);
    require(zip_close(writer) == 0, "closing an archive");
    for (const fileString& source : sources)
        copyInto(source, target, maximumEntries);
}

void packSmallEntries(const fileString& target, int count)
{
    Writer* const writer = openWriter(target);
    std::string text;
    for (int i = 0; i < count; ++i) {
        text += std::to_string(i * 7919) + " ";
        addText(writer, "folder " + std::to_string(i % 97) + "/entry " + std::to_string(i),
                text.substr(text.size() > 400 ? text.size() - 400 : 0, static_cast<std::size_t>(100 + i % 300)),
                i % 3 != 0);
    }
    addText(writer, "library.calib", text, true);
    require(zip_close(writer) == 0, "closing an archive");
}

std::uint64_t packLargeDatabase(const fileString& source, const fileString& target, std::uint64_t bytes)
{
    const std::string text = someText(source, chunkSize);
    const std::string chunk = deflatedChunk(text);
    LargeZip zip(target, "library.calib", true);
    std::uint32_t crc = 0;
    std::uint64_t size = 0;
    for (; size < bytes; size += text.size()) {
        zip.write(chunk);
        crc = libdeflate_crc32(crc, text.data(), text.size());
    }
    zip.write(std::string("\x03\x00", 2));  // an empty block, the last one
    zip.finish(crc, size);
    return size;
}

void packLargeEntry(const fileString& target, std::uint64_t bytes, int count)
{
    const fileString little = target + fileString(std::string(".small"));
    packSmallEntries(little, count);
    const fileString large = target + fileString(std::string(".large"));
    LargeZip zip(large, "large.bin", false);
    std::string chunk(10'000'000, '\0');
    std::uint32_t state = 1;
    for (char& byte : chunk)
        byte = static_cast<char>((state = state * 1664525U + 1013904223U) >> 24U);
    std::uint32_t crc = 0;
    std::uint64_t size = 0;
    for (; size < bytes; size += chunk.size()) {
        zip.write(chunk);
        crc = libdeflate_crc32(crc, chunk.data(), chunk.size());
    }
    zip.finish(crc, size);
    copyInto(large, target);
    FileUtils::removePath(large, FileUtils::noFlags);
    copyInto(little, target);
    FileUtils::removePath(little, FileUtils::noFlags);
}

}  // namespace bench
