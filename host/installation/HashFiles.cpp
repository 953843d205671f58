#include "host/installation/HashFiles.h"

#include <VelkLibrary/CatalogDownloadProtocol.h>

#include <algorithm>

namespace VelkHost {
namespace {

using LibraryCatalogUpdate::CatalogTable;

CatalogTable readTable(std::uint32_t kind)
{
    CatalogTable catalogs;
    LibraryCatalogUpdate::readCatalogHashFile(LibraryCatalogUpdate::catalogHashFile(kind), catalogs, kind);
    return catalogs;
}

}  // namespace

const std::string noFilesHash(40, '0');

std::map<fileString, std::string> readHashes(std::uint32_t kind)
{
    std::map<fileString, std::string> hashes;
    for (const auto& [name, record] : readTable(kind))
        hashes[name] = record.localHash;
    return hashes;
}

// The module writes without telling whether it could, so what was written is read again.
bool setHashes(std::uint32_t kind, const std::map<fileString, std::string>& hashes)
{
    CatalogTable catalogs = readTable(kind);
    const auto holdAll = [&](const CatalogTable& table) {
        return std::all_of(hashes.begin(), hashes.end(), [&](const auto& wanted) {
            const auto found = table.find(wanted.first);
            return found != table.end() && found->second.localHash == wanted.second;
        });
    };
    if (holdAll(catalogs))
        return true;
    for (const auto& [name, hash] : hashes) {
        catalogs[name].kind = kind;
        catalogs[name].localHash = hash;
    }
    writeCatalogHashFile(catalogs, kind);
    return holdAll(readTable(kind));
}

}  // namespace VelkHost
