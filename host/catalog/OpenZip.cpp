#include "host/catalog/OpenZip.h"

#include "host/support/FileError.h"
#include "host/support/System.h"

#include <zip.h>

namespace VelkHost {

void ZipCloser::operator()(zip* archive) const
{
    zip_discard(archive);
}

void ZipEntryCloser::operator()(zip_file* entry) const
{
    zip_fclose(entry);
}

OpenZip openZip(const fileString& path, bool checked)
{
    int code = 0;
    OpenZip archive(zip_open(pathForLibraries(path).c_str(), ZIP_RDONLY | (checked ? ZIP_CHECKCONS : 0), &code));
    if (archive)
        return archive;
    zip_error_t error;
    zip_error_init_with_code(&error, code);
    const std::string reason = zip_error_strerror(&error);
    zip_error_fini(&error);
    throw FileError(path, "is not a sound zip archive (" + reason + ")");
}

OpenZipEntry::OpenZipEntry(const fileString& path, zip* archive, std::uint64_t index, const std::string& name)
    : path_(path), name_(name), file_(zip_fopen_index(archive, index, 0))
{
    if (!file_)
        fail(std::string("cannot be read (") + zip_strerror(archive) + ")");
}

std::size_t OpenZipEntry::read(std::span<char> block)
{
    const std::int64_t got = zip_fread(file_.get(), block.data(), block.size());
    if (got < 0)
        fail(std::string("is damaged (") + zip_file_strerror(file_.get()) + ")");
    return static_cast<std::size_t>(got);
}

void OpenZipEntry::fail(const std::string& reason) const
{
    throw FileError(path_, "its entry \"" + name_ + "\" " + reason);
}

}  // namespace VelkHost
