#include "host/installation/TextureMerge.h"

#include "host/catalog/ArchiveReader.h"
#include "host/installation/DataLock.h"
#include "host/support/FileError.h"
#include "host/support/Folders.h"

#include <VelkCommon/Files/FileUtils.h>
#include <VelkLibrary/LibraryImport.h>

namespace VelkHost {
namespace {

/// The names of an archive's entries. Throws FileError for one that cannot be read, which would otherwise look as if it
/// were empty.
std::set<std::string> namesIn(const fileString& archive)
{
    std::set<std::string> names;
    const ArchiveReader reader(archive, ArchiveReader::Directory::readable);
    for (const ArchiveReader::Entry& entry : reader.entries())
        names.insert(entry.name);
    return names;
}

void requireSound(const fileString& archive)
{
    const ArchiveReader reader(archive, ArchiveReader::Directory::readable);
    for (const ArchiveReader::Entry& entry : reader.entries())
        reader.read(entry, [](std::string_view) {});
}

}  // namespace

TextureMerge::TextureMerge(const fileString& archive, const std::string& purpose)
    : archive_(absolutePath(archive)),
      lock_(lockFile(archive_, purpose)),
      folder_(archive_.parentPath()),
      old_(folder_.path() / U"old"),
      hadOld_(archive_.pathExists())
{
    WorkFolder::removeLeftovers(archive_.parentPath());
    if (folder_.path().empty())
        throw FileError(archive_, "cannot be written");
    if (!hadOld_)
        return;
    names_ = namesIn(archive_);
    if (!FileUtils::linkFile(archive_, old_) && !FileUtils::copyFile(archive_, old_, false))
        throw FileError(archive_, "cannot be written");
}

TextureMerge::~TextureMerge()
{
    if (!changed_)
        return;
    if (hadOld_)
        FileUtils::moveFile(old_, archive_, true);
    else
        FileUtils::removePath(archive_, FileUtils::overrideReadOnly);
}

void TextureMerge::add(const fileString& others, ProgressSubject& progress)
{
    requireSound(others);
    names_.merge(namesIn(others));
    changed_ = true;
    if (!LibraryImport::moveArchivedTextures(others, archive_, &progress) || namesIn(archive_) != names_)
        throw FileError(archive_, "cannot be written");
}

}  // namespace VelkHost
