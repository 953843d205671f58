#include "host/support/WholeFile.h"

#include "host/support/FileError.h"
#include "host/support/Folders.h"

#include <VelkCommon/Files/FileState.h>
#include <VelkCommon/Files/LockingFStream.h>
#include <VelkCommon/Files/ReplacementFile.h>

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
    using Kind = Velk::FileState::Kind;
    if (const std::optional<Absence> absence = absenceOf(path))
        throw FileError(path, absence->why);
    const Velk::FileState state = Velk::fileState(path);
    if (state.kind == Kind::unknown)
        throw FileError(path, {"cannot be read: %1", {state.why}});
    if (state.kind != Kind::file)
        throw FileError(path, state.kind == Kind::folder ? "is a folder, not a file" : "is not a file");
    if (state.size > maximumBytes)
        throw FileError(path, {"is larger than %1", {inMebibytes(maximumBytes)}});
    return state.size;
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
        throw FileError(path, {"cannot be written: %1", {file.failure()}});
}

}  // namespace VelkHost
