#include <VelkCommon/Files/FileState.h>

#include <VelkCommon/Files/detail/Folders.h>
#include <VelkCommon/Platform/FileSystem.h>
#include <VelkCommon/Platform/Process.h>

#include <system_error>

namespace Velk {

FileState fileState(const fileString& path)
{
    FileState state;
    const auto status = Platform::fileStatus(path.utf8());
    if (!status) {
        const bool nothing = path.empty() || Platform::lastErrorIsNotFound();
        state.kind = nothing ? FileState::Kind::nothing : FileState::Kind::unknown;
        if (!nothing)
            state.why = Platform::lastErrorText();
        return state;
    }
    state.kind = status->folder ? FileState::Kind::folder
                 : status->file ? FileState::Kind::file
                                : FileState::Kind::other;
    state.size = status->file ? static_cast<std::uint64_t>(status->size) : 0;
    state.modified = status->modifiedNanoseconds;
    return state;
}

std::string lastFileFailure()
{
    return Platform::lastErrorText();
}

std::string errorText(const std::error_code& error)
{
    return Platform::errorText(error);
}

bool isSameFile(const fileString& one, const fileString& other)
{
    const auto left = Platform::fileStatus(one.utf8());
    const auto right = Platform::fileStatus(other.utf8());
    return left && right && left->number == right->number && left->volume == right->volume;
}

fileString absolutePath(const fileString& path)
{
    return Platform::absolutePath(path.utf8());
}

std::optional<std::string> makeFolders(const fileString& path)
{
    std::string why;
    const bool made = detail::createMissingFolders(path, [&](const std::string& folder) {
        const bool created = Platform::createFolder(folder);
        if (!created)
            why = Platform::lastErrorText();
        return created;
    });
    if (made)
        return std::nullopt;
    return why.empty() ? errorText(std::make_error_code(std::errc::not_a_directory)) : why;
}

bool removeEmptyFolder(const fileString& path)
{
    return Platform::removeEmptyFolder(path.utf8());
}

std::optional<std::uint64_t> freeSpace(const fileString& folder)
{
    return Platform::freeSpace(folder.utf8());
}

}  // namespace Velk
