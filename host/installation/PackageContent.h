#pragma once

#include <VelkCommon/Files/fileString.h>

#include <cstdint>
#include <functional>
#include <map>
#include <string>

namespace VelkHost {

/// What a packed library (".calibz") holds, by its directory, to be compared with what was unpacked from it: the
/// unpacking leaves out what it cannot write, and says nothing.
class PackageContent
{
public:
    /// Reads the directory of an archive. Throws FileError for one that is damaged, encrypted or without a catalog
    /// file.
    explicit PackageContent(const fileString& archive);

    /// Whether the library has files beside its catalog file.
    bool hasOthers() const noexcept { return !others_.empty(); }

    /// Throws FileError unless the catalog file at `database` and the archive at `others` hold everything, undamaged.
    /// `others` may be empty when there is nothing that it should hold. Reads all of both, and calls `betweenBlocks`
    /// meanwhile, whose exceptions pass through.
    void requireUnpacked(
        const fileString& database, const fileString& others, const std::function<void()>& betweenBlocks = [] {}) const;

private:
    struct Entry
    {
        std::uint64_t size = 0;  // of the data, in bytes
        std::uint32_t checksum = 0;
        friend bool operator==(const Entry&, const Entry&) = default;
    };
    using Entries = std::map<std::string, Entry>;  // by the bytes of the name

    void requireOthers(const fileString& others, const std::function<void()>& betweenBlocks) const;

    fileString archive_;
    Entry database_;
    Entries others_;
};

}  // namespace VelkHost
