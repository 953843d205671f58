#include "host/installation/TextureMerge.h"

#include "host/catalog/ArchiveReader.h"
#include "host/installation/DataLock.h"
#include "host/support/FileError.h"
#include "host/support/Folders.h"

#include <VelkCommon/Files/FileUtils.h>
#include <VelkLibrary/LibraryImport.h>

namespace VelkHost {
namespace {

/// The names and checksums of an archive's entries. Throws FileError for one that cannot be read, which would otherwise
/// look as if it were empty.
std::map<std::string, std::uint32_t> contentOf(const fileString& archive)
{
    std::map<std::string, std::uint32_t> content;
    const ArchiveReader reader(archive, ArchiveReader::Directory::readable);
    for (const ArchiveReader::Entry& entry : reader.entries())
        content.emplace(entry.name, entry.checksum);
    return content;
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
    content_ = contentOf(archive_);
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
    std::map<std::string, std::uint32_t> added = contentOf(others);
    content_.merge(added);  // what is there already stays
    changed_ = true;
    if (!LibraryImport::moveArchivedTextures(others, archive_, &progress) || contentOf(archive_) != content_)
        throw FileError(archive_, "cannot be written");
}

}  // namespace VelkHost
