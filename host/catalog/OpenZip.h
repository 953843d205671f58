#pragma once

#include <VelkCommon/Files/fileString.h>

#include <cstddef>
#include <cstdint>
#include <memory>
#include <span>
#include <string>

struct zip;
struct zip_file;

namespace VelkHost {

struct ZipCloser
{
    void operator()(zip* archive) const;
};

struct ZipEntryCloser
{
    void operator()(zip_file* entry) const;
};

using OpenZip = std::unique_ptr<zip, ZipCloser>;

/// Opens an archive to read it. `checked`: its directory must agree with what stands before each entry. Throws
/// FileError.
OpenZip openZip(const fileString& path, bool checked);

/// The data of one entry of an open archive. The archive outlives it, and one thread uses both. Failures throw
/// FileError with the archive's path and the entry's name.
class OpenZipEntry
{
public:
    OpenZipEntry(const fileString& path, zip* archive, std::uint64_t index, const std::string& name);

    /// Fills the block as far as there are bytes, and says how many these are; 0 at the end. There, the length and the
    /// checksum must be those of the directory.
    std::size_t read(std::span<char> block);

private:
    [[noreturn]] void fail(const std::string& reason) const;

    const fileString& path_;
    const std::string& name_;
    std::unique_ptr<zip_file, ZipEntryCloser> file_;
};

}  // namespace VelkHost
