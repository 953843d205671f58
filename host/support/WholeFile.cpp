#include "host/support/WholeFile.h"

#include "host/support/FileError.h"
#include "host/support/Folders.h"
#include "host/support/SystemPath.h"

#include <VelkCommon/Files/LockingFStream.h>
#include <VelkCommon/Files/ReplacementFile.h>

#include <filesystem>

namespace fs = std::filesystem;

namespace VelkHost {
namespace {

std::string inMebibytes(std::uint64_t bytes)
{
    return std::to_string(bytes >> 20) + " MiB";
}

}  // namespace

std::uint64_t requireFile(const fileString& path, std::uint64_t maximumBytes)
{
    const std::string& text = path.utf8();
    if (text.empty() || text.find('\0') != std::string::npos)
        throw FileError(path, "is not a path");
    std::error_code error;
    const fs::path native = systemPath(path);
    if (const std::optional<Absence> absence = absenceOf(path))
        throw FileError(path, absence->why);
    const fs::file_status status = fs::status(native, error);
    if (!fs::is_regular_file(status))
        throw FileError(path, fs::is_directory(status) ? "is a folder, not a file" : "is not a file");
    const std::uintmax_t size = fs::file_size(native, error);
    if (error)
        throw FileError(path, {"cannot be read: %1", {error.message()}});
    if (size > maximumBytes)
        throw FileError(path, {"is larger than %1", {inMebibytes(maximumBytes)}});
    return size;
}

std::string readBeginning(const fileString& path, std::size_t count)
{
    LockingFStream file(path, LockingFStream::in | LockingFStream::binary);
    if (!file.isOpen())
        throw FileError(path, "cannot be opened for reading; may you read it, and does no other program write it?");
    std::string bytes(count, '\0');
    file.read(bytes.data(), static_cast<std::streamsize>(count));
    if (file.bad())
        throw FileError(path, "cannot be read");
    bytes.resize(static_cast<std::size_t>(file.gcount()));
    return bytes;
}

std::string readWhole(const fileString& path, std::size_t maximumBytes)
{
    return readBeginning(path, static_cast<std::size_t>(requireFile(path, maximumBytes)));
}

void writeWhole(const fileString& path, const std::string& bytes)
{
    ReplacementFile file(path);
    if (!file.write(bytes) || !file.commit())
        throw FileError(path, "cannot be written; is the disk full?");
}

}  // namespace VelkHost
