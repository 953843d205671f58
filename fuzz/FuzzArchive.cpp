// Reads any bytes as an archive, in two ways that must agree, and copies what it holds, which must stay the same.
#include <VelkCommon/Archive/ZipUtils.h>
#include <VelkCommon/Files/FileUtils.h>

#include "ArchiveContents.h"
#include "Check.h"
#include "InputFile.h"

#include <cstddef>
#include <cstdint>
#include <map>
#include <optional>
#include <set>
#include <string>
#include <vector>

namespace {

using fuzz::Bytes;
using fuzz::combined;
using fuzz::readWhole;

std::optional<Bytes> readInBlocks(const fileString& archive, const fileString& name)
{
    ZipUtils::ZipInputStream stream(combined(archive, name));
    Bytes all;
    while (stream.isFileOpen() && !stream.reachedEOF()) {
        const Bytes block = stream.readArchivedFile(1000);
        fuzz::check(block.size() <= 1000, "a block is not larger than asked for");
        all.insert(all.end(), block.begin(), block.end());
    }
    return stream.isWhole() ? std::optional(all) : std::nullopt;
}

/// Copies every entry that can be copied, and returns their names.
std::set<fileString> copy(const fileString& from, const fileString& to)
{
    std::set<fileString> copied;
    const auto visited = ZipUtils::getFilesDataInArchive(
        from,
        [&](const std::u32string& name, const auto& handle, ZipUtils::ZipRawDataInfo* entry) {
            if (ZipUtils::writeFileToArchiveRaw(to, fileString(name), handle, true, entry))
                copied.insert(fileString(name));
            return true;
        },
        {});
    fuzz::check(copied.empty() || !visited.empty(), "what was copied was visited");
    return copied;
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    static const fuzz::InputFile file(".zip");
    const fileString path = file.write(data, size);
    const fileString output = path + fileString(std::string(".out.zip"));
    const std::vector<fileString> names = ZipUtils::getFilenamesInArchive(path);
    fuzz::check(names.size() == ZipUtils::getSizeOfArchive(path), "there are as many names as entries");
    std::map<fileString, std::optional<Bytes>> contents;
    for (const fileString& name : names) {
        contents[name] = readWhole(path, name);
        const auto blocks = readInBlocks(path, name);
        fuzz::check(!contents[name] || blocks == contents[name], "both ways to read agree");
    }
    const std::set<fileString> copied = copy(path, output);
    const std::vector<fileString> result = ZipUtils::getFilenamesInArchive(output);
    fuzz::check(std::set<fileString>(result.begin(), result.end()) == copied && result.size() == copied.size(),
                "the copy has each copied name once");
    for (const fileString& name : result)
        fuzz::check(!contents[name] || readWhole(output, name) == contents[name],
                    "what can be read is the same in the copy");
    // Copied into itself, every entry is replaced by an equal one.
    fuzz::check(copy(output, output) == copied, "a copy can be copied");
    fuzz::check(ZipUtils::getFilenamesInArchive(output) == result, "replacing keeps the order");
    FileUtils::removePath(output, FileUtils::noFlags);
    return 0;
}
