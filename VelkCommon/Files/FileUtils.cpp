#include <VelkCommon/Files/FileUtils.h>

#include <VelkCommon/Files/ReplacementFile.h>
#include <VelkCommon/Files/detail/Folders.h>
#include <VelkCommon/Platform/File.h>
#include <VelkCommon/Platform/FileSystem.h>
#include <VelkCommon/Platform/PathText.h>
#include <VelkCommon/Platform/RemoveTree.h>
#include <VelkCommon/detail/Guarded.h>

#include <string>

namespace Platform = Velk::Platform;
using Velk::guarded;
using Velk::detail::folderOf;

namespace {

using Existing = ReplacementFile::Existing;

bool isFile(const fileString& path)
{
    const auto status = Platform::fileStatus(path.utf8());
    return status && !status->folder;
}

// Whether the path ends with a name: a root does not, and "." and ".." may lead to a root.
bool namesAFolder(const fileString& path)
{
    const std::string name = path.stemWithExtension().utf8();
    return !name.empty() && name != "." && name != "..";
}

bool copy(const fileString& from, const fileString& to, Existing existing)
{
    auto source = Platform::File::open(from.utf8(), Platform::File::Mode::read);
    if (!source.isOpen() || (existing == Existing::keep && Platform::nameTaken(to.utf8())))
        return false;
    ReplacementFile target(to, existing);
    const bool copied = target.copyFrom(source) && target.copyPermissionsFrom(from);
    // `from` and `to` may be the same file, and not every system can replace an open file.
    source.close();
    return copied && target.commit();
}

// Moves to another volume. The check avoids most copies whose source could not be removed afterwards.
bool moveByCopy(const fileString& from, const fileString& to, Existing existing)
{
    return Platform::canChangeFolder(folderOf(from)) && copy(from, to, existing) &&
           Platform::removeFile(from.utf8(), true);
}

// After a power failure, the name must not be there without the bytes.
void syncFile(const fileString& path)
{
    auto file = Platform::File::open(path.utf8(), Platform::File::Mode::read);
    if (file.isOpen())
        static_cast<void>(file.sync());
}

}  // namespace

bool FileUtils::pathExists(const fileString& path)
{
    return path.pathExists();
}

bool FileUtils::isLink(const fileString& path)
{
    // A separator at the end would lead through the link.
    return guarded([&] { return Platform::linkAt(Velk::detail::withoutTrailingSeparators(path.utf8())); }, false);
}

bool FileUtils::removePath(const fileString& path, MethodFlags flags)
{
    return Platform::removeFile(path.utf8(), (flags & overrideReadOnly) != 0);
}

bool FileUtils::removeDirectoryAndFiles(const fileString& path, MethodFlags flags)
{
    return guarded(
        [&] {
            // A separator at the end would lead through a link.
            const std::string folder = Velk::detail::withoutTrailingSeparators(path.utf8());
            return Platform::isAbsolute(folder) && namesAFolder(folder) &&
                   Platform::removeTree(folder, (flags & overrideReadOnly) != 0);
        },
        false);
}

bool FileUtils::createDirectoriesWithPerm(const fileString& path)
{
    return guarded([&] { return Velk::detail::createMissingFolders(path, &Platform::createSharedFolder); }, false);
}

bool FileUtils::createPrivateDirectory(const fileString& path)
{
    // A separator at the end would lead through a link.
    return guarded([&] { return Platform::createPrivateFolder(Velk::detail::withoutTrailingSeparators(path.utf8())); },
                   false);
}

bool FileUtils::copyFile(const fileString& from, const fileString& to, bool overwrite)
{
    return guarded([&] { return copy(from, to, overwrite ? Existing::replace : Existing::keep); }, false);
}

bool FileUtils::linkFile(const fileString& file, const fileString& secondName)
{
    return Platform::linkFile(file.utf8(), secondName.utf8());
}

bool FileUtils::moveFile(const fileString& from, const fileString& to, bool overwrite)
{
    return guarded(
        [&] {
            if (!isFile(from))
                return false;
            syncFile(from);
            const std::string folder = folderOf(to);  // before the move: afterwards nothing may fail
            const auto result = Platform::move(from.utf8(), to.utf8(), overwrite);
            if (result == Platform::MoveResult::otherVolume)
                return moveByCopy(from, to, overwrite ? Existing::replace : Existing::keep);
            if (result == Platform::MoveResult::moved)
                Platform::syncFolder(folder);
            return result == Platform::MoveResult::moved;
        },
        false);
}

bool FileUtils::renameFile(const fileString& from, const fileString& to)
{
    return Platform::move(from.utf8(), to.utf8(), true) == Platform::MoveResult::moved;
}

bool FileUtils::makeFileWritable(const fileString& path)
{
    return Platform::makeWritable(path.utf8());
}

bool FileUtils::setFilePermEveryoneFullAccess(const fileString& path)
{
    return Platform::grantEveryone(path.utf8());
}

bool FileUtils::canWriteFile(const fileString& path)
{
    return guarded(
        [&] {
            if (path.pathExists())
                return Platform::canWriteFile(path.utf8());
            return !path.stemWithExtension().empty() && Platform::canChangeFolder(folderOf(path));
        },
        false);
}

bool FileUtils::canReplaceFile(const fileString& path)
{
    return guarded([&] { return isFile(path) && Platform::canReplaceFile(folderOf(path), path.utf8()); }, false);
}

bool FileUtils::isPathWriteLocked(const fileString& path)
{
    return Platform::isWriteLocked(path.utf8());
}

long long FileUtils::fileSize(const fileString& path)
{
    const auto status = Platform::fileStatus(path.utf8());
    return status && !status->folder ? status->size : -1;
}
