#include "host/installation/InstallationCheck.h"

#include "host/installation/CatalogInstaller.h"
#include "host/installation/HashFiles.h"
#include "host/support/FileError.h"

#include <VelkCommon/Files/SHA1.h>
#include <VelkLibrary/CatalogDownloadProtocol.h>

#include <map>
#include <optional>
#include <string>

namespace VelkHost {
namespace {

/// Whether the file is the recorded one; `file` gets its present time. A file that was never there is none to miss.
bool isWhole(const fileString& path, std::optional<InstalledFile>& file, bool verify)
{
    if (!file)
        return true;
    const std::optional<InstalledFile> now = stateOf(path, verify ? std::nullopt : file);
    if (!now || now->size != file->size || now->sha1 != file->sha1)
        return false;
    file = now;
    return true;
}

bool isWhole(InstalledRecord& record, const InstalledRecord::Key& key, bool verify)
{
    InstalledLibrary library = record.find(key);
    const fileString catalog = catalogPath(key);
    if (!isWhole(catalog, library.database, verify) ||
        !isWhole(referencedArchive(catalog), library.referenced, verify) ||
        contradicts(library.tag, library.database->sha1))
        return false;
    try {
        record.set(key, library);
    } catch (const FileError&) {
        // It costs the next update some reading.
    }
    return true;
}

/// Catalog files without a record, whose hash is not theirs: a run that was interrupted may have written it.
void distrust(std::map<fileString, std::string>& hashes, const InstalledRecord& record, std::uint32_t kind)
{
    for (auto& [name, hash] : hashes) {
        const InstalledRecord::Key key(kind, name.utf8());
        if (!record.find(key).database && contradicts(hash, SHA1::fileContentsToSHA1Hex(catalogPath(key))))
            hash = noFilesHash;
    }
}

}  // namespace

fileString catalogPath(const InstalledRecord::Key& key)
{
    return LibraryCatalogUpdate::catalogFolder(key.first) / fileString(key.second);
}

std::set<InstalledRecord::Key> findBrokenLibraries(InstalledRecord& record, std::uint32_t kind, bool verify)
{
    std::set<InstalledRecord::Key> broken;
    std::map<fileString, std::string> hashes = readHashes(kind);
    distrust(hashes, record, kind);
    const auto libraries = record.libraries();
    for (const auto& [key, library] : libraries) {
        if (key.first != kind || !library.database)
            continue;
        const bool whole = isWhole(record, key, verify);
        if (!whole)
            broken.insert(key);
        // Without its catalog file a library has no hash, and is fetched for that reason.
        if (catalogPath(key).pathExists())
            hashes[fileString(key.second)] = whole ? library.tag : noFilesHash;
    }
    setHashes(kind, hashes);
    return broken;
}

}  // namespace VelkHost
