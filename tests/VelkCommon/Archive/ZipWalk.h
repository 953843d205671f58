#pragma once

#include <VelkCommon/Archive/ZipUtils.h>

#include "support/TestHost.h"
#include "support/ZipBuilder.h"

#include <functional>
#include <string>
#include <vector>

namespace test {

using ZipHandle = ZipUtils::ZipHandles::unzArchiveHandle;

inline bool never()
{
    return false;
}

/// The base of the tests of archives: a folder, and the operations in the forms that most tests need.
class ArchiveTest : public TestHost
{
protected:
    fileString at(const std::u32string& name) const { return folder() / name; }

    /// Walks through `from`; whatever `copies` returns, the walk goes on.
    using Copier =
        std::function<void(const fileString& name, const ZipHandle& handle, ZipUtils::ZipRawDataInfo* entry)>;
    static std::vector<fileString> walk(const fileString& from, const Copier& copies)
    {
        return ZipUtils::getFilesDataInArchive(
            from,
            [&](const std::u32string& name, const ZipHandle& handle, ZipUtils::ZipRawDataInfo* entry) {
                copies(fileString(name), handle, entry);
                return true;
            },
            &never);
    }

    /// Copies every entry the way an import does; whether each copy and the walk succeeded.
    static bool copyAll(const fileString& from, const fileString& to)
    {
        bool copied = true;
        const auto names = walk(from, [&](const fileString& name, const ZipHandle& handle, auto* entry) {
            const bool added =
                ZipUtils::canAddToArchive(to) && ZipUtils::writeFileToArchiveRaw(to, name, handle, false, entry);
            copied = (added || ZipUtils::writeFileToArchiveRaw(to, name, handle, true, entry)) && copied;
        });
        return copied && !names.empty();
    }

    static fileString combined(const fileString& archive, const std::string& name)
    {
        return archive + fileString(ZipUtils::getDelimiter()) + fileString(name);
    }

    /// The data of an entry by writeFileDataFromArchive(); "-" when the sink is not called.
    static std::string dataOf(const fileString& archive, const std::string& name)
    {
        std::string data = "-";
        int calls = 0;
        ZipUtils::writeFileDataFromArchive(combined(archive, name), [&](std::vector<unsigned char>& bytes) {
            data.assign(bytes.begin(), bytes.end());
            ++calls;
        });
        EXPECT_LE(calls, 1);
        return data;
    }

    /// The data of an entry by ZipInputStream, in blocks; "-" when it is not whole.
    static std::string streamOf(const fileString& archive, const std::string& name, int blockSize = 1000)
    {
        ZipUtils::ZipInputStream stream(combined(archive, name));
        std::string data;
        while (stream.isFileOpen() && !stream.reachedEOF()) {
            const std::vector<unsigned char> block = stream.readArchivedFile(blockSize);
            EXPECT_LE(block.size(), static_cast<std::size_t>(blockSize));
            data.append(block.begin(), block.end());
        }
        EXPECT_TRUE(stream.readArchivedFile(blockSize).empty());
        EXPECT_TRUE(stream.reachedEOF());
        return stream.isWhole() ? data : "-";
    }

    /// The names of an archive's entries, joined.
    static std::string namesOf(const fileString& archive)
    {
        std::string names;
        for (const fileString& name : ZipUtils::getFilenamesInArchive(archive))
            names += (names.empty() ? "" : " ") + name.utf8();
        return names;
    }
};

}  // namespace test
