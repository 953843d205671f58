#pragma once

#include <VelkCommon/Archive/ZipUtils.h>

#include <map>
#include <new>
#include <optional>
#include <vector>

namespace fuzz {

using Bytes = std::vector<unsigned char>;

inline fileString combined(const fileString& archive, const fileString& name)
{
    return archive + fileString(ZipUtils::getDelimiter()) + name;
}

/// An entry's bytes; empty when it cannot be read.
inline std::optional<Bytes> readWhole(const fileString& archive, const fileString& name)
{
    std::optional<Bytes> whole;
    try {
        ZipUtils::writeFileDataFromArchive(combined(archive, name), [&](Bytes& bytes) { whole = bytes; });
    } catch (const std::bad_alloc&) {
        // It claims to be too large for memory.
    }
    return whole;
}

/// The bytes that each name in an archive stands for.
inline std::map<fileString, std::optional<Bytes>> contentsOf(const fileString& archive)
{
    std::map<fileString, std::optional<Bytes>> contents;
    for (const fileString& name : ZipUtils::getFilenamesInArchive(archive))
        contents.try_emplace(name, readWhole(archive, name));
    return contents;
}

}  // namespace fuzz
