// Adds the entries of one archive, of any bytes, to another. What is there afterwards is what both held.
//
// The input is a byte of flags, two with the length of the archive that is added to, and then both archives.
#include "ArchiveContents.h"
#include "Check.h"
#include "InputFile.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

namespace {

using fuzz::check;

struct Flags
{
    bool rename = false;  ///< each entry gets another name
    bool create = false;  ///< a target that is no archive is replaced by one
    bool stopEarly = false;
};

struct Copied
{
    fileString source;
    fileString target;
};

/// Adds every entry that can be added, and returns their names in order.
std::vector<Copied> add(const fileString& from, const fileString& to, Flags flags)
{
    std::vector<Copied> copied;
    const bool possible = flags.create || ZipUtils::canAddToArchive(to);
    const auto visited = ZipUtils::getFilesDataInArchive(
        from,
        [&](const std::u32string& name, const auto& handle, ZipUtils::ZipRawDataInfo* entry) {
            const fileString source(name);
            const fileString target(flags.rename ? U"r/" + name : name);
            const bool sound = ZipUtils::canCopyRaw(handle, entry);
            const bool written = ZipUtils::writeFileToArchiveRaw(to, target, handle, flags.create, entry);
            check(!written || (sound && possible), "what cannot be copied is not");
            if (written)
                copied.push_back({source, target});
            return !flags.stopEarly || !written;
        },
        {});
    check(copied.empty() || !visited.empty(), "what was copied was visited");
    return copied;
}

/// The names that must be there: those that were, each once, then the new ones.
std::vector<fileString> expectedNames(const std::vector<fileString>& before, const std::vector<Copied>& copied)
{
    std::vector<fileString> names;
    const auto addOnce = [&](const fileString& name) {
        if (std::find(names.begin(), names.end(), name) == names.end())
            names.push_back(name);
    };
    for (const fileString& name : before)
        addOnce(name);
    for (const Copied& one : copied)
        addOnce(one.target);
    return names;
}

void checkMerge(const fileString& source, const fileString& target, Flags flags)
{
    const std::vector<fileString> before = ZipUtils::getFilenamesInArchive(target);
    auto wanted = fuzz::contentsOf(target);
    const auto added = fuzz::contentsOf(source);
    const std::vector<Copied> copied = add(source, target, flags);
    const std::vector<fileString> after = ZipUtils::getFilenamesInArchive(target);
    if (copied.empty()) {
        check(after == before, "nothing was added");
    } else {
        check(after == expectedNames(before, copied), "old and new names are there");
        check(ZipUtils::canAddToArchive(target), "more can be added");
    }
    for (const Copied& one : copied)
        wanted[one.target] = added.at(one.source);
    for (const auto& [name, bytes] : wanted)
        check(!bytes || fuzz::readWhole(target, name) == bytes, "what could be read is the same");
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    static const fuzz::InputFile sourceFile(".zip");
    static const fuzz::InputFile targetFile(".target.zip");
    constexpr std::size_t head = 3;
    if (size < head)
        return 0;
    const std::size_t cut = head + (data[1] | static_cast<std::size_t>(data[2]) << 8) % (size - head + 1);
    const fileString target = targetFile.write(data + head, cut - head);
    const fileString source = sourceFile.write(data + cut, size - cut);
    checkMerge(source, target, {(data[0] & 1) != 0, (data[0] & 2) != 0, (data[0] & 4) != 0});
    return 0;
}
