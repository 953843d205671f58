#include <VelkLibrary/Update/CatalogHashFile.h>

#include <VelkCommon/Files/FileUtils.h>
#include <VelkCommon/Files/LockingFStream.h>
#include <VelkLibrary/CatalogDownloadProtocol.h>
#include <VelkLibrary/Data/PlainFileName.h>
#include <VelkLibrary/Update/detail/CatalogTexts.h>
#include <VelkLibrary/detail/ModuleStatics.h>

#include <utility>

using Library::holdsControlCharacter;

namespace LibraryCatalogUpdate {
namespace {

// A catalog takes some hundred bytes; a larger file was not written here.
constexpr long long largestHashFile = 16LL << 20;

void readHashes(const fileString& hashFile, CatalogTable& catalogs, std::uint32_t kind)
{
    if (FileUtils::fileSize(hashFile) > largestHashFile)
        return;
    const fileString folder = hashFile.parentPath();
    LockingFStream file(hashFile, LockingFStream::in | LockingFStream::binary);  // lines end as the parser has it
    for (std::string line; std::getline(file, line);) {
        auto entry = detail::parseHashLine(line);
        if (!entry || !(folder / fileString(entry->first)).pathExists())
            continue;
        CatalogRecord& record = catalogs[fileString(entry->first)];
        record.kind = kind;
        record.localHash = std::move(entry->second);
    }
}

// The lines of all catalogs of a kind. One that would break its line is left out: its hash is computed again
// next time.
std::string hashText(const CatalogTable& catalogs, std::uint32_t kind)
{
    std::string text;
    for (const auto& [name, record] : catalogs) {
        const std::string& hash = record.updated ? record.remoteHash : record.localHash;
        if (record.kind != kind || hash.empty())
            continue;
        const std::string line = name.utf8() + ":" + hash;
        if (!holdsControlCharacter(line))
            text += line + "\n";
    }
    return text;
}

}  // namespace

fileString catalogHashFile(std::uint32_t kind)
{
    const fileString folder = catalogFolder(kind);
    return folder.empty() ? fileString() : folder / Library::detail::catalogHashFileName;
}

void readCatalogHashFile(const fileString& hashFile, CatalogTable& catalogs, std::uint32_t kind) noexcept
{
    try {
        readHashes(hashFile, catalogs, kind);
    } catch (...) {
        // The hashes that are missing are computed.
    }
}

void writeCatalogHashFile(const CatalogTable& catalogs, std::uint32_t kind) noexcept
{
    try {
        const fileString path = catalogHashFile(kind);
        if (path.empty())
            return;
        const std::string text = hashText(catalogs, kind);
        LockingFStream file(path, LockingFStream::out);
        file << text;
        file.close();
        if (file)
            FileUtils::setFilePermEveryoneFullAccess(path);
    } catch (...) {
        // A file that is missing or cut short only costs the next run some reading.
    }
}

}  // namespace LibraryCatalogUpdate
